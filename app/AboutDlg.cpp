#include "app/AboutDlg.h"

#include "ui_AboutDlg.h"

#include <QIcon>

namespace {

constexpr QSize kIconSize{64, 64};

} // namespace

CAboutDlg::CAboutDlg(QWidget* parent) : QDialog(parent), m_pUi(std::make_unique<Ui::CAboutDlg>())
{
    m_pUi->setupUi(this);
    m_pUi->labelIcon->setPixmap(QIcon(QStringLiteral(":/icons/vantor.svg")).pixmap(kIconSize, devicePixelRatio()));
}

CAboutDlg::~CAboutDlg() = default;
