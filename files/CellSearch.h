#pragma once

#include "files/CellQuery.h"
#include "files/CellRange.h"
#include "files/CellState.h"
#include "files/CellTexts.h"
#include "files/Progress.h"
#include "files/RecipeRows.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

/// Looks for a query in the cells of rows, in slices of time: for the next hit from a place on, and how many there are.
///
/// It keeps a count for each block of a thousand cells and no places, so millions of hits cost what none costs: a
/// hit's place is found by looking through its block once more.
class CCellSearch {
public:
    enum class Way : std::uint8_t { Forward, Backward };

    /// Whether a data row is shown; the cells of the others are not found.
    using RowFilter = std::function<bool(std::int32_t row)>;

    struct Hit {
        CellPlace place;
        bool hasWrapped = false; ///< it lies on the other side of where the search began
    };

    /// `rows` outlives the search; what becomes of it is told by Restart.
    explicit CCellSearch(const CRecipeRows& rows) : m_rows(rows) {}

    /// Looks for `query` from now on in the cells of `scope`, blocks of which no cell stands in two; without any, in
    /// all cells. Nothing is looked at yet.
    void Begin(CellQuery query, std::vector<CellRange> scope, RowFilter isShown);

    /// Cells, the layout or the rows that are shown may be others: counting begins anew, and so does a seek.
    void Restart();

    const CellQuery& Query() const { return m_matcher.Query(); }
    const CCellMatcher& Matcher() const { return m_matcher; }

    /// Looks from now on for the first hit after `from`, or before it, around the end of the rows if need be; `from`
    /// itself is the first one looked at with `isIncluded`, else the last one. A `from` above the rows comes before all
    /// of them.
    void Seek(CellPlace from, bool isIncluded, Way way);
    bool IsSeeking() const { return m_seek.has_value(); }
    void StopSeeking() { m_seek.reset(); } ///< nothing was found then

    /// What the last seek that ended has found.
    const std::optional<Hit>& Sought() const { return m_sought; }

    /// Looks on until `end`: for what is sought first, then at all other cells. False while there is more to look at.
    bool Continue(std::chrono::steady_clock::time_point end);

    bool IsCounted() const { return m_nextToCount == m_counts.size(); }
    std::size_t Count() const { return m_count; } ///< of the hits that are known
    bool HasLeftOutRows() const { return m_hasLeftOutRows; }

    /// Whether the cell is one.
    bool IsHit(CellPlace place) const;

    /// The how-manieth of all hits it is, from 1 on; nothing while not all that stand before it are known.
    std::optional<std::size_t> NumberOf(CellPlace place) const;

    /// How many hits from the beginning of the rows on are known without a gap, and where they are. Nothing for a hit
    /// that is none any more.
    std::size_t ListedCount() const { return m_listed; }
    std::optional<CellPlace> PlaceOf(std::size_t index) const;

    /// Calls `take` with place and text of each hit in order, whatever is counted. False when `progress` gave it up.
    template <class Take>
    bool ForEach(CProgress& progress, Take take) const
    {
        for (std::size_t block = 0; block < m_counts.size(); ++block) {
            if (block % kBlocksBetweenLooks == 0 && !progress.Advance(block, m_counts.size()))
                return false;
            Walk(block, [&](CellPlace place, std::u16string_view text) { take(place, text); });
        }
        return true;
    }

private:
    static constexpr std::uint32_t kUnknown = UINT32_MAX;
    static constexpr std::size_t kBlocksBetweenLooks = 64;

    /// Columns next to each other, the last one with them.
    using Columns = std::pair<std::uint32_t, std::uint32_t>;

    struct SeekState {
        CellPlace from;
        bool isIncluded;
        Way way;
        std::size_t step = 0; ///< blocks done
    };

    std::size_t BlockOf(std::int32_t row) const { return static_cast<std::size_t>(row / m_rowsOfBlock); }
    std::uint32_t CountBlock(std::size_t block) const;
    void NoteCount(std::size_t block, std::uint32_t count);
    void CountNext();
    void SeekStep();
    void EndSeek(std::optional<Hit> hit);
    std::vector<CellPlace> HitsOf(std::size_t block) const;
    void ColumnsOf(std::int32_t row, std::vector<Columns>& columns) const;

    template <class Take>
    void Walk(std::size_t block, Take take) const
    {
        const std::int32_t first = static_cast<std::int32_t>(block) * m_rowsOfBlock;
        const std::int32_t end = std::min(first + m_rowsOfBlock, m_rows.RowCount());
        if (first >= end || m_rows.Columns().size() != m_columnCount)
            return;
        CCellTexts texts(m_rows);
        texts.Seek(first, 0);
        std::vector<Columns> columns;
        for (std::int32_t row = first; row < end; ++row) {
            ColumnsOf(row, columns);
            if (columns.empty())
                continue;
            if (m_isShown && !m_isShown(row)) {
                m_hasLeftOutRows = true;
                continue;
            }
            for (const auto& [firstColumn, lastColumn] : columns)
                for (std::uint32_t column = firstColumn; column <= lastColumn; ++column)
                    LookAt({row, column}, texts, take);
        }
    }

    template <class Take>
    void LookAt(CellPlace place, CCellTexts& texts, Take& take) const
    {
        if (!m_matcher.IsFor(place.column))
            return;
        texts.MoveTo(place.row, place.column);
        if (m_isOfWords && !m_matcher.IsForWords(place.column) && texts.IsUntouched())
            return;
        if (const std::u16string_view text = texts.Text(); m_matcher.Matches(place.column, text))
            take(place, text);
    }

    const CRecipeRows& m_rows;
    CCellMatcher m_matcher;
    std::vector<CellRange> m_scope; ///< by their first rows
    RowFilter m_isShown;
    std::size_t m_columnCount = 0;
    std::int32_t m_rowsOfBlock = 1;
    bool m_isOfWords = false;
    std::vector<std::uint32_t> m_counts; ///< of hits in each block, or kUnknown
    std::size_t m_count = 0;
    std::size_t m_nextToCount = 0; ///< the first block that is unknown
    std::size_t m_listed = 0;      ///< hits before it
    std::optional<SeekState> m_seek;
    std::optional<Hit> m_sought;
    mutable bool m_hasLeftOutRows = false;

    // Hits are mostly asked for one after the other: the block of the last one.
    mutable std::size_t m_block = 0;
    mutable std::size_t m_before = 0; ///< hits before it
    mutable std::optional<std::vector<CellPlace>> m_hits;
};
