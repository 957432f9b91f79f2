#include "views/RecipeFormatEditView.h"

#include "library/LibraryPlace.h"
#include "library/NotesFile.h"
#include "text/NumberText.h"
#include "ui_RecipeFormatEditView.h"
#include "views/IntegerEdit.h"
#include "views/TextCrossing.h"

#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QSignalBlocker>

#include <algorithm>
#include <optional>
#include <utility>

namespace {

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

/// What is told of the library's file and of that of its notes; empty when there is nothing to tell.
QString StateText(const LibraryState& state, const QString& library, const QString& notes)
{
    using Pane = CRecipeFormatEditView;
    using Content = LibraryState::Content;
    QStringList sentences;
    if (state.content == Content::Damaged)
        sentences
            << Pane::tr("The data formats in %1 are damaged: what stands after the damage is not shown.").arg(library);
    else if (state.content == Content::Unreadable)
        sentences << Pane::tr("The data formats in %1 cannot be read.").arg(library);
    if (state.notes == Content::Damaged)
        sentences << Pane::tr("The notes of items in %1 are damaged: none are shown.").arg(notes);
    else if (state.notes == Content::Unreadable)
        sentences << Pane::tr("The notes of items in %1 cannot be read.").arg(notes);
    if (state.changes == LibraryState::Changes::NotWritten)
        sentences << Pane::tr("%1 may not be written: changes to the data formats are not kept.").arg(library);
    else if (state.changes == LibraryState::Changes::NoFile)
        sentences << Pane::tr("%1 cannot be made: changes to the data formats are not kept.").arg(library);
    else if (sentences.size() == 1)
        sentences << Pane::tr("The file is copied before it is saved.");
    else if (!sentences.isEmpty())
        sentences << Pane::tr("The files are copied before they are saved.");
    return sentences.join(u' ');
}

} // namespace

CRecipeFormatEditView::CRecipeFormatEditView(CRecipeFrame& frame, const std::filesystem::path& executable,
                                             QWidget* parent)
    : QScrollArea(parent),
      m_frame(frame),
      m_pUi(std::make_unique<Ui::CRecipeFormatEditView>()),
      m_store(ProgramLibraryPath(executable, frame.Reporter())),
      m_firstRow(frame.Document())
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
    CreateFirstRowLine();
    CreateItemMenu();
    CreateFormatMenu();
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

void CRecipeFormatEditView::ConnectControls()
{
    connect(m_pUi->comboFormats, &QComboBox::currentIndexChanged, this, &CRecipeFormatEditView::OnFormatChosen);
    connect(m_pUi->buttonAddFormat, &QPushButton::clicked, this, &CRecipeFormatEditView::OnAddFormat);
    connect(m_pUi->buttonDeleteFormat, &QPushButton::clicked, this, &CRecipeFormatEditView::OnDeleteFormat);
    connect(m_pUi->actionAddItem, &QAction::triggered, this, &CRecipeFormatEditView::OnAddItem);
    connect(m_pUi->actionModifyItem, &QAction::triggered, this, &CRecipeFormatEditView::OnModifyItem);
    connect(m_pUi->actionDeleteItem, &QAction::triggered, this, &CRecipeFormatEditView::OnDeleteItem);
    connect(m_pUi->actionDeleteAllItems, &QAction::triggered, this, &CRecipeFormatEditView::OnDeleteAllItems);
    connect(m_pUi->actionMoveItemUp, &QAction::triggered, this, [this] { OnMoveItem(-1); });
    connect(m_pUi->actionMoveItemDown, &QAction::triggered, this, [this] { OnMoveItem(+1); });
    connect(m_pUi->actionDuplicateItem, &QAction::triggered, this, &CRecipeFormatEditView::OnDuplicateItem);
    connect(m_pUi->actionItemNotes, &QAction::triggered, this, &CRecipeFormatEditView::OnItemNotes);
    connect(m_pUi->actionRenameFormat, &QAction::triggered, this, &CRecipeFormatEditView::OnRenameFormat);
    connect(m_pUi->actionDuplicateFormat, &QAction::triggered, this, &CRecipeFormatEditView::OnDuplicateFormat);
    connect(m_pUi->listItems, &QTreeWidget::doubleClicked, this,
            [this](const QModelIndex& index) { EditItem(index.row()); });
    connect(m_pUi->checkAutoUse, &QCheckBox::toggled, this, [this](bool checked) { m_bAutoUse = checked; });
    connect(m_pUi->buttonUseFormat, &QPushButton::clicked, this, &CRecipeFormatEditView::OnUseFormat);
    connect(m_pUi->buttonRefreshData, &QPushButton::clicked, this, &CRecipeFormatEditView::OnUseFormat);
    connect(m_pUi->editStartAddress, &QLineEdit::returnPressed, this, &CRecipeFormatEditView::OnUseFormat);
    connect(m_pUi->editReadCount, &QLineEdit::returnPressed, this, &CRecipeFormatEditView::OnUseFormat);
}

/// What the window shows is not all that the file holds, or will not get there.
void CRecipeFormatEditView::TellLibraryState()
{
    const QString text = StateText(m_store.State(), LibraryName(), ToQPath(NotesPathOf(m_store.Library().path)));
    if (text.isEmpty())
        m_frame.WithdrawStrip(StripSubject::LibraryNotKept);
    else
        m_frame.ShowStrip(StripSubject::LibraryNotKept, {text, {}});
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
    const LibraryState told = m_store.State();
    m_store.TakeOthers();
    ShowMoved();
    if (m_store.State() != told)
        TellLibraryState();
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
    if (move.hasOtherItems) {
        ShowSelectedFormat();
        if (move.to)
            SelectRow(std::min(row, m_pUi->listItems->topLevelItemCount() - 1));
    }
    emit FormatsChanged();
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

void CRecipeFormatEditView::ShowFormatLength()
{
    const DataFormat* format = SelectedFormat();
    m_pUi->editFormatLength->setText(QString::number(format ? format->totalLength() : 0));
}

bool CRecipeFormatEditView::HasSelectedFormat() const
{
    return SelectedFormat() != nullptr;
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
    const bool isSaved = SaveAndKeepVersions();
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

/// The library and its notes are files of their own: what was not kept of either is told until a save keeps what it
/// changes.
bool CRecipeFormatEditView::SaveAndKeepVersions()
{
    m_versionTroubles.clear();
    const bool isSaved = m_store.Save();
    if (!m_versionTroubles.isEmpty()) {
        m_versionTroubles.removeAll(QString());
        m_strVersionTrouble = m_versionTroubles.join(u' ');
    }
    return isSaved;
}

void CRecipeFormatEditView::KeepVersionsIn(const CVersionStore& versions)
{
    m_store.SetBeforeFormatsChange([this, &versions](const std::filesystem::path& path) {
        m_versionTroubles << ToQString(NotKeptText(versions.Keep(path, u"Data formats"), path));
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

void CRecipeFormatEditView::OnUseFormat()
{
    UseFormat();
    emit FormatUsed();
}

void CRecipeFormatEditView::UseReading(std::size_t index, std::int32_t startAddress, std::int32_t rowCount)
{
    SelectFormat(index);
    ShowSelectedFormat();
    m_pUi->editStartAddress->setText(QString::number(startAddress));
    m_pUi->editReadCount->setText(QString::number(rowCount));
    OnUseFormat();
}

void CRecipeFormatEditView::UseStartAddress(std::int32_t address)
{
    m_pUi->editStartAddress->setText(QString::number(address));
    OnUseFormat();
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
