#include "controls/InPlaceEdit.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenuBar>
#include <QPointer>
#include <QTimer>

#include <limits>

namespace {

/// Whether `event` ends the edit. With Shift or Ctrl the same keys select in the text and move over its words.
bool IsEndingKey(const QKeyEvent& event)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
    case Qt::Key_Tab:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_End:
    case Qt::Key_Home:
    case Qt::Key_Left:
    case Qt::Key_Up:
    case Qt::Key_Right:
    case Qt::Key_Down:
        return modifiers == Qt::NoModifier;
    case Qt::Key_Backtab:
        return (modifiers & ~Qt::ShiftModifier) == Qt::NoModifier;
    default:
        return false;
    }
}

/// Whether `event` ends the edit with a text for all chosen cells.
bool IsKeyForChosen(const QKeyEvent& event)
{
    return (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter) &&
           (event.modifiers() & ~Qt::KeypadModifier) == Qt::ControlModifier;
}

/// The keys for Undo and Redo of every desktop: a line edit takes only those of the desktop that it runs on.
bool IsUndoKey(const QKeyEvent& event)
{
    return (event.key() == Qt::Key_Z && event.modifiers() == Qt::ControlModifier) ||
           (event.key() == Qt::Key_Backspace && event.modifiers() == Qt::AltModifier);
}

bool IsRedoKey(const QKeyEvent& event)
{
    return (event.key() == Qt::Key_Y && event.modifiers() == Qt::ControlModifier) ||
           (event.key() == Qt::Key_Z && event.modifiers() == (Qt::ControlModifier | Qt::ShiftModifier)) ||
           (event.key() == Qt::Key_Backspace && event.modifiers() == (Qt::AltModifier | Qt::ShiftModifier));
}

/// Whether the editor has `event` before the window's accelerators. Others with Ctrl or Alt still work while editing.
bool GoesBeforeAccelerators(const QKeyEvent& event)
{
    return IsEndingKey(event) || IsKeyForChosen(event) || IsUndoKey(event) || IsRedoKey(event);
}

/// Swallows the one mouse press that is about to be delivered.
///
/// A click that takes the focus away from the editor is delivered after the focus has moved. When the refusal's message
/// box came up in between, the release has gone by, and the pressed button would stay down for good.
class CPendingPress final : public QObject {
public:
    CPendingPress()
    {
        qApp->installEventFilter(this);
        QTimer::singleShot(0, this, &QObject::deleteLater);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (m_bSwallowed || !watched->isWidgetType() || event->type() != QEvent::MouseButtonPress)
            return false;
        m_bSwallowed = true;
        return true;
    }

private:
    bool m_bSwallowed = false;
};

} // namespace

CInPlaceEdit::CInPlaceEdit(CInPlaceEditOwner& owner, QWidget* parent, int row, int column, const QString& text)
    : QLineEdit(parent),
      m_owner(owner),
      m_nRow(row),
      m_nColumn(column),
      m_strOldText(text)
{
    setObjectName(QStringLiteral("inPlaceEdit"));
    setProperty("controlId", kControlId);
    setFrame(false);
    setMaxLength(std::numeric_limits<int>::max()); // the default would cut a long text
    setContextMenuPolicy(Qt::PreventContextMenu);
    setAcceptDrops(false); // a file is for the window to open
    setText(text);
    connect(qApp, &QApplication::focusChanged, this, &CInPlaceEdit::FocusMoved);
}

bool CInPlaceEdit::End(int key)
{
    if (m_bEnding) // the message box and the move of the focus below take the focus away, which would end it again
        return false;
    m_bEnding = true;

    EditEnd end{m_nRow, m_nColumn, m_strOldText, key};
    bool accepted = true;
    if (key != Qt::Key_Escape) {
        const QString strText = text();
        accepted = m_owner.AcceptsText(m_nColumn, strText);
        const QPointer<CInPlaceEdit> self(this);
        if (!accepted) {
            m_owner.ReportRefusal(m_nRow, m_nColumn);
        } else {
            end.text = strText;
            if (strText != m_strOldText)
                m_owner.MarkEdited(m_nRow, m_nColumn);
        }
        if (!self || m_bClosed) // the grid was reset or has gone meanwhile
            return accepted;
    }
    m_owner.TakeEdit(end);
    return accepted;
}

void CInPlaceEdit::EndForChosen()
{
    if (m_bEnding)
        return;
    m_bEnding = true;
    m_owner.TakeForChosen({m_nRow, m_nColumn, text(), Qt::Key_Return});
}

void CInPlaceEdit::Close(QWidget* heir)
{
    m_bEnding = true;
    m_bClosed = true;
    // Not hasFocus(): it is false right after a message box, though the focus comes back to this field.
    if (window()->focusWidget() == this)
        heir->setFocus();
    hide();
    deleteLater(); // the toolkit is still inside one of this widget's event handlers
}

bool CInPlaceEdit::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        if (GoesBeforeAccelerators(*static_cast<QKeyEvent*>(event))) {
            event->accept();
            return true;
        }
    } else if (event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        if ((key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab) && IsEndingKey(*key)) {
            keyPressEvent(key); // before the toolkit moves the focus with it
            return true;
        }
    }
    return QLineEdit::event(event);
}

void CInPlaceEdit::keyPressEvent(QKeyEvent* event)
{
    if (IsEndingKey(*event))
        End(event->key());
    else if (IsKeyForChosen(*event))
        EndForChosen();
    else if (IsUndoKey(*event))
        undo();
    else if (IsRedoKey(*event))
        redo();
    else
        QLineEdit::keyPressEvent(event);
    event->accept(); // a key that the field has no use for must not reach the grid below it
}

void CInPlaceEdit::focusOutEvent(QFocusEvent* event)
{
    const Qt::FocusReason reason = event->reason();
    QLineEdit::focusOutEvent(event);
    if (reason != Qt::PopupFocusReason && reason != Qt::MenuBarFocusReason) // a menu gives the focus back
        Leave(reason == Qt::MouseFocusReason);
}

/// The menu bar gives the focus back, too, but not when something else took it.
void CInPlaceEdit::FocusMoved(const QWidget* from, const QWidget* to)
{
    if (qobject_cast<const QMenuBar*>(from) != nullptr && to != nullptr && to != this)
        Leave(QApplication::mouseButtons() != Qt::NoButton);
}

void CInPlaceEdit::Leave(bool isByMouse)
{
    if (!m_bEnding && !End(0) && isByMouse)
        new CPendingPress; // deletes itself
}
