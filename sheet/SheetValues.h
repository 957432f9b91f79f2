#pragma once

#include "changes/CellNow.h"
#include "files/RecipeRows.h"
#include "files/StoredCells.h"
#include "sheet/RecipeSheet.h"
#include "text/Decimal.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>

/// Makes the values of a sheet of the cells of rows.
class CSheetValues {
public:
    /// Both outlive it.
    CSheetValues(const CRecipeRows& rows, const CStoredCells& stored) : m_rows(rows), m_now(rows, stored) {}

    SheetValue Make(CellPlace place);

private:
    std::optional<CDecimal> NumberIn(CellPlace place, std::span<const std::byte> words) const;
    std::u16string Meaning(CellPlace place, std::span<const std::byte> words,
                           const std::optional<CDecimal>& number) const;
    std::u16string Warning(CellPlace place, bool isThere, const std::optional<CDecimal>& number) const;

    const CRecipeRows& m_rows;
    CCellNow m_now;
    std::u16string m_text; ///< of the cell at hand
};
