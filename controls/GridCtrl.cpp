#include "controls/GridCtrl.h"

#include "controls/GridCellPaint.h"
#include "controls/GridCorner.h"
#include "controls/GridDelegate.h"
#include "controls/GridHeader.h"
#include "controls/GridModel.h"
#include "controls/GridSelectionModel.h"
#include "controls/TitleTip.h"

#include <QHeaderView>

#include <algorithm>

namespace {

constexpr int kTextMargin = 3;    // pixels left and right of a text
constexpr int kDefaultChars = 14; // a column is this many digits wide until its width is set

// A column fitted to its texts.
constexpr int kFittedMargin = 5;         // pixels beside the text and its own margin, for the marks
constexpr int kFewestChars = 8;          // digits that a fitted column has room for at least
constexpr int kMostChars = 40;           // and at most
constexpr int kMeasuredRows = 64;        // rows that are looked at, spread over the grid
constexpr int kMeasuredCells = 8192;     // cells that are looked at when there are many columns
constexpr qsizetype kMeasuredText = 256; // characters of a text that are looked at

} // namespace

CGridCtrl::CGridCtrl(int controlId, QWidget* parent) : QTableView(parent), m_nControlId(controlId)
{
    setProperty("controlId", controlId);
    setAccessibleName(QStringLiteral("Grid"));
    setShowGrid(false); // the delegate draws the lines
    setEditTriggers(NoEditTriggers);
    setSelectionMode(ExtendedSelection);
    setSelectionBehavior(SelectItems);
    setHorizontalScrollMode(ScrollPerPixel); // a column may be wider than the window
    setVerticalScrollMode(ScrollPerItem);    // so that the wheel scrolls by lines
    setDragDropMode(NoDragDrop);
    MakeParts();
    ConnectParts();
    TakeLook();
}

CGridCtrl::~CGridCtrl()
{
    // The base class ends what is open with this object half gone.
    if (m_pEditor)
        CloseEditor();
}

void CGridCtrl::MakeParts()
{
    m_pModel = new CGridModel(this);
    m_pModel->SetTextChange([this](int row, int column, const QString& text) {
        const Change change = ChangeText(row, column, text);
        // Later: whoever asks is another program, and it would wait for the user to answer the box.
        if (change == Change::Refused)
            QMetaObject::invokeMethod(
                this, [this, row, column] { ReportRefusal(row, column); }, Qt::QueuedConnection);
        return change == Change::Done || change == Change::Same;
    });
    setHorizontalHeader(new CGridHeader(Qt::Horizontal, *m_pModel, m_titleSizes, this));
    setVerticalHeader(new CGridHeader(Qt::Vertical, *m_pModel, m_titleSizes, this));
    setModel(m_pModel);
    const QItemSelectionModel* plain = selectionModel();
    setSelectionModel(new CGridSelectionModel(m_pModel, this));
    delete plain;
    setItemDelegate(new CGridDelegate(*m_pModel, this));
    horizontalHeader()->setDefaultSectionSize(fontMetrics().horizontalAdvance(u'0') * kDefaultChars);
    m_pCorner = new CGridCorner(*m_pModel, m_titleSizes, this);
    m_pTitleTip = new CTitleTip(this);
}

void CGridCtrl::ConnectParts()
{
    connect(&Selection(), &CGridSelectionModel::FocusMoving, this, [this](const QModelIndex& index) {
        SendNotification(m_nControlId, GridNotification::SelectionChanging, index);
    });
    // No selection by dragging, not over the titles either.
    disconnect(horizontalHeader(), &QHeaderView::sectionEntered, this, nullptr);
    disconnect(verticalHeader(), &QHeaderView::sectionEntered, this, nullptr);
    // After the toolkit's own selecting, which was connected first.
    connect(horizontalHeader(), &QHeaderView::sectionPressed, this, [this] { TitlePressed(Qt::Horizontal); });
    connect(verticalHeader(), &QHeaderView::sectionPressed, this, [this] { TitlePressed(Qt::Vertical); });
    horizontalHeader()->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(horizontalHeader(), &QWidget::customContextMenuRequested, this, [this](QPoint position) {
        if (const int section = ColumnTitles().SectionAt(position.x()); section >= 0)
            emit TitleMenuAsked(section + FixedColumnCount(), horizontalHeader()->viewport()->mapToGlobal(position));
    });
    connect(this, &QTableView::pressed, this, &CGridCtrl::TellFocusCellUsed);
    connect(m_pCorner, &CGridCorner::Clicked, this, &CGridCtrl::SelectAll);
    connect(m_pCorner, &CGridCorner::ColumnResized, this, &CGridCtrl::SetColumnWidth);
    connect(m_pCorner, &CGridCorner::BorderDoubleClicked, this,
            [this](int column) { SetColumnWidth(column, FittedWidth(column, kMeasuredRows)); });
}

