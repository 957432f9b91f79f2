// The grid's columns that stay in sight while the others scroll. The toolkit's view lays them out as if they scrolled;
// they are drawn over what lies where they stay, and what is asked or told of places is answered for there.

#include "controls/GridCtrl.h"
#include "controls/GridHeader.h"
#include "controls/GridModel.h"

#include <QAbstractItemDelegate>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>

CGridHeader& CGridCtrl::ColumnTitles() const
{
    return static_cast<CGridHeader&>(*horizontalHeader());
}

void CGridCtrl::SetFrozenColumnCount(int count)
{
    ColumnTitles().SetFrozen(count);
    viewport()->update();
    PlaceEditor();
}

int CGridCtrl::FrozenColumnCount() const
{
    return ColumnTitles().AskedFrozen();
}

bool CGridCtrl::AreFrozenColumnsTooWide() const
{
    return FrozenColumnCount() > 0 && ColumnTitles().Frozen() == 0;
}

QRect CGridCtrl::visualRect(const QModelIndex& index) const
{
    QRect rect = QTableView::visualRect(index);
    if (index.isValid() && index.column() < ColumnTitles().Frozen())
        rect.moveLeft(ColumnTitles().PositionOf(index.column()));
    return rect;
}

QModelIndex CGridCtrl::indexAt(const QPoint& position) const
{
    const int column = ColumnTitles().FrozenAt(position.x());
    if (column < 0)
        return QTableView::indexAt(position);
    const int row = rowAt(position.y());
    return row < 0 ? QModelIndex() : m_pModel->index(row, column);
}

/// A frozen column is in sight already, and what lies below one is not.
void CGridCtrl::scrollTo(const QModelIndex& index, ScrollHint hint)
{
    const int before = horizontalScrollBar()->value();
    QTableView::scrollTo(index, hint);
    const int frozen = ColumnTitles().Frozen();
    if (frozen == 0 || !index.isValid())
        return;
    if (index.column() < frozen) {
        horizontalScrollBar()->setValue(before);
        return;
    }
    const QRect area = ColumnTitles().FrozenArea();
    const QRect cell = visualRect(index);
    const int covered = isRightToLeft() ? cell.right() - area.left() + 1 : area.right() + 1 - cell.left();
    if (covered > 0)
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() - covered);
}

QRegion CGridCtrl::visualRegionForSelection(const QItemSelection& selection) const
{
    QRegion region = QTableView::visualRegionForSelection(selection);
    const QRect area = ColumnTitles().FrozenArea();
    if (!area.isEmpty())
        region += QRect(area.left(), 0, area.width(), viewport()->height());
    return region;
}

void CGridCtrl::paintEvent(QPaintEvent* event)
{
    QTableView::paintEvent(event);
    const QRect area = ColumnTitles().FrozenArea();
    const QRect dirty = event->rect() & QRect(area.left(), 0, area.width(), viewport()->height());
    if (!dirty.isEmpty())
        PaintFrozen(dirty);
}

void CGridCtrl::PaintFrozen(const QRect& dirty)
{
    const int first = rowAt(dirty.top());
    if (first < 0)
        return;
    QPainter painter(viewport());
    painter.setClipRect(dirty);
    QStyleOptionViewItem option;
    initViewItemOption(&option);
    const QStyle::State state = option.state;
    const int last = rowAt(dirty.bottom()) < 0 ? m_pModel->rowCount() - 1 : rowAt(dirty.bottom());
    for (int row = first; row <= last; ++row)
        for (int column = 0; column < ColumnTitles().Frozen(); ++column) {
            const QModelIndex index = m_pModel->index(row, column);
            option.rect = visualRect(index);
            option.state = selectionModel()->isSelected(index) ? state | QStyle::State_Selected : state;
            itemDelegateForIndex(index)->paint(&painter, option, index);
        }
    const QRect area = ColumnTitles().FrozenArea();
    const int bottom = visualRect(m_pModel->index(last, 0)).bottom();
    ColumnTitles().PaintEdge(painter, {area.left(), 0, area.width(), bottom + 1});
}

/// The toolkit redraws them where they would be if they scrolled.
void CGridCtrl::RedrawFrozen()
{
    if (ColumnTitles().Frozen() == 0)
        return;
    viewport()->update();
    horizontalHeader()->viewport()->update();
}

/// An open editor whose cell has scrolled below frozen columns is below them, too.
void CGridCtrl::KeepEditorBesideFrozen(const QRect& field)
{
    m_pEditor->clearMask();
    const QRect area = ColumnTitles().FrozenArea();
    if (area.isEmpty() || m_pEditor->Column() - FixedColumnCount() < ColumnTitles().Frozen())
        return;
    const QRect besides = isRightToLeft() ? QRect(0, 0, area.left(), viewport()->height())
                                          : QRect(area.right() + 1, 0, viewport()->width(), viewport()->height());
    const QRect seen = field & besides;
    if (field.isEmpty() || seen.size() == field.size())
        return;
    if (seen.isEmpty()) // out of sight, but still with the focus
        m_pEditor->move(isRightToLeft() ? viewport()->width() : -field.width(), field.top());
    else
        m_pEditor->setMask(seen.translated(-field.topLeft()));
}
