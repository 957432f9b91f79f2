#include "app/MainFrame.h"

#include "app/AboutDlg.h"
#include "app/FrameGeometry.h"
#include "app/MySplitter.h"
#include "controls/ElidedLabel.h"
#include "ui_MainFrame.h"
#include "views/InspectorDock.h"
#include "views/MergeParamDlg.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFormatEditView.h"
#include "views/TextCrossing.h"

#include <QAccessible>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QScreen>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr QSize kFormatPaneSize{355, 852}; // pixels, at creation

/// The local file that is being dragged, empty unless it is exactly one. A folder does not count.
QString DraggedFile(const QMimeData& data)
{
    const QList<QUrl> urls = data.urls();
    const QString path = urls.size() == 1 ? urls.front().toLocalFile() : QString();
    return QFileInfo(path).isDir() ? QString() : path;
}

} // namespace

CMainFrame::CMainFrame(const std::filesystem::path& executable, QWidget* parent)
    : QMainWindow(parent),
      m_executable(executable),
      m_pUi(std::make_unique<Ui::CMainFrame>()),
      m_reporter(*this)
{
    m_pUi->setupUi(this);
    const QRect geometry = RestoredFrameGeometry(screen()->size());
    setGeometry(geometry.translated(screen()->geometry().topLeft()));
    CreatePanes();
    CreateCommands();
    CreateInspector();
    CreateStatusPanes();
    ConnectCommands();
    AddAccelerators();
    UpdateCommands();
}

CMainFrame::~CMainFrame()
{
    m_pReadingCommands.reset();
    m_pExportCommands.reset();
    m_pSheetCommands.reset();
    m_pImportCommands.reset();
    m_pFillCommands.reset();
    m_pOfferCommands.reset();
    m_pTableCommands.reset();
    m_pFindValueCommands.reset();
    m_pReplaceCommands.reset();
    m_pFindCommands.reset();
    m_pGoToCommands.reset();
    m_pUnsavedCommands.reset();
    m_pVersionCommands.reset();
    m_pPatchCommands.reset();
    m_pCompareCommands.reset();
    m_pOtherPrograms.reset();
    m_pRangeNotice.reset();
    m_pSaveCommands.reset();
    m_pEditCommands.reset();
    delete m_pInspector; // it follows the data pane
    delete m_pSplitter;  // the panes speak to this frame while they go
}

void CMainFrame::CreatePanes()
{
    m_pStrip = new CStrip; // first: the panes may have something to say while they are made
    m_pSplitter = new CMySplitter(this);
    m_pSplitter->setObjectName(QStringLiteral("splitter"));
    m_pFormatPane = new CRecipeFormatEditView(*this, m_executable);
    m_pFormatPane->resize(kFormatPaneSize);
    m_pDataPane = new CRecipeDataShowView(*this);
    m_pSplitter->addWidget(m_pFormatPane);
    m_pSplitter->addWidget(m_pDataPane);
    m_pSplitter->setStretchFactor(0, 0);
    m_pSplitter->setStretchFactor(1, 1);
    setTabOrder(m_pFormatPane, m_pSplitter->handle(1)); // it was made after the data pane, but stands between the panes
    m_pSplitter->PlaceBar(kFormatPaneSize.width());
    m_nLeftPaneWidth = kFormatPaneSize.width() + 5;
    m_pSplitter->SetLeftPaneWidth(m_nLeftPaneWidth);
    auto* client = new QWidget;
    auto* layout = new QVBoxLayout(client);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_pStrip);
    layout->addWidget(m_pSplitter, 1);
    setCentralWidget(client);
}

