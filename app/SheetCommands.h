#pragma once

#include "recovery/VersionStore.h"
#include "views/SheetDlg.h"

#include <QObject>
#include <QString>

class CRecipeDataShowView;
class CRecipeFrame;
class QWidget;

namespace Ui {
class CMainFrame;
}

/// Recipe sheets of the table: previewed, printed, written.
class CSheetCommands final : public QObject {
    Q_OBJECT

public:
    /// What the commands work on; all outlives the object.
    struct Parts {
        Ui::CMainFrame& ui;
        CRecipeFrame& frame;
        CRecipeDataShowView& dataPane;
        const CVersionStore& versions; ///< those of the open file
        QWidget& window;
    };

    explicit CSheetCommands(const Parts& parts);

    /// Brings the command up to date with the document.
    void Follow();

private:
    void Open();
    CSheetDlg::RowChoices RowChoices() const;
    QString Folder() const;

    Parts m_parts;
};
