#include "views/DataTypeEditDlg.h"

#include "model/DataFormat.h"
#include "model/ItemNotes.h"
#include "model/LimitsNotice.h"
#include "text/NumberText.h"
#include "text/Surrogates.h"
#include "ui_DataTypeEditDlg.h"
#include "views/NotesDlg.h"
#include "views/NoticeLine.h"
#include "views/OneLineEdit.h"
#include "views/TextCrossing.h"

#include <QSignalBlocker>

#include <algorithm>
#include <utility>

namespace {

constexpr int kMostListedDigits = 11;
constexpr int kTypeCount = static_cast<int>(DataType::String) + 1;

/// Selects an entry as the program's own doing: only a choice of the user has further effects.
void Select(QComboBox& list, int index)
{
    const QSignalBlocker quiet(list);
    list.setCurrentIndex(index); // none when the list has no such entry
}

void EnableAndShow(QWidget& control, bool on)
{
    control.setEnabled(on);
    control.setVisible(on);
}

void KeepPlaceWhenHidden(QWidget& control)
{
    QSizePolicy policy = control.sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    control.setSizePolicy(policy);
}

QString ProposedName(int index)
{
    return QStringLiteral("Desc%1").arg(index);
}

std::int32_t IntegerIn(const QLineEdit& edit)
{
    const QString text = edit.text().trimmed();
    return ReadInteger(ViewOf(text));
}

} // namespace

CDataTypeEditDlg::CDataTypeEditDlg(int index, DataItem item, Mode mode, CReporter& reporter, QWidget* parent)
    : QDialog(parent),
      m_pUi(std::make_unique<Ui::CDataTypeEditDlg>()),
      m_item(std::move(item)),
      m_reporter(reporter)
{
    m_pUi->setupUi(this);
    KeepOnOneLine(*m_pUi->editDescription);
    KeepPlaceWhenHidden(*m_pUi->groupArrayLength);
    KeepPlaceWhenHidden(*m_pUi->editArrayLength);
    KeepPlaceWhenHidden(*m_pUi->checkUnicode);
    FillLists();
    if (mode == Mode::Add)
        ProposeItem(index);
    else
        ShowItem();
    if (mode == Mode::AddFilled)
        m_pUi->editDescription->setText(ProposedName(index));
    TellLimits();
    m_pUi->editDescription->setFocus();
    m_pUi->editDescription->selectAll();
    ConnectControls();
}

CDataTypeEditDlg::~CDataTypeEditDlg() = default;

void CDataTypeEditDlg::FillLists()
{
    for (int digits = 1; digits <= kMostListedDigits; ++digits)
        m_pUi->comboInteger->addItem(QString::number(digits));
    for (int digits = 0; digits <= kMostListedDigits; ++digits)
        m_pUi->comboDecimal->addItem(QString::number(digits));
    for (int code = 0; code < kTypeCount; ++code)
        m_pUi->comboType->addItem(ToQString(TypeName(static_cast<DataType>(code))));
}

void CDataTypeEditDlg::ConnectControls()
{
    connect(m_pUi->radioSingle, &QRadioButton::clicked, this, [this] { ShowArrayLength(false); });
    connect(m_pUi->radioArray, &QRadioButton::clicked, this, &CDataTypeEditDlg::OnArrayClicked);
    connect(m_pUi->comboType, &QComboBox::currentIndexChanged, this, &CDataTypeEditDlg::OnTypeChanged);
    connect(m_pUi->comboDecimal, &QComboBox::currentIndexChanged, this, &CDataTypeEditDlg::OnDecimalChanged);
    connect(m_pUi->comboInteger, &QComboBox::currentIndexChanged, this, &CDataTypeEditDlg::OnIntegerChanged);
    connect(m_pUi->editDescription, &QLineEdit::textChanged, this, &CDataTypeEditDlg::DropHalfAtTheEnd);
    // The rejection is told after the part of the text that was accepted.
    connect(m_pUi->editDescription, &QLineEdit::textEdited, this, [this] { TellDescriptionLength(false); });
    connect(
        m_pUi->editDescription, &QLineEdit::inputRejected, this, [this] { TellDescriptionLength(true); },
        Qt::QueuedConnection);
    connect(m_pUi->buttonNotes, &QPushButton::clicked, this, &CDataTypeEditDlg::OnNotes);
    connect(m_pUi->buttonOk, &QPushButton::clicked, this, &CDataTypeEditDlg::OnOK);
}

