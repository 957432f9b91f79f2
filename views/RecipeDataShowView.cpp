#include "views/RecipeDataShowView.h"

#include "controls/GridModel.h"
#include "model/CellCheck.h"
#include "model/ValueLimits.h"
#include "views/BitBrowserDlg.h"
#include "views/ComparedRemark.h"
#include "views/ProgressDialog.h"
#include "views/SavingRemark.h"
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

EditKind KindOf(GridChange change)
{
    switch (change) {
    case GridChange::Paste:
        return EditKind::Paste;
    case GridChange::Cut:
        return EditKind::Cut;
    case GridChange::Clear:
        return EditKind::Clear;
    case GridChange::Typing:
        break;
    }
    return EditKind::Typing;
}

/// Of a data cell of the grid.
CellPlace PlaceOf(int row, int column)
{
    return {row - kTitleRows, static_cast<std::uint32_t>(column - kTitleColumns)};
}

TextForCell TextFor(int row, int column, const QString& text)
{
    return {PlaceOf(row, column), std::u16string(ViewOf(text))};
}

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
    m_pGrid->SetReporter([this](const QString& text) { m_frame.Reporter().ShowError(ViewOf(text)); });
    CreatePopupMenu();
    connect(&m_typedValues, &CTypedValues::Show, this, &CRecipeDataShowView::ShowCells);
    connect(&m_typedValues, &CTypedValues::StoreExactly, this, [this](const std::vector<CellPlace>& places) {
        StoreExactly(places);
        m_pGrid->setFocus(); // its button goes
    });
    connect(m_pGrid, &CGridCtrl::Notify, this, &CRecipeDataShowView::OnGridNotify);
    // A right click may have chosen a cell other than the one with the focus, which does not move when it is used next.
    connect(m_pGrid, &CGridCtrl::FocusCellUsed, this, &CRecipeDataShowView::ChooseCell);
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
    if (!Rows().Columns().empty())
        LayOutGrid();
    m_typedValues.LookAgain();
}

