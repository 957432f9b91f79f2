#include "app/EditCommands.h"

#include "ui_MainFrame.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFormatEditView.h"
#include "views/TextCrossing.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMimeData>

namespace {

/// "Undo Paste (240 cells)", or without an edit "Undo".
QString NamedEntry(const QString& command, const std::optional<std::u16string>& edit)
{
    return edit ? command + QLatin1Char(' ') + ToQString(*edit) : command;
}

bool HasClipboardText()
{
    const QMimeData* content = QApplication::clipboard()->mimeData();
    return content != nullptr && content->hasText();
}

} // namespace

CEditCommands::CEditCommands(Ui::CMainFrame& ui, CRecipeFrame& frame, CRecipeFormatEditView& formatPane,
                             CRecipeDataShowView& dataPane, QWidget& window)
    : m_ui(ui),
      m_frame(frame),
      m_formatPane(formatPane),
      m_dataPane(dataPane),
      m_window(window)
{
    SetKeys();
    ConnectActions();
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { FocusMoved(now); });
}

/// The toolkit's text fields take their keys first. Those of the clipboard are the grid's where no field has the focus:
/// elsewhere they do nothing, or what the list there does with them.
void CEditCommands::SetKeys()
{
    m_ui.actionUndo->setShortcuts({Qt::CTRL | Qt::Key_Z, Qt::ALT | Qt::Key_Backspace});
    m_ui.actionRedo->setShortcuts({Qt::CTRL | Qt::Key_Y, Qt::CTRL | Qt::SHIFT | Qt::Key_Z});
    m_ui.actionCut->setShortcuts({Qt::CTRL | Qt::Key_X, Qt::SHIFT | Qt::Key_Delete});
    m_ui.actionCopy->setShortcuts({Qt::CTRL | Qt::Key_C, Qt::CTRL | Qt::Key_Insert});
    m_ui.actionPaste->setShortcuts({Qt::CTRL | Qt::Key_V, Qt::SHIFT | Qt::Key_Insert});
    for (QAction* action : {m_ui.actionCut, m_ui.actionCopy, m_ui.actionPaste}) {
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        m_dataPane.addAction(action);
    }
}

void CEditCommands::ConnectActions()
{
    connect(m_ui.actionUndo, &QAction::triggered, this, &CEditCommands::Undo);
    connect(m_ui.actionRedo, &QAction::triggered, this, &CEditCommands::Redo);
    const auto connectClipboard = [this](QAction* action, auto onField, auto onGrid) {
        connect(action, &QAction::triggered, this, [this, onField, onGrid] {
            if (QLineEdit* field = FocusField())
                (field->*onField)();
            else
                (m_dataPane.Grid().*onGrid)();
        });
    };
    connectClipboard(m_ui.actionCut, &QLineEdit::cut, &CGridCtrl::Cut);
    connectClipboard(m_ui.actionCopy, &QLineEdit::copy, &CGridCtrl::Copy);
    connectClipboard(m_ui.actionPaste, &QLineEdit::paste, &CGridCtrl::Paste);
    connect(m_ui.actionNextChange, &QAction::triggered, this,
            [this] { TellWhetherThereIsOne(m_dataPane.GoToNextEdited()); });
    connect(m_ui.actionPreviousChange, &QAction::triggered, this,
            [this] { TellWhetherThereIsOne(m_dataPane.GoToPreviousEdited()); });
    connect(m_ui.menuEdit, &QMenu::aboutToShow, this, &CEditCommands::EnableForMenu);
    connect(m_ui.menuEdit, &QMenu::aboutToHide, this, &CEditCommands::AllowKeys);
}

/// The menu bar has the focus while the keyboard goes through it; its commands are for the one before.
void CEditCommands::FocusMoved(QWidget* now)
{
    if (now == nullptr || now == m_ui.menuBar || !m_window.isAncestorOf(now))
        return;
    m_pFocus = now;
    Update();
}

/// The text field, or the editor of a cell, on which commands act; null for none.
QLineEdit* CEditCommands::FocusField() const
{
    return qobject_cast<QLineEdit*>(m_pFocus);
}

/// A field knows by itself what it can undo, and hears of its keys whatever the menu says.
void CEditCommands::Update()
{
    const CRecipeDocument& document = m_frame.Document();
    const bool isField = FocusField() != nullptr;
    const auto undo = isField ? std::nullopt : document.UndoName();
    const auto redo = isField ? std::nullopt : document.RedoName();
    m_ui.actionUndo->setText(NamedEntry(tr("&Undo"), undo));
    m_ui.actionRedo->setText(NamedEntry(tr("&Redo"), redo));
    m_ui.actionUndo->setEnabled(isField || undo);
    m_ui.actionRedo->setEnabled(isField || redo);
}

/// What can be done now is looked at when the menu opens; the keys find it out by themselves.
void CEditCommands::EnableForMenu()
{
    Update();
    const CGridCtrl& grid = m_dataPane.Grid();
    const bool hasEdited = m_frame.Document().Rows().EditedCount() > 0;
    m_ui.actionNextChange->setEnabled(hasEdited);
    m_ui.actionPreviousChange->setEnabled(hasEdited);
    if (const QLineEdit* field = FocusField()) {
        m_ui.actionUndo->setEnabled(field->isUndoAvailable());
        m_ui.actionRedo->setEnabled(field->isRedoAvailable());
        m_ui.actionCut->setEnabled(field->hasSelectedText() && !field->isReadOnly());
        m_ui.actionCopy->setEnabled(field->hasSelectedText());
        m_ui.actionPaste->setEnabled(HasClipboardText() && !field->isReadOnly());
        return;
    }
    m_ui.actionCut->setEnabled(grid.CanCut());
    m_ui.actionCopy->setEnabled(grid.CanCopy());
    m_ui.actionPaste->setEnabled(grid.CanPaste());
}

void CEditCommands::AllowKeys()
{
    Update();
    for (QAction* action :
         {m_ui.actionCut, m_ui.actionCopy, m_ui.actionPaste, m_ui.actionNextChange, m_ui.actionPreviousChange})
        action->setEnabled(true);
}

void CEditCommands::Undo()
{
    if (QLineEdit* field = FocusField())
        field->undo();
    else
        UndoEdit();
}

void CEditCommands::UndoEdit()
{
    Show(m_frame.Document().Undo(), tr("Undone: %1"), tr("Not undone: %1"));
}

void CEditCommands::Redo()
{
    if (QLineEdit* field = FocusField())
        field->redo();
    else
        Show(m_frame.Document().Redo(), tr("Done again: %1"), tr("Not done again: %1"));
}

void CEditCommands::Show(const EditReport& report, const QString& done, const QString& notDone)
{
    if (report.outcome == EditOutcome::Nothing)
        return;
    if (report.outcome == EditOutcome::OutOfMemory) {
        m_frame.Reporter().ShowError(kNoMemoryForEdit);
        return;
    }
    if (report.format)
        m_formatPane.FormatChanged(*report.format);
    if (report.hasOtherRows || !report.cells.empty())
        m_dataPane.ShowEdited(report);
    if (report.format)
        m_formatPane.SaveFormats();
    m_dataPane.TakeNotes();
    m_frame.UpdateCommands();
    QString text = (report.outcome == EditOutcome::Made ? done : notDone).arg(ToQString(report.name));
    if (report.isFormatLeftAlone)
        text += tr(". The data format is another one by now and stays as it is.");
    m_frame.TellEdit(text);
}

void CEditCommands::TellWhetherThereIsOne(bool isFound)
{
    if (!isFound)
        m_frame.TellEdit(tr("There is no further change."));
}
