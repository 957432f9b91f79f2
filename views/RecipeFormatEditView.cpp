#include "views/RecipeFormatEditView.h"

#include "library/LibraryPlace.h"
#include "text/NumberText.h"
#include "ui_RecipeFormatEditView.h"
#include "views/DataItemRow.h"
#include "views/DataTypeEditDlg.h"
#include "views/IntegerEdit.h"
#include "views/NewFormatNameDlg.h"
#include "views/TextCrossing.h"

#include <QContextMenuEvent>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QSignalBlocker>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace {

constexpr std::array<int, CDataItemRow::ColumnCount> kItemColumnWidths{28, 66, 108, 110}; // pixels
const QString kDefaultPattern = QStringLiteral("*.rcp");

std::int32_t IntegerIn(const QLineEdit& edit)
{
    return ReadInteger(ViewOf(edit.text()));
}

/// What is told of a format that has more items than it counts.
QString CountText(std::size_t saved, std::size_t shown)
{
    if (shown == 1)
        return CRecipeFormatEditView::tr("The item shown will not be saved.");
    return CRecipeFormatEditView::tr("%1 of the %2 items shown will be saved.").arg(saved).arg(shown);
}

/// What is told of the library's file, of which %1 is the name; empty when there is nothing to tell.
QString StateText(const LibraryState& state)
{
    using Pane = CRecipeFormatEditView;
    QStringList sentences;
    if (state.content == LibraryState::Content::Damaged)
        sentences << Pane::tr("The data formats in %1 are damaged: what stands after the damage is not shown.");
    else if (state.content == LibraryState::Content::Unreadable)
        sentences << Pane::tr("The data formats in %1 cannot be read.");
    if (state.changes == LibraryState::Changes::NotWritten)
        sentences << Pane::tr("%1 may not be written: changes to the data formats are not kept.");
    else if (state.changes == LibraryState::Changes::NoFile)
        sentences << Pane::tr("%1 cannot be made: changes to the data formats are not kept.");
    else if (!sentences.isEmpty())
        sentences << Pane::tr("The file is copied before it is saved.");
    return sentences.join(u' ');
}

/// What a new format begins with.
DataFormat NewFormat(const QString& name)
{
    DataItem item = DefaultItem();
    SetText(item.description, u"Desc0");
    DataFormat format(ViewOf(name));
    format.insertItem(0, std::make_unique<DataItem>(item));
    format.itemCount = 1;
    return format;
}

} // namespace

CRecipeFormatEditView::CRecipeFormatEditView(CRecipeFrame& frame, const std::filesystem::path& executable,
                                             QWidget* parent)
    : QScrollArea(parent),
      m_frame(frame),
      m_pUi(std::make_unique<Ui::CRecipeFormatEditView>()),
      m_store(ProgramLibraryPath(executable, frame.Reporter()))
{
    setObjectName(QStringLiteral("formatPane"));
    setAccessibleName(tr("Data format"));
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);

    auto* form = new QWidget;
    m_pUi->setupUi(form);
    setWidget(form);
    setFocusProxy(m_pUi->editStartAddress);
    m_pUi->checkAutoUse->setChecked(m_bAutoUse);
    TakeIntegersOnly(*m_pUi->editStartAddress);
    TakeIntegersOnly(*m_pUi->editReadCount);

    SetUpList();
    CreateItemMenu();
    TellLibraryState();
    FillControls();
    ConnectControls();
    m_frame.Document().UseFormatsOf(m_store);
}

CRecipeFormatEditView::~CRecipeFormatEditView()
{
    if (m_store.IsChanged())
        m_store.Save(); // too late to tell of a failure
}

void CRecipeFormatEditView::SetUpList()
{
    QHeaderView* header = m_pUi->listItems->header();
    header->setMinimumSectionSize(kItemColumnWidths[CDataItemRow::IdColumn]);
    for (int column = 0; column < static_cast<int>(kItemColumnWidths.size()); ++column)
        header->resizeSection(column, kItemColumnWidths[static_cast<std::size_t>(column)]);
    m_pUi->listItems->installEventFilter(this);
}

