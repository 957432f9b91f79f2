#include "views/ShowRowsDlg.h"

#include "ui_ShowRowsDlg.h"
#include "views/NoticeLine.h"
#include "views/OneLineEdit.h"
#include "views/TextCrossing.h"

#include <algorithm>

CShowRowsDlg::CShowRowsDlg(const CRecipeRows& rows, const RowCondition& condition, bool isCompared, QWidget* parent)
    : QDialog(parent),
      m_rows(rows),
      m_pUi(std::make_unique<Ui::CShowRowsDlg>())
{
    m_pUi->setupUi(this);
    KeepOnOneLine(*m_pUi->editValue);
    m_pUi->comboItem->addItem(tr("(any item)"));
    for (const ColumnCoding& column : rows.Columns())
        m_pUi->comboItem->addItem(ToQString(column.title));
    m_pUi->comboItem->setCurrentIndex(condition.column ? static_cast<int>(*condition.column) + 1 : 0);
    FillConditions(isCompared);
    const int chosen = m_pUi->comboCondition->findData(static_cast<int>(condition.condition));
    m_pUi->comboCondition->setCurrentIndex(std::max(chosen, 0));
    m_pUi->editValue->setText(ToQString(condition.value));
    m_pUi->editValue->selectAll();
    FollowCondition();
    const auto withdraw = [this] { ShowNotice(*m_pUi->labelNotice, {}, {m_pUi->editValue}); };
    connect(m_pUi->comboCondition, &QComboBox::currentIndexChanged, this, &CShowRowsDlg::FollowCondition);
    connect(m_pUi->comboCondition, &QComboBox::currentIndexChanged, this, withdraw);
    connect(m_pUi->comboItem, &QComboBox::currentIndexChanged, this, withdraw);
    connect(m_pUi->editValue, &QLineEdit::textChanged, this, withdraw);
    connect(m_pUi->buttonOk, &QPushButton::clicked, this, &CShowRowsDlg::OnOK);
}

CShowRowsDlg::~CShowRowsDlg() = default;

void CShowRowsDlg::FillConditions(bool isCompared)
{
    const auto add = [this](CellCondition condition, const QString& text) {
        m_pUi->comboCondition->addItem(text, static_cast<int>(condition));
    };
    add(CellCondition::Is, tr("is"));
    add(CellCondition::IsNot, tr("is not"));
    add(CellCondition::Contains, tr("contains"));
    add(CellCondition::ContainsNot, tr("does not contain"));
    add(CellCondition::GreaterThan, tr("is greater than"));
    add(CellCondition::LessThan, tr("is less than"));
    add(CellCondition::IsEdited, tr("is edited"));
    add(CellCondition::IsRewritten, tr("would be rewritten by a save"));
    add(CellCondition::IsOutsideLimits, tr("lies outside its limits"));
    add(CellCondition::IsOutsideRange, tr("lies outside its sensible range"));
    if (isCompared)
        add(CellCondition::Differs, tr("differs from the compared file"));
}

RowCondition CShowRowsDlg::Condition() const
{
    RowCondition condition;
    if (const int item = m_pUi->comboItem->currentIndex(); item > 0)
        condition.column = static_cast<std::size_t>(item - 1);
    condition.condition = static_cast<CellCondition>(m_pUi->comboCondition->currentData().toInt());
    const QString value = m_pUi->editValue->text();
    condition.value = ViewOf(value);
    return condition;
}

void CShowRowsDlg::FollowCondition()
{
    const bool takesValue = TakesValue(Condition().condition);
    m_pUi->labelValue->setEnabled(takesValue);
    m_pUi->editValue->setEnabled(takesValue);
}

void CShowRowsDlg::OnOK()
{
    const auto fault = FaultOf(Condition(), m_rows);
    if (!fault) {
        accept();
        return;
    }
    ShowNotice(*m_pUi->labelNotice, ToQString(*fault), {m_pUi->editValue});
    m_pUi->editValue->setFocus();
}
