#include "app/FindCommands.h"

#include "app/SaveCommands.h"
#include "changes/FoundCells.h"
#include "files/TableTitles.h"
#include "text/EscapedText.h"
#include "ui_MainFrame.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFrame.h"
#include "views/TextCrossing.h"

#include <QApplication>

#include <chrono>
#include <utility>

namespace {

constexpr std::chrono::milliseconds kSlice{8};
constexpr int kLongestNamed = 40; // characters of a query in a title

std::chrono::steady_clock::time_point EndOfSlice()
{
    return std::chrono::steady_clock::now() + kSlice;
}

bool IsOneCell(const std::vector<CellRange>& ranges)
{
    return ranges.empty() || (ranges.size() == 1 && ranges.front().firstRow == ranges.front().lastRow &&
                              ranges.front().firstColumn == ranges.front().lastColumn);
}

CRecipeRows LayoutOf(const CRecipeRows& rows)
{
    CRecipeRows layout;
    layout.LayOut(rows.Columns(), rows.StartAddress(), rows.RowCount());
    return layout;
}

} // namespace

CFindCommands::CFindCommands(const Parts& parts)
    : m_parts(parts),
      m_pBar(new CFindBar),
      m_search(parts.frame.Document().Rows())
{
    m_parts.dataPane.AddBar(*m_pBar);
    m_working.setObjectName(QStringLiteral("timerFinding"));
    m_working.setSingleShot(true);
    connect(&m_working, &QTimer::timeout, this, &CFindCommands::Work);
    connect(&m_parts.dataPane, &CRecipeDataShowView::ShownRowsChanged, this, &CFindCommands::RestartSearches);
    connect(&m_parts.dataPane, &CRecipeDataShowView::CellChosen, this, &CFindCommands::StopSeeking);
    connect(m_parts.ui.actionFind, &QAction::triggered, this, [this] { Open(CFindBar::Fields::Find); });
    connect(m_parts.ui.actionReplace, &QAction::triggered, this, [this] { Open(CFindBar::Fields::FindAndReplace); });
    const auto onNext = [this] { Step(CCellSearch::Way::Forward); };
    const auto onPrevious = [this] { Step(CCellSearch::Way::Backward); };
    connect(m_parts.ui.actionFindNext, &QAction::triggered, this, onNext);
    connect(m_parts.ui.actionFindPrevious, &QAction::triggered, this, onPrevious);
    connect(m_pBar, &CFindBar::NextAskedFor, this, onNext);
    connect(m_pBar, &CFindBar::PreviousAskedFor, this, onPrevious);
    connect(m_pBar, &CFindBar::QueryEdited, this, &CFindCommands::OnQueryEdited);
    connect(m_pBar, &CFindBar::ScopeChosen, this, &CFindCommands::OnScopeChosen);
    connect(m_pBar, &CFindBar::ListAskedFor, this, &CFindCommands::ListAll);
    connect(m_pBar, &CFindBar::Closed, this, &CFindCommands::OnClosed);
    connect(qApp, &QApplication::focusChanged, this, &CFindCommands::FocusMoved);
}

void CFindCommands::Open(CFindBar::Fields fields)
{
    if (!m_parts.dataPane.EndCellEdit())
        return;
    if (!m_pBar->isAncestorOf(m_parts.window.focusWidget()))
        TakeChosen();
    TakeScope();
    m_pBar->Open(fields);
    m_found.reset();
    m_strNote.clear();
    if (Begin())
        Work();
}

/// What is chosen in the table when the user comes from there is what a choice of the bar means: hits that it shows are
/// chosen by nobody.
void CFindCommands::FocusMoved(QWidget* from, QWidget* to)
{
    CGridCtrl& grid = m_parts.dataPane.Grid();
    if (from != nullptr && to != nullptr && (from == &grid || grid.isAncestorOf(from)) && m_pBar->isAncestorOf(to))
        TakeChosen();
}

/// One cell is no selection that anybody wants to look through instead of one that was looked through before.
void CFindCommands::TakeChosen()
{
    ForgetChosenElsewhere();
    const auto focus = m_parts.dataPane.FocusCell();
    m_anchor = m_parts.dataPane.FocusPlace();
    m_column = focus ? std::optional(focus->column) : std::nullopt;
    auto selection = m_parts.dataPane.ChosenRanges();
    if (m_pBar->ChosenScope() != CFindBar::Scope::Selection || !IsOneCell(selection) || m_selection.empty())
        m_selection = std::move(selection);
}

/// Rows and columns of another table mean nothing in this one. False where they are of this one.
bool CFindCommands::ForgetChosenElsewhere()
{
    const CRecipeDocument& document = m_parts.frame.Document();
    if (document.Path() == m_chosenPath && m_chosenLayout.IsLaidOutLike(document.Rows()))
        return false;
    m_chosenPath = document.Path();
    m_chosenLayout = LayoutOf(document.Rows());
    m_selection.clear();
    m_column.reset();
    TakeScope();
    return true;
}