void CRecipeFormatEditView::CreateItemMenu()
{
    m_pItemMenu = new QMenu(QStringLiteral("DoFormatDataItem"), this);
    m_pItemMenu->setObjectName(QStringLiteral("menuItems"));
    m_pItemMenu->addActions({m_pUi->actionAddItem, m_pUi->actionModifyItem, m_pUi->actionDeleteItem});
    m_pItemMenu->addSeparator();
    m_pItemMenu->addAction(m_pUi->actionDeleteAllItems);
}

void CRecipeFormatEditView::ConnectControls()
{
    connect(m_pUi->comboFormats, &QComboBox::currentIndexChanged, this, &CRecipeFormatEditView::OnFormatChosen);
    connect(m_pUi->buttonAddFormat, &QPushButton::clicked, this, &CRecipeFormatEditView::OnAddFormat);
    connect(m_pUi->buttonDeleteFormat, &QPushButton::clicked, this, &CRecipeFormatEditView::OnDeleteFormat);
    connect(m_pUi->actionAddItem, &QAction::triggered, this, &CRecipeFormatEditView::OnAddItem);
    connect(m_pUi->actionModifyItem, &QAction::triggered, this, &CRecipeFormatEditView::OnModifyItem);
    connect(m_pUi->actionDeleteItem, &QAction::triggered, this, &CRecipeFormatEditView::OnDeleteItem);
    connect(m_pUi->actionDeleteAllItems, &QAction::triggered, this, &CRecipeFormatEditView::OnDeleteAllItems);
    connect(m_pUi->listItems, &QTreeWidget::doubleClicked, this,
            [this](const QModelIndex& index) { EditItem(index.row()); });
    connect(m_pUi->checkAutoUse, &QCheckBox::toggled, this, [this](bool checked) { m_bAutoUse = checked; });
    connect(m_pUi->buttonUseFormat, &QPushButton::clicked, this, &CRecipeFormatEditView::UseFormat);
    connect(m_pUi->buttonRefreshData, &QPushButton::clicked, this, &CRecipeFormatEditView::UseFormat);
    connect(m_pUi->editStartAddress, &QLineEdit::returnPressed, this, &CRecipeFormatEditView::UseFormat);
    connect(m_pUi->editReadCount, &QLineEdit::returnPressed, this, &CRecipeFormatEditView::UseFormat);
}

/// What the window shows is not all that the file holds, or will not get there.
void CRecipeFormatEditView::TellLibraryState()
{
    const QString text = StateText(m_store.State());
    if (text.isEmpty())
        m_frame.WithdrawStrip(StripSubject::LibraryNotKept);
    else
        m_frame.ShowStrip(StripSubject::LibraryNotKept, {text.arg(LibraryName()), {}});
}

void CRecipeFormatEditView::FillControls()
{
    const FormatLibrary& library = m_store.Library();
    m_pUi->editReadCount->setText(QString::number(library.rowCount));
    m_pUi->editStartAddress->setText(QString::number(library.startAddress));
    m_strFilePattern = ToQString(TextOf(library.filePattern));
    FormatChanged(0);
}

void CRecipeFormatEditView::FormatChanged(std::size_t index)
{
    const auto names = static_cast<std::size_t>(m_pUi->comboFormats->count());
    const bool isSelected = index < names && index == SelectedIndex() && names == m_store.Library().formats.size();
    const int row = CurrentRow();
    ShowNames();
    SelectFormat(index);
    ShowChangedFormats();
    if (isSelected)
        SelectRow(std::min(row, m_pUi->listItems->topLevelItemCount() - 1));
}

