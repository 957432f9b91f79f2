#include "controls/GridSelectionModel.h"

#include <algorithm>

namespace {

/// Whether `command` begins a selection, other than one that changes the one begun last.
bool Begins(QItemSelectionModel::SelectionFlags command)
{
    using Model = QItemSelectionModel;
    return command.testAnyFlags(Model::Select | Model::Deselect | Model::Toggle) && !command.testFlag(Model::Current);
}

} // namespace

void CGridSelectionModel::MoveTo(const QModelIndex& index)
{
    setCurrentIndex(index, ClearAndSelect);
}

void CGridSelectionModel::ExtendTo(const QModelIndex& index)
{
    if (!m_anchor.isValid())
        Begin();
    setCurrentIndex(index, NoUpdate);
    if (currentIndex().isValid()) // whoever was told has not emptied the grid
        select(FromAnchor(), SelectCurrent);
}

void CGridSelectionModel::Choose(const QModelIndex& focus, const QItemSelection& cells)
{
    const QPersistentModelIndex target(focus);
    setCurrentIndex(focus, NoUpdate);
    if (target.isValid() && currentIndex() == target) // whoever was told has not emptied the grid
        select(cells, ClearAndSelect);
}

void CGridSelectionModel::Widen(Extent extent)
{
    if (!currentIndex().isValid())
        return;
    const QPersistentModelIndex anchor = m_anchor.isValid() ? m_anchor : QPersistentModelIndex(currentIndex());
    m_extent = extent;
    select(FromAnchor(), ClearAndSelect);
    m_anchor = anchor;
    m_extent = extent;
}

QItemSelection CGridSelectionModel::FromAnchor() const
{
    const QModelIndex focus = currentIndex();
    const QModelIndex anchor = m_anchor.isValid() ? QModelIndex(m_anchor) : focus;
    const bool rows = m_extent == Extent::Rows;
    const bool columns = m_extent == Extent::Columns;
    const int top = columns ? 0 : std::min(anchor.row(), focus.row());
    const int left = rows ? 0 : std::min(anchor.column(), focus.column());
    const int bottom = columns ? model()->rowCount() - 1 : std::max(anchor.row(), focus.row());
    const int right = rows ? model()->columnCount() - 1 : std::max(anchor.column(), focus.column());
    return {model()->index(top, left), model()->index(bottom, right)};
}

void CGridSelectionModel::Begin()
{
    m_anchor = currentIndex();
    m_extent = Extent::Cells;
}

void CGridSelectionModel::select(const QItemSelection& selection, QItemSelectionModel::SelectionFlags command)
{
    QItemSelectionModel::select(selection, command);
    if (Begins(command))
        Begin();
}

void CGridSelectionModel::setCurrentIndex(const QModelIndex& index, QItemSelectionModel::SelectionFlags command)
{
    if (index.isValid() && index != currentIndex()) {
        const QPersistentModelIndex target(index);
        emit FocusMoving(index);
        if (!target.isValid()) // whoever was told has emptied the grid
            return;
    }
    QItemSelectionModel::setCurrentIndex(index, command);
    if (Begins(command)) // the base class selects first and moves the focus after it
        Begin();
}
