#pragma once

#include "text/Reporter.h"

#include <QDialog>
#include <QString>

#include <memory>

namespace Ui {
class CNewFormatNameDlg;
}

/// Asks for the name of a data format: of a new one, or another for one that there is. Ends with OK only when the name
/// may stand; a refused one stays as typed. While a long one is typed, a line tells how much of it is kept.
class CNewFormatNameDlg final : public QDialog {
    Q_OBJECT

public:
    /// `reporter` outlives the dialog.
    explicit CNewFormatNameDlg(CReporter& reporter, QWidget* parent = nullptr);
    ~CNewFormatNameDlg() override;

    /// Has it ask for another name in the place of `name`, which it begins with.
    void AskToRename(const QString& name);

    /// The accepted name, without the blanks around it; empty until OK.
    const QString& Name() const { return m_strName; }

private:
    QString TypedName() const;
    void TellWhatIsKept();
    void OnOK();

    std::unique_ptr<Ui::CNewFormatNameDlg> m_pUi;
    CReporter& m_reporter;
    QString m_strName;
};
