#pragma once

#include <QString>

#include <string_view>

// When a version was kept, as its stamp (text/UtcTime.h) tells it. A text that is no stamp is shown as it stands.

/// "2026-11-22 14:02:08", by the clock of this place.
QString VersionTime(std::string_view stamp);

/// "2026-11-22 11:02:08 UTC".
QString VersionTimeUtc(std::string_view stamp);

/// For a sentence: "at 14:02", or "on 2026-11-21 at 14:02" of another day than today.
QString VersionMoment(std::string_view stamp);
