#include "views/NewFormatNameDlg.h"

#include "model/FormatNameCheck.h"
#include "ui_NewFormatNameDlg.h"
#include "views/NoticeLine.h"
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
    connect(m_pUi->editName, &QLineEdit::textChanged, this, &CNewFormatNameDlg::TellWhatIsKept);
    connect(m_pUi->buttonOk, &QPushButton::clicked, this, &CNewFormatNameDlg::OnOK);
}

CNewFormatNameDlg::~CNewFormatNameDlg() = default;

void CNewFormatNameDlg::AskToRename(const QString& name)
{
    setWindowTitle(tr("Rename Dataformat"));
    m_pUi->editName->setToolTip(tr("The other name of the data format"));
    m_pUi->editName->setText(name);
    m_pUi->editName->selectAll();
}

QString CNewFormatNameDlg::TypedName() const
{
    return m_pUi->editName->text().trimmed();
}

void CNewFormatNameDlg::TellWhatIsKept()
{
    const QString name = TypedName();
    ShowNotice(*m_pUi->labelNotice, ToQString(FormatNameNotice(ViewOf(name)).value_or(u"")), {m_pUi->editName});
}

void CNewFormatNameDlg::OnOK()
{
    const QString name = TypedName();
    if (const auto fault = FormatNameFault(ViewOf(name))) {
        m_reporter.ShowError(*fault);
        return;
    }
    m_strName = name;
    accept();
}
