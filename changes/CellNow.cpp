#include "changes/CellNow.h"

#include "model/StoredNumber.h"

CCellNow::CCellNow(const CRecipeRows& rows, const CStoredCells& stored)
    : m_rows(rows),
      m_stored(stored),
      m_cells(rows, stored, false)
{
}

/// Whether what it is follows from its state, and not from the file.
bool CCellNow::IsGiven(CellPlace place) const
{
    return !m_stored.IsKnown() || m_rows.IsEdited(place.row, place.column);
}

std::span<const std::byte> CCellNow::Words(CellPlace place)
{
    if (IsTable())
        return {};
    return IsGiven(place) ? m_cells.NewWords(place) : m_cells.OldWords(place);
}

bool CCellNow::IsThere(CellPlace place, std::span<const std::byte> words) const
{
    if (IsTable())
        return IsGiven(place) || m_stored.HasField(place);
    return words.size() == BytesOfCell(m_rows, place);
}

std::optional<CDecimal> CCellNow::NumberOf(CellPlace place, std::span<const std::byte> words,
                                           std::u16string_view text) const
{
    const ColumnCoding& coding = m_rows.Columns()[place.column];
    return IsTable() ? NumberOfText(coding, text) : StoredNumber(coding, words);
}
