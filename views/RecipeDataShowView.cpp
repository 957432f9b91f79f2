#include "views/RecipeDataShowView.h"

#include "controls/GridClipboard.h"
#include "controls/GridModel.h"
#include "document/OutsideRange.h"
#include "model/CellCheck.h"
#include "views/BitBrowserDlg.h"
#include "views/CellRemarks.h"
#include "views/ProgressDialog.h"
#include "views/TextCrossing.h"

#include <QItemSelectionRange>
#include <QMenu>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {

constexpr int kTitleRowHeight = 24;
constexpr int kDataRowHeight = 26;
constexpr int kIdColumnWidth = 64;
constexpr int kAddressColumn = 1;
constexpr int kMostColumn = 20; // digits that a narrow window keeps of the first data column at most
constexpr int kMostGrid = 40;   // and of all that it keeps of the grid
constexpr std::uint32_t kCentred = 1;
constexpr std::uint32_t kWraps = 16;

} // namespace

CRecipeDataShowView::CRecipeDataShowView(CRecipeFrame& frame, QWidget* parent)
    : QWidget(parent),
      m_frame(frame),
      m_pGrid(new CGridCtrl(kGridControlId, this)),
      m_typedValues(frame)
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
    m_pGrid->SetReporter([this](const QString& text, const QString& further) {
        m_frame.Reporter().ShowErrorWith(ViewOf(text), ViewOf(further));
    });
    connect(m_pGrid, &CGridCtrl::PasteDidNotFit, this,
            [this](const GridPasteRest& rest) { m_frame.TellEdit(NotFittingText(rest)); });
    CreatePopupMenu();
    connect(&m_typedValues, &CTypedValues::Show, this, &CRecipeDataShowView::ShowCells);
    connect(&m_typedValues, &CTypedValues::StoreExactly, this, [this](const std::vector<CellPlace>& places) {
        StoreExactly(places);
        m_pGrid->setFocus(); // its button goes
    });
    connect(m_pGrid, &CGridCtrl::Notify, this, &CRecipeDataShowView::OnGridNotify);
    connect(m_pGrid, &CGridCtrl::TitleMenuAsked, this, [this](int column, QPoint position) {
        emit TitleMenuAsked(static_cast<std::uint32_t>(column - kTitleColumns), position);
    });
    // A right click may have chosen a cell other than the one with the focus, which does not move when it is used next.
    connect(m_pGrid, &CGridCtrl::FocusCellUsed, this, &CRecipeDataShowView::ChooseCell);
    connect(&m_pGrid->Model(), &CGridModel::dataChanged, this, &CRecipeDataShowView::OnTextsChanged);
}

CRecipeDataShowView::~CRecipeDataShowView()
{
    m_pGrid->DeleteAllItems(); // the grid must not ask for texts any more
}

void CRecipeDataShowView::AddBar(QWidget& bar)
{
    layout()->addWidget(&bar);
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
    m_pGrid->DeleteAllItems();
    CProgressDialog progress(*this, tr("Reading the recipe file"));
    const auto reading = m_frame.Document().Read(type, m_frame.Reporter(), progress);
    ShowRows();
    return reading == CRecipeDocument::Reading::NotShown ? 2 : 1;
}

void CRecipeDataShowView::ClearGrid()
{
    m_frame.Document().ClearRows();
    ShowRows();
}

void CRecipeDataShowView::ShowRows()
{
    m_pGrid->DeleteAllItems();
    m_pGrid->setMinimumWidth(0);
    ForgetChosenCell();
    m_shownRows.ShowAll(Rows().RowCount());
    m_nNotes = m_frame.Document().NotesEdition();
    if (!Rows().Columns().empty())
        LayOutGrid();
    emit ShownRowsChanged(0);
    m_typedValues.LookAgain();
}

/// The document may have taken them before, as an undo does.
void CRecipeDataShowView::TakeNotes()
{
    CRecipeDocument& document = m_frame.Document();
    document.TakeNotes();
    if (document.NotesEdition() == std::exchange(m_nNotes, document.NotesEdition()))
        return;
    m_pGrid->viewport()->update();
    emit NotesChanged();
    emit ChosenCellChanged();
}

void CRecipeDataShowView::LayOutGrid()
{
    m_pGrid->SetEditable(true);
    m_pGrid->SetTextSource(this);
    m_pGrid->SetDefaultRowHeight(kDataRowHeight);
    m_pGrid->SetRowCount(kTitleRows + m_shownRows.Count());
    m_pGrid->SetColumnCount(kTitleColumns + static_cast<int>(Rows().Columns().size()));
    m_pGrid->SetFixedRowCount(kTitleRows);
    m_pGrid->SetFixedColumnCount(kTitleColumns);
    m_pGrid->SetRowHeight(0, kTitleRowHeight);
    m_pGrid->SetColumnWidth(0, kIdColumnWidth);
    WriteTitles();
    m_pGrid->FitColumns(kAddressColumn);
    m_pGrid->setMinimumWidth(LeastGridWidth());
    FreezeAgain();
}

