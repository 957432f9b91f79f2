#pragma once

#include "text/Reporter.h"

#include <QDialog>

#include <filesystem>
#include <memory>

namespace Ui {
class CSavePathDlg;
}

/// Asks for the name and the folder of the merged file, and before a file that exists would be replaced.
class CSavePathDlg final : public QDialog {
    Q_OBJECT

public:
    /// Starts in the folder of `executable`, the program's full name. `reporter` outlives the dialog.
    CSavePathDlg(const std::filesystem::path& executable, CReporter& reporter, QWidget* parent = nullptr);
    ~CSavePathDlg() override;

    /// The full path of the merged file; valid after OK.
    const QString& Path() const { return m_strPath; }

private:
    void OnNameChanged(const QString& name);
    void OnChooseFolder();
    void OnOK();

    std::unique_ptr<Ui::CSavePathDlg> m_pUi;
    CReporter& m_reporter;
    QString m_strFolder; ///< the chosen folder, with a separator at its end
    QString m_strPath;
};
