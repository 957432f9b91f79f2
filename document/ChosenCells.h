#pragma once

#include "files/CellRange.h"
#include "files/CellState.h"

#include <cstddef>
#include <cstdint>
#include <vector>

/// Cells of rows in blocks, walked through row by row and from left to right, whatever the order of the blocks. Takes
/// memory for the blocks, never for the cells.
class CChosenCells {
public:
    CChosenCells() = default;

    /// A cell that stands in two of `ranges` counts once.
    explicit CChosenCells(const std::vector<CellRange>& ranges);

    std::uint64_t Count() const { return m_count; }

    /// Which of the chosen rows it is, from 0; rows without a chosen cell do not count. `row` is one that has some.
    std::int64_t RowOrdinal(std::int32_t row) const;

    /// Likewise of the columns.
    std::int64_t ColumnOrdinal(std::uint32_t column) const;

    /// Calls `take` with the place of each cell, in ascending order, until it returns false. False then.
    template <class Take>
    bool ForEach(Take take) const
    {
        for (const Band& band : m_bands)
            for (std::int32_t row = band.firstRow; row <= band.lastRow; ++row)
                for (const Span& span : band.spans)
                    for (std::uint32_t column = span.first; column <= span.last; ++column)
                        if (!take(CellPlace{row, column}))
                            return false;
        return true;
    }

private:
    struct Span { ///< columns
        std::uint32_t first;
        std::uint32_t last;
    };
    struct Band { ///< rows with the same columns
        std::int32_t firstRow;
        std::int32_t lastRow;
        std::int64_t rowsBefore; ///< chosen ones
        std::vector<Span> spans; ///< in ascending order, apart from each other
    };

    static std::vector<Span> Merged(std::vector<Span> spans);
    void AddBand(std::int32_t firstRow, std::int32_t lastRow, std::vector<Span> spans);

    std::vector<Band> m_bands; ///< in ascending order, apart from each other
    std::vector<Span> m_columns;
    std::uint64_t m_count = 0;
};
