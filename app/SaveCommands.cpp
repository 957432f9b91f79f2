#include "app/SaveCommands.h"

#include "app/FileCommands.h"
#include "changes/SaveRecords.h"
#include "ui_MainFrame.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFrame.h"
#include "views/TextCrossing.h"

#include <QMainWindow>
#include <QToolButton>

#include <chrono>

namespace {

constexpr std::chrono::milliseconds kSlice{8};
constexpr int kPause = 100;                     // milliseconds: what was opened is painted first
constexpr int kPanelPart = 3;                   // of the window's height at most, at first
constexpr std::size_t kMostCellsLookedAt = 256; // to tell whether a command is for one of them

std::u16string FormatNameOf(const CRecipeDocument& document)
{
    return std::u16string(TextOf(document.Format().name));
}

bool IsOfOtherType(const CSavePlan& plan)
{
    return plan.CountOf(ChangeReason::Type) > 0;
}

} // namespace

CSaveCommands::CSaveCommands(Ui::CMainFrame& ui, CRecipeFrame& frame, CFileCommands& fileCommands,
                             CRecipeDataShowView& dataPane, QMainWindow& window)
    : m_ui(ui),
      m_frame(frame),
      m_dataPane(dataPane),
      m_window(window),
      m_pPanel(new CChangesPanel(frame.Reporter(), &window)),
      m_pField(new QToolButton(&window)),
      m_counting(&window)
{
    window.addDockWidget(Qt::BottomDockWidgetArea, m_pPanel);
    m_pPanel->hide();
    m_pField->setObjectName(QStringLiteral("fieldChanges"));
    m_pField->setAutoRaise(true);
    m_pField->setFocusPolicy(Qt::TabFocus);
    m_pField->setToolTip(tr("What a save will change. A click lists it."));
    m_pField->hide();
    m_counting.setObjectName(QStringLiteral("timerCounting"));
    m_counting.setSingleShot(true);
    connect(&m_counting, &QTimer::timeout, this, &CSaveCommands::CountOn);
    connect(m_ui.actionSaveEdited, &QAction::triggered, this, [&fileCommands] { fileCommands.OnFileSaveEdited(); });
    connect(m_ui.actionSaveCopy, &QAction::triggered, this, [&fileCommands] { fileCommands.OnFileSaveCopy(); });
    ConnectActions();
    ConnectPanel();
}

void CSaveCommands::ConnectActions()
{
    connect(m_pField, &QToolButton::clicked, this, &CSaveCommands::OpenPlan);
    connect(m_ui.actionChangesOnSaving, &QAction::triggered, this, &CSaveCommands::OpenPlan);
    connect(m_ui.actionKeepStored, &QAction::triggered, this,
            [this] { m_dataPane.KeepStored(m_dataPane.ChosenPlaces(SIZE_MAX)); });
    connect(m_ui.actionStoreExactly, &QAction::triggered, this,
            [this] { m_dataPane.StoreExactly(m_dataPane.ChosenPlaces(SIZE_MAX)); });
    connect(m_ui.menuEdit, &QMenu::aboutToShow, this, &CSaveCommands::EnableEditEntries);
    connect(m_ui.menuEdit, &QMenu::aboutToHide, this, &CSaveCommands::AllowEditKeys);
}

void CSaveCommands::ConnectPanel()
{
    m_pPanel->SetColumns([this](CellPlace place) { return ColumnOf(place); });
    connect(&m_dataPane, &CRecipeDataShowView::NotesChanged, m_pPanel, &CChangesPanel::ListChanged);
    connect(m_pPanel, &CChangesPanel::GoToCell, this, [this](CellPlace place) {
        if (IsListOfTable())
            m_dataPane.GoToCell(place);
    });
    connect(m_pPanel, &CChangesPanel::ShowCell, this, [this](CellPlace place) {
        if (IsListOfTable())
            m_dataPane.ShowCells({place});
    });
    connect(m_pPanel, &CChangesPanel::KeepStored, &m_dataPane, &CRecipeDataShowView::KeepStored);
    connect(m_pPanel, &CChangesPanel::TakeOver, this, [this](const std::vector<CellEdit>& cells) {
        if (IsListOfTable())
            m_dataPane.TakeOver(cells);
    });
    connect(m_pPanel, &CChangesPanel::Closed, this, &CSaveCommands::PanelClosed);
    connect(m_pPanel, &CChangesPanel::Left, this, [this] { m_dataPane.setFocus(Qt::OtherFocusReason); });
}

/// Keys find out by themselves whether there is something for them.
void CSaveCommands::EnableEditEntries()
{
    CRecipeDocument& document = m_frame.Document();
    const auto places = m_dataPane.ChosenPlaces(kMostCellsLookedAt + 1);
    const bool areMany = places.size() > kMostCellsLookedAt;
    const auto isForOne = [&](auto isFor) { return std::any_of(places.begin(), places.end(), isFor); };
    const bool hasWords = document.HasExactWords();
    m_ui.actionKeepStored->setEnabled(
        hasWords && (areMany || isForOne([&](CellPlace place) { return document.CanKeepStored(place); })));
    m_ui.actionStoreExactly->setEnabled(
        hasWords && (areMany || isForOne([&](CellPlace place) { return document.CanStoreExactly(place); })));
}

