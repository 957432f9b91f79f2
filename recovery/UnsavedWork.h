#pragma once

#include "changes/ChangeRecord.h"
#include "files/CellState.h"
#include "files/FileType.h"
#include "model/DataFormat.h"
#include "text/UtcTime.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

// Edits that are in no recipe file yet, as a journal keeps them.

/// Which work it is: the file, and how its rows are laid out. Items of the format beyond its `itemCount` count, too, as
/// they do in rows.
struct WorkHeader {
    std::filesystem::path file; ///< empty for a new document
    FileType type = FileType::Rcp;
    FileType readAs = FileType::Rcp; ///< what the rows were read as
    DataFormat format;
    std::int32_t startAddress = 0;
    std::int32_t rowCount = 0;
    UtcTime begun; ///< when the journal was
};

/// Whether the work has a file that is made of words: what it holds of a cell is `oldWords` then, else `oldText`.
bool HasFileOfWords(const WorkHeader& header);

/// The state that a command gave to a cell.
struct UnsavedCell {
    CellPlace place;
    CCellState state; ///< untouched: the cell is not edited any more
    WordRun oldWords; ///< what the file holds of the cell, as many bytes as lie within it
    std::optional<std::u16string>
        oldText; ///< of a ".csv" the field, nothing where it has none; of a new document the text

    friend bool operator==(const UnsavedCell&, const UnsavedCell&) = default;
};

/// What was edited and not saved.
struct UnsavedWork {
    WorkHeader header;
    std::vector<UnsavedCell> cells; ///< the edited ones in the order of their places, each with its last state
    UtcTime lastEdit;               ///< when the last command was written down; without one when the journal was begun
};
