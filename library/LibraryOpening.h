#pragma once

#include "library/FormatLibrary.h"

#include <cstdint>
#include <filesystem>

/// How the program's own library was opened.
struct LibraryOpening {
    std::int64_t loaded = -1;  ///< what FormatLibrary::load gave, or loadReadOnly where only that went
    bool mayBeWritten = false; ///< the file is there and open to changes
};

/// Loads `library` from `path`, as FormatLibrary::load does; a file that may only be read is read and left as it is.
/// What killed programs left of their saves beside a file that may be written is removed.
LibraryOpening OpenLibrary(FormatLibrary& library, const std::filesystem::path& path);

/// Whether the library file at `path` is open to changes now. Changes nothing.
bool MayBeWritten(const std::filesystem::path& path);

/// Whether a library that was opened so holds only what stands before the damage in its file.
bool IsDamaged(const FormatLibrary& library, const LibraryOpening& opening);