/// The names that stay the same are left alone.
void CRecipeFormatEditView::ShowNames()
{
    QComboBox& box = *m_pUi->comboFormats;
    const QSignalBlocker quiet(box);
    QStringList names;
    for (const auto& format : m_store.Library().formats)
        names << ToQString(TextOf(format->name));
    while (box.count() > names.size())
        box.removeItem(box.count() - 1);
    for (int i = 0; i < box.count(); ++i)
        if (box.itemText(i) != names[i])
            box.setItemText(i, names[i]);
    box.addItems(names.mid(box.count()));
}

void CRecipeFormatEditView::SelectFormat(std::size_t index)
{
    const QSignalBlocker quiet(m_pUi->comboFormats);
    m_pUi->comboFormats->setCurrentIndex(std::min(static_cast<int>(index), m_pUi->comboFormats->count() - 1));
}

/// After formats came or went.
void CRecipeFormatEditView::ShowChangedFormats()
{
    ShowWhetherFormats();
    ShowSelectedFormat();
}

void CRecipeFormatEditView::ShowWhetherFormats()
{
    const bool hasFormats = m_pUi->comboFormats->count() > 0;
    m_pUi->buttonDeleteFormat->setEnabled(hasFormats);
    for (QAction* command : m_pItemMenu->actions())
        command->setEnabled(hasFormats);
}

void CRecipeFormatEditView::OnFormatChosen()
{
    TakeOthers();
    ShowSelectedFormat();
}

void CRecipeFormatEditView::TakeOthers()
{
    m_store.TakeOthers();
    ShowMoved();
}

/// The list is filled again only where others changed its items: it may have numbers that a deleted item left.
void CRecipeFormatEditView::ShowMoved()
{
    const auto moves = m_store.TakeMoves();
    if (!moves)
        return;
    const int place = m_pUi->comboFormats->currentIndex();
    const FormatMove move =
        place < 0 ? FormatMove{.to = 0, .hasOtherItems = true} : (*moves)[static_cast<std::size_t>(place)];
    const int row = CurrentRow();
    ShowNames();
    SelectFormat(move.to.value_or(static_cast<std::size_t>(place)));
    ShowWhetherFormats();
    if (!move.hasOtherItems)
        return;
    ShowSelectedFormat();
    if (move.to)
        SelectRow(std::min(row, m_pUi->listItems->topLevelItemCount() - 1));
}

void CRecipeFormatEditView::ShowSelectedFormat()
{
    FillList();
    ShowFormatSize();
}

/// After items came or went.
void CRecipeFormatEditView::ShowFormatSize()
{
    ShowFormatLength();
    TellCount();
}

/// A save keeps as many items as the format counts, which may be fewer than it has: an empty format is shown with an
/// item that does not count, and so does the first one after that was deleted.
void CRecipeFormatEditView::TellCount()
{
    const DataFormat* format = SelectedFormat();
    const std::size_t shown = format ? format->items.size() : 0;
    const std::size_t saved = format ? format->savedItemCount() : 0;
    const QString text = saved == shown ? QString() : CountText(saved, shown);
    if (text == std::exchange(m_strCountTold, text))
        return; // the user may have dismissed it
    if (text.isEmpty())
        m_frame.WithdrawStrip(StripSubject::FormatCount);
    else
        m_frame.ShowStrip(StripSubject::FormatCount, {text, {{tr("Keep all"), [this] { KeepAllItems(); }}}});
}

/// The table stays as it is: it shows all of them already.
void CRecipeFormatEditView::KeepAllItems()
{
    Made(EditKind::KeepAllItems, m_store.CountAllItems(SelectedIndex()), AfterChange::Save);
    TellCount();
}

void CRecipeFormatEditView::FillList()
{
    QTreeWidget& list = *m_pUi->listItems;
    list.setUpdatesEnabled(false);
    list.clear();
    if (const DataFormat* format = SelectedFormat()) {
        QList<QTreeWidgetItem*> rows;
        for (const auto& item : format->items)
            rows.append(new CDataItemRow(static_cast<int>(rows.size()), *item));
        list.addTopLevelItems(rows);
    }
    list.setUpdatesEnabled(true);
}

