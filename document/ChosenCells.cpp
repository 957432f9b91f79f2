#include "document/ChosenCells.h"

#include <algorithm>

std::vector<CChosenCells::Span> CChosenCells::Merged(std::vector<Span> spans)
{
    std::sort(spans.begin(), spans.end(), [](const Span& a, const Span& b) { return a.first < b.first; });
    std::vector<Span> merged;
    for (const Span& span : spans) {
        if (!merged.empty() && span.first <= merged.back().last + 1)
            merged.back().last = std::max(merged.back().last, span.last);
        else
            merged.push_back(span);
    }
    return merged;
}

/// Goes down the rows; `open` are the blocks that the row at hand is in.
CChosenCells::CChosenCells(const std::vector<CellRange>& ranges)
{
    std::vector<CellRange> sorted = ranges;
    std::erase_if(sorted, [](const CellRange& range) {
        return range.firstRow > range.lastRow || range.firstColumn > range.lastColumn;
    });
    std::sort(sorted.begin(), sorted.end(),
              [](const CellRange& a, const CellRange& b) { return a.firstRow < b.firstRow; });
    std::vector<CellRange> open;
    std::vector<Span> columns;
    std::size_t next = 0;
    std::int32_t row = 0;
    while (next < sorted.size() || !open.empty()) {
        if (open.empty())
            row = sorted[next].firstRow;
        for (; next < sorted.size() && sorted[next].firstRow == row; ++next) {
            open.push_back(sorted[next]);
            columns.push_back({sorted[next].firstColumn, sorted[next].lastColumn});
        }
        std::int32_t last = open.front().lastRow;
        for (const CellRange& range : open)
            last = std::min(last, range.lastRow);
        if (next < sorted.size())
            last = std::min(last, sorted[next].firstRow - 1);
        std::vector<Span> spans;
        spans.reserve(open.size());
        for (const CellRange& range : open)
            spans.push_back({range.firstColumn, range.lastColumn});
        AddBand(row, last, Merged(std::move(spans)));
        std::erase_if(open, [last](const CellRange& range) { return range.lastRow == last; });
        row = last + 1;
    }
    m_columns = Merged(std::move(columns));
}

void CChosenCells::AddBand(std::int32_t firstRow, std::int32_t lastRow, std::vector<Span> spans)
{
    const std::int64_t before =
        m_bands.empty() ? 0 : m_bands.back().rowsBefore + m_bands.back().lastRow - m_bands.back().firstRow + 1;
    const auto rows = static_cast<std::uint64_t>(lastRow - firstRow) + 1;
    for (const Span& span : spans)
        m_count += rows * (std::uint64_t{span.last} - span.first + 1);
    m_bands.push_back({firstRow, lastRow, before, std::move(spans)});
}

std::int64_t CChosenCells::RowOrdinal(std::int32_t row) const
{
    const auto after = std::upper_bound(m_bands.begin(), m_bands.end(), row,
                                        [](std::int32_t sought, const Band& band) { return sought < band.firstRow; });
    if (after == m_bands.begin())
        return 0;
    const Band& band = *(after - 1);
    return band.rowsBefore + row - band.firstRow;
}

std::int64_t CChosenCells::ColumnOrdinal(std::uint32_t column) const
{
    std::int64_t before = 0;
    for (const Span& span : m_columns) {
        if (column <= span.last)
            return before + column - span.first;
        before += std::int64_t{span.last} - span.first + 1;
    }
    return before;
}
