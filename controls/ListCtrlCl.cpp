#include "controls/ListCtrlCl.h"

#include "controls/HeaderCtrlCl.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>

namespace {

constexpr int kLongestTip = 80; // characters
constexpr QColor kSetBit{255, 0, 255};
constexpr QColor kClearBit{0, 255, 255};
constexpr QColor kAroundBit{255, 255, 255};
constexpr QColor kFocusFrame{0, 0, 0}; // on the white around the square, whatever the palette

/// The square of a bit in its cell. Whole pixels, every division toward zero.
QRect BitSquare(const QRect& cell)
{
    const int cellRight = cell.left() + cell.width();
    const int left = cell.left() + cell.width() / 4;
    const int margin = (cellRight - left) / 4;
    const int right = cellRight - margin;
    const int top = cell.top() + (right - left) / 4;
    const int bottom = cell.top() + cell.height() - margin;
    return {left, top, right - left, bottom - top};
}

void DrawBitSquare(QPainter& painter, const QRect& cell, bool set)
{
    painter.fillRect(cell, kAroundBit);
    painter.fillRect(BitSquare(cell), set ? kSetBit : kClearBit);
}

/// Filled, not drawn with a pen: a pen's line is blurred or moved by half a pixel at some scales.
void DrawFocusFrame(QPainter& painter, const QRect& cell)
{
    for (const QRect& side : QRegion(cell) - cell.adjusted(1, 1, -1, -1))
        painter.fillRect(side, kFocusFrame);
}

/// Paints the cells of a list. Every cell covers the whole of its column.
class CBitDelegate final : public QStyledItemDelegate {
public:
    explicit CBitDelegate(CListCtrlCl& list) : QStyledItemDelegate(&list), m_list(list) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        QStyleOptionViewItem look(option);
        initStyleOption(&look, index);
        const bool selected = look.state.testFlag(QStyle::State_Selected);
        painter->fillRect(look.rect, selected ? look.palette.brush(QPalette::Highlight) : look.backgroundBrush);
        DrawBitSquare(*painter, look.rect, m_list.BitState(index.row(), index.column()).value_or(false));
        if (look.state.testFlag(QStyle::State_HasFocus))
            DrawFocusFrame(*painter, look.rect);
    }

    /// The list flips bits itself, not this one by their check states.
    bool editorEvent(QEvent*, QAbstractItemModel*, const QStyleOptionViewItem&, const QModelIndex&) override
    {
        return false;
    }

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        option->font = m_list.CellFont();
        option->backgroundBrush = m_list.BackColor(index.row(), index.column());
        option->palette.setColor(QPalette::Text, m_list.TextColor(index.row(), index.column()));
    }

private:
    const CListCtrlCl& m_list;
};

char16_t HeadingAlignment(int alignment)
{
    switch (alignment) {
    case CListCtrlCl::Left:
        return CHeaderCtrlCl::kLeft;
    case CListCtrlCl::Right:
        return CHeaderCtrlCl::kRight;
    default:
        return CHeaderCtrlCl::kCentred;
    }
}

} // namespace

CListCtrlCl::CListCtrlCl(QWidget* parent) : QTableWidget(parent), m_pHeader(new CHeaderCtrlCl(this))
{
    setHorizontalHeader(m_pHeader);
    setItemDelegate(new CBitDelegate(*this));
    verticalHeader()->hide();
    verticalHeader()->setMinimumSectionSize(1);
    setShowGrid(false);
    setEditTriggers(NoEditTriggers);
    setSelectionMode(SingleSelection);
    setSelectionBehavior(SelectRows);
    setTabKeyNavigation(false); // Tab leaves the list
    connect(this, &QTableWidget::cellClicked, this, &CListCtrlCl::ToggleBit);
}

void CListCtrlCl::SetHeaderBackColor(int red, int green, int blue, int gradientStep)
{
    m_pHeader->SetBackColor(red, green, blue, gradientStep);
}

void CListCtrlCl::SetHeaderHeight(float factor)
{
    m_pHeader->SetHeightFactor(factor);
}

void CListCtrlCl::SetHeaderFont(int height, int width)
{
    m_pHeader->SetHeadingFont(height, width);
}

void CListCtrlCl::SetHeaderTextColor(const QColor& color)
{
    m_pHeader->SetTextColor(color);
}

void CListCtrlCl::SetBkColor(const QColor& color)
{
    QPalette colors = palette();
    colors.setColor(QPalette::Base, color);
    setPalette(colors);
}

void CListCtrlCl::SetColumnBackColor(int column, const QColor& color)
{
    m_columnBackColors.push_back({column, color});
}

void CListCtrlCl::SetCellBackColor(int column, int row, const QColor& color)
{
    m_cellBackColors.push_back({column, row, color});
}

void CListCtrlCl::SetTextColor(const QColor& color)
{
    m_textColor = color;
}

void CListCtrlCl::SetColumnTextColor(int column, const QColor& color)
{
    m_columnTextColors.push_back({column, color});
}

void CListCtrlCl::SetCellTextColor(int column, int row, const QColor& color)
{
    m_cellTextColors.push_back({column, row, color});
}

