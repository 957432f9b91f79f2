#pragma once

#include "document/ReadSettings.h"
#include "files/CellState.h"
#include "files/FileType.h"
#include "files/StoredCells.h"
#include "library/FormatChange.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

/// What an edit was, for its name.
enum class EditKind {
    Typing,
    Paste,
    Cut,
    Clear,
    BitBrowser,
    Fill,
    Calculate,
    Replace,
    ImportTable,
    KeepStored,
    StoreExactly,
    TakeOver,
    ApplyPatch,
    PutBack, ///< of edits that were not saved
    Reading,
    AddItem,
    ModifyItem,
    DeleteItem,
    DeleteAllItems,
    KeepAllItems,
    MoveItem,
    DuplicateItem,
    AddFormat,
    DeleteFormat,
    DuplicateFormat,
    RenameFormat,
    Notes, ///< of an item
};

/// Rows, and what goes with them.
struct ShownRows {
    CRecipeRows rows;
    ReadSettings settings; ///< that were in use when they were read
    FileType readAs = FileType::Rcp;
    CStoredCells stored;     ///< what the document's file holds of their cells
    CStoredCells known;      ///< the same as far as the user knows: another program may have changed some of it
    bool areOfFile = false;  ///< they hold what the document's file holds, or are a new document's
    bool isModified = false; ///< what the document said of itself when others took their place
    std::uint64_t names = 0; ///< the names that the document took before they were read, or found to fit its file
    std::uint64_t saves = 0; ///< the document's saves that they know of
};

/// Cells that exchanged states with these. In ascending order of their places, none twice.
struct CellsStep {
    std::vector<CellEdit> edits;
};

/// Rows that took the place of these.
struct RowsStep {
    std::unique_ptr<ShownRows> other;
};

using EditStep = std::variant<CellsStep, RowsStep, FormatChange>;

/// One command of the user: what it did, in order; undone as one.
struct Edit {
    EditKind kind = EditKind::Typing;
    std::vector<EditStep> steps;
};

/// Roughly the memory that `edit` keeps from being freed, in bytes. Rows whose source is `shownSource` share it with
/// those that are shown: that part counts for nothing.
std::size_t BytesOf(const Edit& edit, const void* shownSource);

/// Whether `edit` changed cells, or put other rows in the place of those shown.
bool ChangesRows(const Edit& edit);

/// How many cells `edit` changed.
std::size_t CellCountOf(const Edit& edit);

/// What the user calls it: "Paste (240 cells)".
std::u16string NameOf(const Edit& edit);
