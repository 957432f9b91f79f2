#pragma once

#include <QObject>
#include <QString>

class CRecipeDataShowView;
class CRecipeFormatEditView;
class CRecipeFrame;
class QWidget;

namespace Ui {
class CMainFrame;
}

/// Finds where a number stands in the current file, and does what the user wishes with a place: goes there, reads the
/// table from there on, or adds an item of that type.
class CFindValueCommands final : public QObject {
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

    explicit CFindValueCommands(const Parts& parts);

    /// Brings the command up to date with the document.
    void Follow();

private:
    void Find();

    Parts m_parts;
    QString m_strNumber; ///< that was looked for last
};