void CRecipeFormatEditView::ShowFormatLength()
{
    const DataFormat* format = SelectedFormat();
    m_pUi->editFormatLength->setText(QString::number(format ? format->totalLength() : 0));
}

bool CRecipeFormatEditView::HasSelectedFormat() const
{
    return SelectedFormat() != nullptr;
}

void CRecipeFormatEditView::SelectRow(int row)
{
    m_pUi->listItems->setCurrentItem(m_pUi->listItems->topLevelItem(row));
}

int CRecipeFormatEditView::CurrentRow() const
{
    return m_pUi->listItems->currentIndex().row();
}

/// Only while there is a format.
std::size_t CRecipeFormatEditView::SelectedIndex() const
{
    return static_cast<std::size_t>(m_pUi->comboFormats->currentIndex());
}

const DataFormat* CRecipeFormatEditView::SelectedFormat() const
{
    const bool isSelected = m_pUi->comboFormats->currentIndex() >= 0;
    return isSelected ? m_store.Library().formats[SelectedIndex()].get() : nullptr;
}

void CRecipeFormatEditView::StoreReadSettings()
{
    if (m_strFilePattern.isEmpty())
        m_strFilePattern = kDefaultPattern;
    m_store.SetReadSettings(IntegerIn(*m_pUi->editStartAddress), IntegerIn(*m_pUi->editReadCount),
                            ViewOf(m_strFilePattern));
    SaveFormats(); // a failure is no reason not to read
}

bool CRecipeFormatEditView::SaveFormats()
{
    const LibraryState told = m_store.State();
    const bool isSaved = m_store.Save();
    ShowMoved(); // even then
    if (!isSaved) {
        m_frame.TellLibraryTrouble(tr("The data formats could not be saved in %1").arg(LibraryName()));
        return false;
    }
    m_frame.TellLibraryTrouble(m_strVersionTrouble);
    if (m_store.State() != told)
        TellLibraryState();
    return true;
}

void CRecipeFormatEditView::KeepVersionsIn(const CVersionStore& versions)
{
    m_store.SetBeforeFormatsChange([this, &versions](const std::filesystem::path& path) {
        m_strVersionTrouble = ToQString(NotKeptText(versions.Keep(path, u"Data formats"), path));
    });
}

QString CRecipeFormatEditView::LibraryName() const
{
    return QDir::toNativeSeparators(QFileInfo(m_store.Library().path).filePath());
}

void CRecipeFormatEditView::ApplyReadSettings()
{
    std::optional<DataFormat> shown; // others may have changed it: the save shows that
    if (const DataFormat* format = SelectedFormat()) {
        shown = *format;
        SetText(shown->name, ViewOf(m_pUi->comboFormats->currentText()));
    }
    StoreReadSettings();
    if (!shown)
        return;
    const FormatLibrary& library = m_store.Library();
    if (const auto fault = ReadSettingsFault(library.startAddress, library.rowCount)) {
        m_frame.Reporter().ShowError(*fault);
        return;
    }
    m_frame.Document().TakeSettings({std::move(*shown), library.startAddress, library.rowCount});
}

void CRecipeFormatEditView::UseFormat()
{
    const bool hasFormats = m_pUi->comboFormats->count() > 0; // others may add some, or delete all
    ApplyReadSettings();
    if (!hasFormats)
        m_frame.ClearRecipeData();
    else if (m_frame.Document().IsOpen())
        m_frame.ShowRecipeData(TypeByEnding(ToQPath(m_frame.Document().Path())));
}

