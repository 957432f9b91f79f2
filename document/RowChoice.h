#pragma once

#include "document/RecipeDocument.h"
#include "files/CellTexts.h"
#include "files/Outcome.h"
#include "files/Progress.h"
#include "text/Decimal.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a cell is to be for its row to be chosen.
enum class CellCondition {
    Is,
    IsNot,
    Contains,
    ContainsNot,
    GreaterThan,
    LessThan,
    IsEdited,
    IsRewritten, ///< a save would store another value than the file holds, though nobody edited the cell
    IsOutsideLimits,
    IsOutsideRange, ///< that its item's notes call sensible
    Differs,        ///< from the file that is compared with
};

/// Whether the condition speaks of a value that the user gives.
bool TakesValue(CellCondition condition);

/// Which rows are to be chosen.
struct RowCondition {
    std::optional<std::size_t> column; ///< nothing for any of them
    CellCondition condition = CellCondition::Is;
    std::u16string value; ///< where the condition takes one
};

/// Why no row can be chosen by `condition`, in words for the user; nothing when rows can.
std::optional<std::u16string> FaultOf(const RowCondition& condition, const CRecipeRows& rows);

/// Finds the rows of a document that fulfil a condition.
///
/// A number is compared as the number that is stored, or was typed, whatever the cell shows: word 105 with two decimals
/// is 1.05. Texts are compared as the cell shows them; in "contains" upper and lower case are alike. A value that is a
/// number is compared with the number of a cell that has one, with the text of any other. Of all columns "is not" and
/// "does not contain" want that no cell is so, all other conditions that one cell is.
class CRowChoice {
public:
    /// The document outlives the object, and its rows stay as they are meanwhile.
    CRowChoice(CRecipeDocument& document, RowCondition condition);

    /// The rows, ascending; nothing when that was given up. Throws std::bad_alloc.
    std::optional<std::vector<std::int32_t>> Find(CProgress& progress);

private:
    bool Fulfils(std::int32_t row);
    bool IsSo(CellPlace place);
    bool IsOutsideRange(CellPlace place);
    bool HasValue(CellPlace place);
    std::optional<CDecimal> NumberOf(CellPlace place);

    CRecipeDocument& m_document;
    RowCondition m_condition;
    bool m_isDenied;                               ///< no cell is to be so
    std::u16string m_lowerCase;                    ///< of the value
    std::vector<std::optional<CDecimal>> m_number; ///< what the value is in each column
    CCellTexts m_texts;
    std::vector<std::byte> m_words;
};
