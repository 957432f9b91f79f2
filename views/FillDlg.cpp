#include "views/FillDlg.h"

#include "ui_FillDlg.h"
#include "views/NoticeLine.h"
#include "views/NumberField.h"
#include "views/OneLineEdit.h"
#include "views/TextCrossing.h"

#include <utility>

namespace {

constexpr int kWidth = 56; // average characters

} // namespace

CFillDlg::CFillDlg(const QString& cells, QWidget* parent) : QDialog(parent), m_pUi(std::make_unique<Ui::CFillDlg>())
{
    m_pUi->setupUi(this);
    m_pUi->labelCells->setText(cells);
    m_pUi->radioValue->setChecked(true);
    m_pUi->editStart->setText(QStringLiteral("1"));
    m_pUi->editStep->setText(QStringLiteral("1"));
    for (QLineEdit* field : {m_pUi->editValue, m_pUi->editStart, m_pUi->editStep})
        KeepOnOneLine(*field);
    resize(kWidth * fontMetrics().averageCharWidth(), sizeHint().height());
    connect(m_pUi->radioSeries, &QRadioButton::toggled, this, &CFillDlg::Choose);
    connect(m_pUi->buttonOk, &QPushButton::clicked, this, [this] { End(CellsAnswer::Do); });
    connect(m_pUi->buttonPreview, &QPushButton::clicked, this, [this] { End(CellsAnswer::Preview); });
    Choose();
    m_pUi->editValue->setFocus();
}

CFillDlg::~CFillDlg() = default;

bool CFillDlg::IsSeries() const
{
    return m_pUi->radioSeries->isChecked();
}

void CFillDlg::Choose()
{
    m_pUi->editValue->setEnabled(!IsSeries());
    for (QWidget* part : std::initializer_list<QWidget*>{m_pUi->editStart, m_pUi->labelStep, m_pUi->editStep,
                                                         m_pUi->labelWay, m_pUi->comboWay})
        part->setEnabled(IsSeries());
    ShowNotice(*m_pUi->labelNotice, {}, {});
}

void CFillDlg::End(CellsAnswer answer)
{
    if (IsSeries()) {
        const auto start = TakeNumber(*m_pUi->editStart, *m_pUi->labelNotice);
        if (!start)
            return;
        const auto step = TakeNumber(*m_pUi->editStep, *m_pUi->labelNotice);
        if (!step)
            return;
        m_series = {*start, *step,
                    m_pUi->comboWay->currentIndex() == 0 ? NumberSeries::Way::DownRows
                                                         : NumberSeries::Way::AlongColumns};
    }
    m_answer = answer;
    accept();
}

std::shared_ptr<const CCellsCommand> CFillDlg::CommandFor(CChosenCells cells) const
{
    if (IsSeries())
        return std::make_shared<CFillWithSeries>(std::move(cells), m_series);
    return std::make_shared<CFillWithText>(std::move(cells), m_pUi->editValue->text().toStdU16String(),
                                           CFillWithText::As::Entered);
}
