#include "views/RecipeDataShowView.h"

#include "controls/GridModel.h"
#include "files/RecipeMessages.h"
#include "files/ShowLimits.h"
#include "model/CellCheck.h"
#include "model/ValueLimits.h"
#include "views/BitBrowserDlg.h"
#include "views/ProgressDialog.h"
#include "views/TextCrossing.h"

#include <QItemSelectionRange>
#include <QMenu>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int kTitleRowHeight = 24;
constexpr int kDataRowHeight = 26;
constexpr int kIdColumnWidth = 64;
constexpr int kAddressColumn = 1;
constexpr int kMostColumn = 20;         // digits that a narrow window keeps of the first data column at most
constexpr int kMostGrid = 40;           // and of all that it keeps of the grid
constexpr qsizetype kLongestValue = 80; // characters of a value in a remark
constexpr std::uint32_t kCentred = 1;
constexpr std::uint32_t kWraps = 16;

/// The bit browser's names are spelt right, but it has none for reals and strings.
std::u16string_view NameOf(DataType type)
{
    const std::u16string_view name = BitBrowserTypeName(type);
    return name.empty() ? TypeName(type) : name;
}

} // namespace

CRecipeDataShowView::CRecipeDataShowView(CRecipeFrame& frame, QWidget* parent)
    : QWidget(parent),
      m_frame(frame),
      m_pGrid(new CGridCtrl(kGridControlId, this))
{
    setObjectName(QStringLiteral("dataPane"));
    setAccessibleName(tr("Recipe data"));
    setFocusProxy(m_pGrid);
    m_pGrid->setObjectName(QStringLiteral("gridRecipe"));
    m_pGrid->setAccessibleName(tr("Recipe data"));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pGrid);

    m_pGrid->SetCellCheck([this](int column, const QString& text) { return m_frame.ValidateCellValue(column, text); });
    m_pGrid->SetReporter([this](const QString& text) { m_frame.Reporter().ShowError(ViewOf(text)); });
    CreatePopupMenu();
    connect(m_pGrid, &CGridCtrl::Notify, this, &CRecipeDataShowView::OnGridNotify);
    // A right click may have chosen another cell than the one with the focus, which does not move when it is used next.
    connect(m_pGrid, &CGridCtrl::FocusCellUsed, this, &CRecipeDataShowView::ChooseCell);
    connect(m_pGrid, &CGridCtrl::CellEdited, this, [this] { m_frame.m_bModified = true; });
    connect(&m_pGrid->Model(), &CGridModel::dataChanged, this, &CRecipeDataShowView::OnTextsChanged);
}

CRecipeDataShowView::~CRecipeDataShowView()
{
    m_pGrid->DeleteAllItems(); // the grid must not ask for texts any more
}

void CRecipeDataShowView::CreatePopupMenu()
{
    m_pPopupMenu = new QMenu(this);
    m_pPopupMenu->setObjectName(QStringLiteral("menuBitBrowse"));
    m_pPopupMenu->setProperty("controlId", 137);
    m_pActionBitBrowse = m_pPopupMenu->addAction(QStringLiteral("BitBrowse"), this, &CRecipeDataShowView::OnBitBrowse);
    m_pActionBitBrowse->setObjectName(QStringLiteral("popupBitBrowse"));
    m_pActionBitBrowse->setProperty("controlId", 32784);
}

int CRecipeDataShowView::ShowData(FileType type)
{
    ClearGrid();
    const DataFormat& format = *m_frame.m_pDataFormat;
    if (m_frame.m_nGridCols == kFixedColumns || m_frame.m_nFormatWords == 0)
        return 2;
    if (const auto fault = ShowFault(format, m_frame.m_nReadCount)) {
        m_frame.Reporter().ShowError(*fault);
        return 2;
    }
    m_dataFormat = format;
    m_rows.LayOut(LayOutColumns(format), m_frame.m_nStartAddress, m_frame.m_nReadCount);

    CProgressDialog progress(*this, tr("Reading the recipe file"));
    const Outcome outcome =
        ReadRecipe(type, m_rows, NativePath(m_frame.m_strFilePath), m_frame.m_bNewFile, m_frame.Reporter(), progress);
    m_bRowsOfFile = outcome == Outcome::Done && HasKnownType();
    if (outcome == Outcome::GivenUp)
        m_rows.Clear();
    else
        LayOutGrid();
    return 1;
}

