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
    return m_shownRows.RowAt(gridRow - kTitleRows);
}

std::optional<int> CRecipeDataShowView::GridRowOf(int dataRow) const
{
    const auto index = m_shownRows.IndexOf(dataRow);
    return index ? std::optional(*index + kTitleRows) : std::nullopt;
}

std::optional<CellPlace> CRecipeDataShowView::FocusCell() const
{
    int row = 0;
    int column = 0;
    return m_pGrid->FocusCell(row, column) ? std::optional(PlaceOf(row, column)) : std::nullopt;
}

bool CRecipeDataShowView::ShowOnlyRows(std::vector<std::int32_t> rows)
{
    if (!EndCellEdit())
        return false;
    const auto focus = FocusCell();
    m_shownRows.ShowSome(std::move(rows), Rows().RowCount());
    FollowShownRows(focus);
    emit ShownRowsChanged(0);
    return true;
}

bool CRecipeDataShowView::ShowAllRows()
{
    if (!m_shownRows.AreSome())
        return true;
    if (!EndCellEdit())
        return false;
    const auto focus = FocusCell();
    m_shownRows.ShowAll(Rows().RowCount());
    FollowShownRows(focus);
    emit ShownRowsChanged(0);
    return true;
}

/// The grid has the rows that are shown now; `focus` had the focus before.
void CRecipeDataShowView::FollowShownRows(std::optional<CellPlace> focus)
{
    m_pGrid->ResetRows(kTitleRows + m_shownRows.Count());
    ForgetChosenCell();
    const int index = focus ? m_shownRows.IndexNear(focus->row) : -1;
    if (index >= 0)
        m_pGrid->SetFocusCell(index + kTitleRows, static_cast<int>(focus->column) + kTitleColumns);
}

/// Nobody is led to a cell that is not there to be seen.
void CRecipeDataShowView::ShowHidden(const std::vector<CellPlace>& places)
{
    if (!m_shownRows.AreSome())
        return;
    std::vector<std::int32_t> rows;
    for (const CellPlace place : places)
        if (rows.empty() || rows.back() != place.row)
            rows.push_back(place.row);
    const auto focus = FocusCell();
    const std::size_t added = m_shownRows.Add(std::move(rows));
    if (added == 0)
        return;
    FollowShownRows(focus);
    emit ShownRowsChanged(added);
}

void CRecipeDataShowView::ShowCells(const std::vector<CellPlace>& places)
{
    ShowHidden(places);
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

/// The grid's body has the data cells. Where rows are hidden, rows that follow each other there need not do so in the
/// data.
std::vector<CellRange> CRecipeDataShowView::ChosenRanges() const
{
    std::vector<CellRange> ranges;
    for (const QItemSelectionRange& range : m_pGrid->ChosenCells()) {
        const auto firstColumn = static_cast<std::uint32_t>(range.left());
        const auto lastColumn = static_cast<std::uint32_t>(range.right());
        for (int first = range.top(); first <= range.bottom();) {
            const int last = LastInARow(first, range.bottom());
            ranges.push_back({m_shownRows.RowAt(first), m_shownRows.RowAt(last), firstColumn, lastColumn});
            first = last + 1;
        }
    }
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

/// The last of the shown rows from `first` to `last` up to which no row between them is hidden.
int CRecipeDataShowView::LastInARow(int first, int last) const
{
    if (!m_shownRows.AreSome())
        return last;
    int end = first;
    while (end < last && m_shownRows.RowAt(end + 1) == m_shownRows.RowAt(end) + 1)
        ++end;
    return end;
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
    const auto focus = FocusCell();
    ShowRows();
    if (focus && GridRowOf(focus->row))
        m_pGrid->SetFocusCell(*GridRowOf(focus->row), static_cast<int>(focus->column) + kTitleColumns);
}

bool CRecipeDataShowView::GoToNextEdited()
{
    return !EndCellEdit() || GoTo(Rows().NextEdited(FocusPlace()));
}

bool CRecipeDataShowView::GoToPreviousEdited()
{
    return !EndCellEdit() || GoTo(Rows().PreviousEdited(FocusPlace()));
}

CellPlace CRecipeDataShowView::FocusPlace() const
{
    return FocusCell().value_or(CellPlace{-1, 0});
}

bool CRecipeDataShowView::GoTo(std::optional<CellPlace> place)
{
    if (!place)
        return false;
    m_pGrid->setFocus(); // to go on there
    ShowCells({*place});
    return true;
}
