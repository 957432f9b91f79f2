#include "controls/CellRectangles.h"

#include <algorithm>

namespace {

/// Puts stretches of rows, which come in ascending order, together.
class CRectangles {
public:
    /// `stretch` is one row high.
    void Add(const CellRectangle& stretch)
    {
        if (m_row.empty() || m_rectangles[m_row.front()].bottom != stretch.top)
            BeginRow(stretch.top);
        while (m_next < m_above.size() && m_rectangles[m_above[m_next]].left < stretch.left)
            ++m_next;
        if (m_next < m_above.size() && Continues(m_rectangles[m_above[m_next]], stretch)) {
            m_row.push_back(m_above[m_next]);
            m_rectangles[m_above[m_next]].bottom = stretch.top;
        } else {
            m_row.push_back(m_rectangles.size());
            m_rectangles.push_back(stretch);
        }
    }

    std::size_t Count() const { return m_rectangles.size(); }
    std::vector<CellRectangle> Take() { return std::move(m_rectangles); }

private:
    static bool Continues(const CellRectangle& above, const CellRectangle& stretch)
    {
        return above.left == stretch.left && above.right == stretch.right;
    }

    void BeginRow(int row)
    {
        m_above.clear();
        if (!m_row.empty() && m_rectangles[m_row.front()].bottom + 1 == row)
            m_above.swap(m_row);
        m_row.clear();
        m_next = 0;
    }

    std::vector<CellRectangle> m_rectangles;
    std::vector<std::size_t> m_above; ///< those that end in the row above, from left to right
    std::vector<std::size_t> m_row;   ///< those that reach into the row of the last stretch, in the same order
    std::size_t m_next = 0;           ///< the first of m_above that the next stretch may continue
};

} // namespace

CellRectangle RectangleAround(const std::vector<std::pair<int, int>>& cells)
{
    CellRectangle around{cells.front().first, cells.front().second, cells.front().first, cells.front().second};
    for (const auto& [row, column] : cells) {
        around.top = std::min(around.top, row);
        around.left = std::min(around.left, column);
        around.bottom = std::max(around.bottom, row);
        around.right = std::max(around.right, column);
    }
    return around;
}

std::vector<CellRectangle> RectanglesOf(const std::vector<std::pair<int, int>>& cells, std::size_t most)
{
    CRectangles rectangles;
    for (auto cell = cells.begin(); cell != cells.end();) {
        CellRectangle stretch{cell->first, cell->second, cell->first, cell->second};
        for (++cell; cell != cells.end() && cell->first == stretch.top && cell->second <= stretch.right + 1; ++cell)
            stretch.right = cell->second;
        rectangles.Add(stretch);
        if (rectangles.Count() > most)
            return {RectangleAround(cells)};
    }
    return rectangles.Take();
}
