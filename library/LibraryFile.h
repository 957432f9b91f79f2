#pragma once

#include "library/FormatLibrary.h"
#include "text/Reporter.h"

#include <filesystem>
#include <optional>
#include <string>

/// Whether `path` names a library in JSON, as "formats export" writes it: by its extension ".json", in any case. Such a
/// file is read as a library file is, and never written as one.
bool IsJsonLibrary(const std::filesystem::path& path);

/// The library file to read: the one that the command line names, else the program's own. Nothing is made.
std::filesystem::path LibraryToRead(const std::optional<std::filesystem::path>& given, CReporter& reporter);

/// The one to write, chosen in the same way; a user's own that is missing is made from the sample one first
/// (library/LibraryPlace.h).
std::filesystem::path LibraryToWrite(const std::optional<std::filesystem::path>& given, CReporter& reporter);

/// Loads the library file at `path` and the notes beside it (NotesFile.h), which are never created or changed; a
/// missing one gives no formats. False, and then reported, when it cannot be opened, and for JSON with a fault in it. A
/// damaged one gives the formats before the damage, as in the window; that is reported, too. So are notes that cannot
/// be read; the formats have none then.
bool LoadLibrary(const std::filesystem::path& path, FormatLibrary& library, CReporter& reporter);

/// Gives the items the notes of the notes file at `path`, in place of any that they have; a missing one has none.
/// False, and then reported, when it cannot be read or is damaged.
bool LoadNotes(const std::filesystem::path& path, FormatLibrary& library, CReporter& reporter);
