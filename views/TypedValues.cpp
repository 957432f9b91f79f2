#include "views/TypedValues.h"

#include "views/RecipeFrame.h"
#include "views/SavingRemark.h"

#include <algorithm>
#include <chrono>
#include <new>

namespace {

constexpr std::chrono::milliseconds kSlice{8};
constexpr std::size_t kBetweenLooksAtTheClock = 64;

/// Deleting is no typing: that a cell is emptied tells itself.
bool IsToBeTold(const TypedValue& judged)
{
    return judged.verdict != TypedVerdict::Fine && judged.verdict != TypedVerdict::StoredAsZero;
}

} // namespace

CTypedValues::CTypedValues(CRecipeFrame& frame, QObject* parent) : QObject(parent), m_frame(frame)
{
    m_timer.setInterval(0);
    connect(&m_timer, &QTimer::timeout, this, &CTypedValues::LookOn);
}

void CTypedValues::Look(std::vector<CellPlace> places)
{
    if (!std::is_sorted(places.begin(), places.end())) // as those of a paste are
        std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    m_places = std::move(places);
    m_next = 0;
    m_told.clear();
    m_canStoreExactly = false;
    LookOn();
}

void CTypedValues::LookAgain()
{
    if (m_timer.isActive() || !m_told.empty())
        Look(m_timer.isActive() ? std::move(m_places) : std::move(m_told));
}

/// Without the memory for it nothing is told, that is all.
void CTypedValues::LookOn()
try {
    const auto end = std::chrono::steady_clock::now() + kSlice;
    const CRecipeDocument& document = m_frame.Document();
    while (m_next < m_places.size()) {
        const CellPlace place = m_places[m_next++];
        if (const auto judged = document.JudgeTyped(place); judged && IsToBeTold(*judged)) {
            m_told.push_back(place);
            m_canStoreExactly = m_canStoreExactly || judged->exactWords;
        }
        if (m_next % kBetweenLooksAtTheClock == 0 && std::chrono::steady_clock::now() >= end)
            break;
    }
    if (m_next < m_places.size()) {
        m_timer.start();
        return;
    }
    m_timer.stop();
    m_places.clear();
    Finish();
} catch (const std::bad_alloc&) {
    m_timer.stop();
    m_places.clear();
}

void CTypedValues::Finish()
{
    if (m_told.empty()) {
        m_frame.WithdrawStrip(StripSubject::StoredOtherwise);
        return;
    }
    StripMessage message{
        m_told.size() == 1 ? TypedRemark(m_frame.Document(), m_told.front()) + QLatin1Char('.')
                           : tr("%1 values are stored, or shown again, as others than were typed.").arg(m_told.size()),
        {}};
    if (m_told.size() > 1)
        message.buttons << StripButton{tr("Show"), [this] { emit Show(m_told); }};
    if (m_canStoreExactly)
        message.buttons << StripButton{tr("Store exactly"), [this] { emit StoreExactly(m_told); }};
    m_frame.ShowStrip(StripSubject::StoredOtherwise, message);
}
