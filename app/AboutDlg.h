#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class CAboutDlg;
}

/// "About Vantor": the icon, the version, OK.
class CAboutDlg final : public QDialog {
    Q_OBJECT

public:
    explicit CAboutDlg(QWidget* parent = nullptr);
    ~CAboutDlg() override;

private:
    std::unique_ptr<Ui::CAboutDlg> m_pUi;
};