/// Whether the current file, if it has a name, is a recipe file by that name. Any other is looked at only.
bool CRecipeDataShowView::HasKnownType() const
{
    return m_frame.m_strFilePath.isEmpty() || FileTypeOf(NativePath(m_frame.m_strFilePath));
}

void CRecipeDataShowView::LayOutGrid()
{
    m_pGrid->SetEditable(true);
    m_pGrid->SetTextSource(this);
    m_pGrid->SetDefaultRowHeight(kDataRowHeight);
    m_pGrid->SetRowCount(kFixedRows + m_rows.RowCount());
    m_pGrid->SetColumnCount(kFixedColumns + static_cast<int>(m_rows.Columns().size()));
    m_pGrid->SetFixedRowCount(kFixedRows);
    m_pGrid->SetFixedColumnCount(kFixedColumns);
    m_pGrid->SetRowHeight(0, kTitleRowHeight);
    m_pGrid->SetColumnWidth(0, kIdColumnWidth);
    WriteTitles();
    m_pGrid->FitColumns(kAddressColumn);
    m_pGrid->setMinimumWidth(LeastGridWidth());
}

/// The titles of the rows and the first data column, with room to scroll to the others. The pane beside gives way to
/// it.
int CRecipeDataShowView::LeastGridWidth() const
{
    const int digit = m_pGrid->fontMetrics().horizontalAdvance(u'0');
    int width = std::min(m_pGrid->ColumnWidth(kFixedColumns), kMostColumn * digit);
    for (int column = 0; column < kFixedColumns; ++column)
        width += m_pGrid->ColumnWidth(column);
    const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, m_pGrid->verticalScrollBar());
    return std::min(width + bar + 2 * m_pGrid->frameWidth(), kMostGrid * digit);
}

void CRecipeDataShowView::WriteTitles()
{
    GridItem title;
    title.mask = GridItem::Text | GridItem::Format;
    title.format = kCentred;
    const auto write = [&](int column, const QString& text) {
        title.column = column;
        title.text = text;
        m_pGrid->SetItem(title);
    };
    write(0, QStringLiteral("ID"));
    write(1, QStringLiteral("RW_Addr"));
    title.format = kCentred | kWraps;
    int column = kFixedColumns;
    for (const ColumnCoding& coding : m_rows.Columns())
        write(column++, ToQString(coding.title));
}

SaveResult CRecipeDataShowView::WriteData(FileType type, const QString& path)
{
    if (!m_bRowsOfFile) {
        ShowFileError(m_frame.Reporter(), SaveErrorOf(type), NativePath(path));
        return {};
    }
    CProgressDialog progress(*this, tr("Saving the recipe file"));
    const SaveResult result = SaveRecipe(type, m_rows, NativePath(path), m_frame.Reporter(), progress);
    if (result.isSaved)
        ForgetChanges();
    return result;
}

void CRecipeDataShowView::ForgetChanges()
{
    m_rows.MarkSaved();
    m_pGrid->viewport()->update();
    emit ChosenCellChanged();
}

bool CRecipeDataShowView::MaySaveAs(FileType type, const QString& path) const
{
    if (HasRowsOfFile())
        return true;
    ShowFileError(m_frame.Reporter(), SaveErrorOf(type), NativePath(path));
    return false;
}

void CRecipeDataShowView::ClearGrid()
{
    m_pGrid->DeleteAllItems();
    m_pGrid->setMinimumWidth(0);
    m_rows.Clear();
    m_bRowsOfFile = false;
    ForgetChosenCell();
}

bool CRecipeDataShowView::EndCellEdit()
{
    return m_pGrid->EndEdit();
}

bool CRecipeDataShowView::ValidateCellValue(int gridColumn, const QString& text) const
{
    const auto& columns = m_rows.Columns();
    const int column = gridColumn - kFixedColumns;
    if (column < 0 || static_cast<std::size_t>(column) >= columns.size())
        return false;
    return ::ValidateCellValue(columns[static_cast<std::size_t>(column)], ViewOf(text));
}

bool CRecipeDataShowView::CanBitBrowse() const
{
    if (m_nCurrentColumn < kFixedColumns)
        return false;
    const DataType type = m_rows.Columns()[static_cast<std::size_t>(m_nCurrentColumn - kFixedColumns)].dataType;
    return !IsReal(type) && type != DataType::String;
}