void CGridCtrl::TakeLook()
{
    for (const bool row : {false, true})
        for (const bool column : {false, true})
            m_pModel->DefaultCell(row, column).TakeLook(palette(), font(), kTextMargin);
}

void CGridCtrl::SetCellCheck(CellCheck check)
{
    m_check = std::move(check);
}

void CGridCtrl::SetReporter(MessageReporter reporter)
{
    m_reporter = std::move(reporter);
}

void CGridCtrl::SetTextSource(CGridTextSource* source)
{
    CloseEditor();
    m_pModel->SetSource(source);
    verticalHeader()->viewport()->update();
}

void CGridCtrl::SetEditable(bool editable)
{
    CloseEditor();
    m_pModel->SetEditable(editable);
}

void CGridCtrl::DeleteAllItems()
{
    CloseEditor();
    m_pTitleTip->Hide();
    m_titleSizes = {};
    SetFrozenColumnCount(0);
    m_pModel->Clear();
    FixedCountsChanged();
}

bool CGridCtrl::SetRowCount(int count)
{
    if (count < 0)
        return false;
    CloseEditor();
    const std::vector<int> widths = BodyColumnWidths();
    m_pModel->SetRowCount(count);
    for (std::size_t column = 0; column < widths.size(); ++column)
        horizontalHeader()->resizeSection(static_cast<int>(column), widths[column]);
    FixedCountsChanged();
    return true;
}

bool CGridCtrl::ResetRows(int count)
{
    CloseEditor();
    m_pTitleTip->Hide();
    const std::vector<int> widths = BodyColumnWidths();
    if (!m_pModel->ResetRows(count))
        return false;
    for (std::size_t column = 0; column < widths.size(); ++column)
        horizontalHeader()->resizeSection(static_cast<int>(column), widths[column]);
    FixedCountsChanged();
    return true;
}

bool CGridCtrl::SetColumnCount(int count)
{
    if (count < 0)
        return false;
    CloseEditor();
    m_pModel->SetColumnCount(count);
    FixedCountsChanged();
    return true;
}

bool CGridCtrl::SetFixedRowCount(int count)
{
    if (count < 0 || count > RowCount())
        return false;
    CloseEditor();
    // A row keeps its height when it becomes fixed and when it no longer is.
    const std::vector<int> before = m_titleSizes.rowHeights;
    for (int row = FixedRowCount(); row < count; ++row)
        m_titleSizes.rowHeights.push_back(RowHeight(row));
    m_pModel->SetFixedRowCount(count);
    FixedCountsChanged();
    for (auto row = static_cast<std::size_t>(count); row < before.size(); ++row)
        SetRowHeight(static_cast<int>(row), before[row]);
    return true;
}

bool CGridCtrl::SetFixedColumnCount(int count)
{
    if (count < 0 || count > ColumnCount())
        return false;
    CloseEditor();
    const std::vector<int> before = m_titleSizes.columnWidths;
    for (int column = FixedColumnCount(); column < count; ++column)
        m_titleSizes.columnWidths.push_back(ColumnWidth(column));
    m_pModel->SetFixedColumnCount(count);
    FixedCountsChanged();
    for (auto column = static_cast<std::size_t>(count); column < before.size(); ++column)
        SetColumnWidth(static_cast<int>(column), before[column]);
    return true;
}

int CGridCtrl::RowCount() const
{
    return m_pModel->RowCount();
}

int CGridCtrl::ColumnCount() const
{
    return m_pModel->ColumnCount();
}

int CGridCtrl::FixedRowCount() const
{
    return m_pModel->FixedRowCount();
}

int CGridCtrl::FixedColumnCount() const
{
    return m_pModel->FixedColumnCount();
}

void CGridCtrl::FixedCountsChanged()
{
    m_titleSizes.rowHeights.resize(static_cast<std::size_t>(FixedRowCount()));
    m_titleSizes.columnWidths.resize(static_cast<std::size_t>(FixedColumnCount()));
    m_pCorner->RefreshName();
    m_pCorner->update();
    scheduleDelayedItemsLayout(); // once for all that is changed now
}

