#include "document/CellsCommand.h"

#include <iterator>

namespace {

CChosenCells TargetsOf(const std::vector<FillDownBlock>& blocks)
{
    std::vector<CellRange> ranges;
    for (const FillDownBlock& block : blocks)
        ranges.insert(ranges.end(), block.targets.begin(), block.targets.end());
    return CChosenCells(ranges);
}

} // namespace

CellVerdict CFillWithText::Judge(CellPlace place, const CCellJudge& judge) const
{
    return m_as == As::Typed ? judge.Typed(place, m_text) : judge.Entered(place, m_text);
}

CellVerdict CFillWithSeries::Judge(CellPlace place, const CCellJudge& judge) const
{
    const std::int64_t ordinal = m_series.way == NumberSeries::Way::DownRows ? m_cells.RowOrdinal(place.row)
                                                                             : m_cells.ColumnOrdinal(place.column);
    return judge.Number(place, m_series.start + m_series.step * CDecimal(ordinal));
}

CellVerdict CCalculate::Judge(CellPlace place, const CCellJudge& judge) const
{
    return judge.Changed(place, m_change);
}

CFillDown::CFillDown(const std::vector<FillDownBlock>& blocks, const CCellJudge& judge) : m_cells(TargetsOf(blocks))
{
    for (const FillDownBlock& block : blocks)
        for (const CellRange& range : block.targets)
            for (std::uint32_t column = range.firstColumn; column <= range.lastColumn; ++column) {
                const CellPlace source{block.sourceRow, column};
                m_targets[column][range.firstRow] = {range.lastRow, block.sourceRow};
                if (!m_sources.contains(source))
                    m_sources.emplace(source, judge.ContentOf(source));
            }
}

const CCellState* CFillDown::SourceOf(CellPlace place) const
{
    const auto column = m_targets.find(place.column);
    if (column == m_targets.end())
        return nullptr;
    const auto after = column->second.upper_bound(place.row);
    if (after == column->second.begin() || std::prev(after)->second.lastRow < place.row)
        return nullptr;
    const auto source = m_sources.find({std::prev(after)->second.sourceRow, place.column});
    return source != m_sources.end() ? &source->second : nullptr;
}

CellVerdict CFillDown::Judge(CellPlace place, const CCellJudge& judge) const
{
    const CCellState* source = SourceOf(place);
    return source != nullptr ? judge.Copied(place, *source) : CellVerdict{};
}
