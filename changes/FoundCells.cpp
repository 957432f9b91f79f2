#include "changes/FoundCells.h"

ChangeRecord CFoundCells::At(std::size_t index) const
{
    const auto place = PlaceOf(index);
    if (!place)
        return {};
    ChangeRecord record = PlaceRecord(m_rows, m_type, *place);
    record.newText = m_rows.Text(place->row, place->column);
    return record;
}

/// The rows may be others for a moment than those that were looked through.
std::optional<CellPlace> CFoundCells::PlaceOf(std::size_t index) const
{
    const auto place = m_search->PlaceOf(index);
    return place && m_rows.HasCell(*place) ? place : std::nullopt;
}