void CRecipeDataShowView::LayOutGrid()
{
    m_pGrid->SetEditable(true);
    m_pGrid->SetTextSource(this);
    m_pGrid->SetDefaultRowHeight(kDataRowHeight);
    m_pGrid->SetRowCount(kTitleRows + Rows().RowCount());
    m_pGrid->SetColumnCount(kTitleColumns + static_cast<int>(Rows().Columns().size()));
    m_pGrid->SetFixedRowCount(kTitleRows);
    m_pGrid->SetFixedColumnCount(kTitleColumns);
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

SaveResult CRecipeDataShowView::WriteData(FileType type, const QString& path, ForeignRule rule)
{
    return WriteBy([&](CRecipeDocument& document, CProgress& progress) {
        return document.Write(type, NativePath(path), m_frame.Reporter(), progress, rule);
    });
}

SaveResult CRecipeDataShowView::WriteDataAs(FileType type, const QString& path)
{
    return WriteBy([&](CRecipeDocument& document, CProgress& progress) {
        return document.SaveAs(type, NativePath(path), m_frame.Reporter(), progress);
    });
}

SaveResult CRecipeDataShowView::WriteEdited(ForeignRule rule)
{
    return WriteBy([&](CRecipeDocument& document, CProgress& progress) {
        return document.WriteEdited(m_frame.Reporter(), progress, rule);
    });
}

SaveResult CRecipeDataShowView::WriteCopy(FileType type, const QString& path)
{
    return WriteBy([&](CRecipeDocument& document, CProgress& progress) {
        return document.WriteCopy(type, NativePath(path), m_frame.Reporter(), progress);
    });
}

std::optional<std::size_t> CRecipeDataShowView::PutBackStored()
{
    std::size_t count = 0;
    const SaveResult result = WriteBy([&](CRecipeDocument& document, CProgress& progress) {
        return document.PutBackStored(m_frame.Reporter(), progress, count);
    });
    return result ? std::optional(count) : std::nullopt;
}

/// The marks of the cells may be others then.
SaveResult CRecipeDataShowView::WriteBy(const std::function<SaveResult(CRecipeDocument&, CProgress&)>& write)
{
    CProgressDialog progress(*this, tr("Saving the recipe file"));
    const SaveResult result = write(m_frame.Document(), progress);
    if (result.isSaved)
        StoredChanged();
    return result;
}

void CRecipeDataShowView::StoredChanged()
{
    m_pGrid->viewport()->update();
    m_typedValues.LookAgain();
    emit ChosenCellChanged();
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
    const ColumnCoding* coding = ChosenColumn();
    if (coding == nullptr)
        return {};
    const auto column = static_cast<std::size_t>(m_nCurrentColumn - kTitleColumns);
    const auto address = Rows().RowAddress(m_nCurrentRow - kTitleRows).number + Rows().WordOffset(column);
    QStringList parts{QStringLiteral("RW%1").arg(address), ToQString(NameOf(coding->dataType)),
                      ToQString(LimitsText(*coding)), CellRemark(m_nCurrentRow, m_nCurrentColumn)};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

void CRecipeDataShowView::OnBitBrowse()
{
    if (!EndCellEdit() || !CanBitBrowse())
        return;
    const DataItem* item = m_frame.Document().Format().itemOfElement(m_nCurrentColumn - kTitleColumns);
    const QString text =
        m_pGrid->GetItemText(m_nCurrentRow, m_nCurrentColumn); // it may have changed since it was chosen
    CBitBrowserDlg dialog(m_frame, *item, m_nCurrentColumn, m_nCurrentRow, text, this);
    connect(&dialog, &CBitBrowserDlg::CellValueAccepted, this, &CRecipeDataShowView::SetCellValue);
    dialog.exec();
}

void CRecipeDataShowView::SetCellValue(int column, int row, const QString& text)
{
    Take(EditKind::BitBrowser, row, column, text);
    m_pGrid->RedrawCell(row, column);
}

QString CRecipeDataShowView::CellText(int row, int column) const
{
    const int dataRow = row - kTitleRows;
    switch (column) {
    case 0:
        return ToQString(IdText(dataRow));
    case kAddressColumn:
        return ToQString(AddressText(Rows(), dataRow));
    default:
        return ToQString(Rows().Text(dataRow, static_cast<std::size_t>(column - kTitleColumns)));
    }
}

bool CRecipeDataShowView::SetCellText(int row, int column, const QString& text)
{
    return Take(EditKind::Typing, row, column, text);
}

bool CRecipeDataShowView::SetCellTexts(GridChange change, std::vector<GridCellText> texts)
{
    std::vector<TextForCell> ofRows;
    ofRows.reserve(texts.size());
    for (const GridCellText& cell : texts)
        if (cell.column >= kTitleColumns)
            ofRows.push_back(TextFor(cell.row, cell.column, cell.text));
    return Take(KindOf(change), std::move(ofRows));
}

bool CRecipeDataShowView::Take(EditKind kind, int row, int column, const QString& text)
{
    std::vector<TextForCell> texts;
    if (column >= kTitleColumns)
        texts.push_back(TextFor(row, column, text));
    return Take(kind, std::move(texts));
}

/// One edit of the document. False when nothing was changed.
bool CRecipeDataShowView::Take(EditKind kind, std::vector<TextForCell> texts)
{
    std::vector<CellPlace> places;
    places.reserve(texts.size());
    for (const TextForCell& text : texts)
        places.push_back(text.place);
    if (!Report(m_frame.Document().SetTexts(kind, std::move(texts))))
        return false;
    m_typedValues.Look(std::move(places));
    return true;
}

/// Whether an edit was made; those who show it, or must hear of it, have then heard.
bool CRecipeDataShowView::Report(EditOutcome outcome)
{
    if (outcome == EditOutcome::OutOfMemory)
        m_frame.Reporter().ShowError(kNoMemoryForEdit);
    if (outcome == EditOutcome::Made)
        emit Edited();
    return outcome == EditOutcome::Made;
}

void CRecipeDataShowView::KeepStored(const std::vector<CellPlace>& places)
{
    if (EndCellEdit())
        ShowStates(m_frame.Document().KeepStored(places));
}

void CRecipeDataShowView::StoreExactly(const std::vector<CellPlace>& places)
{
    if (EndCellEdit())
        ShowStates(m_frame.Document().StoreExactly(places));
}

void CRecipeDataShowView::TakeOver(const std::vector<CellEdit>& edits)
{
    if (!EndCellEdit())
        return;
    std::size_t refused = 0;
    ShowStates(m_frame.Document().TakeOver(edits, &refused));
    if (refused > 0)
        m_frame.TellEdit(refused == 1
                             ? tr("1 value was not taken over: its cell cannot have it.")
                             : tr("%1 values were not taken over: their cells cannot have them.").arg(refused));
}

bool CRecipeDataShowView::ApplyPatch(const CellPatch& patch)
{
    if (!EndCellEdit())
        return false;
    const EditOutcome outcome = m_frame.Document().ApplyPatch(patch);
    ShowStates(outcome);
    if (outcome != EditOutcome::Made)
        return false;
    std::vector<CellPlace> places;
    for (const CellPatch::Entry& entry : patch.entries)
        places.push_back(entry.place);
    ShowCells(places);
    return true;
}

std::optional<std::vector<UnsavedCell>> CRecipeDataShowView::PutBackUnsaved(const UnsavedWork& work)
{
    EditOutcome outcome = EditOutcome::Nothing;
    auto others = m_frame.Document().PutBackUnsaved(work, outcome);
    ShowStates(outcome);
    if (outcome == EditOutcome::OutOfMemory)
        return std::nullopt;
    return others;
}

void CRecipeDataShowView::ShowStates(EditOutcome outcome)
{
    if (!Report(outcome))
        return;
    m_pGrid->TextsChanged();
    m_typedValues.LookAgain();
    emit ChosenCellChanged();
}

void CRecipeDataShowView::ShowCells(const std::vector<CellPlace>& places)
{
    std::vector<std::pair<int, int>> cells;
    cells.reserve(places.size());
    for (const CellPlace place : places)
        cells.emplace_back(place.row + kTitleRows, static_cast<int>(place.column) + kTitleColumns);
    m_pGrid->ShowCells(cells);
}

std::vector<CellPlace> CRecipeDataShowView::ChosenPlaces(std::size_t most) const
{
    std::vector<CellPlace> places;
    for (const QItemSelectionRange& range : m_pGrid->ChosenCells())
        for (int row = range.top(); row <= range.bottom() && places.size() < most; ++row)
            for (int column = range.left(); column <= range.right() && places.size() < most; ++column)
                places.push_back({row, static_cast<std::uint32_t>(column)}); // the grid's body has the data cells
    std::sort(places.begin(), places.end());
    return places;
}

void CRecipeDataShowView::ShowEdited(const EditReport& report)
{
    if (report.hasOtherRows)
        ShowOtherRows();
    else
        m_pGrid->TextsChanged();
    ShowCells(report.cells);
    m_typedValues.LookAgain();
}

/// The user stays where they were, if there is such a cell.
void CRecipeDataShowView::ShowOtherRows()
{
    int row = 0;
    int column = 0;
    const bool hadFocusCell = m_pGrid->FocusCell(row, column);
    ShowRows();
    if (hadFocusCell)
        m_pGrid->SetFocusCell(row, column);
}

bool CRecipeDataShowView::GoToNextEdited()
{
    return !EndCellEdit() || GoTo(Rows().NextEdited(FocusPlace()));
}

bool CRecipeDataShowView::GoToPreviousEdited()
{
    return !EndCellEdit() || GoTo(Rows().PreviousEdited(FocusPlace()));
}

/// Above the rows while no cell has the focus.
CellPlace CRecipeDataShowView::FocusPlace() const
{
    int row = 0;
    int column = 0;
    return m_pGrid->FocusCell(row, column) ? PlaceOf(row, column) : CellPlace{-1, 0};
}

bool CRecipeDataShowView::GoTo(std::optional<CellPlace> place)
{
    if (!place)
        return false;
    m_pGrid->setFocus(); // to go on there
    m_pGrid->ShowCells({{place->row + kTitleRows, static_cast<int>(place->column) + kTitleColumns}});
    return true;
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
            .outOfRange = Rows().OutsideLimits(row - kTitleRows, dataColumn).has_value(),
            .rewritten = isRewritten,
            .differs = document.Comparison() && document.Comparison()->Differs(place)};
}

QString CRecipeDataShowView::CellRemark(int row, int column) const
{
    if (column < kTitleColumns)
        return {};
    const auto dataColumn = static_cast<std::size_t>(column - kTitleColumns);
    QStringList remarks;
    if (const auto value = Rows().OutsideLimits(row - kTitleRows, dataColumn))
        remarks += tr("the value %1 lies outside the limits %2")
                       .arg(ToQString(*value).left(kLongestValue), ToQString(LimitsText(Rows().Columns()[dataColumn])));
    const CellPlace place = PlaceOf(row, column);
    const bool isEdited = Rows().IsEdited(place.row, place.column);
    if (isEdited)
        remarks += tr("changed, not saved yet");
    remarks += TypedRemark(m_frame.Document(), place);
    if (const auto outlook = isEdited ? std::nullopt : m_frame.Document().OutlookOf(place))
        remarks += RewriteRemark(*outlook);
    remarks += ComparedRemark(m_frame.Document(), place);
    remarks.removeAll(QString());
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
