#include "views/BitBrowserDlg.h"

#include "model/BitText.h"
#include "model/ItemNotes.h"
#include "text/EscapedText.h"
#include "ui_BitBrowserDlg.h"
#include "views/RecipeFrame.h"
#include "views/TextCrossing.h"

#include <QListWidget>

#include <algorithm>

namespace {

constexpr int kColumns = static_cast<int>(kBitsPerRow);
constexpr int kSquareSize = 18;  // pixels, in both directions
constexpr int kNamesInSight = 8; // the list scrolls over more
constexpr int kBitRole = Qt::UserRole;

/// A limit as its box shows it. kept: only its low 32 bits, as a signed number.
QString LimitText(std::int64_t limit)
{
    return QString::number(static_cast<std::int32_t>(limit));
}

} // namespace

CBitBrowserDlg::CBitBrowserDlg(CRecipeFrame& frame, const DataItem& item, int column, int row, const QString& text,
                               QWidget* parent)
    : QDialog(parent),
      m_frame(frame),
      m_item(item),
      m_nColumn(column),
      m_nRow(row),
      m_strValue(text),
      m_pUi(std::make_unique<Ui::CBitBrowserDlg>())
{
    m_pUi->setupUi(this);
    setWindowTitle(
        LiteralTitle(windowTitle() + QLatin1Char('[') + ToQString(TextOf(m_item.description)) + QLatin1Char(']')));
    StyleMatrix();
    AddColumns();
    FillBoxes();
    FillMatrix();
    AddNames();
    connect(m_pUi->listBits, &CListCtrlCl::BitToggled, this, &CBitBrowserDlg::OnBitToggled);
    connect(m_pUi->buttonOK, &QPushButton::clicked, this, &CBitBrowserDlg::OnOK);
}

CBitBrowserDlg::~CBitBrowserDlg() = default;

void CBitBrowserDlg::StyleMatrix()
{
    CListCtrlCl& list = *m_pUi->listBits;
    list.SetColumnBackColor(0, Qt::white);
    list.SetColumnBackColor(2, Qt::white);
    list.SetBkColor(Qt::white);
    list.SetCellBackColor(1, 1, Qt::white);
    list.SetRowHeight(kSquareSize);
    list.SetHeaderHeight(1.0F);
    list.SetHeaderFont(12, 0);
    list.SetHeaderTextColor(Qt::black);
    list.SetTextColor(QColor(0, 255, 255));
    list.SetHeaderBackColor(100, 255, 100, 8);
    list.SetCellFont(15, 0);
    list.SetColumnTextColor(2, Qt::black);
    list.SetCellTextColor(3, 1, Qt::black);
}

void CBitBrowserDlg::AddColumns()
{
    for (int bit = kColumns - 1; bit >= 0; --bit)
        m_pUi->listBits->InsertColumn(kColumns, QStringLiteral("%1%2").arg(bit / 10).arg(bit % 10), CListCtrlCl::Left,
                                      kSquareSize);
}

void CBitBrowserDlg::FillBoxes()
{
    m_pUi->editDataType->setText(ToQString(BitBrowserTypeName(m_item.dataType)));
    m_pUi->editValue->setText(m_strValue);
    m_pUi->editMax->setText(LimitText(m_item.maxValue));
    m_pUi->editMin->setText(LimitText(m_item.minValue));
    m_pUi->editCodeType->setText(ToQString(CodeTypeLabel(m_item.codeType)));
}

void CBitBrowserDlg::FillMatrix()
{
    CListCtrlCl& list = *m_pUi->listBits;
    const std::u16string bits = BitsOfText(m_item, ViewOf(m_strValue));
    for (std::size_t i = 0; i < bits.size(); i += kBitsPerRow)
        list.InsertItem(list.rowCount(), {});
    for (std::size_t i = 0; i < bits.size(); ++i) {
        const int row = static_cast<int>(i / kBitsPerRow);
        const int column = static_cast<int>(i % kBitsPerRow);
        list.SetBitState(row, column, bits[i] == u'0' ? 0 : 1);
        ShowBit(row, column);
    }
    list.setMinimumSize(list.sizeHint()); // all squares, even where the screen is small
}

/// Gives a cell the text of its bit, which is its tool tip, and tells screen readers the bit's number and state.
void CBitBrowserDlg::ShowBit(int row, int column)
{
    CListCtrlCl& list = *m_pUi->listBits;
    const bool isSet = list.BitState(row, column).value_or(false);
    const QString state = isSet ? QStringLiteral("1") : QStringLiteral("0");
    const int bit = BitAt(row, column);
    const QString name = NameOf(bit);
    list.SetItemText(row, column, state);
    if (name.isEmpty())
        return list.SetItemName(row, column, tr("Bit %1: %2").arg(bit).arg(state));
    const QString whole = tr("Bit %1, %2: %3").arg(QString::number(bit), name, state);
    list.SetItemTip(row, column, whole);
    list.SetItemName(row, column, whole);
    ShowNamed(bit, isSet);
}

