// The grid's keys: those that move the focus cell and choose cells, the commands, and those that begin an edit.

#include "controls/GridCtrl.h"
#include "controls/GridModel.h"
#include "controls/GridSelectionModel.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>

#include <optional>

namespace {

/// A character that starts an edit. Ctrl and Alt together are the AltGr of some keyboards.
bool IsTypedText(const QKeyEvent& event)
{
    const Qt::KeyboardModifiers commands =
        event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    const bool plain = commands == Qt::NoModifier || commands == (Qt::ControlModifier | Qt::AltModifier);
    return plain && !event.text().isEmpty() && event.text().at(0).isPrint();
}

bool IsPlain(const QKeyEvent& event)
{
    return (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

} // namespace

std::optional<CGridCtrl::CursorAction> CGridCtrl::MoveOf(int key)
{
    switch (key) {
    case Qt::Key_Tab:
        return MoveNext;
    case Qt::Key_Backtab:
        return MovePrevious;
    case Qt::Key_PageUp:
        return MovePageUp;
    case Qt::Key_PageDown:
        return MovePageDown;
    case Qt::Key_Home:
        return MoveHome;
    case Qt::Key_End:
        return MoveEnd;
    case Qt::Key_Left:
        return MoveLeft;
    case Qt::Key_Up:
        return MoveUp;
    case Qt::Key_Right:
        return MoveRight;
    case Qt::Key_Down:
        return MoveDown;
    default:
        return std::nullopt;
    }
}

/// Moves the focus as `key` would outside an edit. False when it stays where it is.
bool CGridCtrl::MoveFocus(int key)
{
    const std::optional<CursorAction> action = MoveOf(key);
    if (!action)
        return false;
    const QPersistentModelIndex before(currentIndex());
    const QModelIndex next = moveCursor(*action, Qt::NoModifier);
    if (!next.isValid() || next == before)
        return false;
    Selection().MoveTo(next);
    return currentIndex().isValid() && currentIndex() != before;
}

/// Next and previous stop at the last and the first cell, where the toolkit would go round. With Ctrl the others go as
/// far as there are cells.
QModelIndex CGridCtrl::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    const QModelIndex current = currentIndex();
    const bool atEnd = current.row() == m_pModel->rowCount() - 1 && current.column() == m_pModel->columnCount() - 1;
    const bool atStart = current.row() == 0 && current.column() == 0;
    if (current.isValid() && ((action == MoveNext && atEnd) || (action == MovePrevious && atStart)))
        return current;
    if (current.isValid() && modifiers.testFlag(Qt::ControlModifier))
        return FarthestFrom(current, action);
    return QTableView::moveCursor(action, Qt::NoModifier);
}

QModelIndex CGridCtrl::FarthestFrom(const QModelIndex& index, CursorAction action) const
{
    const int lastRow = m_pModel->rowCount() - 1;
    const int lastColumn = m_pModel->columnCount() - 1;
    switch (action) {
    case MoveUp:
    case MovePageUp:
        return index.siblingAtRow(0);
    case MoveDown:
    case MovePageDown:
        return index.siblingAtRow(lastRow);
    case MoveLeft:
        return index.siblingAtColumn(isRightToLeft() ? lastColumn : 0);
    case MoveRight:
        return index.siblingAtColumn(isRightToLeft() ? 0 : lastColumn);
    case MoveHome:
        return m_pModel->index(0, 0);
    case MoveEnd:
        return m_pModel->index(lastRow, lastColumn);
    default:
        return index;
    }
}

/// A click with Shift extends from where the selection began, even when keys or an edit began it. The toolkit has
/// moved the focus to the clicked cell already.
void CGridCtrl::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command)
{
    if (!command.testFlag(QItemSelectionModel::Current) || !currentIndex().isValid()) {
        QTableView::setSelection(rect, command);
        return;
    }
    Selection().SetExtent(CGridSelectionModel::Extent::Cells);
    Selection().ExtendTo(currentIndex());
}