void CDataTypeEditDlg::ProposeItem(int index)
{
    m_pUi->radioSingle->setChecked(true);
    m_pUi->radioBin->setChecked(true);
    ShowArrayLength(false);
    Select(*m_pUi->comboInteger, 0);
    Select(*m_pUi->comboDecimal, 0);
    Select(*m_pUi->comboType, 0);
    m_pUi->editLength->setText(QStringLiteral("1"));
    m_pUi->editLength->setEnabled(false);
    m_pUi->editDescription->setText(ProposedName(index));
    EnableAndShow(*m_pUi->checkUnicode, false);
}

void CDataTypeEditDlg::ShowItem()
{
    const bool isArray = m_item.isArray != 0;
    (isArray ? m_pUi->radioArray : m_pUi->radioSingle)->setChecked(true);
    Select(*m_pUi->comboType, static_cast<int>(m_item.dataType));
    Select(*m_pUi->comboInteger, std::max(m_item.integerDigits, 0) - 1);
    Select(*m_pUi->comboDecimal, m_item.decimalDigits);
    m_pUi->radioBin->setChecked(m_item.codeType == CodeType::Bin);
    m_pUi->radioBcd->setChecked(m_item.codeType == CodeType::Bcd);
    if (isArray)
        m_pUi->editArrayLength->setText(QString::number(m_item.arrayLength));
    ShowArrayLength(isArray);
    m_pUi->editLength->setText(QString::number(m_item.dataLength));
    const auto most = static_cast<std::size_t>(m_pUi->editDescription->maxLength());
    m_pUi->editDescription->setText(ToQString(CutText(TextOf(m_item.description), most)));
    ShowStringControls();
}

/// kept: only a string disables anything here. Choosing a hexadecimal or a real type disables "Decimal" or "BCD", an
/// item that has one does not; and choosing a string leaves "BIN" enabled.
void CDataTypeEditDlg::ShowStringControls()
{
    const bool isString = SelectedType() == DataType::String;
    m_pUi->editLength->setEnabled(isString);
    EnableAndShow(*m_pUi->checkUnicode, isString);
    if (!isString)
        return;
    m_pUi->checkUnicode->setChecked(m_item.unicode != 0);
    m_pUi->comboDecimal->setEnabled(false);
    m_pUi->comboInteger->setEnabled(false);
    m_pUi->radioBin->setEnabled(false);
    m_pUi->radioBcd->setEnabled(false);
}

/// Without it there is room for what is to be told of the limits.
void CDataTypeEditDlg::ShowArrayLength(bool shown)
{
    EnableAndShow(*m_pUi->editArrayLength, shown);
    m_pUi->groupArrayLength->setVisible(shown);
    m_pUi->layoutBelowCodeType->addWidget(m_pUi->labelLimitsNotice, shown ? 1 : 0, 0);
    GrowToFit(*this);
}

void CDataTypeEditDlg::TellLimits()
{
    const QString notice = ToQString(LimitsNotice(SelectedType(), SelectedDigits()).value_or(u""));
    ShowNotice(*m_pUi->labelLimitsNotice, notice, {m_pUi->comboType, m_pUi->comboInteger, m_pUi->comboDecimal});
}

void CDataTypeEditDlg::TellDescriptionLength(bool isTooLong)
{
    const QString notice = tr("A description has at most %1 characters: the rest is left out.");
    ShowNotice(*m_pUi->labelDescriptionNotice, isTooLong ? notice.arg(m_pUi->editDescription->maxLength()) : QString(),
               {m_pUi->editDescription});
}

/// A text that a screen reader or an input aid puts in as a whole is cut at the limit, even within a pair.
void CDataTypeEditDlg::DropHalfAtTheEnd()
{
    QString text = m_pUi->editDescription->text();
    if (text.size() < m_pUi->editDescription->maxLength() || !text.back().isHighSurrogate())
        return;
    text.chop(1);
    m_pUi->editDescription->setText(text);
}

