#pragma once

#include "disk/File.h"
#include "files/Outcome.h"
#include "files/SavePlan.h"
#include "files/StoredCells.h"
#include "text/Reporter.h"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <vector>

/// What a save of all cells changed in its file: what can be shown of it afterwards, and taken back.
struct SavedChanges {
    std::filesystem::path path;
    CStoredCells before;
    CStoredCells after;
    std::vector<PlannedChange> changes;  ///< in the order of the cells
    std::size_t dropped = 0;             ///< texts of a table that the save left out
    std::optional<CByteBuffer> oldTable; ///< of a table of texts: the bytes that it had; nothing when they are too many

    /// How many values nobody asked to change, those that were left out among them.
    std::size_t UneditedCount() const;

    /// Whether it can be put back: not where a table was too large to be kept.
    bool CanBePutBack() const { return after.Type() != FileType::Csv || oldTable; }
};

/// Writes the words back that `saved` took from cells that nobody had edited, where the file still holds what was saved
/// and the cell in `rows` was not edited since; all other bytes stay. A flat file that grew is cut back as far as none
/// of the other cells lies there. A file of words is written through the open file that holds it, where there is one.
///
/// Not saved after a failure, as a save of the edited cells is (EditedSave.h).
SaveResult PutBack(const SavedChanges& saved, const CRecipeRows& rows, CReporter& reporter, CProgress& progress,
                   CFile* held = nullptr);

/// How many of the values that nobody had edited the file holds now as it did before that save; what the save left out
/// counts, since all of it goes back.
std::size_t CountPutBack(const SavedChanges& saved);