void CMainFrame::CreateCommands()
{
    m_pFileCommands = std::make_unique<CFileCommands>(*this, *m_pFormatPane, *m_pDataPane, *this);
    m_pEditCommands = std::make_unique<CEditCommands>(*m_pUi, *this, *m_pFormatPane, *m_pDataPane, *this);
    m_pSaveCommands = std::make_unique<CSaveCommands>(*m_pUi, *this, *m_pFileCommands, *m_pDataPane, *this);
    m_pRangeNotice =
        std::make_unique<CRangeNotice>(CRangeNotice::Parts{*this, *m_pEditCommands, *m_pSaveCommands, *m_pDataPane});
    m_pOtherPrograms = std::make_unique<COtherPrograms>(*this, *m_pFileCommands, *m_pSaveCommands, *m_pDataPane, *this);
    connect(m_pSaveCommands.get(), &CSaveCommands::WasPutBack, this, [this](const QString& path) {
        TellVersion(NativePath(path));
        ShowMessage();
    });
    connect(m_pOtherPrograms.get(), &COtherPrograms::VersionsAskedFor, m_pUi->actionEarlierVersions, &QAction::trigger);
    m_pUnsavedCommands = std::make_unique<CUnsavedCommands>(*this, *m_pFileCommands, *m_pDataPane, *m_pSaveCommands);
    connect(m_pUnsavedCommands.get(), &CUnsavedCommands::TroubleChanged, this, [this](const QString& trouble) {
        m_strUnsavedTrouble = trouble;
        ShowMessage();
    });
    CreateComparing();
    CreateForManyCells();
    m_pTableCommands =
        std::make_unique<CTableCommands>(CTableCommands::Parts{*m_pUi, *this, *m_pFormatPane, *m_pDataPane, *this});
    CreateFinding();
    m_pVersionCommands = std::make_unique<CVersionCommands>(CVersionCommands::Parts{
        *m_pUi, *this, *m_pFileCommands, *m_pSaveCommands, *m_pCompareCommands, *m_pFormatPane, *m_pDataPane, *this});
    connect(m_pVersionCommands.get(), &CVersionCommands::Restored, this, [this](const QString& path, bool isWhole) {
        TellState({.isSaved = isWhole, .mayHoldOldAndNew = !isWhole}, path);
    });
    m_pReadingCommands =
        std::make_unique<CReadingCommands>(CReadingCommands::Parts{*this, *m_pFormatPane, *m_pDataPane, *this});
    m_pFileCommands->SetOpened([this] { m_pReadingCommands->Offer(); });
}

/// What the strip says of them is over when the user dismisses it.
void CMainFrame::CreateComparing()
{
    m_pCompareCommands = std::make_unique<CCompareCommands>(
        CCompareCommands::Parts{*m_pUi, *this, *m_pSaveCommands, *m_pDataPane, *this});
    m_pPatchCommands =
        std::make_unique<CPatchCommands>(CPatchCommands::Parts{*m_pUi, *this, *m_pSaveCommands, *m_pDataPane, *this});
    connect(m_pStrip, &CStrip::Dismissed, this, [this](int weight) {
        if (weight == static_cast<int>(StripSubject::Compared))
            m_pCompareCommands->End();
        else if (weight == static_cast<int>(StripSubject::PatchOffered) ||
                 weight == static_cast<int>(StripSubject::PatchRefused))
            m_pPatchCommands->Withdraw();
    });
}

/// The menu's entry shows and hides it; shown so, it gets the focus.
void CMainFrame::CreateInspector()
{
    m_pInspector = new CInspectorDock(*this, *m_pDataPane, this);
    addDockWidget(Qt::RightDockWidgetArea, m_pInspector);
    connect(m_pUi->actionInspector, &QAction::triggered, m_pInspector, [this](bool on) {
        m_pInspector->setVisible(on);
        if (on)
            m_pInspector->setFocus();
        else
            m_pDataPane->setFocus();
    });
    connect(m_pInspector, &QDockWidget::visibilityChanged, this,
            [this] { m_pUi->actionInspector->setChecked(!m_pInspector->isHidden()); });
}

void CMainFrame::CreateForManyCells()
{
    m_pOfferCommands =
        std::make_unique<COfferCommands>(COfferCommands::Parts{*this, *m_pSaveCommands, *m_pDataPane, *this});
    m_pFillCommands =
        std::make_unique<CFillCommands>(CFillCommands::Parts{*m_pUi, *this, *m_pOfferCommands, *m_pDataPane, *this});
    m_pImportCommands = std::make_unique<CImportCommands>(
        CImportCommands::Parts{*m_pUi, *this, *m_pOfferCommands, *m_pDataPane, *this});
    m_pExportCommands = std::make_unique<CExportCommands>(CExportCommands::Parts{*m_pUi, *this, *m_pDataPane, *this});
    m_pSheetCommands =
        std::make_unique<CSheetCommands>(CSheetCommands::Parts{*m_pUi, *this, *m_pDataPane, m_versions, *this});
    connect(m_pStrip, &CStrip::Dismissed, this, [this](int weight) {
        if (weight == static_cast<int>(StripSubject::EditsOffered))
            m_pOfferCommands->Withdraw();
    });
}

