#include "changes/CellsNow.h"

#include "files/CellComparison.h"
#include "model/WordCodec.h"

namespace {

RecipeKind KindOf(FileType type)
{
    return IsPaged(type) ? RecipeKind::Paged : RecipeKind::Flat;
}

} // namespace

CCellsNow::CCellsNow(const CRecipeRows& rows, const CStoredCells& stored, FileType type)
    : m_rows(rows),
      m_stored(stored),
      m_type(type),
      m_isStoredKnown(stored.IsKnown() && stored.Type() == type),
      m_coder(rows, KindOf(type))
{
}

std::span<const std::byte> CCellsNow::Words(CellPlace place)
{
    m_words.assign(BytesOfCell(m_rows, place), std::byte{0});
    if (!IsStored(place)) {
        m_coder.CodeCell(place, m_words);
        return m_words;
    }
    const std::size_t within = m_stored.LoadWords(place, m_words);
    return std::span(m_words).first(IsPaged(m_type) ? m_words.size() : within);
}

std::optional<std::u16string> CCellsNow::Text(CellPlace place)
{
    const CRecipeRows& cells = IsStored(place) ? m_stored.Cells() : m_rows;
    if (m_type == FileType::Csv) {
        const bool isThere = !IsStored(place) || m_stored.HasField(place);
        return isThere ? std::optional(cells.Text(place.row, place.column)) : std::nullopt;
    }
    const auto words = Words(place);
    if (words.size() < BytesOfCell(m_rows, place))
        return std::nullopt;
    if (IsStored(place))
        return cells.Text(place.row, place.column);
    std::size_t pos = 0;
    return FormatValue(m_rows.Columns()[place.column], words, pos, KindOf(m_type));
}

/// Edited cells are sought once for all rows up to the next of them.
bool CCellsNow::HasEdited(std::int32_t first, std::int32_t count)
{
    if (!m_nextEdited || first < m_askedFrom || first > *m_nextEdited) {
        const CellPlace before{first - 1, static_cast<std::uint32_t>(m_rows.Columns().size() - 1)};
        const auto next = m_rows.NextEdited(before);
        m_askedFrom = first;
        m_nextEdited = next ? next->row : m_rows.RowCount();
    }
    return *m_nextEdited < first + count;
}

std::optional<std::span<const std::byte>> CCellsNow::WordsOfRows(std::int32_t first, std::int32_t count)
{
    if (!m_isStoredKnown || HasEdited(first, count))
        return std::nullopt;
    return m_stored.WordsOfRows(first, count);
}
