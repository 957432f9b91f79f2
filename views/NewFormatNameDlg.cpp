#include "views/NewFormatNameDlg.h"

#include "model/FormatNameCheck.h"
#include "ui_NewFormatNameDlg.h"
#include "views/OneLineEdit.h"
#include "views/TextCrossing.h"

namespace {

constexpr int kWidth = 48; // average characters

} // namespace

CNewFormatNameDlg::CNewFormatNameDlg(CReporter& reporter, QWidget* parent)
    : QDialog(parent),
      m_pUi(std::make_unique<Ui::CNewFormatNameDlg>()),
      m_reporter(reporter)
{
    m_pUi->setupUi(this);
    resize(kWidth * fontMetrics().averageCharWidth(), sizeHint().height());
    KeepOnOneLine(*m_pUi->editName);
    connect(m_pUi->buttonOk, &QPushButton::clicked, this, &CNewFormatNameDlg::OnOK);
}

CNewFormatNameDlg::~CNewFormatNameDlg() = default;

void CNewFormatNameDlg::OnOK()
{
    const QString name = m_pUi->editName->text().trimmed();
    if (const auto fault = FormatNameFault(ViewOf(name))) {
        m_reporter.ShowError(*fault);
        return;
    }
    m_strName = name;
    accept();
}
