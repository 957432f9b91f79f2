#pragma once

#include "files/CellState.h"
#include "files/RecipeRows.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Where a text leads in a table.
struct GoToTarget {
    enum class Kind : std::uint8_t {
        Cell,    ///< to `place`
        Nearest, ///< to a word that lies in no row: `place` is that of the nearest value, `message` says so
        Nowhere, ///< `message` says why
    };

    Kind kind = Kind::Nowhere;
    CellPlace place;
    std::u16string message;
};

/// Whether rows have word addresses to go to.
enum class RowAddresses : std::uint8_t { None, OfWords };

/// What `text` leads to, seen from the cell `from`:
///
///   812            row 812, the column staying
///   RW4711         the value that holds the word
///   Belt m/min     the item of that title, or the only one that begins so, in the same row; of several with one title
///                  the next one after the column
///   812 Belt m/min the item in row 812
///
/// Capitals do not count, nor blanks around it. A title comes before the other readings where it is meant in full and
/// they lead nowhere.
GoToTarget FindTarget(std::u16string_view text, const CRecipeRows& rows, RowAddresses addresses, CellPlace from);

/// The value that holds the word; nothing where it lies in no row.
std::optional<CellPlace> ValueAt(const CRecipeRows& rows, WordAddress word);
