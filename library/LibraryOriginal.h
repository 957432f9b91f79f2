#pragma once

#include "library/FormatLibrary.h"

#include <cstdint>
#include <filesystem>

// A library file that was not understood in full keeps only what was understood at its next save. What it held before
// is kept in a copy beside it.

/// Whether saving `library` drops something of the file that it was loaded from with the result `loaded`: the rest of a
/// damaged file, the items of a later version, the array lengths of an older one, all of a file that could not be
/// opened.
bool IsOriginalAtRisk(const FormatLibrary& library, std::int64_t loaded);

/// Copies `file` to its name with ".bak" appended, or ".bak2", ".bak3" and so on where that name is taken. An existing
/// copy with the same bytes will do; no existing file is changed. Reports nothing.
///
/// True when such a copy stands there, or when there is nothing to keep: no such file, or an empty one. False after a
/// failure, which leaves no new file behind.
bool KeepOriginal(const std::filesystem::path& file);
