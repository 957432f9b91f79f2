#include "views/ChangesPanel.h"

#include "views/ChangesModel.h"
#include "views/TextCrossing.h"

#include <QAction>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyle>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {

constexpr int kRoomInRow = 4;                           // pixels by which a row is higher than its text
constexpr int kLeastRows = 3;                           // in sight, however low the panel is
constexpr int kColumnLetters[]{15, 10, 26, 22, 32, 12}; // widths at first, in average letters

} // namespace

CChangesPanel::CChangesPanel(CReporter& reporter, QWidget* parent)
    : QDockWidget(parent),
      m_reporter(reporter),
      m_pModel(new CChangesModel(this)),
      m_pSummary(new QLabel),
      m_pFilter(new QLineEdit),
      m_pCount(new QLabel),
      m_pTable(new QTableView),
      m_pGo(MakeAction(QStringLiteral("actionGoToCell"), tr("&Go to the cell"), {Qt::Key_Return, Qt::Key_Enter},
                       &CChangesPanel::GoToCurrent)),
      m_pNext(MakeAction(QStringLiteral("actionNextLine"), tr("&Next line"), {Qt::Key_F8}, &CChangesPanel::GoToNext)),
      m_pPrevious(MakeAction(QStringLiteral("actionPreviousLine"), tr("Pre&vious line"), {Qt::SHIFT | Qt::Key_F8},
                             &CChangesPanel::GoToPrevious)),
      m_pCopy(MakeAction(QStringLiteral("actionCopyLines"), tr("&Copy"), QKeySequence::keyBindings(QKeySequence::Copy),
                         &CChangesPanel::CopyChosen)),
      m_pKeep(MakeAction(QStringLiteral("actionKeepStored"), tr("&Keep stored"), {Qt::CTRL | Qt::Key_K},
                         &CChangesPanel::KeepChosen)),
      m_pTake(MakeAction(QStringLiteral("actionTakeOver"), tr("&Take over"), {Qt::CTRL | Qt::Key_T},
                         &CChangesPanel::TakeChosen)),
      m_pPatch(MakeAction(QStringLiteral("actionSaveAsPatch"), tr("Save as &patch…"), {}, &CChangesPanel::SaveAsPatch))
{
    setObjectName(QStringLiteral("changesPanel"));
    setAllowedAreas(Qt::BottomDockWidgetArea | Qt::TopDockWidgetArea);
    setFeatures(DockWidgetClosable | DockWidgetMovable);

    m_pSummary->setObjectName(QStringLiteral("labelSummary"));
    m_pSummary->setTextFormat(Qt::PlainText);
    m_pSummary->setWordWrap(true);
    m_pSummary->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // a long text makes no wide window
    m_pKeep->setToolTip(tr("Have the next save leave the words of these cells as the file holds them"));
    m_pTake->setToolTip(tr("Give these cells of the table the new values of the list"));
    m_pPatch->setToolTip(tr("Save all changes of the list, whatever the filter shows, as a file of JSON Lines"));
    SetUpTable();

    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    const int margin = style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing) / 2;
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSpacing(margin);
    layout->addWidget(m_pSummary);
    layout->addWidget(MakeFilterRow());
    layout->addWidget(m_pTable, 1);
    setWidget(content);
    setFocusProxy(m_pTable);

    connect(m_pModel, &CChangesModel::CountsChanged, this, &CChangesPanel::ShowCounts);
    connect(m_pFilter, &QLineEdit::textChanged, this, &CChangesPanel::OnFilterEdited);
    SetList(nullptr, tr("Changes"), {});
    hide();
}

/// It is no shortcut of the window, where the same keys may mean something else, but works while the panel has the
/// focus.
QAction* CChangesPanel::MakeAction(const QString& name, const QString& text, const QList<QKeySequence>& keys,
                                   void (CChangesPanel::*run)())
{
    auto* action = new QAction(text, this);
    action->setObjectName(name);
    action->setShortcuts(keys);
    connect(action, &QAction::triggered, this, run);
    return action;
}

