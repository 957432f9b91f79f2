#include "files/CellSearch.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr std::size_t kCellsOfBlock = 1024;

} // namespace

void CCellSearch::Begin(CellQuery query, std::vector<CellRange> scope, RowFilter isShown)
{
    m_matcher = CCellMatcher(std::move(query), m_rows.Columns());
    m_scope = std::move(scope);
    std::sort(m_scope.begin(), m_scope.end(),
              [](const CellRange& a, const CellRange& b) { return a.firstRow < b.firstRow; });
    m_isShown = std::move(isShown);
    m_seek.reset();
    m_sought.reset();
    Restart();
}

void CCellSearch::Restart()
{
    m_matcher = CCellMatcher(m_matcher.Query(), m_rows.Columns());
    m_columnCount = m_rows.Columns().size();
    m_isOfWords = m_rows.IsOfWords() || m_rows.ShowsTheSameEverywhere();
    m_rowsOfBlock =
        static_cast<std::int32_t>(std::max<std::size_t>(kCellsOfBlock / std::max<std::size_t>(m_columnCount, 1), 1));
    const bool isEmpty = m_columnCount == 0 || m_rows.RowCount() == 0;
    m_counts.assign(isEmpty ? 0 : BlockOf(m_rows.RowCount() - 1) + 1, kUnknown);
    m_count = 0;
    m_nextToCount = 0;
    m_listed = 0;
    m_hasLeftOutRows = false;
    m_block = 0;
    m_before = 0;
    m_hits.reset();
    if (m_seek)
        m_seek->step = 0;
}

void CCellSearch::Seek(CellPlace from, bool isIncluded, Way way)
{
    m_sought.reset();
    m_seek = SeekState{from, isIncluded, way};
}

bool CCellSearch::Continue(std::chrono::steady_clock::time_point end)
{
    while (m_seek || !IsCounted()) {
        if (m_seek)
            SeekStep();
        else
            CountNext();
        if (std::chrono::steady_clock::now() >= end)
            return !m_seek && IsCounted();
    }
    return true;
}

void CCellSearch::CountNext()
{
    NoteCount(m_nextToCount, CountBlock(m_nextToCount));
}

std::uint32_t CCellSearch::CountBlock(std::size_t block) const
{
    std::uint32_t count = 0;
    Walk(block, [&](CellPlace, std::u16string_view) { ++count; });
    return count;
}

void CCellSearch::NoteCount(std::size_t block, std::uint32_t count)
{
    if (m_counts[block] != kUnknown)
        return;
    m_counts[block] = count;
    m_count += count;
    for (; !IsCounted() && m_counts[m_nextToCount] != kUnknown; ++m_nextToCount)
        m_listed += m_counts[m_nextToCount];
}

std::vector<CellPlace> CCellSearch::HitsOf(std::size_t block) const
{
    std::vector<CellPlace> places;
    Walk(block, [&](CellPlace place, std::u16string_view) { places.push_back(place); });
    return places;
}

/// One block: the first of all is looked at twice, for what lies on the one side of the beginning and, last, on the
/// other one.
void CCellSearch::SeekStep()
{
    const std::size_t blocks = m_counts.size();
    if (m_seek->step > blocks || blocks == 0)
        return EndSeek(std::nullopt);
    const bool isForward = m_seek->way == Way::Forward;
    const std::int32_t row = std::clamp(m_seek->from.row, 0, m_rows.RowCount() - 1);
    const std::size_t first = std::min(BlockOf(row), blocks - 1);
    const std::size_t step = m_seek->step++;
    const std::size_t block = (first + (isForward ? step : blocks - step % blocks)) % blocks;
    if (m_counts[block] == 0)
        return;
    std::vector<CellPlace> hits = HitsOf(block);
    NoteCount(block, static_cast<std::uint32_t>(hits.size()));
    if (!isForward)
        std::reverse(hits.begin(), hits.end());
    const auto isAhead = [&](CellPlace place) {
        return (m_seek->isIncluded && place == m_seek->from) ||
               (isForward ? m_seek->from < place : place < m_seek->from);
    };
    const auto hit = step == 0        ? std::find_if(hits.begin(), hits.end(), isAhead)
                     : step == blocks ? std::find_if_not(hits.begin(), hits.end(), isAhead)
                                      : hits.begin();
    if (hit != hits.end())
        EndSeek(Hit{*hit, !isAhead(*hit)});
}

void CCellSearch::EndSeek(std::optional<Hit> hit)
{
    m_seek.reset();
    m_sought = hit;
}

/// The columns of the scope in the row, from left to right.
void CCellSearch::ColumnsOf(std::int32_t row, std::vector<Columns>& columns) const
{
    columns.clear();
    const auto last = static_cast<std::uint32_t>(m_columnCount) - 1;
    if (m_scope.empty())
        columns.emplace_back(0, last);
    for (const CellRange& range : m_scope) {
        if (range.firstRow > row)
            break;
        if (range.lastRow >= row && range.firstColumn <= last)
            columns.emplace_back(range.firstColumn, std::min(range.lastColumn, last));
    }
    std::sort(columns.begin(), columns.end());
}

bool CCellSearch::IsHit(CellPlace place) const
{
    if (!m_rows.HasCell(place) || BlockOf(place.row) >= m_counts.size())
        return false;
    const std::vector<CellPlace> hits = HitsOf(BlockOf(place.row));
    return std::binary_search(hits.begin(), hits.end(), place);
}

std::optional<std::size_t> CCellSearch::NumberOf(CellPlace place) const
{
    if (!m_rows.HasCell(place) || BlockOf(place.row) >= m_nextToCount)
        return std::nullopt;
    const std::size_t block = BlockOf(place.row);
    std::size_t number = 0;
    for (std::size_t before = 0; before < block; ++before)
        number += m_counts[before];
    const std::vector<CellPlace> hits = HitsOf(block);
    const auto hit = std::lower_bound(hits.begin(), hits.end(), place);
    return number + static_cast<std::size_t>(hit - hits.begin()) + 1;
}

std::optional<CellPlace> CCellSearch::PlaceOf(std::size_t index) const
{
    if (index >= m_listed)
        return std::nullopt;
    const std::size_t former = m_block;
    for (; m_before > index; m_before -= m_counts[m_block])
        --m_block;
    for (; index - m_before >= m_counts[m_block]; ++m_block)
        m_before += m_counts[m_block];
    if (m_block != former || !m_hits)
        m_hits = HitsOf(m_block);
    const std::size_t within = index - m_before;
    return within < m_hits->size() ? std::optional((*m_hits)[within]) : std::nullopt;
}