void CSaveCommands::AllowEditKeys()
{
    m_ui.actionKeepStored->setEnabled(true);
    m_ui.actionStoreExactly->setEnabled(true);
}

void CSaveCommands::Update()
{
    CRecipeDocument& document = m_frame.Document();
    document.BeginPlan();
    const bool isFile = document.IsOpen() && !document.IsNew();
    const QString fault = ToQString(document.Plan().IsBegun() ? document.Plan().FormFault() : std::u16string());
    m_ui.actionSaveEdited->setText(fault.isEmpty() ? tr("Save edited only")
                                                   : tr("Save edited only (not this file: %1)").arg(fault));
    m_ui.actionSaveEdited->setEnabled(isFile && fault.isEmpty());
    m_ui.actionSaveCopy->setEnabled(document.IsOpen());
    m_ui.actionChangesOnSaving->setEnabled(document.IsOpen());
    FollowDocument();
    ShowCounts();
    if (document.IsPlanOpen() && !m_counting.isActive())
        m_counting.start(kPause);
}

/// The panel's list of the plan is that of the current file.
void CSaveCommands::FollowDocument()
{
    const CRecipeDocument& document = m_frame.Document();
    if (m_listed != Listed::Plan)
        return;
    if (m_listedPath != document.Path() || m_listedFormat != FormatNameOf(document))
        ListPlan();
    else if (m_listedEdition != document.Plan().Edition())
        m_pPanel->ListChanged();
    m_listedEdition = document.Plan().Edition();
}

void CSaveCommands::CountOn()
{
    CRecipeDocument& document = m_frame.Document();
    document.ContinuePlan(std::chrono::steady_clock::now() + kSlice);
    if (m_listed == Listed::Plan)
        m_pPanel->ListGrew();
    if (!document.IsPlanOpen())
        return Update();
    m_counting.start(0);
    ShowCounts();
}

/// "1 edited, 61 others change".
void CSaveCommands::ShowCounts()
{
    const CRecipeDocument& document = m_frame.Document();
    const CSavePlan& plan = document.Plan();
    const std::size_t edited = plan.IsBegun() ? plan.CountOf(ChangeReason::Edited) : document.Rows().EditedCount();
    const std::size_t others = plan.IsBegun() ? plan.CountOfUnedited() : 0;
    QString text = tr("%1 edited").arg(edited);
    if (others > 0)
        text += (others == 1 ? tr(", %1 other changes") : tr(", %1 others change")).arg(others);
    if (plan.IsBegun() && IsOfOtherType(plan))
        text += tr(": the rows were read as another type");
    if (m_listed == Listed::Plan)
        m_pPanel->SetSummary(text);
    if (document.IsPlanOpen())
        text += tr(", counting…");
    m_pField->setText(text);
    m_pField->setAccessibleName(tr("Changes on saving: %1").arg(text));
    m_pField->setVisible(document.IsOpen() && (edited + others > 0 || document.IsPlanOpen()));
}

void CSaveCommands::ListPlan()
{
    const CRecipeDocument& document = m_frame.Document();
    m_listedPath = document.Path();
    m_listedFormat = FormatNameOf(document);
    m_listedEdition = document.Plan().Edition();
    m_listed = Listed::Plan;
    m_pOther.reset();
    m_pPanel->SetList(std::make_shared<CPlannedChanges>(document.Plan(), ChangeSubject{m_listedPath, m_listedFormat}),
                      tr("Changes on saving"), ChangeAction::KeepStored);
    m_pPanel->SetFile(m_listedPath);
}

void CSaveCommands::OpenPlan()
{
    if (m_listed != Listed::Plan)
        ListPlan();
    ShowCounts();
    OpenPanel();
}

/// In a low window the table above keeps most of the room; from then on the user says how high the panel is.
void CSaveCommands::OpenPanel()
{
    const bool isFirst = !m_wasPanelOpen;
    m_wasPanelOpen = true;
    m_pPanel->show();
    if (isFirst)
        m_window.resizeDocks({m_pPanel}, {std::min(m_pPanel->sizeHint().height(), m_window.height() / kPanelPart)},
                             Qt::Vertical);
    m_pPanel->setFocus(Qt::OtherFocusReason);
}