int CBitBrowserDlg::BitAt(int row, int column) const
{
    return m_pUi->listBits->rowCount() * kColumns - 1 - (row * kColumns + column);
}

QString CBitBrowserDlg::NameOf(int bit) const
{
    return ToQString(EscapedText(NameOfBit(*m_item.notes, static_cast<std::size_t>(bit))));
}

/// In the order of the squares. A long name is cut off where it stands, and whole in its tip.
void CBitBrowserDlg::AddNames()
{
    const CListCtrlCl& list = *m_pUi->listBits;
    auto names = std::make_unique<QListWidget>();
    for (int bit = list.rowCount() * kColumns - 1; bit >= 0; --bit) {
        if (NameOf(bit).isEmpty())
            continue;
        auto* named = new QListWidgetItem(tr("%1  %2").arg(QString::number(bit).rightJustified(2, u'0'), NameOf(bit)));
        named->setData(kBitRole, bit);
        named->setData(Qt::AccessibleTextRole, tr("Bit %1, %2").arg(QString::number(bit), NameOf(bit)));
        named->setToolTip(QStringLiteral("<p>%1</p>").arg(named->text().toHtmlEscaped()));
        const int cell = list.rowCount() * kColumns - 1 - bit;
        named->setCheckState(list.BitState(cell / kColumns, cell % kColumns).value_or(false) ? Qt::Checked
                                                                                             : Qt::Unchecked);
        names->addItem(named);
    }
    if (names->count() == 0)
        return;
    m_pNames = names.release();
    m_pNames->setObjectName(QStringLiteral("listBitNames"));
    m_pNames->setAccessibleName(tr("Bits by name"));
    m_pNames->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    const int rows = std::min(m_pNames->count(), kNamesInSight);
    m_pNames->setMinimumHeight(rows * m_pNames->sizeHintForRow(0) + 2 * m_pNames->frameWidth());
    m_pUi->layoutDialog->insertWidget(1, m_pNames, 1);
    m_pUi->layoutDialog->setStretch(0, 0);
    setTabOrder(m_pUi->listBits, m_pNames);
    connect(m_pNames, &QListWidget::itemChanged, this,
            [this](const QListWidgetItem* named) { OnNamedChanged(*named); });
}

/// Where the list has the bit already as it is, nothing is told.
void CBitBrowserDlg::ShowNamed(int bit, bool set)
{
    for (int row = 0; m_pNames != nullptr && row < m_pNames->count(); ++row)
        if (QListWidgetItem& named = *m_pNames->item(row); named.data(kBitRole).toInt() == bit)
            named.setCheckState(set ? Qt::Checked : Qt::Unchecked);
}

/// The box was flipped by the user, or follows its square.
void CBitBrowserDlg::OnNamedChanged(const QListWidgetItem& named)
{
    CListCtrlCl& list = *m_pUi->listBits;
    const int cell = list.rowCount() * kColumns - 1 - named.data(kBitRole).toInt();
    const int row = cell / kColumns;
    const int column = cell % kColumns;
    if (list.BitState(row, column) != (named.checkState() == Qt::Checked))
        list.ToggleBit(row, column);
}

/// The bits of as many rows as the item has words. kept: of a 32-bit item with another length, not those of all rows.
std::u16string CBitBrowserDlg::MatrixBits() const
{
    std::u16string bits;
    const int rows = std::min(m_item.dataLength, m_pUi->listBits->rowCount()); // no row beyond them has a bit
    for (int row = 0; row < rows; ++row)
        for (int column = 0; column < kColumns; ++column)
            if (const auto set = m_pUi->listBits->BitState(row, column))
                bits += *set ? u'1' : u'0';
    return bits;
}

void CBitBrowserDlg::OnBitToggled(int row, int column)
{
    ShowBit(row, column);
    const auto text = TextOfBits(m_item, MatrixBits());
    if (!text || *text == ViewOf(m_strValue))
        return;
    m_strValue = ToQString(*text);
    m_pUi->editValue->setText(m_strValue);
}

void CBitBrowserDlg::OnOK()
{
    if (!m_frame.ValidateCellValue(m_nColumn, m_strValue)) {
        m_frame.Reporter().ShowError(u"Error: The Value is not illegal or beyond the range!");
        return;
    }
    emit CellValueAccepted(m_nColumn, m_nRow, m_strValue);
    accept();
}