void CFindCommands::OnClosed()
{
    StopSeeking();
    m_parts.dataPane.setFocus(Qt::OtherFocusReason);
    if (!m_list)
        m_working.stop();
}

void CFindCommands::OnScopeChosen()
{
    TakeScope();
    OnQueryEdited();
}

void CFindCommands::TakeScope()
{
    m_scope.clear();
    if (m_pBar->ChosenScope() == CFindBar::Scope::Column && m_column)
        m_scope.push_back({0, INT32_MAX, *m_column, *m_column});
    else if (m_pBar->ChosenScope() == CFindBar::Scope::Selection)
        m_scope = m_selection;
}

void CFindCommands::OnQueryEdited()
{
    m_found.reset();
    m_strNote.clear();
    if (!Begin())
        return;
    m_isStepping = false;
    m_search.Seek(m_anchor, true, CCellSearch::Way::Forward);
    Work();
}

/// Has the search look for what the bar says. False where that is no query, which is told.
bool CFindCommands::Begin()
{
    m_isBegun = false;
    m_edition = m_parts.frame.Document().CellsEdition();
    const CellQuery query = m_pBar->Query();
    if (const auto fault = QueryFault(query)) {
        Tell(ToQString(*fault));
        return false;
    }
    if (m_parts.frame.Document().Rows().RowCount() == 0) {
        Tell(tr("The table is empty."));
        return false;
    }
    if (m_pBar->ChosenScope() != CFindBar::Scope::Table && m_scope.empty()) { // which would be the whole table
        Tell(tr("No cell is chosen."));
        return false;
    }
    m_search.Begin(query, m_scope, [this](std::int32_t row) { return m_parts.dataPane.IsRowShown(row); });
    m_isBegun = true;
    return true;
}

const CCellSearch* CFindCommands::Search()
{
    return m_isBegun || Begin() ? &m_search : nullptr;
}

void CFindCommands::GoToNext(const QString& note)
{
    Step(CCellSearch::Way::Forward);
    m_strNote = note;
    TellResult();
}

/// From the focus cell on. Where nothing was asked for yet, the bar asks.
void CFindCommands::Step(CCellSearch::Way way)
{
    if (!m_parts.dataPane.EndCellEdit())
        return;
    if (m_pBar->Query().text.empty())
        return Open(CFindBar::Fields::Find);
    if (!m_isBegun && !Begin())
        return;
    m_strNote.clear();
    m_isStepping = true;
    m_search.Seek(m_parts.dataPane.FocusPlace(), false, way);
    Work();
}

void CFindCommands::Work()
{
    const bool isSearching = m_isBegun && (m_pBar->isVisible() || m_search.IsSeeking());
    const bool wasSeeking = m_search.IsSeeking();
    bool isDone = !isSearching || m_search.Continue(EndOfSlice());
    if (isSearching && wasSeeking && !m_search.IsSeeking())
        ShowSought();
    if (isSearching)
        TellResult();
    if (isDone && m_listed) {
        isDone = m_listed->Continue(EndOfSlice());
        m_parts.saveCommands.ListGrew(m_list, ListSummary());
    }
    if (!isDone)
        m_working.start(0);
}

/// Who chooses a cell while a hit is looked for wants to be there, and what keys do is to be done there.
void CFindCommands::StopSeeking()
{
    m_search.StopSeeking();
}

/// The focus stays where it is, in the bar for one.
void CFindCommands::ShowSought()
{
    const auto hit = m_search.Sought();
    m_found = hit ? std::optional(hit->place) : std::nullopt;
    m_hasWrapped = hit && hit->hasWrapped;
    if (!hit)
        return;
    if (m_isStepping)
        m_anchor = hit->place;
    m_parts.dataPane.ShowCells({hit->place});
}

void CFindCommands::TellResult()
{
    Tell(m_strNote.isEmpty() ? Result() : m_strNote + u' ' + Result());
}

void CFindCommands::TellDone(const QString& text)
{
    m_found.reset();
    m_strNote = text;
    if (m_isBegun)
        TellResult();
    else
        Tell(text);
}

void CFindCommands::Tell(const QString& text)
{
    if (m_pBar->isVisible())
        m_pBar->Tell(text);
    else if (m_pBar->Told() != text || m_isStepping) {
        m_pBar->Tell(text);
        m_parts.frame.TellEdit(text);
    }
}

