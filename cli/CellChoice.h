#pragma once

#include "files/RecipeRows.h"
#include "text/Reporter.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Cells as the command line names them: by rows and the title of an item.

/// Rows from one to another, as the table counts them: row 1 is the first.
struct RowRange {
    std::int64_t first = 0;
    std::int64_t last = 0;
};

/// The rows that "4", "5-20", "1,3,7-9" or "*" name.
struct RowChoice {
    bool isAll = false;           ///< then there are no ranges
    std::vector<RowRange> ranges; ///< in ascending order, apart from each other
};

/// Nothing for any other text, and for a range that ends before it begins.
std::optional<RowChoice> ReadRowChoice(std::string_view text);

/// What a row must show to be chosen.
struct CellCondition {
    std::string item; ///< the column's title, UTF-8
    std::string text; ///< UTF-8
};

/// The column with the title `item`, UTF-8, counted from 0. Nothing, and then reported, when there is none, or more
/// than one.
std::optional<std::size_t> ColumnOfItem(const CRecipeRows& rows, const std::string& item, CReporter& reporter);

/// Rows of a table narrowed by conditions, all of which must hold. They show what they show when it is made.
class CNarrowedRows {
public:
    /// Nothing, and then reported, when a condition names no item.
    static std::optional<CNarrowedRows> Make(const CRecipeRows& rows, const std::vector<CellCondition>& conditions,
                                             CReporter& reporter);

    /// The data rows of `choice`, counted from 0 and ascending, for which the conditions hold. Nothing, and then
    /// reported, when one of those named is not in the table.
    std::optional<std::vector<std::int32_t>> Chosen(const RowChoice& choice, CReporter& reporter) const;

private:
    struct Condition {
        std::size_t column = 0;
        std::u16string text;
    };

    CNarrowedRows(const CRecipeRows& rows, std::vector<Condition> conditions);

    bool Holds(std::int32_t row) const;

    const CRecipeRows* m_pRows;
    std::vector<Condition> m_conditions;
};
