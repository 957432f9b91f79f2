#pragma once

#include "recovery/VersionRestore.h"

/// RestoreVersion for the format library `library`, under whose lock it is called. Items that come back get the notes
/// that they had then, as far as versions of the notes file tell; all others keep those of now, and so does everything
/// where the notes cannot be read. What the notes file held before is kept, too; that this fails is told nowhere. For
/// any other file it is RestoreVersion alone.
VersionRestored RestoreLibrary(const CVersionStore& store, const std::filesystem::path& library, std::string_view stamp,
                               CReporter& reporter);
