#include "views/NotesDlg.h"

#include "model/ValueNames.h"
#include "model/ValueTextCheck.h"
#include "ui_NotesDlg.h"
#include "views/NameDelegate.h"
#include "views/NoticeLine.h"
#include "views/NumberField.h"
#include "views/OneLineEdit.h"
#include "views/TextCrossing.h"

#include <QHeaderView>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QTableWidget>

#include <algorithm>
#include <utility>

namespace {

enum TextColumn { kValue, kText };

constexpr int kWidth = 84;    // average characters, at first
constexpr int kLeastRows = 3; // of the tables in sight
constexpr int kCommentLines = 3;

std::optional<CDecimal> NumberIn(const QLineEdit& field)
{
    const QString text = field.text().trimmed();
    return CDecimal::Parse(ViewOf(text));
}

/// What is wrong with a number that may be left out.
QString FaultOf(const QLineEdit& field)
{
    return field.text().trimmed().isEmpty() ? QString() : NumberFault(field.text());
}

QString TextAt(const QTableWidget& table, int row, int column)
{
    const QTableWidgetItem* item = table.item(row, column);
    return item != nullptr ? item->text() : QString();
}

/// Without half characters, which no file holds.
std::u16string WholeText(const QString& text)
{
    return text.isValidUtf16() ? text.toStdU16String() : QString::fromUtf8(text.toUtf8()).toStdU16String();
}

/// Line ends stay; other characters that only a paste brings and that nobody sees become blanks.
std::u16string CommentOf(const QPlainTextEdit& field)
{
    std::u16string comment = WholeText(field.toPlainText());
    std::replace_if(
        comment.begin(), comment.end(), [](char16_t c) { return (c < u' ' && c != u'\n') || c == 0x7F; }, u' ');
    return comment;
}

} // namespace

CNotesDlg::CNotesDlg(ColumnCoding coding, ItemNotes notes, QWidget* parent)
    : QDialog(parent),
      m_pUi(std::make_unique<Ui::CNotesDlg>()),
      m_coding(std::move(coding)),
      m_notes(std::move(notes))
{
    m_pUi->setupUi(this);
    setWindowTitle(LiteralTitle(tr("Notes of %1").arg(ToQString(m_coding.title))));
    for (QLineEdit* field : {m_pUi->editUnit, m_pUi->editLowest, m_pUi->editHighest})
        KeepOnOneLine(*field);
    m_pUi->editUnit->setMaxLength(static_cast<int>(ItemNotes::kLongestUnit));
    const int line = m_pUi->editComment->fontMetrics().lineSpacing();
    m_pUi->editComment->setMinimumHeight((kCommentLines + 1) * line);
    ShowNotes();
    resize(kWidth * fontMetrics().averageCharWidth(), sizeHint().height());
    ConnectControls();
    EnableButtons();
    m_pUi->editUnit->setFocus();
}

/// An editor that is open yet hands its text on while it goes.
CNotesDlg::~CNotesDlg()
{
    m_pUi->tableTexts->disconnect(this);
}

void CNotesDlg::ShowNotes()
{
    m_pUi->editUnit->setText(ToQString(m_notes.unit));
    const bool hasNumbers = m_coding.dataType != DataType::String;
    const auto showNumber = [hasNumbers](QLabel& label, QLineEdit& field, const std::optional<CDecimal>& number) {
        field.setText(number ? ToQString(number->Text()) : QString());
        label.setEnabled(hasNumbers || number);
        field.setEnabled(hasNumbers || number);
    };
    showNumber(*m_pUi->labelLowest, *m_pUi->editLowest, m_notes.lowest);
    showNumber(*m_pUi->labelHighest, *m_pUi->editHighest, m_notes.highest);
    m_pUi->editComment->setPlainText(ToQString(m_notes.comment));
    SetUpTable(*m_pUi->tableBits);
    SetUpTable(*m_pUi->tableTexts);
    ShowBits();
    ShowTexts();
}

void CNotesDlg::SetUpTable(QTableWidget& table)
{
    const int height = m_pUi->editUnit->sizeHint().height();
    table.setItemDelegate(new CNameDelegate(static_cast<int>(ItemNotes::kLongestName), &table));
    table.horizontalHeader()->setHighlightSections(false);
    table.verticalHeader()->setDefaultSectionSize(height);
    table.setMinimumHeight(table.horizontalHeader()->sizeHint().height() + kLeastRows * height);
}

void CNotesDlg::ShowBits()
{
    const auto count = static_cast<int>(BitsToName(m_coding));
    m_pUi->labelBits->setVisible(count > 0);
    m_pUi->tableBits->setVisible(count > 0);
    m_pUi->tableBits->setRowCount(count);
    m_pUi->tableBits->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    for (int bit = 0; bit < count; ++bit) {
        m_pUi->tableBits->setVerticalHeaderItem(bit, new QTableWidgetItem(tr("Bit %1").arg(bit)));
        const auto name = NameOfBit(m_notes, static_cast<std::size_t>(bit));
        m_pUi->tableBits->setItem(bit, 0, new QTableWidgetItem(ToQString(name)));
    }
}

void CNotesDlg::ShowTexts()
{
    QTableWidget& table = *m_pUi->tableTexts;
    table.verticalHeader()->hide();
    table.horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    for (const ValueText& named : m_notes.texts)
        AppendText(named);
}

