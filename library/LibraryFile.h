#pragma once

#include "library/FormatLibrary.h"
#include "text/Reporter.h"

#include <filesystem>
#include <optional>
#include <string>

/// The library file to read: the one that the command line names, else the program's own. Nothing is made.
std::filesystem::path LibraryToRead(const std::optional<std::string>& given, CReporter& reporter);

/// The one to write, chosen in the same way; a user's own that is missing is made from the sample one first
/// (library/LibraryPlace.h).
std::filesystem::path LibraryToWrite(const std::optional<std::string>& given, CReporter& reporter);

/// Loads the library file at `path`, which is never created or changed; a missing one gives no formats. False, and then
/// reported, when it cannot be opened. A damaged one gives the formats before the damage, as in the window; that is
/// reported, too.
bool LoadLibrary(const std::filesystem::path& path, FormatLibrary& library, CReporter& reporter);