FileType CRecipeFormatEditView::TypeByEnding(const QString& path)
{
    static const std::pair<QString, FileType> kEndings[] = {
        {QStringLiteral(".rcp"), FileType::Rcp},
        {QStringLiteral(".csv"), FileType::Csv},
        {QStringLiteral(".erp"), FileType::Erp},
        {QStringLiteral(".frp"), FileType::Frp},
    };
    for (const auto& [ending, type] : kEndings)
        if (path.endsWith(ending, Qt::CaseSensitive))
            return type;
    return FileType::Rcp; // kept: ".CSV" in capitals is shown again as a flat file
}

void CRecipeFormatEditView::contextMenuEvent(QContextMenuEvent* event)
{
    const QTreeWidget& list = *m_pUi->listItems;
    const QPoint position = list.viewport()->mapFromGlobal(event->globalPos());
    if (event->reason() == QContextMenuEvent::Keyboard && list.hasFocus())
        OpenItemMenuAtCurrentRow();
    else if (event->reason() == QContextMenuEvent::Mouse && list.viewport()->rect().contains(position))
        OpenItemMenu(list.indexAt(position).row(), event->globalPos());
    else
        QScrollArea::contextMenuEvent(event);
}

bool CRecipeFormatEditView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_pUi->listItems) {
        if (event->type() == QEvent::FocusIn)
            SelectRowForKeys(static_cast<QFocusEvent*>(event)->reason());
        else if (event->type() == QEvent::KeyPress && HandleListKey(*static_cast<QKeyEvent*>(event)))
            return true;
    }
    return QScrollArea::eventFilter(watched, event);
}

/// Where no row was current the toolkit makes the first one current, but does not show it as selected: one would not
/// see which row Delete takes.
void CRecipeFormatEditView::SelectRowForKeys(Qt::FocusReason reason)
{
    if (reason != Qt::MouseFocusReason && CurrentRow() < 0)
        SelectRow(0);
}

/// The commands of the mouse, for the current row. The menu key needs nothing here: it is a context menu event.
bool CRecipeFormatEditView::HandleListKey(const QKeyEvent& event)
{
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    if (event.key() == Qt::Key_F10 && modifiers == Qt::ShiftModifier) {
        OpenItemMenuAtCurrentRow();
        return true;
    }
    if (modifiers != Qt::NoModifier || event.isAutoRepeat())
        return false; // a key held down must not empty the list
    if (event.key() == Qt::Key_Insert && HasSelectedFormat()) {
        m_nContextItem = CurrentRow();
        OnAddItem();
        return true;
    }
    if (CurrentRow() < 0)
        return false;
    if (event.key() == Qt::Key_Delete)
        DeleteItem(CurrentRow());
    else if (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter)
        EditItem(CurrentRow());
    else
        return false;
    return true;
}

void CRecipeFormatEditView::OpenItemMenuAtCurrentRow()
{
    QTreeWidget& list = *m_pUi->listItems;
    list.scrollTo(list.currentIndex());
    const QRect row = list.visualRect(list.currentIndex()); // empty without one: the menu opens in the list's corner
    OpenItemMenu(CurrentRow(), list.viewport()->mapToGlobal(row.bottomLeft()));
}

void CRecipeFormatEditView::OpenItemMenu(int row, const QPoint& globalPosition)
{
    m_nContextItem = row;
    if (m_pUi->comboFormats->count() == 0)
        return;
    m_pUi->actionModifyItem->setEnabled(row >= 0);
    m_pUi->actionDeleteItem->setEnabled(row >= 0);
    m_pItemMenu->popup(globalPosition);
}