std::vector<int> CGridCtrl::BodyColumnWidths() const
{
    std::vector<int> widths;
    widths.reserve(static_cast<std::size_t>(horizontalHeader()->count()));
    for (int column = 0; column < horizontalHeader()->count(); ++column)
        widths.push_back(horizontalHeader()->sectionSize(column));
    return widths;
}

void CGridCtrl::SetDefaultRowHeight(int pixels)
{
    verticalHeader()->setDefaultSectionSize(pixels);
}

bool CGridCtrl::SetRowHeight(int row, int pixels)
{
    if (row < 0 || row >= RowCount() || pixels < 0)
        return false;
    if (row >= FixedRowCount()) {
        verticalHeader()->resizeSection(row - FixedRowCount(), pixels);
    } else {
        m_titleSizes.rowHeights[static_cast<std::size_t>(row)] = pixels;
        FixedCountsChanged();
    }
    return true;
}

bool CGridCtrl::SetColumnWidth(int column, int pixels)
{
    if (column < 0 || column >= ColumnCount() || pixels < 0)
        return false;
    if (column >= FixedColumnCount()) {
        horizontalHeader()->resizeSection(column - FixedColumnCount(), pixels);
    } else {
        m_titleSizes.columnWidths[static_cast<std::size_t>(column)] = pixels;
        FixedCountsChanged();
    }
    return true;
}

void CGridCtrl::FitColumns(int first)
{
    const int count = ColumnCount() - first;
    if (count <= 0)
        return;
    const int rows = std::clamp(kMeasuredCells / count, 1, kMeasuredRows);
    const int digit = fontMetrics().horizontalAdvance(u'0');
    horizontalHeader()->setUpdatesEnabled(false); // else it counts all places again after each column
    for (int column = first; column < ColumnCount(); ++column)
        SetColumnWidth(column, std::clamp(FittedWidth(column, rows), kFewestChars * digit, kMostChars * digit));
    horizontalHeader()->setUpdatesEnabled(true);
}

/// As wide as the titles of `column` and its texts in `rows` rows, the first and the last among them.
int CGridCtrl::FittedWidth(int column, int rows) const
{
    int width = 0;
    const auto measure = [&](int row) {
        const GridCellLook look = LookOf(*m_pModel, row, column);
        const QString text = m_pModel->Text(row, column).left(kMeasuredText);
        width = std::max(width, QFontMetrics(look.font).horizontalAdvance(text) + 2 * (look.margin + kFittedMargin));
    };
    for (int row = 0; row < FixedRowCount(); ++row)
        measure(row);
    const int body = RowCount() - FixedRowCount();
    const int measured = std::min(rows, body);
    for (int i = 0; i < measured; ++i) {
        const std::int64_t spread = measured > 1 ? std::int64_t{body - 1} * i / (measured - 1) : 0;
        measure(FixedRowCount() + static_cast<int>(spread));
    }
    return width;
}

/// The rows in sight are what a user fits a column to; the others count as when the grid was filled.
int CGridCtrl::sizeHintForColumn(int column) const
{
    return std::max(QTableView::sizeHintForColumn(column), FittedWidth(column + FixedColumnCount(), kMeasuredRows));
}

int CGridCtrl::RowHeight(int row) const
{
    if (row < 0 || row >= RowCount())
        return 0;
    return row < FixedRowCount() ? m_titleSizes.rowHeights[static_cast<std::size_t>(row)]
                                 : verticalHeader()->sectionSize(row - FixedRowCount());
}

int CGridCtrl::ColumnWidth(int column) const
{
    if (column < 0 || column >= ColumnCount())
        return 0;
    return column < FixedColumnCount() ? m_titleSizes.columnWidths[static_cast<std::size_t>(column)]
                                       : horizontalHeader()->sectionSize(column - FixedColumnCount());
}

