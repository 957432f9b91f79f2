#pragma once

#include "document/RowChoice.h"
#include "library/ItemsInUse.h"

#include <QMenu>
#include <QObject>

#include <cstdint>
#include <optional>

class CRecipeDataShowView;
class CRecipeFormatEditView;
class CRecipeFrame;
class QToolButton;
class QWidget;

namespace Ui {
class CMainFrame;
}

/// What is seen of the table: columns that stay in sight, rows that are hidden; and the commands that copy what is seen
/// in other forms.
///
/// While rows are hidden, a field in the status bar says so; a click on it shows them again.
class CTableCommands final : public QObject {
    Q_OBJECT

public:
    /// What the commands work on; all outlives the object.
    struct Parts {
        Ui::CMainFrame& ui;
        CRecipeFrame& frame;
        CRecipeFormatEditView& formatPane;
        CRecipeDataShowView& dataPane;
        QWidget& window;
    };

    explicit CTableCommands(const Parts& parts);

    /// Enables the commands of the View menu for what is shown now.
    void Update();

    /// For the status bar.
    QToolButton& Field() { return *m_pField; }

private:
    void ConnectActions();
    void EnableForEditMenu();
    void Freeze(std::uint32_t column);
    void ShowTitleMenu(std::uint32_t column, QPoint position);
    std::optional<LibraryItem> TitleItem() const;
    void EnableNotes();
    void AskForNotes();
    void AskAndShowRows();
    void ShowRows();
    void TellShownRows(std::size_t added);
    void Copy(bool isForSpreadsheet);

    Parts m_parts;
    QToolButton* m_pField;
    QMenu m_titleMenu;
    QAction* m_pNotes;                ///< of the title's item
    std::uint32_t m_nTitleColumn = 0; ///< whose menu it is
    RowCondition m_condition;         ///< asked for last
};