QWidget* CChangesPanel::MakeFilterRow()
{
    auto* row = new QWidget;
    auto* label = new QLabel(tr("Fi&lter:"));
    label->setBuddy(m_pFilter);
    m_pFilter->setObjectName(QStringLiteral("editFilter"));
    m_pFilter->setAccessibleName(tr("Filter of the changes"));
    m_pFilter->setToolTip(tr("Shows the changes with this text in their address, item, values or reason"));
    m_pFilter->setClearButtonEnabled(true);
    m_pFilter->setAcceptDrops(false); // a file is for the window to open
    m_pFilter->installEventFilter(this);
    m_pCount->setObjectName(QStringLiteral("labelCount"));
    m_pCount->setTextFormat(Qt::PlainText);
    m_pKeepButton = MakeButton(*m_pKeep, tr("&Keep stored"));
    m_pKeepButton->setObjectName(QStringLiteral("buttonKeepStored"));
    m_pTakeButton = MakeButton(*m_pTake, tr("&Take over"));
    m_pTakeButton->setObjectName(QStringLiteral("buttonTakeOver"));
    auto* patch = MakeButton(*m_pPatch, tr("Save as &patch…"));
    patch->setObjectName(QStringLiteral("buttonSaveAsPatch"));

    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins({});
    layout->addWidget(label);
    layout->addWidget(m_pFilter, 1);
    layout->addWidget(m_pCount, 1); // the field does not move as the count grows
    layout->addWidget(m_pKeepButton);
    layout->addWidget(m_pTakeButton);
    layout->addWidget(patch);
    return row;
}

/// A button for `action`, which is out of use when that is.
QPushButton* CChangesPanel::MakeButton(QAction& action, const QString& text)
{
    auto* button = new QPushButton(text);
    button->setAutoDefault(true); // Enter presses it
    button->setToolTip(action.toolTip());
    connect(button, &QPushButton::clicked, &action, &QAction::trigger);
    connect(&action, &QAction::enabledChanged, button, &QPushButton::setEnabled);
    return button;
}

void CChangesPanel::SetUpTable()
{
    m_pTable->setObjectName(QStringLiteral("tableChanges"));
    m_pTable->setModel(m_pModel);
    m_pTable->setSelectionBehavior(QTableView::SelectRows);
    m_pTable->setSelectionMode(QTableView::ExtendedSelection);
    m_pTable->setEditTriggers(QTableView::NoEditTriggers);
    m_pTable->setTabKeyNavigation(false);
    m_pTable->setWordWrap(false);
    m_pTable->setShowGrid(false);
    m_pTable->setAlternatingRowColors(true);
    m_pTable->setCornerButtonEnabled(false);
    m_pTable->setHorizontalScrollMode(QTableView::ScrollPerPixel);
    m_pTable->setContextMenuPolicy(Qt::CustomContextMenu);
    m_pTable->verticalHeader()->hide();
    m_pTable->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_pTable->horizontalHeader()->setStretchLastSection(true);
    m_pTable->horizontalHeader()->setHighlightSections(false);
    m_pTable->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_pTable->installEventFilter(this);
    FitTable();
    connect(m_pTable, &QTableView::doubleClicked, this, &CChangesPanel::GoToCurrent);
    connect(m_pTable, &QTableView::customContextMenuRequested, this, &CChangesPanel::OnContextMenu);
    connect(m_pTable->selectionModel(), &QItemSelectionModel::selectionChanged, this, &CChangesPanel::OnChosen);
    connect(m_pTable->selectionModel(), &QItemSelectionModel::currentChanged, this, &CChangesPanel::OnChosen);
}