bool CGridCtrl::SetItem(const GridItem& item)
{
    if (!m_pModel->Contains(item.row, item.column))
        return false;
    bool done = true;
    if ((item.mask & GridItem::Text) != 0)
        done = m_pModel->SetText(item.row, item.column, item.text);
    if (CGridCellBase* cell = GetCell(item.row, item.column)) {
        if ((item.mask & GridItem::Image) != 0)
            cell->SetImage(item.image);
        if ((item.mask & GridItem::Data) != 0)
            cell->SetData(item.data);
        if ((item.mask & GridItem::State) != 0)
            cell->SetState(item.state & CGridCellBase::ReadOnly);
        if ((item.mask & GridItem::Format) != 0)
            cell->SetFormat(item.format);
    }
    RedrawCell(item.row, item.column);
    return done;
}

bool CGridCtrl::SetItemText(int row, int column, const QString& text)
{
    if (!m_pModel->SetText(row, column, text))
        return false;
    RedrawCell(row, column);
    return true;
}

QString CGridCtrl::GetItemText(int row, int column) const
{
    return m_pModel->Text(row, column);
}

bool CGridCtrl::SetCellData(int row, int column, std::uintptr_t value)
{
    CGridCellBase* cell = m_pModel->IsVirtual() ? nullptr : m_pModel->MakeCell(row, column);
    if (cell == nullptr)
        return false;
    cell->SetData(value);
    RedrawCell(row, column);
    return true;
}

std::uintptr_t CGridCtrl::GetCellData(int row, int column) const
{
    const CGridCellBase* cell = m_pModel->FindCell(row, column);
    return cell != nullptr ? cell->Data() : 0;
}

std::uint32_t CGridCtrl::GetItemState(int row, int column) const
{
    if (!m_pModel->Contains(row, column))
        return 0;
    const CGridCellBase* cell = m_pModel->FindCell(row, column);
    std::uint32_t state =
        m_pModel->DefaultCellAt(row, column).StateFlags() | (cell != nullptr ? cell->StateFlags() : 0);
    const QModelIndex index = m_pModel->BodyIndex(row, column);
    if (index.isValid() && index == currentIndex())
        state |= CGridCellBase::Focused;
    if (index.isValid() && selectionModel()->isSelected(index))
        state |= CGridCellBase::Selected;
    return state;
}

void CGridCtrl::RedrawCell(int row, int column)
{
    if (!m_pModel->Contains(row, column))
        return;
    const QModelIndex index = m_pModel->BodyIndex(row, column);
    if (index.isValid())
        emit m_pModel->dataChanged(index, index);
    else if (column >= FixedColumnCount())
        emit m_pModel->headerDataChanged(Qt::Horizontal, column - FixedColumnCount(), column - FixedColumnCount());
    else if (row >= FixedRowCount())
        emit m_pModel->headerDataChanged(Qt::Vertical, row - FixedRowCount(), row - FixedRowCount());
    else {
        m_pCorner->RefreshName();
        m_pCorner->update();
    }
}

void CGridCtrl::TextsChanged()
{
    m_pModel->TextsChanged();
}

CGridCellBase* CGridCtrl::GetCell(int row, int column)
{
    return m_pModel->MakeCell(row, column);
}

bool CGridCtrl::SetCell(int row, int column, std::unique_ptr<CGridCellBase> cell)
{
    if (!m_pModel->PutCell(row, column, std::move(cell)))
        return false;
    RedrawCell(row, column);
    return true;
}

CGridDefaultCell& CGridCtrl::DefaultCell(bool fixedRow, bool fixedColumn)
{
    return m_pModel->DefaultCell(fixedRow, fixedColumn);
}

bool CGridCtrl::FocusCell(int& row, int& column) const
{
    const QModelIndex index = currentIndex();
    if (!index.isValid())
        return false;
    row = m_pModel->GridRow(index);
    column = m_pModel->GridColumn(index);
    return true;
}

bool CGridCtrl::SetFocusCell(int row, int column)
{
    const QModelIndex index = m_pModel->BodyIndex(row, column);
    if (!index.isValid())
        return false;
    Selection().MoveTo(index);
    return currentIndex() == index;
}

CGridSelectionModel& CGridCtrl::Selection() const
{
    return static_cast<CGridSelectionModel&>(*selectionModel());
}

int CGridCtrl::PrintPageCount(const QPagedPaintDevice& device) const
{
    return CGridPrinter(*m_pModel, m_titleSizes, *verticalHeader(), *horizontalHeader()).PageCount(device);
}

bool CGridCtrl::Print(QPagedPaintDevice& device, const CGridPrinter::Progress& progress) const
{
    return CGridPrinter(*m_pModel, m_titleSizes, *verticalHeader(), *horizontalHeader()).Print(device, progress);
}
