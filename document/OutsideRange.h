#pragma once

#include "changes/CellDifferences.h"
#include "changes/ChangeList.h"
#include "document/RecipeDocument.h"
#include "model/ItemNotes.h"
#include "text/Decimal.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// Cells whose values lie outside the sensible ranges that their items' notes give. Such values are taken and saved as
// any others; they are only told of.

/// The number that the cell stands for (CCellJudge) when it lies outside its item's sensible range; nothing for any
/// other cell, and outside the rows. Cheap where the item has no range.
std::optional<CDecimal> NumberOutsideRange(const CRecipeDocument& document, CellPlace place);

/// The same in words: "0.5 lies outside 150 to 280 °C"; empty for any other cell.
std::u16string OutsideRangeRemark(const CRecipeDocument& document, CellPlace place);

/// Cells that lay outside their sensible ranges, as a list: what each shows is its new text, and its note tells whether
/// that still lies outside.
class COutsideRange final : public CChangeList {
public:
    /// `document` outlives the list; `places` in ascending order.
    COutsideRange(const CRecipeDocument& document, std::vector<CellPlace> places)
        : m_document(document),
          m_places(std::move(places))
    {
    }

    std::size_t Count() const override { return m_places.size(); }
    ChangeRecord At(std::size_t index) const override;
    ChangeHeader Header() const override;
    bool IsComplete() const override { return true; }
    std::optional<CellPlace> PlaceOf(std::size_t index) const override { return m_places[index]; }

private:
    const CRecipeDocument& m_document;
    std::vector<CellPlace> m_places;
};
