#pragma once

#include "library/JsonFault.h"
#include "library/LibraryNotes.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

// What the values of items mean stands beside the format library, whose own form is fixed, in a file of its own,
// "RecipeFile.Notes.json" beside "RecipeFile.Dat". UTF-8, sorted by name, a line an item:
//
//   {"vantor": "notes", "version": 1, "formats": [
//     {"format": "Oven recipe", "items": [
//       {"item": "Zone °C", "unit": "°C", "lowest": "150", "highest": "280"},
//       {"item": "Belt m/min", "number": 2, "comment": "The second item of this name"}]}]}
//
// The fields of the notes are those of NotesJson.h. "number" of a format or an item is left out where it is 1.

/// What stands in a notes file.
struct NotesFile {
    enum class Content {
        None,       ///< there is no such file
        Whole,      ///< all of it is understood
        Damaged,    ///< not JSON of this form
        Unreadable, ///< it cannot be read
    };

    Content content = Content::None;
    LibraryNotes notes; ///< of a whole one
    JsonFault fault;    ///< of a damaged one

    /// Whether notes may be written in its place without a copy of it.
    bool IsUnderstood() const { return content == Content::None || content == Content::Whole; }
};

/// The notes file of the library file `library`, beside what a link leads to.
std::filesystem::path NotesPathOf(const std::filesystem::path& library);

NotesFile ReadNotes(const std::filesystem::path& path);

/// Writes `notes` as a complete new file in place of the one at `path`. Where that holds these bytes already, or
/// `notes` are empty and there is none, nothing is written. False after a failure, which leaves the old file as it was.
/// Reports nothing.
bool WriteNotes(const LibraryNotes& notes, const std::filesystem::path& path);

/// Whether the file at `path` holds what WriteNotes would write there.
bool AreNotesSavedAt(const LibraryNotes& notes, const std::filesystem::path& path);

std::string NotesToJson(const LibraryNotes& notes);
std::optional<JsonFault> NotesFromJson(std::string_view json, LibraryNotes& notes);