void CSaveCommands::TellStoredAsShown()
{
    const auto& saved = m_frame.Document().StoredAsShown();
    if (!saved)
        return WithdrawStoredAsShown();
    if (m_pTold != saved)
        m_toldFormat = FormatNameOf(m_frame.Document());
    const QString text = StoredAsShownText();
    const bool isListed = m_listed == Listed::StoredAsShown && m_pPanel->isVisible();
    if (isListed && m_pTold != saved) // those of the save before have no use any more
        ListStoredAsShown();
    if (m_pTold == saved && m_strTold == text)
        return;
    m_pTold = saved;
    m_strTold = text;
    StripMessage message{text, {}};
    message.buttons << StripButton{tr("Show"), [this] {
                                       ListStoredAsShown();
                                       OpenPanel();
                                   }};
    if (saved->CanBePutBack())
        message.buttons << StripButton{tr("Put back"), [this] { PutBack(); }};
    m_frame.ShowStrip(StripSubject::StoredAsShown, message);
}

void CSaveCommands::WithdrawStoredAsShown()
{
    m_pTold.reset();
    m_strTold.clear();
    m_frame.WithdrawStrip(StripSubject::StoredAsShown);
    if (m_listed == Listed::StoredAsShown)
        ListPlan();
}

/// "61 values that you did not edit were stored as shown."
QString CSaveCommands::StoredAsShownText() const
{
    const SavedChanges& saved = *m_frame.Document().StoredAsShown();
    const std::size_t count = saved.UneditedCount();
    QString text = count == 1 ? tr("1 value that you did not edit was stored as shown")
                              : tr("%1 values that you did not edit were stored as shown").arg(count);
    const bool isOfOtherType = std::any_of(saved.changes.begin(), saved.changes.end(), [](const PlannedChange& change) {
        return change.why == ChangeReason::Type;
    });
    text += isOfOtherType ? tr(": the rows were read as another type.") : QStringLiteral(".");
    if (saved.path != m_frame.Document().Path())
        text.prepend(ToQPath(saved.path.filename()) + QStringLiteral(": "));
    return text;
}

void CSaveCommands::ListStoredAsShown()
{
    const auto& saved = m_frame.Document().StoredAsShown();
    m_listed = Listed::StoredAsShown;
    m_listedPath = saved->path;
    m_listedLayout = saved->after.Cells();
    m_pPanel->SetList(std::make_shared<CStoredAsShown>(*saved, ChangeSubject{saved->path, m_toldFormat}),
                      tr("Stored as shown by the last save"), {});
    m_pPanel->SetSummary(tr("%1 stored as shown").arg(saved->UneditedCount()));
    m_pPanel->SetFile(saved->path);
}

void CSaveCommands::Show(OtherList list)
{
    m_listed = Listed::Other;
    m_listedPath = std::move(list.path);
    m_listedLayout = std::move(list.layout);
    m_pOther = list.changes;
    m_pPanel->SetList(std::move(list.changes), list.title, list.actions);
    if (list.summarySaysAll)
        m_pPanel->SummarySaysAll();
    m_pPanel->SetSummary(list.summary);
    m_pPanel->SetFile(m_listedPath);
    OpenPanel();
}

bool CSaveCommands::Lists(const std::shared_ptr<const CChangeList>& changes) const
{
    return m_listed == Listed::Other && changes && m_pOther == changes;
}

void CSaveCommands::ListChanged(const std::shared_ptr<const CChangeList>& changes, const QString& summary)
{
    if (!Lists(changes))
        return;
    m_pPanel->SetSummary(summary);
    m_pPanel->ListChanged();
}

void CSaveCommands::ListGrew(const std::shared_ptr<const CChangeList>& changes, const QString& summary)
{
    if (!Lists(changes))
        return;
    m_pPanel->SetSummary(summary);
    m_pPanel->ListGrew();
}

void CSaveCommands::Withdraw(const std::shared_ptr<const CChangeList>& changes)
{
    if (!Lists(changes))
        return;
    ListPlan();
    ShowCounts();
}

/// Whether the lines of the panel are about cells of the table that is shown.
bool CSaveCommands::IsListOfTable() const
{
    const CRecipeDocument& document = m_frame.Document();
    return m_listed == Listed::Plan ||
           (m_listedPath == document.Path() && m_listedLayout.IsLaidOutLike(document.Rows()));
}

/// The column of a cell that the panel lists, as far as its table is known.
const ColumnCoding* CSaveCommands::ColumnOf(CellPlace place) const
{
    const auto& columns = IsListOfTable() ? m_frame.Document().Rows().Columns() : m_listedLayout.Columns();
    return place.column < columns.size() ? &columns[place.column] : nullptr;
}

void CSaveCommands::PutBack()
{
    const auto saved = m_frame.Document().StoredAsShown();
    const auto count = saved ? m_dataPane.PutBackStored() : std::nullopt;
    if (saved)
        emit WasPutBack(ToQPath(saved->path));
    TellStoredAsShown();
    Update();
    if (!count)
        return;
    m_dataPane.setFocus(Qt::OtherFocusReason); // the button goes
    QString text = *count == 1 ? tr("1 value was put back.") : tr("%1 values were put back.").arg(*count);
    if (const std::size_t others = saved->UneditedCount() - *count; others > 0)
        text += others == 1 ? tr(" Another one was edited or changed since.")
                            : tr(" %1 others were edited or changed since.").arg(others);
    m_frame.TellEdit(text);
}