bool CRecipeDataShowView::FreezeUpTo(std::uint32_t column)
{
    m_nFrozen = static_cast<int>(column) + 1;
    m_frozenOf = Rows().Columns();
    m_pGrid->SetFrozenColumnCount(m_nFrozen);
    return !m_pGrid->AreFrozenColumnsTooWide();
}

void CRecipeDataShowView::Unfreeze()
{
    m_nFrozen = 0;
    m_frozenOf.clear();
    m_pGrid->SetFrozenColumnCount(0);
}

/// The grid was laid out anew.
void CRecipeDataShowView::FreezeAgain()
{
    if (m_nFrozen > 0 && m_frozenOf == Rows().Columns())
        m_pGrid->SetFrozenColumnCount(m_nFrozen);
    else
        Unfreeze();
}

/// The titles of the rows and the first data column, with room to scroll to the others. The pane beside gives way to
/// it.
int CRecipeDataShowView::LeastGridWidth() const
{
    const int digit = m_pGrid->fontMetrics().horizontalAdvance(u'0');
    int width = std::min(m_pGrid->ColumnWidth(kTitleColumns), kMostColumn * digit);
    for (int column = 0; column < kTitleColumns; ++column)
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
    write(0, ToQString(kIdTitle));
    write(kAddressColumn, ToQString(kAddressTitle));
    title.format = kCentred | kWraps;
    int column = kTitleColumns;
    for (const ColumnCoding& coding : Rows().Columns())
        write(column++, ToQString(coding.title));
}

bool CRecipeDataShowView::EndCellEdit()
{
    return m_pGrid->EndEdit();
}

bool CRecipeDataShowView::ValidateCellValue(int gridColumn, const QString& text) const
{
    const auto& columns = Rows().Columns();
    const int column = gridColumn - kTitleColumns;
    if (column < 0 || static_cast<std::size_t>(column) >= columns.size())
        return false;
    return ::ValidateCellValue(columns[static_cast<std::size_t>(column)], ViewOf(text));
}

/// The coding of the chosen cell's column; null while no data cell is chosen.
const ColumnCoding* CRecipeDataShowView::ChosenColumn() const
{
    const auto& columns = Rows().Columns();
    const int column = m_nCurrentColumn - kTitleColumns;
    return column < 0 || static_cast<std::size_t>(column) >= columns.size()
               ? nullptr
               : &columns[static_cast<std::size_t>(column)];
}

bool CRecipeDataShowView::CanBitBrowse() const
{
    const ColumnCoding* coding = ChosenColumn();
    return coding != nullptr && !IsReal(coding->dataType) && coding->dataType != DataType::String;
}

QString CRecipeDataShowView::ChosenCellInfo() const
{
    if (ChosenColumn() == nullptr)
        return {};
    return CellInfo(m_frame.Document(), PlaceOf(m_nCurrentRow, m_nCurrentColumn));
}

void CRecipeDataShowView::OnBitBrowse()
{
    if (!EndCellEdit() || !CanBitBrowse())
        return;
    DataItem item = *m_frame.Document().Format().itemOfElement(m_nCurrentColumn - kTitleColumns);
    item.notes = ChosenColumn()->notes; // as all else shows them
    const QString text =
        m_pGrid->GetItemText(m_nCurrentRow, m_nCurrentColumn); // it may have changed since it was chosen
    CBitBrowserDlg dialog(m_frame, item, m_nCurrentColumn, m_nCurrentRow, text, this);
    connect(&dialog, &CBitBrowserDlg::CellValueAccepted, this, &CRecipeDataShowView::SetCellValue);
    dialog.exec();
}

QString CRecipeDataShowView::CellText(int row, int column) const
{
    const int dataRow = DataRowOf(row);
    switch (column) {
    case 0:
        return ToQString(IdText(dataRow));
    case kAddressColumn:
        return ToQString(AddressText(Rows(), dataRow));
    default:
        return ToQString(Rows().Text(dataRow, static_cast<std::size_t>(column - kTitleColumns)));
    }
}

GridCellMarks CRecipeDataShowView::CellMarks(int row, int column) const
{
    if (column < kTitleColumns)
        return {};
    const auto dataColumn = static_cast<std::size_t>(column - kTitleColumns);
    const CellPlace place = PlaceOf(row, column);
    CRecipeDocument& document = m_frame.Document();
    const bool isEdited = Rows().IsEdited(place.row, place.column);
    const auto typed = document.JudgeTyped(place);
    const bool isRewritten =
        typed ? typed->verdict != TypedVerdict::Fine : !isEdited && document.WhyChanged(place).has_value();
    return {.changed = isEdited,
            .outOfRange = Rows().OutsideLimits(DataRowOf(row), dataColumn).has_value(),
            .rewritten = isRewritten,
            .unusual = NumberOutsideRange(document, place).has_value(),
            .differs = document.Comparison() && document.Comparison()->Differs(place)};
}

QString CRecipeDataShowView::CellRemark(int row, int column) const
{
    return column < kTitleColumns ? QString() : ::CellRemark(m_frame.Document(), PlaceOf(row, column));
}

QString CRecipeDataShowView::TitleRemark(int column) const
{
    const int dataColumn = column - kTitleColumns;
    return dataColumn < 0 ? QString() : ::TitleRemark(Rows().Columns()[static_cast<std::size_t>(dataColumn)]);
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
