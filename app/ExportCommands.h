#pragma once

#include <QObject>

class CRecipeDataShowView;
class CRecipeFrame;
class CTableExport;
class QWidget;

namespace Ui {
class CMainFrame;
}

/// Writes the table as a text for other programs, with titles and units, in the form that the user chooses.
class CExportCommands final : public QObject {
    Q_OBJECT

public:
    /// What the commands work on; all outlives the object.
    struct Parts {
        Ui::CMainFrame& ui;
        CRecipeFrame& frame;
        CRecipeDataShowView& dataPane;
        QWidget& window;
    };

    explicit CExportCommands(const Parts& parts);

    /// Brings the command up to date with the document.
    void Follow();

private:
    void ExportTable();
    void Write(const CTableExport& table, const QString& path);
    bool HasRows() const;

    Parts m_parts;
};