/// A click on a title has selected rows or columns; with Shift, from where the toolkit saw the last such click.
void CGridCtrl::TitlePressed(Qt::Orientation orientation)
{
    const auto extent =
        orientation == Qt::Horizontal ? CGridSelectionModel::Extent::Columns : CGridSelectionModel::Extent::Rows;
    if (!currentIndex().isValid())
        return;
    Selection().SetExtent(extent);
    if (QApplication::keyboardModifiers().testFlag(Qt::ShiftModifier))
        Selection().ExtendTo(currentIndex());
    TellFocusCellUsed();
}

void CGridCtrl::TellFocusCellUsed()
{
    emit FocusCellUsed(m_pModel->GridRow(currentIndex()), m_pModel->GridColumn(currentIndex()));
}

void CGridCtrl::keyboardSearch(const QString&) {}

/// Tab leaves the grid from its last cell and from a grid without cells, Shift+Tab from its first one.
bool CGridCtrl::focusNextPrevChild(bool next)
{
    const QModelIndex current = currentIndex();
    const QModelIndex target = moveCursor(next ? MoveNext : MovePrevious, Qt::NoModifier);
    if (!target.isValid() || target == current)
        return QAbstractScrollArea::focusNextPrevChild(next);
    return QTableView::focusNextPrevChild(next);
}

bool CGridCtrl::HandleCommandKey(QKeyEvent& event)
{
    if (event.matches(QKeySequence::Copy))
        Copy();
    else if (event.matches(QKeySequence::Cut))
        Cut();
    else if (event.matches(QKeySequence::Paste))
        Paste();
    else if (event.matches(QKeySequence::SelectAll))
        SelectAll();
    else if (event.key() == Qt::Key_Delete && event.modifiers() == Qt::NoModifier)
        Clear();
    else if (event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier)
        AskForContextMenu();
    else if ((event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab) &&
             event.modifiers().testFlag(Qt::ControlModifier))
        QAbstractScrollArea::focusNextPrevChild(event.key() == Qt::Key_Tab);
    else
        return false;
    return true;
}

/// Shift+Space selects the rows that the selection reaches over, Ctrl+Space the columns, both keys everything.
bool CGridCtrl::HandleWholesKey(const QKeyEvent& event)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (event.key() != Qt::Key_Space)
        return false;
    if (modifiers == Qt::ShiftModifier)
        Selection().Widen(CGridSelectionModel::Extent::Rows);
    else if (modifiers == Qt::ControlModifier)
        Selection().Widen(CGridSelectionModel::Extent::Columns);
    else if (modifiers == (Qt::ControlModifier | Qt::ShiftModifier))
        SelectAll();
    else
        return false;
    return true;
}

/// Focus cell and selection are one after it, even where the focus has nowhere to go.
bool CGridCtrl::HandleMoveKey(const QKeyEvent& event)
{
    const std::optional<CursorAction> action = MoveOf(event.key());
    const QModelIndex target = action ? moveCursor(*action, event.modifiers()) : QModelIndex();
    if (!target.isValid())
        return false;
    const bool moves = target != currentIndex();
    if (event.modifiers().testFlag(Qt::ShiftModifier) && event.key() != Qt::Key_Backtab)
        Selection().ExtendTo(target);
    else
        Selection().MoveTo(target);
    if (!moves) {
        scrollTo(target); // the wheel may have moved it away
        TellFocusCellUsed();
    }
    return true;
}

void CGridCtrl::keyPressEvent(QKeyEvent* event)
{
    const bool editKey = event->key() == Qt::Key_F2 || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (HandleCommandKey(*event) || HandleWholesKey(*event) || HandleMoveKey(*event) ||
        (editKey && IsPlain(*event) && StartEdit()) || (IsTypedText(*event) && OpenEditorWith(event->text())))
        event->accept();
    else
        QTableView::keyPressEvent(event);
}

void CGridCtrl::inputMethodEvent(QInputMethodEvent* event)
{
    const bool typed = !event->commitString().isEmpty() || !event->preeditString().isEmpty();
    if (typed && OpenEditorWith(QString()))
        QCoreApplication::sendEvent(m_pEditor, event);
    else
        event->ignore();
}
