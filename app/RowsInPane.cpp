#include "app/RowsInPane.h"

#include "views/RecipeDataShowView.h"

#include <algorithm>

std::vector<std::int32_t> RowsWithChosenCells(const CRecipeDataShowView& pane)
{
    std::vector<std::int32_t> rows;
    for (const CellRange& range : pane.ChosenRanges())
        for (std::int32_t row = range.firstRow; row <= range.lastRow; ++row)
            rows.push_back(row);
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end()); // blocks may stand side by side
    return rows;
}

std::vector<std::int32_t> RowsInSight(const CRecipeDataShowView& pane)
{
    const CShownRows& shown = pane.ShownRows();
    std::vector<std::int32_t> rows;
    rows.reserve(static_cast<std::size_t>(shown.Count()));
    for (std::int32_t i = 0; i < shown.Count(); ++i)
        rows.push_back(shown.RowAt(i));
    return rows;
}
