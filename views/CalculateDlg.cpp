#include "views/CalculateDlg.h"

#include "ui_CalculateDlg.h"
#include "views/NoticeLine.h"
#include "views/NumberField.h"
#include "views/OneLineEdit.h"

#include <utility>

namespace {

constexpr int kWidth = 48; // average characters

} // namespace

CCalculateDlg::CCalculateDlg(const QString& cells, QWidget* parent)
    : QDialog(parent),
      m_pUi(std::make_unique<Ui::CCalculateDlg>())
{
    m_pUi->setupUi(this);
    m_pUi->labelCells->setText(cells);
    KeepOnOneLine(*m_pUi->editNumber);
    resize(kWidth * fontMetrics().averageCharWidth(), sizeHint().height());
    connect(m_pUi->buttonOk, &QPushButton::clicked, this, [this] { End(CellsAnswer::Do); });
    connect(m_pUi->buttonPreview, &QPushButton::clicked, this, [this] { End(CellsAnswer::Preview); });
}

CCalculateDlg::~CCalculateDlg() = default;

/// The operations stand in the order of their kinds.
void CCalculateDlg::End(CellsAnswer answer)
{
    auto number = TakeNumber(*m_pUi->editNumber, *m_pUi->labelNotice);
    if (!number)
        return;
    m_change = {static_cast<NumberChange::Kind>(m_pUi->comboOperation->currentIndex()), std::move(*number)};
    if (m_change.kind == NumberChange::Kind::Divide && m_change.by.IsZero()) {
        ShowNotice(*m_pUi->labelNotice, tr("Nothing can be divided by 0."), {m_pUi->editNumber});
        m_pUi->editNumber->setFocus();
        return;
    }
    m_answer = answer;
    accept();
}
