#pragma once

#include "library/FormatLibrary.h"
#include "library/NotesFile.h"

#include <cstdint>
#include <filesystem>
#include <functional>

/// What is called with the path of a library file, or of its notes file, right before others take the place of the
/// formats or notes in it.
using BeforeFormatsChange = std::function<void(const std::filesystem::path&)>;

/// A library file and its notes as they stand when they are about to be replaced. They are read and replaced under one
/// CLibraryLock.
struct StandingLibrary {
    FormatLibrary library;
    std::int64_t loaded = -1; ///< what FormatLibrary::loadReadOnly gave
    NotesFile notes;

    /// Whether the library holds anything and was understood in full.
    bool IsUnderstood() const;
};

StandingLibrary ReadStanding(const std::filesystem::path& path);

/// Saves `library` in the place of `standing`, which was read from `path`, and `notes` beside it. What was not
/// understood in full is copied first (LibraryOriginal.h), and left alone when it cannot be copied, as damaged notes
/// are where there are none to save. `before`, which may be empty, is called when the formats differ in any byte from
/// those of a file that is there, not for the read settings alone, and when the notes do. A program that is killed in
/// the middle leaves each item its notes, under its old name or the new one; of items that share a name, and are told
/// apart by their number alone, some may have those of the next. False after a failure; reports nothing.
bool ReplaceStanding(const StandingLibrary& standing, const FormatLibrary& library, const LibraryNotes& notes,
                     const std::filesystem::path& path, const BeforeFormatsChange& before);
