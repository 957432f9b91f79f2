#include "files/StoredDifferences.h"

#include "files/CellComparison.h"
#include "files/SameBytes.h"
#include "files/StretchCoding.h"
#include "files/WordsOfFile.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kReadBytes = std::size_t{256} << 10;    // of a file at once
constexpr std::size_t kComparedBytes = std::size_t{64} << 10; // of words that are compared at once

/// Compares words, block by block, and cell by cell in the blocks that differ.
class CWordDifferences {
public:
    CWordDifferences(const CStoredCells& ours, const CStoredCells& theirs) : m_ours(ours), m_theirs(theirs) {}

    std::vector<CellPlace> Find()
    {
        const CRecipeRows& rows = m_ours.Cells();
        const std::int32_t rowsAtOnce = RowsWithin(kComparedBytes, rows);
        for (std::int32_t first = 0; first < rows.RowCount(); first += rowsAtOnce) {
            const std::int32_t count = std::min(rowsAtOnce, rows.RowCount() - first);
            if (!AreSame(first, count))
                CompareCells(first, count);
        }
        return std::move(m_places);
    }

private:
    bool AreSame(std::int32_t first, std::int32_t count) const
    {
        const auto ours = m_ours.WordsOfRows(first, count);
        const auto theirs = m_theirs.WordsOfRows(first, count);
        return ours && theirs && (ours->data() == theirs->data() || AreEqual(*ours, *theirs));
    }

    void CompareCells(std::int32_t first, std::int32_t count)
    {
        const auto columns = static_cast<std::uint32_t>(m_ours.Cells().Columns().size());
        for (std::int32_t row = first; row < first + count; ++row)
            for (std::uint32_t column = 0; column < columns; ++column)
                if (IsOther({row, column}))
                    m_places.push_back({row, column});
    }

    bool IsOther(CellPlace place)
    {
        m_ourWords.resize(BytesOfCell(m_ours.Cells(), place));
        m_theirWords.resize(m_ourWords.size());
        return m_ours.LoadWords(place, m_ourWords) != m_theirs.LoadWords(place, m_theirWords) ||
               m_ourWords != m_theirWords;
    }

    const CStoredCells& m_ours;
    const CStoredCells& m_theirs;
    std::vector<CellPlace> m_places;
    std::vector<std::byte> m_ourWords;
    std::vector<std::byte> m_theirWords;
};

/// Of rows some of whose cells were given texts.
std::vector<CellPlace> TextDifferences(const CRecipeRows& ours, const CRecipeRows& theirs)
{
    std::vector<CellPlace> places;
    const auto columns = static_cast<std::uint32_t>(ours.Columns().size());
    for (std::int32_t row = 0; row < ours.RowCount(); ++row)
        for (std::uint32_t column = 0; column < columns; ++column)
            if (ours.Text(row, column) != theirs.Text(row, column))
                places.push_back({row, column});
    return places;
}

/// A field that is missing reads as "0", and is another than one that holds it.
std::vector<CellPlace> FieldDifferences(const CRecipeRows& ours, const CRecipeRows& theirs)
{
    std::vector<CellPlace> places;
    const CFieldTable* const our = ours.Fields();
    const CFieldTable* const their = theirs.Fields();
    if (our == nullptr || their == nullptr)
        return places;
    if (!ours.IsUntouched() || !theirs.IsUntouched())
        return TextDifferences(ours, theirs);
    if (our == their)
        return places;
    const auto columns = static_cast<std::uint32_t>(ours.Columns().size());
    for (std::int32_t row = 0; row < ours.RowCount(); ++row) {
        const auto line = static_cast<std::size_t>(row);
        for (std::uint32_t column = 0; column < columns; ++column)
            if (our->HasField(line, column) != their->HasField(line, column) ||
                our->Field(line, column) != their->Field(line, column))
                places.push_back({row, column});
    }
    return places;
}

} // namespace

std::vector<CellPlace> DifferencesOf(const CStoredCells& ours, const CStoredCells& theirs)
{
    if (ours.Type() == FileType::Csv)
        return FieldDifferences(ours.Cells(), theirs.Cells());
    return CWordDifferences(ours, theirs).Find();
}

bool StillHolds(const fs::path& path, const CStoredCells& stored)
{
    if (stored.Type() == FileType::Csv)
        return false;
    CWordsOfFile file(stored.Type(), path);
    const CRecipeRows& rows = stored.Cells();
    const auto isWhole = [&rows](std::uint64_t bytes) { return rows.BytesWithin(bytes) == rows.StretchBytes(); };
    if (!file.Count() || !isWhole(*file.Count()) || !isWhole(stored.FileBytes()))
        return false;
    const std::int32_t rowsAtOnce = RowsWithin(kReadBytes, rows);
    std::vector<std::byte> piece;
    for (std::int32_t first = 0; first < rows.RowCount(); first += rowsAtOnce) {
        const auto words = stored.WordsOfRows(first, std::min(rowsAtOnce, rows.RowCount() - first));
        if (!words)
            return false;
        piece.resize(words->size());
        if (!file.Read(FirstByteOf(rows.RowAddress(first)).number, piece) || !AreEqual(*words, piece))
            return false;
    }
    return true;
}

CStoredCells WithCellsOf(CStoredCells cells, const CStoredCells& other, const std::vector<CellPlace>& places)
{
    std::vector<CellEdit> edits;
    for (const CellPlace place : places) {
        std::vector<std::byte> words(BytesOfCell(other.Cells(), place));
        if (cells.Type() == FileType::Csv)
            edits.push_back({place, CCellState::OfText(other.Cells().Text(place.row, place.column))});
        else if (other.LoadWords(place, words) == words.size())
            edits.push_back({place, CCellState::OfWords(WordsOf(words))});
    }
    if (!edits.empty())
        cells.TakeWords(std::move(edits), cells.FileBytes());
    return cells;
}
