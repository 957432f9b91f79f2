#pragma once

#include "disk/File.h"
#include "text/UtcTime.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

// Where journals lie, and what their names say:
//
//   unsaved/ID.jsonl                    ID is the stamp of when it was begun, "-" and eight digits
//   unsaved/dropped/ID_STAMP.jsonl      the stamp is of when it was dropped

/// A journal's file, by its name.
struct JournalName {
    std::string id;
    std::filesystem::path path;
    std::optional<UtcTime> dropped; ///< when it was; nothing for one that was not
};

std::filesystem::path UnsavedFolder(const std::filesystem::path& dataFolder);
std::filesystem::path DroppedFolder(const std::filesystem::path& dataFolder);

/// A new name in `folder`, which has no file of that name.
std::filesystem::path NewJournalPath(const std::filesystem::path& folder, UtcTime begun);

/// What the name of `path` says; nothing when it is not that of a journal.
std::optional<JournalName> JournalAt(const std::filesystem::path& path);

/// When the journal was begun.
UtcTime BegunAt(const JournalName& journal);

/// The journals in `folder`, oldest first. None where it cannot be looked into.
std::vector<JournalName> JournalsIn(const std::filesystem::path& folder);

/// A journal that is open, and who holds it.
struct HeldJournal {
    CFile file;
    Holder holder = Holder::Unknown;
};

/// Opens the journal at `path` for reading and tries to take its hold; nothing for what is not a regular file of this
/// user, or cannot be opened.
std::optional<HeldJournal> OpenJournal(const std::filesystem::path& path);

/// Moves the journal at `path` to the dropped ones. False, for `fault`, when it stays.
bool MoveToDropped(const std::filesystem::path& path, UtcTime now, std::error_code& fault);

/// As MakePrivateFolder, but tells why it fails.
bool MakeFolder(const std::filesystem::path& folder, std::error_code& fault);