void CListCtrlCl::SetCellFont(int height, int width)
{
    m_cellFont = ListFont(height, width);
}

void CListCtrlCl::SetRowHeight(int pixels)
{
    QHeaderView& rows = *verticalHeader();
    if (pixels <= 0)
        rows.resetDefaultSectionSize(); // for rows to come; those that are there follow below
    rows.setDefaultSectionSize(pixels > 0 ? pixels : rows.defaultSectionSize());
}

int CListCtrlCl::InsertColumn(int position, const QString& heading, int alignment, int width, int /*subItem*/)
{
    m_pHeader->AddHeading(heading, HeadingAlignment(alignment));
    const int column = std::clamp(position, 0, columnCount());
    insertColumn(column);
    setColumnWidth(column, width);
    setHorizontalHeaderLabels(m_pHeader->Headings()); // for screen readers the same as on the screen
    return column;
}

int CListCtrlCl::InsertItem(int row, const QString& text)
{
    const int inserted = std::clamp(row, 0, rowCount());
    insertRow(inserted);
    SetItemText(inserted, 0, text);
    return inserted;
}

void CListCtrlCl::SetItemText(int row, int column, const QString& text)
{
    QTableWidgetItem& item = EnsureItem(row, column);
    item.setText(text);
    item.setToolTip(text.left(kLongestTip));
}

void CListCtrlCl::SetItemTip(int row, int column, const QString& tip)
{
    EnsureItem(row, column).setToolTip(QStringLiteral("<p>%1</p>").arg(tip.toHtmlEscaped()));
}

void CListCtrlCl::SetItemName(int row, int column, const QString& name)
{
    EnsureItem(row, column).setData(Qt::AccessibleTextRole, name);
    QAccessibleEvent event(this, QAccessible::NameChanged);
    Tell(event, row, column);
}

QTableWidgetItem& CListCtrlCl::EnsureItem(int row, int column)
{
    if (QTableWidgetItem* there = item(row, column))
        return *there;
    auto* made = new QTableWidgetItem;
    made->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    setItem(row, column, made);
    ShowState(row, column);
    return *made;
}

void CListCtrlCl::SetBitState(int row, int column, int state)
{
    m_bitStates[{row, column}] = state;
    ShowState(row, column);
}

std::optional<bool> CListCtrlCl::BitState(int row, int column) const
{
    const auto found = m_bitStates.find({row, column});
    if (found == m_bitStates.end())
        return std::nullopt;
    return found->second != 0;
}

void CListCtrlCl::ToggleBit(int row, int column)
{
    if (const auto set = BitState(row, column)) {
        SetBitState(row, column, *set ? 0 : 1);
        TellCheckState(row, column);
    }
    update(model()->index(row, column));
    emit BitToggled(row, column);
}

/// Gives the cell the check state that screen readers ask for.
void CListCtrlCl::ShowState(int row, int column)
{
    QTableWidgetItem* cell = item(row, column);
    const auto set = BitState(row, column);
    if (cell != nullptr && set)
        cell->setCheckState(*set ? Qt::Checked : Qt::Unchecked);
}

void CListCtrlCl::TellCheckState(int row, int column)
{
    QAccessible::State changed;
    changed.checked = true;
    QAccessibleStateChangeEvent event(this, changed);
    Tell(event, row, column);
}

/// Screen readers keep what they were told of a cell until they hear `event` of it.
void CListCtrlCl::Tell(QAccessibleEvent& event, int row, int column)
{
    if (!QAccessible::isActive() || !isVisible())
        return;
    const int columns = columnCount() + 1; // both headers are part of the accessible table, hidden or not
    event.setChild((row + 1) * columns + column + 1);
    QAccessible::updateAccessibility(&event);
}

QColor CListCtrlCl::BackColor(int row, int column) const
{
    return FirstColor(m_columnBackColors, m_cellBackColors, row, column, palette().color(QPalette::Base));
}

QColor CListCtrlCl::TextColor(int row, int column) const
{
    return FirstColor(m_columnTextColors, m_cellTextColors, row, column, m_textColor);
}

/// A cell's own colour, else its column's, else `otherwise`.
QColor CListCtrlCl::FirstColor(const std::vector<ColumnColor>& columns, const std::vector<CellColor>& cells, int row,
                               int column, QColor otherwise)
{
    const auto cell = std::find_if(cells.begin(), cells.end(),
                                   [=](const CellColor& c) { return c.row == row && c.column == column; });
    if (cell != cells.end())
        return cell->color;
    const auto whole =
        std::find_if(columns.begin(), columns.end(), [=](const ColumnColor& c) { return c.column == column; });
    return whole != columns.end() ? whole->color : otherwise;
}

void CListCtrlCl::keyboardSearch(const QString&) {}

void CListCtrlCl::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Space || event->modifiers() != Qt::NoModifier) {
        QTableWidget::keyPressEvent(event);
        return;
    }
    event->accept();
    if (currentIndex().isValid() && !event->isAutoRepeat())
        ToggleBit(currentRow(), currentColumn());
}

/// The second press of a double click is a click like any other: its release flips the bit again.
void CListCtrlCl::mouseDoubleClickEvent(QMouseEvent* event)
{
    mousePressEvent(event);
}