/// The rows are all of one height: millions of them are not measured.
void CChangesPanel::FitTable()
{
    const QFontMetrics metrics = m_pTable->fontMetrics();
    const int height = metrics.height() + kRoomInRow;
    m_pTable->verticalHeader()->setMinimumSectionSize(height);
    m_pTable->verticalHeader()->setDefaultSectionSize(height);
    m_pTable->setMinimumHeight((kLeastRows + 1) * height);
    for (int column = 0; column < m_pModel->columnCount(); ++column)
        m_pTable->setColumnWidth(column, kColumnLetters[column] * metrics.averageCharWidth());
}

void CChangesPanel::SetList(std::shared_ptr<const CChangeList> list, const QString& title, ChangeActions actions)
{
    ++m_nLists;
    m_actions = actions;
    setWindowTitle(LiteralTitle(title).replace(QLatin1Char('&'), QLatin1String("&&"))); // no mark of a key
    setAccessibleName(title);
    m_pTable->setAccessibleName(title);
    const QSignalBlocker emptied(m_pFilter);
    m_pFilter->clear();
    const bool hasAddresses = !list || list->Header().type != FileType::Csv;
    m_pModel->SetList(std::move(list));
    m_pTable->setColumnHidden(static_cast<int>(ChangeColumn::Address), !hasAddresses);
    m_saysAll = false;
    m_pKeepButton->setVisible(m_actions.testFlag(ChangeAction::KeepStored));
    m_pTakeButton->setVisible(m_actions.testFlag(ChangeAction::TakeOver));
    OnChosen();
}

void CChangesPanel::SetColumns(std::function<const ColumnCoding*(CellPlace place)> columnOf)
{
    m_pModel->SetColumns(std::move(columnOf));
}

void CChangesPanel::SetSummary(const QString& summary)
{
    m_strSummary = summary;
    ShowCounts();
}

void CChangesPanel::SummarySaysAll()
{
    m_saysAll = true;
    ShowCounts();
}

void CChangesPanel::SetFile(const std::filesystem::path& file)
{
    m_file = file;
}

void CChangesPanel::ListGrew()
{
    m_pModel->ListGrew();
    UpdateActions();
}

void CChangesPanel::ListChanged()
{
    ++m_nLists;
    const CChosenChanges chosen = m_chosen; // rows that go make others the chosen ones
    m_pModel->ListChanged();
    const int top = m_pTable->verticalScrollBar()->value();
    chosen.ChooseAgain(*m_pTable->selectionModel(), *m_pModel);
    m_pTable->verticalScrollBar()->setValue(top);
    OnChosen();
}

void CChangesPanel::ShowCounts()
{
    const CChangeList* list = m_pModel->List();
    const std::size_t count = list != nullptr ? list->Count() : 0;
    QString summary = m_strSummary;
    if (list != nullptr && !list->IsComplete())
        summary = summary.isEmpty() ? tr("counting…") : tr("%1, counting…").arg(summary);
    else if (list != nullptr && count == 0 && !m_saysAll)
        summary = tr("No value changes.");
    m_pSummary->setText(summary);
    m_pTable->setAccessibleDescription(summary);

    const auto shown = static_cast<std::size_t>(m_pModel->rowCount());
    QString counts = shown < count || m_pModel->IsFiltered() ? tr("%1 of %2").arg(shown).arg(count) : QString();
    if (m_pModel->IsLooking())
        counts = tr("%1, looking…").arg(counts);
    m_pCount->setText(counts);
    UpdateActions();
}

/// The current line stays, if it is still shown.
void CChangesPanel::OnFilterEdited()
{
    const auto current = m_pModel->IndexIn(CurrentRow());
    m_pModel->SetFilter(m_pFilter->text());
    const auto row = current ? m_pModel->RowOf(*current) : std::nullopt;
    if (row)
        ChooseRow(*row);
}

void CChangesPanel::OnChosen()
{
    m_chosen.Remember(*m_pTable->selectionModel(), *m_pModel);
    UpdateActions();
}