QString CRecipeDataShowView::ChosenCellInfo() const
{
    if (m_nCurrentColumn < kFixedColumns)
        return {};
    const auto column = static_cast<std::size_t>(m_nCurrentColumn - kFixedColumns);
    const ColumnCoding& coding = m_rows.Columns()[column];
    const auto address = m_rows.RowAddress(m_nCurrentRow - kFixedRows) + m_rows.WordOffset(column);
    QStringList parts{QStringLiteral("RW%1").arg(address.number), ToQString(NameOf(coding.dataType)),
                      ToQString(LimitsText(coding)), CellRemark(m_nCurrentRow, m_nCurrentColumn)};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

void CRecipeDataShowView::OnBitBrowse()
{
    if (!EndCellEdit() || !CanBitBrowse())
        return;
    const DataItem* item = m_dataFormat.itemOfElement(m_nCurrentColumn - kFixedColumns);
    const QString text =
        m_pGrid->GetItemText(m_nCurrentRow, m_nCurrentColumn); // it may have changed since it was chosen
    CBitBrowserDlg dialog(m_frame, *item, m_nCurrentColumn, m_nCurrentRow, text, this);
    connect(&dialog, &CBitBrowserDlg::CellValueAccepted, this, &CRecipeDataShowView::SetCellValue);
    dialog.exec();
}

void CRecipeDataShowView::SetCellValue(int column, int row, const QString& text)
{
    m_pGrid->SetItemText(row, column, text);
    m_pGrid->RedrawCell(row, column);
}

QString CRecipeDataShowView::CellText(int row, int column) const
{
    const int dataRow = row - kFixedRows;
    switch (column) {
    case 0:
        return QString::number(row);
    case 1:
        return QStringLiteral("RW%1").arg(m_rows.RowAddress(dataRow).number);
    default:
        return ToQString(m_rows.Text(dataRow, static_cast<std::size_t>(column - kFixedColumns)));
    }
}

bool CRecipeDataShowView::SetCellText(int row, int column, const QString& text)
{
    return column >= kFixedColumns &&
           m_rows.SetText(row - kFixedRows, static_cast<std::size_t>(column - kFixedColumns), ViewOf(text));
}

GridCellMarks CRecipeDataShowView::CellMarks(int row, int column) const
{
    if (column < kFixedColumns)
        return {};
    const auto dataColumn = static_cast<std::size_t>(column - kFixedColumns);
    return {m_rows.IsEdited(row - kFixedRows, dataColumn),
            m_rows.OutsideLimits(row - kFixedRows, dataColumn).has_value()};
}

QString CRecipeDataShowView::CellRemark(int row, int column) const
{
    if (column < kFixedColumns)
        return {};
    const auto dataColumn = static_cast<std::size_t>(column - kFixedColumns);
    QStringList remarks;
    if (const auto value = m_rows.OutsideLimits(row - kFixedRows, dataColumn))
        remarks += tr("the value %1 lies outside the limits %2")
                       .arg(ToQString(*value).left(kLongestValue), ToQString(LimitsText(m_rows.Columns()[dataColumn])));
    if (m_rows.IsEdited(row - kFixedRows, dataColumn))
        remarks += tr("changed, not saved yet");
    return remarks.join(QStringLiteral(", "));
}

void CRecipeDataShowView::OnTextsChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight)
{
    const QModelIndex chosen = m_pGrid->Model().BodyIndex(m_nCurrentRow, m_nCurrentColumn);
    if (chosen.isValid() && QItemSelectionRange(topLeft, bottomRight).contains(chosen))
        emit ChosenCellChanged();
}

void CRecipeDataShowView::OnGridNotify(const GridNotification& notification)
{
    switch (notification.code) {
    case GridNotification::SelectionChanging:
        ChooseCell(notification.row, notification.column);
        break;
    case GridNotification::RightClick:
        ChooseCell(notification.row, notification.column);
        m_pActionBitBrowse->setEnabled(CanBitBrowse());
        m_pPopupMenu->popup(m_pGrid->ContextMenuPosition());
        break;
    default:
        break;
    }
}

void CRecipeDataShowView::ChooseCell(int row, int column)
{
    m_nCurrentRow = row;
    m_nCurrentColumn = column;
    emit CellChosen();
}

void CRecipeDataShowView::ForgetChosenCell()
{
    m_nCurrentRow = -1;
    m_nCurrentColumn = -1;
    emit CellChosen();
}