/// "Found at row 4, Product. 3 of 17."
QString CFindCommands::Result() const
{
    if (m_search.IsSeeking())
        return tr("Looking…");
    const std::size_t count = m_search.Count();
    const QString shownOnly = m_search.HasLeftOutRows() ? tr(" (shown rows only)") : QString();
    if (m_search.IsCounted() && count == 0)
        return tr("Not found%1%2.").arg(Where(), shownOnly);
    const QString counts = m_search.IsCounted() ? QString::number(count) : tr("%1 so far, counting…").arg(count);
    const QString end = m_search.IsCounted() ? QStringLiteral(".") : QString();
    if (!m_found || !m_parts.frame.Document().Rows().HasCell(*m_found))
        return tr("Found%1%2: %3").arg(Where(), shownOnly, counts) + end;
    const auto number = m_search.IsCounted() ? m_search.NumberOf(*m_found) : std::nullopt;
    const QString item = ToQString(m_parts.frame.Document().Rows().Columns()[m_found->column].title).simplified();
    const QString place = tr("Found at row %1, %2.").arg(m_found->row + kTitleRows).arg(item);
    const QString round = m_hasWrapped ? tr(" The search went round.") : QString();
    if (!m_search.IsCounted() && !m_pBar->isVisible()) // nothing is counted that nobody sees
        return place + shownOnly + round;
    const QString which = number ? tr("%1 of %2").arg(*number).arg(counts) : counts;
    return place + u' ' + which + shownOnly + end + round;
}

QString CFindCommands::Where() const
{
    switch (m_pBar->ChosenScope()) {
    case CFindBar::Scope::Column:
        return tr(" in the column");
    case CFindBar::Scope::Selection:
        return tr(" in the selection");
    case CFindBar::Scope::Table:
        break;
    }
    return {};
}

/// The list has a search of its own, so that it stays when something else is looked for.
void CFindCommands::ListAll()
{
    if (!m_parts.dataPane.EndCellEdit() || Search() == nullptr)
        return;
    CRecipeDocument& document = m_parts.frame.Document();
    WithdrawList();
    m_listed = std::make_shared<CCellSearch>(document.Rows());
    m_listed->Begin(m_search.Query(), m_scope, [this](std::int32_t row) { return m_parts.dataPane.IsRowShown(row); });
    m_listedPath = document.Path();
    m_listedLayout = LayoutOf(document.Rows());
    const ChangeSubject subject{m_listedPath, std::u16string(TextOf(document.Format().name))};
    m_list = std::make_shared<const CFoundCells>(m_listed, document.Rows(), document.Type(), subject);
    m_listed->Continue(EndOfSlice());
    const QString query = ToQString(EscapedText(m_search.Query().text)).left(kLongestNamed);
    m_parts.saveCommands.Show({.changes = m_list,
                               .title = tr("Found: %1").arg(query),
                               .summary = ListSummary(),
                               .path = m_listedPath,
                               .layout = m_listedLayout,
                               .actions = {},
                               .summarySaysAll = true});
    Work();
}

QString CFindCommands::ListSummary() const
{
    const QString shownOnly = m_listed->HasLeftOutRows() ? tr(" (shown rows only)") : QString();
    return tr("%1 found%2").arg(m_listed->ListedCount()).arg(shownOnly);
}

void CFindCommands::WithdrawList()
{
    m_parts.saveCommands.Withdraw(std::exchange(m_list, {}));
    m_listed.reset();
}

bool CFindCommands::IsListOfTable() const
{
    const CRecipeDocument& document = m_parts.frame.Document();
    return document.Path() == m_listedPath && m_listedLayout.IsLaidOutLike(document.Rows());
}

void CFindCommands::Follow()
{
    if (m_edition == m_parts.frame.Document().CellsEdition())
        return;
    m_edition = m_parts.frame.Document().CellsEdition();
    if (m_list && !IsListOfTable())
        WithdrawList();
    RestartSearches();
}

void CFindCommands::RestartSearches()
{
    m_strNote.clear();
    RestartSearch();
    RestartList();
    if (m_isBegun || m_listed)
        m_working.start(0);
}

/// Nothing is counted that nobody sees.
void CFindCommands::RestartSearch()
{
    const bool isScopeGone = ForgetChosenElsewhere() && m_pBar->ChosenScope() != CFindBar::Scope::Table;
    if (!m_pBar->isVisible()) {
        m_isBegun = false;
    } else if (m_isBegun && !isScopeGone && m_parts.frame.Document().Rows().RowCount() > 0) {
        m_search.Restart();
    } else {
        m_found.reset();
        Begin();
    }
}

void CFindCommands::RestartList()
{
    if (m_listed && !m_parts.saveCommands.Lists(m_list))
        WithdrawList();
    if (!m_listed)
        return;
    m_listed->Restart();
    m_listed->Continue(EndOfSlice());
    m_parts.saveCommands.ListChanged(m_list, ListSummary());
}
