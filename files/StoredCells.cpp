#include "files/StoredCells.h"

#include "files/SameBytes.h"
#include "files/StretchCoding.h"
#include "model/LittleEndian.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t kMostDifferences = 4096;                // cells that are kept apart from those that were read
constexpr std::size_t kComparedBytes = std::size_t{16} << 10; // of words that are compared at once

/// The cells of a row that was read from `read` and holds `words` by now, where these differ.
void AppendDifferences(const CRecipeRows& rows, std::int32_t row, std::span<const std::byte> read,
                       std::span<const std::byte> words, std::vector<CellEdit>& edits)
{
    for (std::uint32_t column = 0; column < rows.Columns().size(); ++column) {
        const auto begin = 2 * static_cast<std::size_t>(rows.WordOffset(column));
        const auto bytes = 2 * static_cast<std::size_t>(std::max(rows.Columns()[column].dataLength, 0));
        const auto cell = words.subspan(begin, bytes);
        if (!AreEqual(cell, read.subspan(begin, bytes)))
            edits.push_back({{row, column}, CCellState::OfWords(WordsOf(cell))});
    }
}

/// The cells of `rows`, none of which is touched, that are others in `words`, the words of all rows. Nothing when they
/// are many, or the rows were not read from as many words.
std::optional<std::vector<CellEdit>> FewDifferences(const CRecipeRows& rows, std::span<const std::byte> words)
{
    const auto rowBytes = static_cast<std::size_t>(rows.BytesBefore({1, 0}));
    const std::int32_t rowsAtOnce = RowsWithin(kComparedBytes, rows);
    std::vector<CellEdit> edits;
    for (std::int32_t first = 0; first < rows.RowCount(); first += rowsAtOnce) {
        const std::int32_t count = std::min(rowsAtOnce, rows.RowCount() - first);
        const auto read = rows.UntouchedRows(first, count);
        if (!read || edits.size() > kMostDifferences)
            return std::nullopt;
        const auto now = words.subspan(rowBytes * static_cast<std::size_t>(first), read->size());
        if (AreEqual(*read, now))
            continue;
        for (std::size_t at = 0, row = 0; at < read->size(); at += rowBytes, ++row)
            AppendDifferences(rows, first + static_cast<std::int32_t>(row), read->subspan(at, rowBytes),
                              now.subspan(at, rowBytes), edits);
    }
    return edits;
}

} // namespace

std::u16string WordsOf(std::span<const std::byte> bytes)
{
    std::u16string words;
    for (std::size_t at = 0; at < bytes.size(); at += 2)
        words += static_cast<char16_t>(LoadLittleEndian<std::uint16_t>(bytes.subspan(at, 2)));
    return words;
}

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
    if (saved.fields) {
        m_cells.ShowFields(std::move(*saved.fields));
        m_cells.ShareSourceOf(rows);
    } else if (m_isKnown) {
        ShowSaved(rows, std::move(saved.words));
    }
}

void CStoredCells::ShowSaved(const CRecipeRows& rows, CByteBuffer words)
{
    m_cells.ShowSourceOf(rows, Kind());
    auto edits = FewDifferences(m_cells, words.Bytes());
    if (!edits) {
        m_cells.ShowWords(std::move(words), Kind());
        return;
    }
    m_cells.Exchange(*edits);
    m_cells.MarkSaved();
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
