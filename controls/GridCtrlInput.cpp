// The grid's mouse, its in-place editing and what it tells.

#include "controls/GridCellPaint.h"
#include "controls/GridCorner.h"
#include "controls/GridCtrl.h"
#include "controls/GridModel.h"
#include "controls/GridTextPaint.h"
#include "controls/TitleTip.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>

void CGridCtrl::SendNotification(int controlId, int code, const QModelIndex& index)
{
    emit Notify({controlId, code, m_pModel->GridRow(index), m_pModel->GridColumn(index)});
}

void CGridCtrl::AskForContextMenu(const QModelIndex& index, QPoint position)
{
    m_ptContextMenu = position;
    SendNotification(m_nControlId, GridNotification::RightClick, index);
}

/// The keyboard asks: the menu belongs to the focus cell, wherever the grid was scrolled to.
void CGridCtrl::AskForContextMenu()
{
    const QModelIndex index = currentIndex();
    if (!index.isValid())
        return;
    scrollTo(index);
    AskForContextMenu(index, viewport()->mapToGlobal(visualRect(index).center()));
}

bool CGridCtrl::StartEdit()
{
    return OpenEditor(currentIndex());
}

bool CGridCtrl::IsEditing() const
{
    return !m_pEditor.isNull();
}

bool CGridCtrl::EndEdit()
{
    return !m_pEditor || m_pEditor->End(0);
}

bool CGridCtrl::OpenEditor(const QModelIndex& index)
{
    if (!index.isValid() || !index.flags().testFlag(Qt::ItemIsEditable) || !EndEdit() || !index.isValid())
        return false;
    const int row = m_pModel->GridRow(index);
    const int column = m_pModel->GridColumn(index);
    const GridCellLook look = LookOf(*m_pModel, row, column);
    m_pTitleTip->Hide();
    scrollTo(index);
    m_pEditor = new CInPlaceEdit(*this, viewport(), row, column, m_pModel->Text(row, column));
    m_pEditor->setAlignment(AlignmentOf(look.format));
    m_pEditor->setFont(look.font);
    m_pEditor->setAccessibleName(m_pModel->headerData(index.column(), Qt::Horizontal).toString() +
                                 QStringLiteral(", ") + m_pModel->headerData(index.row(), Qt::Vertical).toString());
    connect(m_pEditor, &QLineEdit::textEdited, this, [this] {
        scrollTo(m_pModel->BodyIndex(m_pEditor->Row(), m_pEditor->Column())); // when the wheel has moved it away
    });
    PlaceEditor();
    m_pEditor->selectAll();
    m_pEditor->show();
    m_pEditor->setFocus();
    TellFocusCellUsed();
    return true;
}

/// Opens the editor on the focus cell with a text in place of the cell's.
bool CGridCtrl::OpenEditorWith(const QString& text)
{
    if (!StartEdit())
        return false;
    m_pEditor->setText(text);
    return true;
}

void CGridCtrl::PlaceEditor()
{
    if (!m_pEditor)
        return;
    const QModelIndex index = m_pModel->BodyIndex(m_pEditor->Row(), m_pEditor->Column());
    const QRect field = visualRect(index).adjusted(kFocusFrame, kFocusFrame, -kFocusFrame - 1, -kFocusFrame - 1);
    m_pEditor->setGeometry(field);
    KeepEditorBesideFrozen(field);
}

void CGridCtrl::CloseEditor()
{
    if (!m_pEditor)
        return;
    CInPlaceEdit* editor = m_pEditor;
    m_pEditor = nullptr;
    editor->Close(this);
}

void CGridCtrl::TakeEdit(const EditEnd& end)
{
    TakeText(end.row, end.column, end.text);
    CloseEditor();
    emit Notify({CInPlaceEdit::kControlId, GridNotification::EndInPlaceEdit, end.row, end.column});
    if (MoveFocus(end.key))
        StartEdit();
}

void CGridCtrl::TakeForChosen(const EditEnd& end)
{
    CloseEditor();
    emit Notify({CInPlaceEdit::kControlId, GridNotification::EndInPlaceEdit, end.row, end.column});
    emit TextForChosen(end.text);
}

/// The toolkit would give the focus to the first cell, which nobody chose.
void CGridCtrl::focusInEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void CGridCtrl::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        QTableView::mousePressEvent(event);
    else
        event->accept(); // the other buttons choose nothing
}

/// Nothing on purpose: no hover tracking and no selection by dragging.
void CGridCtrl::mouseMoveEvent(QMouseEvent* event)
{
    event->accept();
}

void CGridCtrl::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        QTableView::mouseReleaseEvent(event);
        return;
    }
    const QModelIndex index = indexAt(event->pos());
    if (event->button() == Qt::RightButton && index.isValid())
        AskForContextMenu(index, event->globalPosition().toPoint());
    event->accept();
}

void CGridCtrl::mouseDoubleClickEvent(QMouseEvent* event)
{
    event->accept();
    if (event->button() != Qt::LeftButton || event->modifiers() != Qt::NoModifier)
        return;
    const QModelIndex index = indexAt(event->pos());
    if (index.isValid() && index == currentIndex())
        OpenEditor(index);
}

/// The mouse asks with its button's release; here is the keyboard.
void CGridCtrl::contextMenuEvent(QContextMenuEvent* event)
{
    if (event->reason() == QContextMenuEvent::Keyboard)
        AskForContextMenu();
    event->accept();
}

void CGridCtrl::updateGeometries()
{
    QTableView::updateGeometries();
    if (m_pCorner == nullptr) // called by the base class before the parts are made
        return;
    const QHeaderView* above = horizontalHeader();
    const QHeaderView* left = verticalHeader();
    m_pCorner->setGeometry(left->x(), above->y(), left->width(), above->height());
    m_pCorner->raise(); // over the toolkit's own corner button
    PlaceEditor();
}

void CGridCtrl::scrollContentsBy(int dx, int dy)
{
    m_pTitleTip->Hide();
    QTableView::scrollContentsBy(dx, dy);
    if (dx != 0)
        RedrawFrozen();
    PlaceEditor();
}

/// Not the table view's own: with a screen reader running it makes an index for every selected cell.
void CGridCtrl::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    QAbstractItemView::selectionChanged(selected, deselected);
    RedrawFrozen();
    if (QAccessible::isActive() && !selected.isEmpty())
        TellSelection(selected);
}

void CGridCtrl::TellSelection(const QItemSelection& selected)
{
    QAccessibleEvent event(this, QAccessible::SelectionAdd);
    event.setChild(m_pModel->AccessibleChild(selected.first().topLeft()));
    QAccessible::updateAccessibility(&event);
}

void CGridCtrl::changeEvent(QEvent* event)
{
    QTableView::changeEvent(event);
    const bool look = event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange ||
                      event->type() == QEvent::StyleChange;
    if (look && m_pModel != nullptr)
        TakeLook();
}
