#pragma once

#include "document/RecipeDocument.h"
#include "files/CellSearch.h"
#include "files/Outcome.h"
#include "files/Progress.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// What replacing all that a search finds comes to, before anything is changed.
struct ReplacementPlan {
    static constexpr std::size_t kMostListed = 10000;

    std::vector<TextForCell> texts;   ///< that cells get: each passed its cell's check
    std::vector<TextForCell> refused; ///< that did not: the first kMostListed of them
    std::size_t refusedCount = 0;
    std::size_t sameCount = 0; ///< cells that show already what they were to get
};

/// What becomes of the text of a cell in a column with this coding, that `matcher` matches, when what was found gives
/// way to `with`: as one would type it, so without the blanks with which a double is shown.
std::u16string ReplacedText(const CCellMatcher& matcher, const ColumnCoding& coding, std::u16string_view text,
                            std::u16string_view with);

/// Looks what every cell that `search` finds in `rows` becomes when what was found gives way to `with`. Failed when
/// memory does not suffice for it.
Outcome PlanReplacement(const CCellSearch& search, const CRecipeRows& rows, std::u16string_view with,
                        CProgress& progress, ReplacementPlan& plan);
