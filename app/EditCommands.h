#pragma once

#include <QObject>
#include <QPointer>
#include <QString>

class CRecipeDataShowView;
class CRecipeFormatEditView;
class CRecipeFrame;
class QLineEdit;
struct EditReport;

namespace Ui {
class CMainFrame;
}

/// The commands of the Edit menu. While a text field or a cell's editor has the focus, Undo, Redo and those of the
/// clipboard act on it; else on the document and on the grid.
///
/// What an undo or redo did comes into sight, and the frame tells it by its name.
class CEditCommands final : public QObject {
public:
    /// All outlive the object; `ui` has the menu and its actions, `window` the fields.
    CEditCommands(Ui::CMainFrame& ui, CRecipeFrame& frame, CRecipeFormatEditView& formatPane,
                  CRecipeDataShowView& dataPane, QWidget& window);

    /// Undoes the last edit of the document, whatever has the focus.
    void UndoEdit();

    /// Names and enables Undo and Redo for the state as it is now.
    void Update();

private:
    void SetKeys();
    void ConnectActions();
    void FocusMoved(QWidget* now);
    QLineEdit* FocusField() const;
    void EnableForMenu();
    void AllowKeys();
    void Undo();
    void Redo();
    void Show(const EditReport& report, const QString& done, const QString& notDone);
    void TellWhetherThereIsOne(bool isFound);

    Ui::CMainFrame& m_ui;
    CRecipeFrame& m_frame;
    CRecipeFormatEditView& m_formatPane;
    CRecipeDataShowView& m_dataPane;
    QWidget& m_window;
    QPointer<QWidget> m_pFocus; ///< the last one that had it, but for the menu bar
};
