#pragma once

#include <cstdint>

/// A block of cells of the rows, the last row and column with it: data rows and data columns, counted from 0.
struct CellRange {
    std::int32_t firstRow = 0;
    std::int32_t lastRow = 0;
    std::uint32_t firstColumn = 0;
    std::uint32_t lastColumn = 0;

    friend bool operator==(const CellRange&, const CellRange&) = default;
};
