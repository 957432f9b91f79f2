#include "app/RangeNotice.h"

#include "app/EditCommands.h"
#include "app/SaveCommands.h"
#include "files/TableTitles.h"
#include "text/EscapedText.h"
#include "views/RecipeDataShowView.h"
#include "views/RecipeFrame.h"
#include "views/TextCrossing.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <new>
#include <utility>

namespace {

constexpr std::chrono::milliseconds kSlice{8};
constexpr std::size_t kBetweenLooksAtTheClock = 64;

} // namespace

CRangeNotice::CRangeNotice(const Parts& parts, QObject* parent) : QObject(parent), m_parts(parts)
{
    m_timer.setInterval(0);
    connect(&m_timer, &QTimer::timeout, this, &CRangeNotice::LookOn);
    connect(&m_parts.dataPane, &CRecipeDataShowView::ValuesGiven, this, &CRangeNotice::Look);
    connect(&m_parts.dataPane, &CRecipeDataShowView::NotesChanged, this, &CRangeNotice::Withdraw);
}

/// Cells of items without a range are no trouble, however many they are. Without the memory to look nothing is told.
void CRangeNotice::Look(const std::vector<CellPlace>& places)
try {
    Withdraw();
    const CRecipeDocument& document = m_parts.frame.Document();
    std::vector<bool> haveRange;
    for (const ColumnCoding& coding : document.Rows().Columns())
        haveRange.push_back(HasRange(*coding.notes));
    if (std::find(haveRange.begin(), haveRange.end(), true) == haveRange.end())
        return;
    std::copy_if(places.begin(), places.end(), std::back_inserter(m_places),
                 [&](CellPlace place) { return place.column < haveRange.size() && haveRange[place.column]; });
    if (!std::is_sorted(m_places.begin(), m_places.end())) // as those of a paste are
        std::sort(m_places.begin(), m_places.end());
    m_places.erase(std::unique(m_places.begin(), m_places.end()), m_places.end());
    m_isToldOf = true;
    m_edition = document.HistoryEdition();
    LookOn();
} catch (const std::bad_alloc&) {
    Withdraw();
}

void CRangeNotice::LookOn()
try {
    const auto end = std::chrono::steady_clock::now() + kSlice;
    while (m_next < m_places.size()) {
        const CellPlace place = m_places[m_next++];
        if (NumberOutsideRange(m_parts.frame.Document(), place))
            m_outside.push_back(place);
        if (m_next % kBetweenLooksAtTheClock == 0 && std::chrono::steady_clock::now() >= end)
            break;
    }
    if (m_next < m_places.size()) {
        m_timer.start();
        return;
    }
    m_timer.stop();
    m_places = {};
    if (!m_outside.empty())
        Tell();
} catch (const std::bad_alloc&) {
    Withdraw();
}

void CRangeNotice::Tell()
{
    m_parts.frame.AnswerInStrip(StripSubject::OutsideRange, Message());
}

/// "Zone °C(2) of row 4: 0.5 lies outside 150 to 280 °C."
StripMessage CRangeNotice::Message()
{
    StripMessage message;
    if (m_outside.size() == 1) {
        const CRecipeDocument& document = m_parts.frame.Document();
        const CellPlace place = m_outside.front();
        message.text = tr("%1 of row %2: %3.")
                           .arg(ToQString(EscapedText(document.Rows().Columns()[place.column].title)),
                                QString::number(place.row + kTitleRows),
                                ToQString(EscapedText(OutsideRangeRemark(document, place))));
    } else {
        message.text = tr("%1 values lie outside their sensible range.").arg(m_outside.size());
    }
    message.buttons << StripButton{tr("Undo"), [this] { Undo(); }};
    if (m_outside.size() > 1)
        message.buttons << StripButton{tr("Show"), [this] { List(); }};
    return message;
}

/// An edit of a cell that is open may become another edit first.
void CRangeNotice::Undo()
{
    if (!m_parts.dataPane.EndCellEdit() || !m_isToldOf || m_edition != m_parts.frame.Document().HistoryEdition())
        return;
    m_parts.editCommands.UndoEdit();
    m_parts.dataPane.setFocus(Qt::OtherFocusReason); // the button goes
}

void CRangeNotice::List()
{
    const CRecipeDocument& document = m_parts.frame.Document();
    m_listed = std::make_shared<COutsideRange>(document, m_outside);
    m_layout = document.Rows();
    m_path = document.Path();
    m_cellsEdition = document.CellsEdition();
    m_parts.saveCommands.Show({.changes = m_listed,
                               .title = tr("Outside the sensible range"),
                               .summary = tr("%1 values that lay outside their sensible range").arg(m_outside.size()),
                               .path = m_path,
                               .layout = m_layout,
                               .actions = {}});
}

/// The list stays, so that its values can be mended one by one; it goes with the rows.
void CRangeNotice::Follow()
{
    const CRecipeDocument& document = m_parts.frame.Document();
    if (m_isToldOf && m_edition != document.HistoryEdition())
        Withdraw();
    if (!m_listed || m_cellsEdition == document.CellsEdition())
        return;
    m_cellsEdition = document.CellsEdition();
    if (!m_parts.saveCommands.Lists(m_listed))
        m_listed.reset();
    else if (m_path != document.Path() || !m_layout.IsLaidOutLike(document.Rows()))
        m_parts.saveCommands.Withdraw(std::exchange(m_listed, {}));
    else
        m_parts.saveCommands.ListChanged(m_listed,
                                         tr("%1 values that lay outside their sensible range").arg(m_listed->Count()));
}

void CRangeNotice::Withdraw()
{
    m_timer.stop();
    m_places = {};
    m_next = 0;
    m_outside = {};
    if (std::exchange(m_isToldOf, false))
        m_parts.frame.WithdrawStrip(StripSubject::OutsideRange);
}