void CMainFrame::CreateFinding()
{
    m_pGoToCommands = std::make_unique<CGoToCommands>(*m_pUi, *this, *m_pDataPane);
    m_pFindCommands =
        std::make_unique<CFindCommands>(CFindCommands::Parts{*m_pUi, *this, *m_pSaveCommands, *m_pDataPane, *this});
    m_pReplaceCommands = std::make_unique<CReplaceCommands>(
        CReplaceCommands::Parts{*m_pFindCommands, *this, *m_pSaveCommands, *m_pDataPane, *this});
    m_pFindValueCommands = std::make_unique<CFindValueCommands>(
        CFindValueCommands::Parts{*m_pUi, *this, *m_pFormatPane, *m_pDataPane, *this});
}

void CMainFrame::KeepIn(const std::filesystem::path& dataFolder)
{
    m_isKeeping = true;
    m_versions = CVersionStore(dataFolder);
    m_document.KeepVersionsIn(m_versions);
    m_pVersionCommands->UseStore(m_versions);
    m_pFormatPane->KeepVersionsIn(m_versions);
    m_pUnsavedCommands->Start(dataFolder);
    m_pReadingCommands->Start(dataFolder);
}

void CMainFrame::CreateStatusPanes()
{
    m_pMessage = new CElidedLabel(tr("Ready"));
    m_pMessage->setObjectName(QStringLiteral("labelMessage"));
    m_pMessage->setIndent(style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing));
    m_pUi->statusBar->addWidget(m_pMessage, 1);
    m_pUi->statusBar->addPermanentWidget(&m_pTableCommands->Field());
    m_pUi->statusBar->addPermanentWidget(&m_pSaveCommands->Field()); // the prompts of commands do not hide it
    m_pUi->statusBar->setContentsMargins(0, 0, m_pMessage->indent(), 0);
    const std::array<QString, CLockKeys::KeyCount> texts{tr("Capital"), tr("Number"), tr("Scroll")};
    for (std::size_t key = 0; key < texts.size(); ++key) {
        auto* label = new QLabel(texts[key]);
        label->setObjectName(QStringLiteral("label") + texts[key]);
        m_pUi->statusBar->addPermanentWidget(label);
        label->setAlignment(Qt::AlignCenter);
        QFont bold = label->font();
        bold.setBold(true);
        label->setMinimumWidth(QFontMetrics(bold).horizontalAdvance(texts[key])); // nothing moves when a key is locked
        m_lockLabels[key] = label;
    }
    connect(&m_lockKeys, &CLockKeys::Changed, this, &CMainFrame::ShowLockKeys);
    ShowLockKeys();
}

void CMainFrame::ShowLockKeys()
{
    for (std::size_t key = 0; key < m_lockLabels.size(); ++key) {
        const bool on = m_lockKeys.IsOn(static_cast<CLockKeys::Key>(key));
        m_lockLabels[key]->setEnabled(on);
        QFont font = m_lockLabels[key]->font();
        font.setBold(on); // the colour alone would not tell everybody
        m_lockLabels[key]->setFont(font);
        m_lockLabels[key]->setAccessibleName(m_lockLabels[key]->text() + (on ? tr(" on") : tr(" off")));
    }
}

/// By weight: a file that may hold old and new words; one that was not written; what is not kept; formats that are not
/// saved; what was just undone; the chosen cell.
void CMainFrame::ShowMessage()
{
    const SaveNotice edit{{}, m_strEditNotice, m_strEditNotice};
    const SaveNotice library{{}, m_strLibraryTrouble, m_strLibraryTrouble};
    const SaveNotice version{{}, m_strVersionTrouble, m_strVersionTrouble};
    const SaveNotice unsaved{{}, m_strUnsavedTrouble, m_strUnsavedTrouble};
    for (const SaveNotice& notice :
         {m_tornSave, m_leftOutSave, unsaved, version, library, edit, SaveNotice{{}, m_pDataPane->ChosenCellInfo(), {}},
          SaveNotice{{}, tr("Ready"), {}}}) {
        if (notice.text.isEmpty())
            continue;
        m_pMessage->setText(notice.text);
        m_pMessage->setAccessibleName({});
        m_pMessage->setToolTip(notice.inFull);
        return;
    }
}

