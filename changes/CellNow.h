#pragma once

#include "files/CellComparison.h"
#include "files/RecipeRows.h"
#include "files/StoredCells.h"
#include "text/Decimal.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

/// The words and the number that a cell stands for: those of its text or its exact words where it is edited, or where
/// it is not known what the file holds, else those that the file holds.
class CCellNow {
public:
    /// Both outlive it; the states of cells may change between two calls.
    CCellNow(const CRecipeRows& rows, const CStoredCells& stored);

    /// Whether the cells are fields of a table of texts, which have no words.
    bool IsTable() const { return m_stored.IsKnown() && m_stored.Type() == FileType::Csv; }

    /// Low bytes first; fewer, or none, where the file ends before them. None in a table. Good until the next call.
    std::span<const std::byte> Words(CellPlace place);

    /// Whether all of the cell is in the file, or will be; `words` are its words.
    bool IsThere(CellPlace place, std::span<const std::byte> words) const;

    /// The number of a cell that is there, which shows `text` and has `words`; nothing where it stands for none.
    std::optional<CDecimal> NumberOf(CellPlace place, std::span<const std::byte> words, std::u16string_view text) const;

private:
    bool IsGiven(CellPlace place) const;

    const CRecipeRows& m_rows;
    const CStoredCells& m_stored;
    CCellComparison m_cells;
};
