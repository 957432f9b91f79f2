#include "document/Replacement.h"

#include "model/CellCheck.h"
#include "model/StoredNumber.h"

std::u16string ReplacedText(const CCellMatcher& matcher, const ColumnCoding& coding, std::u16string_view text,
                            std::u16string_view with)
{
    std::u16string fresh = matcher.Replaced(text, with);
    if (!IsReal(coding.dataType))
        return fresh;
    return std::u16string(WithoutBlanks(fresh) == WithoutBlanks(text) ? text : WithoutBlanks(fresh));
}

Outcome PlanReplacement(const CCellSearch& search, const CRecipeRows& rows, std::u16string_view with,
                        CProgress& progress, ReplacementPlan& plan)
{
    const auto take = [&](CellPlace place, std::u16string_view text) {
        std::u16string fresh = ReplacedText(search.Matcher(), rows.Columns()[place.column], text, with);
        if (fresh == text) {
            ++plan.sameCount;
        } else if (ValidateCellValue(rows.Columns()[place.column], fresh)) {
            plan.texts.push_back({place, std::move(fresh)});
        } else if (++plan.refusedCount <= ReplacementPlan::kMostListed) {
            plan.refused.push_back({place, std::move(fresh)});
        }
    };
    return WithinMemory([&] { return search.ForEach(progress, take) ? Outcome::Done : Outcome::GivenUp; });
}
