#include "changes/TextDifferences.h"

#include "changes/CellDifferences.h"
#include "files/CellComparison.h"
#include "files/TableTitles.h"

#include <optional>
#include <utility>
#include <vector>

namespace {

constexpr std::int32_t kRowsAtOnce = 256; // until the progress is told

/// The rows of a side, one of which is at hand.
class CRowCursor {
public:
    explicit CRowCursor(const TableSide& side) : m_side(side) {}

    /// To be called with 0, 1, 2 … False after a failure.
    bool GoTo(std::int32_t row)
    {
        while (!m_stored || row >= m_side.rows->First() + m_side.rows->Rows().RowCount()) {
            if (!m_side.rows->Next())
                return false;
            m_stored.emplace(m_side.rows->Stored());
        }
        m_row = row - m_side.rows->First();
        return true;
    }

    std::u16string Text(std::uint32_t column) const { return m_side.rows->Rows().Text(m_row, column); }

    /// Whether the file has anything of the cell.
    bool IsThere(std::uint32_t column) const
    {
        if (m_side.type == FileType::Csv)
            return m_stored->HasField({m_row, column});
        std::vector<std::byte> words(BytesOfCell(m_side.rows->Rows(), {m_row, column}));
        return m_stored->LoadWords({m_row, column}, words) > 0;
    }

    std::vector<std::byte> Words(std::uint32_t column) const
    {
        std::vector<std::byte> words(BytesOfCell(m_side.rows->Rows(), {m_row, column}));
        m_stored->LoadWords({m_row, column}, words);
        return words;
    }

private:
    const TableSide& m_side;
    std::optional<CStoredCells> m_stored;
    std::int32_t m_row = 0; ///< in the piece
};

/// Compares the cells of two sides.
class CTextComparison {
public:
    CTextComparison(const CRecipeRows& layout, std::size_t table, const TableSide& before, const TableSide& after)
        : m_layout(layout),
          m_table(static_cast<std::int32_t>(table)),
          m_before(before),
          m_after(after),
          m_haveWords(before.type != FileType::Csv && after.type != FileType::Csv),
          m_codeAlike(IsPaged(before.type) && IsPaged(after.type))
    {
    }

    ZoneEnd GoOver(CChangeTaker& taker, CProgress& progress)
    {
        const auto rowCount = static_cast<std::uint64_t>(m_layout.RowCount());
        for (std::int32_t row = 0; row < m_layout.RowCount(); ++row) {
            if (row % kRowsAtOnce == 0 && !progress.Advance(static_cast<std::uint64_t>(row), rowCount))
                return ZoneEnd::Enough;
            if (!m_before.GoTo(row))
                return ZoneEnd::NoBefore;
            if (!m_after.GoTo(row))
                return ZoneEnd::NoAfter;
            for (std::uint32_t column = 0; column < m_layout.Columns().size(); ++column)
                if (Differ(column) && !taker.Take(RecordOf({row, column})))
                    return ZoneEnd::Enough;
        }
        return ZoneEnd::Done;
    }

private:
    bool Differ(std::uint32_t column) const
    {
        return m_before.Text(column) != m_after.Text(column) ||
               (m_codeAlike && m_before.Words(column) != m_after.Words(column));
    }

    ChangeRecord RecordOf(CellPlace place) const
    {
        ChangeRecord record = PlaceRecord(m_layout, m_haveWords ? FileType::Rcp : FileType::Csv, place);
        record.table = m_table;
        const bool isAfter = m_after.IsThere(place.column);
        const bool isBefore = m_before.IsThere(place.column);
        if (isBefore || !isAfter)
            record.oldText = m_before.Text(place.column);
        if (isAfter || !isBefore)
            record.newText = m_after.Text(place.column);
        return record;
    }

    const CRecipeRows& m_layout;
    const std::int32_t m_table;
    CRowCursor m_before;
    CRowCursor m_after;
    const bool m_haveWords;
    const bool m_codeAlike;
};

} // namespace

ZoneEnd CompareTexts(std::span<const FileTable> tables, std::size_t table, const TableSide& before,
                     const TableSide& after, CChangeTaker& taker, CProgress& progress)
{
    return CTextComparison(tables[table].layout, table, before, after).GoOver(taker, progress);
}
