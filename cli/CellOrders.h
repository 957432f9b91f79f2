#pragma once

#include "cli/CellChoice.h"
#include "files/CellState.h"
#include "files/FileType.h"
#include "files/RecipeRows.h"
#include "files/StoredCells.h"
#include "model/NumberChange.h"
#include "text/Reporter.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

/// A text for a cell, which is named as the grid counts: row 1 and column 2 are the first that hold data.
struct TypedCell {
    std::int64_t row = 0;
    std::int64_t column = 0;
    std::string text; ///< UTF-8
};

/// A text for the cells of an item.
struct ItemText {
    RowChoice rows;
    std::string item; ///< the column's title, UTF-8
    std::string text; ///< UTF-8
};

/// A change of the numbers that the cells of an item store.
struct ItemChange {
    RowChoice rows;
    std::string item; ///< the column's title, UTF-8
    NumberChange change;
};

/// What cells are to become.
using CellOrder = std::variant<TypedCell, ItemText, ItemChange>;

/// The states that `orders` give cells of `rows`, which were read from a file of `type` that holds `stored` of them,
/// and have no edits: in ascending order, each cell once. All orders look at what was read; where several name a cell,
/// the last one holds. Conditions narrow the orders that name an item.
///
/// Nothing, and then reported, when one of them cannot be carried out, the first one that cannot: an item or row that
/// is not there, a text that the cell would not take, a change of what is no number or to one outside the limits. So it
/// is when they choose no cell at all.
std::optional<std::vector<CellEdit>> CellEditsOf(const CRecipeRows& rows, const CStoredCells& stored, FileType type,
                                                 const std::vector<CellOrder>& orders,
                                                 const std::vector<CellCondition>& conditions, CReporter& reporter);