void CChangesPanel::UpdateActions()
{
    const CChangeList* list = m_pModel->List();
    const bool hasRows = m_pModel->rowCount() > 0;
    m_pGo->setEnabled(hasRows);
    m_pNext->setEnabled(hasRows);
    m_pPrevious->setEnabled(hasRows);
    m_pCopy->setEnabled(m_pTable->selectionModel()->hasSelection());
    m_pKeep->setEnabled(IsForAChosen(ChangeAction::KeepStored));
    m_pTake->setEnabled(IsForAChosen(ChangeAction::TakeOver));
    m_pPatch->setEnabled(list != nullptr && list->IsComplete() && list->Count() > 0);
}

int CChangesPanel::CurrentRow() const
{
    return m_pTable->currentIndex().row();
}

void CChangesPanel::ChooseRow(int row)
{
    const QModelIndex index = m_pModel->index(row, static_cast<int>(ChangeColumn::Row));
    m_pTable->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    m_pTable->scrollTo(index);
}

/// Goes so many lines on, to the first or last one at most. While no line is chosen it goes to the one that has the
/// focus: the first, or the one after a line that has gone.
void CChangesPanel::Step(int step)
{
    const bool isOnLine = m_pTable->selectionModel()->hasSelection();
    ChooseRow(std::clamp(CurrentRow() + (isOnLine ? step : 0), 0, m_pModel->rowCount() - 1));
    if (const auto place = m_pModel->PlaceIn(CurrentRow()))
        emit ShowCell(*place);
}

void CChangesPanel::GoToCurrent()
{
    if (CurrentRow() < 0)
        ChooseRow(0);
    if (const auto place = m_pModel->PlaceIn(CurrentRow()))
        emit GoToCell(*place);
}

void CChangesPanel::OnContextMenu(const QPoint& position)
{
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addActions({m_pGo, m_pNext, m_pPrevious});
    menu->addSeparator();
    if (m_actions.testFlag(ChangeAction::KeepStored))
        menu->addAction(m_pKeep);
    if (m_actions.testFlag(ChangeAction::TakeOver))
        menu->addAction(m_pTake);
    menu->addActions({m_pCopy, m_pPatch});
    menu->popup(m_pTable->viewport()->mapToGlobal(position));
}

QAction* CChangesPanel::ActionOf(const QKeyEvent& event) const
{
    const QKeyCombination key(event.modifiers() & ~Qt::KeypadModifier, static_cast<Qt::Key>(event.key()));
    for (QAction* action : {m_pGo, m_pNext, m_pPrevious, m_pCopy, m_pKeep, m_pTake, m_pPatch})
        if (action->shortcuts().contains(QKeySequence(key)))
            return action;
    return nullptr;
}

/// The panel's keys come to it before the window makes a shortcut of them.
bool CChangesPanel::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && ActionOf(*static_cast<QKeyEvent*>(event)) != nullptr) {
        event->accept();
        return true;
    }
    return QDockWidget::event(event);
}

/// What the field and the table would do otherwise.
bool CChangesPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return QDockWidget::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    if (watched == m_pFilter && key->key() == Qt::Key_Escape && !m_pFilter->text().isEmpty()) {
        m_pFilter->clear();
        return true;
    }
    if (watched == m_pFilter && key->key() == Qt::Key_Down) {
        m_pTable->setFocus(Qt::OtherFocusReason);
        return true;
    }
    if (watched == m_pTable && ActionOf(*key) != nullptr) {
        keyPressEvent(key);
        return true;
    }
    return QDockWidget::eventFilter(watched, event);
}

void CChangesPanel::keyPressEvent(QKeyEvent* event)
{
    if (QAction* action = ActionOf(*event))
        action->trigger();
    else if (event->key() == Qt::Key_Escape)
        emit Left();
    else
        QDockWidget::keyPressEvent(event);
}

void CChangesPanel::changeEvent(QEvent* event)
{
    QDockWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        FitTable();
}

/// The focus would go to whatever is next.
void CChangesPanel::closeEvent(QCloseEvent* event)
{
    if (isAncestorOf(window()->focusWidget()))
        emit Left();
    QDockWidget::closeEvent(event);
    emit Closed();
}
