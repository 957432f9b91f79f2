#include "views/ChangesFilter.h"

#include "views/ChangeTexts.h"

#include <QElapsedTimer>

#include <limits>
#include <utility>

namespace {

constexpr ChangeColumn kSearched[]{ChangeColumn::Address, ChangeColumn::Item, ChangeColumn::Old, ChangeColumn::New,
                                   ChangeColumn::Why};

} // namespace

void CChangesFilter::Begin(std::shared_ptr<const CChangeList> list, const QString& text, ColumnOf columnOf)
{
    m_columnOf = std::move(columnOf);
    m_list = std::move(list);
    m_strText = text;
    Restart();
}

void CChangesFilter::Restart()
{
    m_nNext = 0;
    m_matches.clear();
}

bool CChangesFilter::IsFinished() const
{
    return !IsOn() || !m_list || m_nNext >= m_list->Count();
}

void CChangesFilter::Work(std::chrono::milliseconds time)
{
    QElapsedTimer elapsed;
    elapsed.start();
    for (; !IsFinished() && !elapsed.hasExpired(time.count()); ++m_nNext)
        if (Matches(m_list->At(m_nNext), m_columnOf(m_nNext)))
            m_matches.push_back(m_nNext);
}

bool CChangesFilter::Matches(const ChangeRecord& change, const ColumnCoding* coding) const
{
    const ChangeTexts texts = TextsOf(change, std::numeric_limits<std::size_t>::max() / 2, coding);
    for (const ChangeColumn column : kSearched)
        if (texts[static_cast<std::size_t>(column)].contains(m_strText, Qt::CaseInsensitive))
            return true;
    return false;
}