/// After the row that the menu was opened on, else at the end.
void CRecipeFormatEditView::OnAddItem()
{
    m_store.SetChanged(); // kept: even when the dialog is cancelled
    const int rows = m_pUi->listItems->topLevelItemCount();
    const int position = m_nContextItem >= 0 ? std::min(m_nContextItem + 1, rows) : rows;
    m_nContextItem = -1;
    CDataTypeEditDlg dialog(position, *CreateItem(FormatLibrary::ProgramVersion()), CDataTypeEditDlg::Mode::Add,
                            m_frame.Reporter(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const FormatChange change = m_store.InsertItem(SelectedIndex(), static_cast<std::size_t>(position), dialog.Item());
    ShowSelectedFormat();
    SelectRow(position);
    Made(EditKind::AddItem, change);
}

/// The row that the menu was opened on, -1 for none. It no longer is one when rows have gone since.
int CRecipeFormatEditView::TakeContextItem()
{
    const int row = std::exchange(m_nContextItem, -1);
    return row < m_pUi->listItems->topLevelItemCount() ? row : -1;
}

void CRecipeFormatEditView::OnModifyItem()
{
    EditItem(TakeContextItem());
}

void CRecipeFormatEditView::EditItem(int row)
{
    if (row < 0)
        return;
    const std::size_t format = SelectedIndex();
    const auto position = static_cast<std::size_t>(row);
    const DataItem item = *SelectedFormat()->items[position];
    CDataTypeEditDlg dialog(row, item, CDataTypeEditDlg::Mode::Modify, m_frame.Reporter(), this);
    connect(&dialog, &CDataTypeEditDlg::UnicodeTaken, this,
            [&](std::int32_t unicode) { m_store.SetUnicode(format, position, unicode); });
    if (dialog.exec() != QDialog::Accepted)
        return;
    m_store.SetUnicode(format, position, item.unicode); // all that was done is one change
    const FormatChange change = m_store.ReplaceItem(format, position, dialog.Item());
    ShowSelectedFormat();
    SelectRow(row);
    Made(EditKind::ModifyItem, change);
}

void CRecipeFormatEditView::OnDeleteItem()
{
    if (const int row = TakeContextItem(); row >= 0)
        DeleteItem(row);
}

/// kept: the numbers of the rows after it stay as they are, until the list is filled again
void CRecipeFormatEditView::DeleteItem(int row)
{
    const FormatChange change = m_store.RemoveItem(SelectedIndex(), static_cast<std::size_t>(row));
    delete m_pUi->listItems->takeTopLevelItem(row);
    ShowFormatSize();
    Made(EditKind::DeleteItem, change);
}

void CRecipeFormatEditView::OnDeleteAllItems()
{
    const FormatChange change = m_store.RemoveAllItems(SelectedIndex());
    m_pUi->listItems->clear();
    ShowFormatSize();
    Made(EditKind::DeleteAllItems, change);
}

void CRecipeFormatEditView::OnAddFormat()
{
    m_store.SetChanged(); // kept: even when the dialog is cancelled
    CNewFormatNameDlg dialog(m_frame.Reporter(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    Made(EditKind::AddFormat, m_store.AppendFormat(NewFormat(dialog.Name())));
}

/// The format after the deleted one is selected, or, when that was the last, the one before it.
void CRecipeFormatEditView::OnDeleteFormat()
{
    Made(EditKind::DeleteFormat, m_store.RemoveFormat(SelectedIndex()));
}

/// Every command on formats and items ends here. What became of a format is shown by now, but not that it came or went.
/// With the reading that it brings about it is one edit.
void CRecipeFormatEditView::Made(EditKind kind, const FormatChange& change, AfterChange next)
{
    {
        const CRecipeDocument::CGroup group(m_frame.Document(), kind);
        m_frame.Document().NoteFormatChange(kind, change);
        TakeIntoUse(change, next);
    }
    m_frame.WithdrawEdit();
    m_frame.UpdateCommands();
}

void CRecipeFormatEditView::TakeIntoUse(const FormatChange& change, AfterChange next)
{
    if (!change.before || !change.after)
        FormatChanged(change.index);
    if (next == AfterChange::Save)
        SaveFormats();
    else if (m_bAutoUse)
        UseFormat();
    else
        TakeOthers();
}
