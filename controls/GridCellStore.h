#pragma once

#include "controls/GridCell.h"

#include <map>
#include <memory>
#include <utility>
#include <vector>

/// The kept cells of a grid by row and column. A row takes memory once one of its cells is made.
class CGridCellStore {
public:
    void Clear();
    void SetColumnCount(int count); ///< cells of the remaining columns stay
    void DropRowsFrom(int row);     ///< drops the cells of `row` and of all rows below it

    const CGridCellBase* Find(int row, int column) const; ///< null while it was not made
    CGridCellBase& Make(int row, int column);             ///< within the columns
    void Put(int row, int column, std::unique_ptr<CGridCellBase> cell);

private:
    using Place = std::pair<int, int>;

    int m_nColumns = 0;
    std::vector<std::unique_ptr<CGridCell[]>> m_rows;
    std::map<Place, std::unique_ptr<CGridCellBase>> m_others; ///< cells of other classes, which hide those in m_rows
};