void CDataTypeEditDlg::OnArrayClicked()
{
    m_pUi->editArrayLength->setText(QStringLiteral("2")); // kept: even when it was an array before
    ShowArrayLength(true);
}

void CDataTypeEditDlg::OnTypeChanged()
{
    const DataType type = SelectedType();
    const bool isString = type == DataType::String;
    if (const auto words = ProposedLength(type))
        m_pUi->editLength->setText(QString::number(*words));
    m_pUi->editLength->setEnabled(isString);
    m_pUi->radioBin->setEnabled(true);
    m_pUi->radioBcd->setEnabled(!IsReal(type) && !isString); // checked or not: a disabled choice still counts
    m_pUi->comboInteger->setEnabled(!isString);
    m_pUi->comboDecimal->setEnabled(!IsHexadecimal(type) && !isString);
    if (IsHexadecimal(type))
        Select(*m_pUi->comboDecimal, 0);
    EnableAndShow(*m_pUi->checkUnicode, isString);
    if (isString) {
        TakeUnicode();
        emit UnicodeTaken(m_item.unicode); // kept: before OK, and in spite of Cancel
    }
    TellLimits();
}

void CDataTypeEditDlg::OnDecimalChanged()
{
    Select(*m_pUi->comboDecimal, FitDecimalDigits(SelectedType(), SelectedDigits()).decimalDigits);
    TellLimits();
}

void CDataTypeEditDlg::OnIntegerChanged()
{
    Select(*m_pUi->comboInteger, FitIntegerDigits(SelectedType(), SelectedDigits()).integerDigits - 1);
    TellLimits();
}

DataType CDataTypeEditDlg::SelectedType() const
{
    return static_cast<DataType>(m_pUi->comboType->currentIndex());
}

/// A number of digits that the lists do not offer stays the item's own until another one is chosen.
DigitCounts CDataTypeEditDlg::SelectedDigits() const
{
    const int integer = m_pUi->comboInteger->currentIndex();
    const int decimal = m_pUi->comboDecimal->currentIndex();
    return {.integerDigits = integer < 0 ? m_item.integerDigits : integer + 1,
            .decimalDigits = decimal < 0 ? m_item.decimalDigits : decimal};
}

ItemLengths CDataTypeEditDlg::EnteredLengths() const
{
    return {.isArray = m_pUi->radioArray->isChecked(),
            .arrayLength = IntegerIn(*m_pUi->editArrayLength),
            .dataType = SelectedType(),
            .dataLength = IntegerIn(*m_pUi->editLength)};
}

void CDataTypeEditDlg::OnOK()
{
    if (const auto fault = ItemLengthFault(EnteredLengths())) {
        m_reporter.ShowError(*fault);
        return;
    }
    m_item = EnteredItem();
    accept();
}

/// The notes are of the item as it is entered by now, and come with its OK.
void CDataTypeEditDlg::OnNotes()
{
    CNotesDlg dialog(CodingOf(EnteredItem()), *m_item.notes, this);
    if (dialog.exec() == QDialog::Accepted)
        m_item.notes = CSharedNotes(dialog.Notes());
}

void CDataTypeEditDlg::TakeUnicode()
{
    m_item.unicode = UnicodeChosen();
}

std::int32_t CDataTypeEditDlg::UnicodeChosen() const
{
    return m_pUi->checkUnicode->isChecked() ? 1 : 0;
}

DataItem CDataTypeEditDlg::EnteredItem() const
{
    DataItem item = m_item;
    const ItemLengths lengths = EnteredLengths();
    const DigitCounts digits = SelectedDigits();
    item.isArray = lengths.isArray ? 1 : 0;
    item.decimalDigits = digits.decimalDigits;
    item.dataType = lengths.dataType;
    item.integerDigits = digits.integerDigits;
    item.dataLength = lengths.dataLength;
    item.codeType = m_pUi->radioBin->isChecked() ? CodeType::Bin : CodeType::Bcd;
    item.arrayLength = lengths.isArray ? lengths.arrayLength : -1;
    const QString description = m_pUi->editDescription->text();
    SetText(item.description, ViewOf(description));
    if (lengths.dataType == DataType::String)
        item.unicode = UnicodeChosen();
    deriveBounds(item);
    return item;
}
