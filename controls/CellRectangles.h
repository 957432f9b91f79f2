#pragma once

#include <cstddef>
#include <utility>
#include <vector>

/// The cells from one corner to the other, both included.
struct CellRectangle {
    int top;
    int left;
    int bottom;
    int right;
};

/// What reaches over all of `cells` (row and column), of which there is one at least.
CellRectangle RectangleAround(const std::vector<std::pair<int, int>>& cells);

/// Rectangles that hold just `cells` (row and column, ascending): one for all consecutive rows that hold the same
/// stretch of columns. When there are more than `most`, the one around all cells.
std::vector<CellRectangle> RectanglesOf(const std::vector<std::pair<int, int>>& cells, std::size_t most);