void CNotesDlg::AppendText(const ValueText& named)
{
    QTableWidget& table = *m_pUi->tableTexts;
    const QSignalBlocker quiet(table); // the row is checked as a whole
    const int row = table.rowCount();
    table.insertRow(row);
    table.setItem(row, kValue, new QTableWidgetItem(ToQString(named.value)));
    table.setItem(row, kText, new QTableWidgetItem(ToQString(named.text)));
}

void CNotesDlg::ConnectControls()
{
    for (const QLineEdit* field : {m_pUi->editUnit, m_pUi->editLowest, m_pUi->editHighest})
        connect(field, &QLineEdit::textChanged, this, &CNotesDlg::Check);
    connect(m_pUi->editComment, &QPlainTextEdit::textChanged, this, &CNotesDlg::Check);
    connect(m_pUi->tableTexts, &QTableWidget::itemChanged, this, &CNotesDlg::Check);
    connect(m_pUi->tableTexts, &QTableWidget::currentCellChanged, this, &CNotesDlg::EnableButtons);
    connect(m_pUi->buttonAddText, &QPushButton::clicked, this, &CNotesDlg::AddText);
    connect(m_pUi->buttonRemoveText, &QPushButton::clicked, this, &CNotesDlg::RemoveText);
    connect(m_pUi->buttonOk, &QPushButton::clicked, this, &CNotesDlg::OnOK);
    const auto* removeKey =
        new QShortcut(QKeySequence::Delete, m_pUi->tableTexts, nullptr, nullptr, Qt::WidgetShortcut);
    connect(removeKey, &QShortcut::activated, this, &CNotesDlg::RemoveText);
}

void CNotesDlg::AddText()
{
    AppendText({});
    QTableWidget& table = *m_pUi->tableTexts;
    table.setFocus();
    table.setCurrentCell(table.rowCount() - 1, kValue);
    table.editItem(table.currentItem());
    EnableButtons();
}

void CNotesDlg::RemoveText()
{
    QTableWidget& table = *m_pUi->tableTexts;
    if (table.currentRow() < 0)
        return;
    table.removeRow(table.currentRow());
    table.setFocus(); // its button may go off
    EnableButtons();
    Check();
}

void CNotesDlg::EnableButtons()
{
    const QTableWidget& table = *m_pUi->tableTexts;
    m_pUi->buttonAddText->setEnabled(table.rowCount() < static_cast<int>(ItemNotes::kMostTexts));
    m_pUi->buttonRemoveText->setEnabled(table.currentRow() >= 0);
}

void CNotesDlg::Check()
{
    QWidget* about = nullptr;
    const QString fault = Fault(about);
    if (m_pFaulty != nullptr && m_pFaulty != about)
        m_pFaulty->setAccessibleDescription({});
    m_pFaulty = about;
    if (about != nullptr)
        ShowNotice(*m_pUi->labelNotice, fault, {about});
    else
        ShowNotice(*m_pUi->labelNotice, fault, {});
    m_pUi->buttonOk->setEnabled(fault.isEmpty());
}

/// Of the first field that is wrong, in their order.
QString CNotesDlg::Fault(QWidget*& about) const
{
    if (QString fault = RangeFault(about); !fault.isEmpty())
        return fault;
    if (QString fault = CommentFault(); !fault.isEmpty()) {
        about = m_pUi->editComment;
        return fault;
    }
    const auto fault = FindValueTextFault(m_coding, Entered().texts);
    if (!fault)
        return {};
    about = m_pUi->tableTexts;
    return ToQString(fault->text);
}

QString CNotesDlg::RangeFault(QWidget*& about) const
{
    for (QLineEdit* field : {m_pUi->editLowest, m_pUi->editHighest})
        if (QString fault = FaultOf(*field); !fault.isEmpty()) {
            about = field;
            return fault;
        }
    const auto lowest = NumberIn(*m_pUi->editLowest);
    const auto highest = NumberIn(*m_pUi->editHighest);
    if (!lowest || !highest || *lowest <= *highest)
        return {};
    about = m_pUi->editHighest;
    return tr("The highest value lies below the lowest one.");
}

QString CNotesDlg::CommentFault() const
{
    const auto length = CommentOf(*m_pUi->editComment).size();
    if (length <= ItemNotes::kLongestComment)
        return {};
    return tr("A comment has at most %1 characters: this one has %2.").arg(ItemNotes::kLongestComment).arg(length);
}

/// As they stand in the fields.
ItemNotes CNotesDlg::Entered() const
{
    ItemNotes notes = m_notes;
    notes.unit = WholeText(m_pUi->editUnit->text());
    notes.lowest = NumberIn(*m_pUi->editLowest);
    notes.highest = NumberIn(*m_pUi->editHighest);
    notes.comment = CommentOf(*m_pUi->editComment);
    const QTableWidget& bits = *m_pUi->tableBits;
    notes.bits.resize(std::max(notes.bits.size(), static_cast<std::size_t>(bits.rowCount())));
    for (int bit = 0; bit < bits.rowCount(); ++bit)
        notes.bits[static_cast<std::size_t>(bit)] = WholeText(TextAt(bits, bit, 0));
    const QTableWidget& texts = *m_pUi->tableTexts;
    notes.texts.clear();
    for (int row = 0; row < texts.rowCount(); ++row)
        notes.texts.push_back({WholeText(TextAt(texts, row, kValue)), WholeText(TextAt(texts, row, kText))});
    return notes;
}

void CNotesDlg::OnOK()
{
    m_notes = Tidied(Entered());
    accept();
}
