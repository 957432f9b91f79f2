#include "views/RecipeFormatEditView.h"

#include "disk/File.h"
#include "library/LibraryOriginal.h"
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
      m_pUi(std::make_unique<Ui::CRecipeFormatEditView>())
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
    LoadLibrary(executable);
    FillControls();
    ConnectControls();
}

CRecipeFormatEditView::~CRecipeFormatEditView()
{
    if (m_bLibraryChanged)
        WriteLibrary(); // too late to tell of a failure
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
    connect(m_pUi->comboFormats, &QComboBox::currentIndexChanged, this, &CRecipeFormatEditView::ShowSelectedFormat);
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

void CRecipeFormatEditView::LoadLibrary(const std::filesystem::path& executable)
{
    m_opening = OpenLibrary(m_library, ProgramLibraryPath(executable, m_frame.Reporter()));
    m_bOriginalAtRisk = IsOriginalAtRisk(m_library, m_opening.loaded);
    if (m_library.versionsKnown) {
        m_frame.m_nLibraryFileVersion = m_library.fileVersion;
        m_frame.m_nLibraryProgramVersion = m_library.programVersion;
    }
    TellLibraryState();
    EnsureFirstItem();
}

/// What the window shows is not all that the file holds, or will not get there.
void CRecipeFormatEditView::TellLibraryState()
{
    QStringList sentences;
    const bool isThere = !IsMissing(m_library.path);
    if (IsDamaged(m_library, m_opening))
        sentences << tr("The data formats in %1 are damaged: what stands after the damage is not shown.");
    else if (!m_library.versionsKnown && isThere)
        sentences << tr("The data formats in %1 cannot be read.");
    if (m_opening.mayBeWritten && !sentences.isEmpty())
        sentences << tr("The file is copied before it is saved.");
    else if (!m_opening.mayBeWritten)
        sentences << (isThere ? tr("%1 may not be written: changes to the data formats are not kept.")
                              : tr("%1 cannot be made: changes to the data formats are not kept."));
    if (sentences.isEmpty())
        m_frame.WithdrawStrip(StripSubject::LibraryNotKept);
    else
        m_frame.ShowStrip(StripSubject::LibraryNotKept, {sentences.join(u' ').arg(LibraryName()), {}});
}

void CRecipeFormatEditView::EnsureFirstItem()
{
    if (m_library.formats.empty())
        m_library.formats.push_back(std::make_unique<DataFormat>(DefaultFormat()));
    else if (DataFormat& first = *m_library.formats.front(); first.items.empty())
        first.insertItem(0, std::make_unique<DataItem>(DefaultItem())); // kept: shown, but itemCount is not raised
}

void CRecipeFormatEditView::FillControls()
{
    QStringList names;
    for (const auto& format : m_library.formats)
        names << ToQString(TextOf(format->name));
    m_pUi->comboFormats->addItems(names);
    m_pUi->comboFormats->setCurrentIndex(0);
    m_pUi->editReadCount->setText(QString::number(m_library.rowCount));
    m_pUi->editStartAddress->setText(QString::number(m_library.startAddress));
    m_strFilePattern = ToQString(TextOf(m_library.filePattern));
    ShowChangedFormats();
}

/// After formats came or went.
void CRecipeFormatEditView::ShowChangedFormats()
{
    const bool hasFormats = m_pUi->comboFormats->count() > 0;
    m_pUi->buttonDeleteFormat->setEnabled(hasFormats);
    for (QAction* command : m_pItemMenu->actions())
        command->setEnabled(hasFormats);
    ShowSelectedFormat();
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
    DataFormat& format = *SelectedFormat();
    format.itemCount = static_cast<std::int32_t>(format.items.size());
    m_bLibraryChanged = true;
    SaveLibrary();
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

DataFormat* CRecipeFormatEditView::SelectedFormat() const
{
    const int index = m_pUi->comboFormats->currentIndex();
    return index < 0 ? nullptr : m_library.formats[static_cast<std::size_t>(index)].get();
}

void CRecipeFormatEditView::StoreReadSettings()
{
    m_library.startAddress = IntegerIn(*m_pUi->editStartAddress);
    m_library.rowCount = IntegerIn(*m_pUi->editReadCount);
    if (m_strFilePattern.isEmpty())
        m_strFilePattern = kDefaultPattern;
    SetText(m_library.filePattern, ViewOf(m_strFilePattern));
    SaveLibrary(); // a failure is no reason not to read
}

/// Tells whether that went, in the status bar and in the strip.
void CRecipeFormatEditView::SaveLibrary()
{
    if (!WriteLibrary()) {
        m_frame.TellLibraryTrouble(tr("The data formats could not be saved in %1").arg(LibraryName()));
        return;
    }
    m_frame.TellLibraryTrouble({});
    if (!m_opening.mayBeWritten && MayBeWritten(m_library.path)) {
        m_opening = {.loaded = 0, .mayBeWritten = true};
        m_frame.WithdrawStrip(StripSubject::LibraryNotKept); // the file holds what is shown from now on
    }
}

bool CRecipeFormatEditView::WriteLibrary()
{
    if (m_bOriginalAtRisk && !KeepOriginal(m_library.path))
        return false;
    if (m_library.save(m_library.path) != 0)
        return false;
    m_bOriginalAtRisk = false;
    return true;
}

QString CRecipeFormatEditView::LibraryName() const
{
    return QDir::toNativeSeparators(QFileInfo(m_library.path).filePath());
}

void CRecipeFormatEditView::ApplyReadSettings()
{
    StoreReadSettings();
    const DataFormat* format = SelectedFormat();
    if (!format)
        return;
    if (m_library.startAddress < 0) {
        m_frame.Reporter().ShowError(u"The Address for reading data is error , it can' be less than 0!");
        return;
    }
    if (m_library.rowCount < 1) {
        m_frame.Reporter().ShowError(u"The array number is error ,it must be Integer and larger than 0!");
        return;
    }
    m_frame.m_nStartAddress = m_library.startAddress;
    m_frame.m_nReadCount = m_library.rowCount;
    m_frame.m_nFormatLength = IntegerIn(*m_pUi->editFormatLength);
    HandOverFormat(*format);
}

void CRecipeFormatEditView::HandOverFormat(const DataFormat& format)
{
    DataFormat& used = *m_frame.m_pDataFormat;
    used = format;
    SetText(used.name, ViewOf(m_pUi->comboFormats->currentText()));
}

void CRecipeFormatEditView::UseFormat()
{
    ApplyReadSettings();
    if (m_pUi->comboFormats->count() == 0)
        m_frame.ClearRecipeData();
    else if (m_frame.m_bFileOpen)
        m_frame.ShowRecipeData(TypeByEnding(m_frame.m_strFilePath));
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

/// Where no row was current the toolkit makes the first one so, but does not show it as selected: one would not see
/// which row Delete takes.
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

/// Behind the row that the menu was opened on, else at the end.
void CRecipeFormatEditView::OnAddItem()
{
    m_bLibraryChanged = true; // kept: also when the dialog is cancelled
    const int rows = m_pUi->listItems->topLevelItemCount();
    const int position = m_nContextItem >= 0 ? std::min(m_nContextItem + 1, rows) : rows;
    m_nContextItem = -1;
    CDataTypeEditDlg dialog(position, *CreateItem(FormatLibrary::ProgramVersion()), CDataTypeEditDlg::Mode::Add,
                            m_frame.Reporter(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    DataFormat& format = *SelectedFormat();
    format.insertItem(static_cast<std::size_t>(position), std::make_unique<DataItem>(dialog.Item()));
    ++format.itemCount;
    ShowSelectedFormat();
    SelectRow(position);
    UseChange();
}

/// The row that the menu was opened on, -1 for none. It is one no longer when rows went since.
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
    DataItem& item = *SelectedFormat()->items[static_cast<std::size_t>(row)];
    CDataTypeEditDlg dialog(row, item, CDataTypeEditDlg::Mode::Modify, m_frame.Reporter(), this);
    connect(&dialog, &CDataTypeEditDlg::UnicodeTaken, this, [&item](std::int32_t unicode) { item.unicode = unicode; });
    if (dialog.exec() != QDialog::Accepted)
        return;
    item = dialog.Item();
    ShowSelectedFormat();
    SelectRow(row);
    UseChange();
}

void CRecipeFormatEditView::OnDeleteItem()
{
    if (const int row = TakeContextItem(); row >= 0)
        DeleteItem(row);
}

/// kept: the numbers of the rows behind it stay as they are, until the list is filled again
void CRecipeFormatEditView::DeleteItem(int row)
{
    SelectedFormat()->removeItem(static_cast<std::size_t>(row));
    delete m_pUi->listItems->takeTopLevelItem(row);
    ShowFormatSize();
    UseChange();
}

void CRecipeFormatEditView::OnDeleteAllItems()
{
    SelectedFormat()->clear();
    m_pUi->listItems->clear();
    ShowFormatSize();
    UseChange();
}

void CRecipeFormatEditView::OnAddFormat()
{
    m_bLibraryChanged = true; // kept: also when the dialog is cancelled
    CNewFormatNameDlg dialog(m_frame.Reporter(), this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    AppendFormat(dialog.Name());
    UseChange();
}

void CRecipeFormatEditView::AppendFormat(const QString& name)
{
    m_library.formats.push_back(std::make_unique<DataFormat>(NewFormat(name)));
    const QSignalBlocker quiet(m_pUi->comboFormats);
    m_pUi->comboFormats->addItem(name);
    m_pUi->comboFormats->setCurrentIndex(m_pUi->comboFormats->count() - 1);
    ShowChangedFormats();
}

/// The format behind the deleted one is selected, or, after the last one, the one before it.
void CRecipeFormatEditView::OnDeleteFormat()
{
    const int index = m_pUi->comboFormats->currentIndex();
    m_library.formats.erase(m_library.formats.begin() + index);
    const QSignalBlocker quiet(m_pUi->comboFormats);
    m_pUi->comboFormats->removeItem(index);
    m_pUi->comboFormats->setCurrentIndex(std::min(index, m_pUi->comboFormats->count() - 1));
    ShowChangedFormats();
    UseChange();
}

void CRecipeFormatEditView::UseChange()
{
    m_bLibraryChanged = true;
    if (m_bAutoUse)
        UseFormat();
}
