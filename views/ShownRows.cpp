#include "views/ShownRows.h"

#include <algorithm>
#include <iterator>

void CShownRows::ShowAll(std::int32_t count)
{
    m_areSome = false;
    m_all = count;
    m_rows = {};
}

void CShownRows::ShowSome(std::vector<std::int32_t> rows, std::int32_t all)
{
    if (rows.size() >= static_cast<std::size_t>(all)) {
        ShowAll(all);
        return;
    }
    m_areSome = true;
    m_all = all;
    m_rows = std::move(rows);
}

std::size_t CShownRows::Add(std::vector<std::int32_t> rows)
{
    std::erase_if(rows, [this](std::int32_t row) { return row < 0 || row >= m_all || IndexOf(row); });
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    if (rows.empty())
        return 0;
    std::vector<std::int32_t> merged;
    merged.reserve(m_rows.size() + rows.size());
    std::merge(m_rows.begin(), m_rows.end(), rows.begin(), rows.end(), std::back_inserter(merged));
    ShowSome(std::move(merged), m_all);
    return rows.size();
}

std::int32_t CShownRows::RowAt(std::int32_t index) const
{
    if (index < 0 || index >= Count())
        return -1;
    return m_areSome ? m_rows[static_cast<std::size_t>(index)] : index;
}

std::optional<std::int32_t> CShownRows::IndexOf(std::int32_t row) const
{
    if (row < 0 || row >= m_all)
        return std::nullopt;
    if (!m_areSome)
        return row;
    const auto found = std::lower_bound(m_rows.begin(), m_rows.end(), row);
    if (found == m_rows.end() || *found != row)
        return std::nullopt;
    return static_cast<std::int32_t>(found - m_rows.begin());
}

std::int32_t CShownRows::IndexNear(std::int32_t row) const
{
    if (!m_areSome)
        return std::min(std::max(row, 0), m_all - 1);
    const auto found = std::lower_bound(m_rows.begin(), m_rows.end(), row);
    return std::min(static_cast<std::int32_t>(found - m_rows.begin()), Count() - 1);
}
