#include "document/EditHistory.h"

#include <iterator>
#include <utility>

CEditHistory::Prepared CEditHistory::Prepare(Edit edit)
{
    Prepared prepared;
    prepared.push_back({std::move(edit)});
    return prepared;
}

void CEditHistory::Add(Prepared edit, const void* shownSource) noexcept
{
    ++m_edition;
    ForgetUndone();
    KeptEdit& made = edit.front();
    made.before = m_state;
    made.after = ChangesRows(made.edit) ? ++m_lastState : m_state;
    m_state = made.after;
    m_made.splice(m_made.end(), edit);
    Weigh(m_made.back(), shownSource);
    while (m_bytes > m_mostBytes && m_made.size() > 1)
        ForgetOldest();
}

void CEditHistory::StepBack(const void* shownSource) noexcept
{
    ++m_edition;
    m_undone.splice(m_undone.begin(), m_made, std::prev(m_made.end()));
    m_state = m_undone.front().before;
    Weigh(m_undone.front(), shownSource);
}

void CEditHistory::StepForth(const void* shownSource) noexcept
{
    ++m_edition;
    m_made.splice(m_made.end(), m_undone, m_undone.begin());
    m_state = m_made.back().after;
    Weigh(m_made.back(), shownSource);
}

void CEditHistory::DropNextToUndo() noexcept
{
    ++m_edition;
    m_bytes -= m_made.back().bytes;
    m_made.pop_back();
}

void CEditHistory::DropNextToRedo() noexcept
{
    ++m_edition;
    m_bytes -= m_undone.front().bytes;
    m_undone.pop_front();
}

void CEditHistory::Weigh(KeptEdit& kept, const void* shownSource) noexcept
{
    m_bytes -= kept.bytes;
    kept.bytes = BytesOf(kept.edit, shownSource);
    m_bytes += kept.bytes;
}

void CEditHistory::ForgetUndone() noexcept
{
    for (const KeptEdit& kept : m_undone)
        m_bytes -= kept.bytes;
    m_undone.clear();
}

void CEditHistory::ForgetOldest() noexcept
{
    m_bytes -= m_made.front().bytes;
    m_made.pop_front();
}

void CEditHistory::Clear(bool isSaved) noexcept
{
    ++m_edition;
    m_made.clear();
    m_undone.clear();
    m_bytes = 0;
    m_savedState = isSaved ? m_state : 0;
}