void CMainFrame::TellLibraryTrouble(const QString& trouble)
{
    if (trouble == m_strLibraryTrouble)
        return;
    m_strLibraryTrouble = trouble;
    ShowMessage();
    if (trouble.isEmpty())
        return;
    Announce(trouble);
}

void CMainFrame::TellEdit(const QString& text)
{
    m_strEditNotice = text;
    ShowMessage();
    Announce(text);
}

void CMainFrame::WithdrawEdit()
{
    m_strEditNotice.clear();
    ShowMessage();
}

/// Has screen readers say `text`, even where the status bar has something of more weight.
void CMainFrame::Announce(const QString& text)
{
    m_pMessage->setAccessibleName(text);
    QAccessibleEvent alert(m_pMessage, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void CMainFrame::ConnectCommands()
{
    connect(m_pUi->actionNew, &QAction::triggered, this, [this] { m_pFileCommands->OnFileNew(); });
    connect(m_pUi->actionOpen, &QAction::triggered, this, [this] { m_pFileCommands->OnFileOpen(); });
    connect(m_pUi->actionSave, &QAction::triggered, this, [this] { m_pFileCommands->OnFileSave(); });
    connect(m_pUi->actionSaveAs, &QAction::triggered, this, [this] { m_pFileCommands->OnFileSaveAs(); });
    connect(m_pUi->actionExit, &QAction::triggered, this, &CMainFrame::close);
    connect(m_pUi->actionFileMerge, &QAction::triggered, this, &CMainFrame::MergeFiles);
    connect(m_pUi->actionAbout, &QAction::triggered, this, &CMainFrame::ShowAbout);

    connect(m_pUi->actionToolBar, &QAction::toggled, m_pUi->toolBar, &QToolBar::setVisible);
    connect(m_pUi->toolBar, &QToolBar::visibilityChanged, this,
            [this] { m_pUi->actionToolBar->setChecked(!m_pUi->toolBar->isHidden()); });
    connect(m_pUi->actionStatusBar, &QAction::toggled, m_pUi->statusBar, &QStatusBar::setVisible);
    connect(m_pUi->actionBitBrowse, &QAction::triggered, this, [this] { m_pDataPane->OnBitBrowse(); });
    connect(m_pFormatPane, &CRecipeFormatEditView::FormatsChanged, m_pDataPane, &CRecipeDataShowView::TakeNotes);
    connect(m_pDataPane, &CRecipeDataShowView::CellChosen, this, &CMainFrame::UpdateCommands);
    for (const auto signal : {&CRecipeDataShowView::CellChosen, &CRecipeDataShowView::ChosenCellChanged})
        connect(m_pDataPane, signal, this, &CMainFrame::WithdrawEdit);
    connect(m_pDataPane, &CRecipeDataShowView::Edited, this, [this] {
        WithdrawEdit();
        UpdateCommands();
    });
}

void CMainFrame::AddAccelerators()
{
    const auto add = [](QWidget* owner, const char* name, int id, const QList<QKeySequence>& keys, auto run) {
        auto* action = new QAction(owner);
        action->setObjectName(QLatin1String(name));
        action->setProperty("controlId", id);
        action->setShortcuts(keys);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
        connect(action, &QAction::triggered, owner, run);
        owner->addAction(action);
        return action;
    };
    // The key works before anything is open too, when the menu's own entry is disabled.
    m_pUnopenedSave = add(this, "accelSave", 57603, {Qt::CTRL | Qt::Key_S}, [this] { m_pFileCommands->OnFileSave(); });
    add(this, "accelNextPane", 57680, {Qt::Key_F6}, [this] { SwitchPane(+1); });
    add(this, "accelPreviousPane", 57681, {Qt::SHIFT | Qt::Key_F6}, [this] { SwitchPane(-1); });
}

void CMainFrame::UpdateCommands()
{
    m_pUi->actionSave->setEnabled(m_document.IsOpen());
    m_pUi->actionSaveAs->setEnabled(m_document.IsOpen());
    m_pUnopenedSave->setEnabled(!m_document.IsOpen());
    m_pEditCommands->Update();
    m_pSaveCommands->Update();
    m_pRangeNotice->Follow();
    m_pOtherPrograms->Follow();
    m_pUnsavedCommands->Follow();
    m_pCompareCommands->Follow();
    m_pPatchCommands->Follow();
    m_pOfferCommands->Follow();
    m_pImportCommands->Follow();
    m_pExportCommands->Follow();
    m_pSheetCommands->Follow();
    m_pFindCommands->Follow();
    m_pFindValueCommands->Follow();
    m_pVersionCommands->Update();
    m_pReadingCommands->Follow();
    m_pTableCommands->Update();
    m_pUi->actionBitBrowse->setEnabled(m_pDataPane->CanBitBrowse());
    m_pFormatPane->ShowFirstRow();
}

CMainFrame::SaveNotice CMainFrame::NoticeOf(const QString& text, const QString& path)
{
    const auto with = [&text](const QString& name) { return QString(text).replace(QStringLiteral("%1"), name); };
    return {path, with(QFileInfo(path).fileName()), with(path)};
}

void CMainFrame::ShowRecipeData(FileType type)
{
    ForgetLeftOut();
    m_pDataPane->ShowData(type);
    m_pOtherPrograms->WithdrawChanges();
    m_pSaveCommands->Update();
    m_pRangeNotice->Follow();
    m_pCompareCommands->Follow();
    m_pPatchCommands->Follow();
    m_pOfferCommands->Follow();
    m_pImportCommands->Follow();
    m_pExportCommands->Follow();
    m_pSheetCommands->Follow();
    m_pFindCommands->Follow();
    if (m_pStrip->HasMessage(static_cast<int>(StripSubject::StoredAsShown)))
        m_pSaveCommands->TellStoredAsShown(); // of another file than the one that is shown by now
    m_pReadingCommands->Judge();
    m_pFormatPane->ShowFirstRow();
}

SaveResult CMainFrame::RefreshRecipeData(FileType type, const QString& path, ForeignRule rule)
{
    const SaveResult result = m_pDataPane->WriteData(type, path, rule);
    TellState(result, path);
    return result;
}

bool CMainFrame::SaveRecipeDataAs(FileType type, const QString& path)
{
    const SaveResult result = m_pDataPane->WriteDataAs(type, path);
    TellState(result, path);
    return result.isSaved;
}

SaveResult CMainFrame::SaveEditedRecipeData(ForeignRule rule)
{
    const SaveResult result = m_pDataPane->WriteEdited(rule);
    TellState(result, ToQPath(m_document.Path()));
    return result;
}

bool CMainFrame::SaveRecipeDataCopy(FileType type, const QString& path)
{
    const bool isSaved = m_pDataPane->WriteCopy(type, path).isSaved;
    TellVersion(NativePath(path));
    ShowMessage();
    return isSaved;
}

/// What a save that failed part-way left behind in `path` is told until that file is saved or gone; that a save wrote
/// nothing, until any file is saved.
void CMainFrame::TellState(const SaveResult& result, const QString& path)
{
    if (result.isSaved) {
        if (path == m_tornSave.path || !QFileInfo::exists(m_tornSave.path))
            m_tornSave = {};
        ForgetLeftOut();
        m_pOtherPrograms->TellOverwritten();
        if (path == ToQPath(m_document.Path()))
            m_pReadingCommands->Remember();
    } else if (result.mayHoldOldAndNew)
        m_tornSave = NoticeOf(tr("%1 may hold old and new words: its save failed part-way. Save again."), path);
    else if (result.isLeftOut)
        TellLeftOut(path);
    TellVersion(NativePath(path));
    m_pSaveCommands->TellStoredAsShown();
    m_pSaveCommands->Update();
    ShowMessage();
}

/// Until a later save keeps one.
void CMainFrame::TellVersion(const std::filesystem::path& path)
{
    const auto& version = m_document.LastSave().version;
    if (!version)
        return;
    const QString trouble = ToQString(NotKeptText(*version, path));
    if (trouble != m_strVersionTrouble && !trouble.isEmpty())
        Announce(trouble);
    m_strVersionTrouble = trouble;
}

/// Of a file that a save found missing or protected. Only the table has the changes: there is a way to save them, and
/// one to discard them.
void CMainFrame::TellLeftOut(const QString& path)
{
    const QString text = path.isEmpty()            ? tr("There is no file to save to: ")
                         : QFileInfo::exists(path) ? tr("%1 may not be written: ")
                                                   : tr("%1 is gone: ");
    const bool hasChanges = m_document.IsModified() || m_document.IsNew();
    m_leftOutSave = NoticeOf(text + (hasChanges ? tr("your changes are not saved.") : tr("nothing was saved.")), path);
    StripMessage message{m_leftOutSave.text, {}};
    if (m_document.HasRowsOfFile())
        message.buttons << StripButton{tr("Save as..."), [this] { m_pFileCommands->OnFileSaveAs(); }};
    if (m_document.IsModified() && path == ToQPath(m_document.Path()))
        message.buttons << StripButton{tr("Discard changes"), [this] { m_pFileCommands->OnDiscardChanges(); }};
    ShowStrip(StripSubject::NotWritten, message);
}

/// The rows that it spoke of are saved or gone.
void CMainFrame::ForgetLeftOut()
{
    if (m_leftOutSave.text.isEmpty())
        return;
    m_leftOutSave = {};
    WithdrawStrip(StripSubject::NotWritten);
    ShowMessage();
}

void CMainFrame::ClearRecipeData()
{
    ForgetLeftOut();
    m_pDataPane->ClearGrid();
    m_pFormatPane->ShowFirstRow();
}

bool CMainFrame::ValidateCellValue(int gridColumn, const QString& text) const
{
    return m_pDataPane && m_pDataPane->ValidateCellValue(gridColumn, text);
}

void CMainFrame::SetTitle(const QString& title)
{
    setWindowTitle(LiteralTitle(title));
}

void CMainFrame::OpenPath(const QString& path)
{
    m_pFileCommands->OpenPath(path);
}

/// Those that the focus can go to, in the order of F6: the strip is one while it says something, a collapsed left pane
/// is not.
QList<QWidget*> CMainFrame::PanesInSight() const
{
    QList<QWidget*> panes;
    if (m_pStrip->isVisible())
        panes << m_pStrip;
    if (m_pSplitter->ShowsLeftPane())
        panes << m_pFormatPane;
    panes << m_pDataPane;
    if (m_pSaveCommands->Panel().isVisible())
        panes << &m_pSaveCommands->Panel();
    return panes;
}

void CMainFrame::SwitchPane(int direction)
{
    const QList<QWidget*> panes = PanesInSight();
    const auto count = panes.size();
    const auto hasFocus = [this](const QWidget* pane) { return pane->isAncestorOf(focusWidget()); };
    const auto current = std::find_if(panes.begin(), panes.end(), hasFocus) - panes.begin();
    const auto next = current == count ? (direction > 0 ? 0 : count - 1) : (current + direction + count) % count;
    panes[next]->setFocus(Qt::ShortcutFocusReason);
}

void CMainFrame::ShowStrip(StripSubject subject, const StripMessage& message)
{
    m_pStrip->ShowMessage(static_cast<int>(subject), message);
}

void CMainFrame::AnswerInStrip(StripSubject subject, const StripMessage& message)
{
    ShowStrip(subject, message);
    if (!m_pStrip->IsSeen(static_cast<int>(subject)))
        TellEdit(message.text);
}

void CMainFrame::WithdrawStrip(StripSubject subject)
{
    m_pStrip->Withdraw(static_cast<int>(subject));
}

void CMainFrame::MergeFiles()
{
    CMergeParamDlg dialog(m_executable, m_reporter, this);
    if (m_isKeeping)
        dialog.KeepVersionsIn(m_versions);
    dialog.exec();
    if (dialog.VersionTrouble().empty())
        return;
    m_strVersionTrouble = ToQString(dialog.VersionTrouble());
    ShowMessage();
}

void CMainFrame::ShowAbout()
{
    CAboutDlg(this).exec();
}

void CMainFrame::closeEvent(QCloseEvent* event)
{
    m_pFileCommands->OnClose();
    event->accept();
}

void CMainFrame::dragEnterEvent(QDragEnterEvent* event)
{
    if (!DraggedFile(*event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void CMainFrame::dropEvent(QDropEvent* event)
{
    const QString path = DraggedFile(*event->mimeData());
    if (path.isEmpty())
        return;
    event->acceptProposedAction();
    // After the drop is over: a message box inside it would leave the other program waiting.
    QMetaObject::invokeMethod(
        this, [this, path] { OpenPath(path); }, Qt::QueuedConnection);
}
