// Where cells stand in the grid and in the rows, and which of them are chosen.

#include "views/RecipeDataShowView.h"

#include <QItemSelectionRange>

#include <algorithm>

CellPlace CRecipeDataShowView::PlaceOf(int gridRow, int gridColumn) const
{
    return {DataRowOf(gridRow), static_cast<std::uint32_t>(gridColumn - kTitleColumns)};
}

int CRecipeDataShowView::DataRowOf(int gridRow) const
{
    return gridRow - kTitleRows;
}

std::optional<int> CRecipeDataShowView::GridRowOf(int dataRow) const
{
    return dataRow + kTitleRows;
}

void CRecipeDataShowView::ShowCells(const std::vector<CellPlace>& places)
{
    std::vector<std::pair<int, int>> cells;
    cells.reserve(places.size());
    for (const CellPlace place : places)
        if (const auto row = GridRowOf(place.row))
            cells.emplace_back(*row, static_cast<int>(place.column) + kTitleColumns);
    m_pGrid->ShowCells(cells);
}

std::optional<CellPlace> CRecipeDataShowView::ChosenPlace() const
{
    return ChosenColumn() == nullptr ? std::nullopt : std::optional(PlaceOf(m_nCurrentRow, m_nCurrentColumn));
}

/// The grid's body has the data cells.
std::vector<CellRange> CRecipeDataShowView::ChosenRanges() const
{
    std::vector<CellRange> ranges;
    for (const QItemSelectionRange& range : m_pGrid->ChosenCells())
        ranges.push_back({range.top(), range.bottom(), static_cast<std::uint32_t>(range.left()),
                          static_cast<std::uint32_t>(range.right())});
    return ranges;
}

std::vector<CRecipeDataShowView::ChosenBlock> CRecipeDataShowView::ChosenBlocks() const
{
    std::vector<ChosenBlock> blocks;
    for (const QItemSelectionRange& range : m_pGrid->ChosenCells()) {
        ChosenBlock block;
        const int top = range.top() + kTitleRows;
        if (top > kTitleRows)
            block.rowAbove = DataRowOf(top - 1);
        for (int row = top; row <= range.bottom() + kTitleRows; ++row) {
            const int dataRow = DataRowOf(row);
            if (!block.ranges.empty() && block.ranges.back().lastRow == dataRow - 1)
                block.ranges.back().lastRow = dataRow;
            else
                block.ranges.push_back({dataRow, dataRow, static_cast<std::uint32_t>(range.left()),
                                        static_cast<std::uint32_t>(range.right())});
        }
        blocks.push_back(std::move(block));
    }
    return blocks;
}

std::vector<CellPlace> CRecipeDataShowView::ChosenPlaces(std::size_t most) const
{
    std::vector<CellPlace> places;
    for (const CellRange& range : ChosenRanges())
        for (int row = range.firstRow; row <= range.lastRow && places.size() < most; ++row)
            for (std::uint32_t column = range.firstColumn; column <= range.lastColumn && places.size() < most; ++column)
                places.push_back({row, column});
    std::sort(places.begin(), places.end());
    return places;
}

void CRecipeDataShowView::ShowEdited(const EditReport& report)
{
    if (report.hasOtherRows)
        ShowOtherRows();
    else
        m_pGrid->TextsChanged();
    ShowCells(report.cells);
    m_typedValues.LookAgain();
}

/// The user stays where they were, if there is such a cell.
void CRecipeDataShowView::ShowOtherRows()
{
    int row = 0;
    int column = 0;
    const bool hadFocusCell = m_pGrid->FocusCell(row, column);
    ShowRows();
    if (hadFocusCell)
        m_pGrid->SetFocusCell(row, column);
}

bool CRecipeDataShowView::GoToNextEdited()
{
    return !EndCellEdit() || GoTo(Rows().NextEdited(FocusPlace()));
}

bool CRecipeDataShowView::GoToPreviousEdited()
{
    return !EndCellEdit() || GoTo(Rows().PreviousEdited(FocusPlace()));
}

/// Above the rows while no cell has the focus.
CellPlace CRecipeDataShowView::FocusPlace() const
{
    int row = 0;
    int column = 0;
    return m_pGrid->FocusCell(row, column) ? PlaceOf(row, column) : CellPlace{-1, 0};
}

bool CRecipeDataShowView::GoTo(std::optional<CellPlace> place)
{
    if (!place)
        return false;
    m_pGrid->setFocus(); // to go on there
    ShowCells({*place});
    return true;
}
