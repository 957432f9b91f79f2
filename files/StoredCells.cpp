#include "files/StoredCells.h"

#include <algorithm>
#include <utility>

CStoredCells::CStoredCells(const CRecipeRows& rows, FileType type, std::uint64_t fileBytes)
    : m_cells(rows),
      m_isKnown(true),
      m_type(type),
      m_fileBytes(fileBytes),
      m_stretchBytes(rows.BytesWithin(fileBytes))
{
}

CStoredCells::CStoredCells(const CRecipeRows& rows, FileType type, std::uint64_t fileBytes, SavedContent saved)
    : m_type(type),
      m_fileBytes(fileBytes),
      m_stretchBytes(rows.BytesWithin(fileBytes))
{
    m_cells.LayOut(rows.Columns(), rows.StartAddress(), rows.RowCount());
    m_isKnown = type != FileType::Csv || saved.fields;
    if (saved.fields)
        m_cells.ShowFields(std::move(*saved.fields));
    else
        m_cells.ShowWords(std::move(saved.words), Kind());
    m_cells.ShareSourceOf(rows);
}

RecipeKind CStoredCells::Kind() const
{
    return IsPaged(m_type) ? RecipeKind::Paged : RecipeKind::Flat;
}

std::size_t CStoredCells::LoadWords(CellPlace place, std::span<std::byte> words) const
{
    m_cells.LoadWords(place, words);
    const std::uint64_t begin = m_cells.BytesBefore(place);
    const auto within = static_cast<std::size_t>(
        std::min<std::uint64_t>(m_stretchBytes - std::min(begin, m_stretchBytes), words.size()));
    std::fill(words.begin() + static_cast<std::ptrdiff_t>(within), words.end(), std::byte{0});
    return within;
}

std::optional<std::span<const std::byte>> CStoredCells::WordsOfRows(std::int32_t first, std::int32_t count) const
{
    const auto words = m_cells.UntouchedRows(first, count);
    const std::uint64_t end = m_cells.BytesBefore({first + count, 0});
    return words && end <= m_stretchBytes ? words : std::nullopt;
}

void CStoredCells::TakeWords(std::vector<CellEdit> edits, std::uint64_t fileBytes)
{
    m_cells.Exchange(edits);
    m_cells.MarkSaved();
    m_fileBytes = fileBytes;
    m_stretchBytes = m_cells.BytesWithin(fileBytes);
}
