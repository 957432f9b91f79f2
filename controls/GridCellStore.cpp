#include "controls/GridCellStore.h"

#include <algorithm>

void CGridCellStore::Clear()
{
    m_nColumns = 0;
    m_rows.clear();
    m_others.clear();
}

void CGridCellStore::SetColumnCount(int count)
{
    const int kept = std::min(count, m_nColumns);
    m_nColumns = count;
    for (auto& row : m_rows) {
        if (!row)
            continue;
        auto cells = std::make_unique<CGridCell[]>(static_cast<std::size_t>(count));
        std::move(row.get(), row.get() + kept, cells.get());
        row = std::move(cells);
    }
    std::erase_if(m_others, [count](const auto& other) { return other.first.second >= count; });
}

void CGridCellStore::DropRowsFrom(int row)
{
    if (static_cast<std::size_t>(row) < m_rows.size())
        m_rows.resize(static_cast<std::size_t>(row));
    m_others.erase(m_others.lower_bound({row, 0}), m_others.end());
}

const CGridCellBase* CGridCellStore::Find(int row, int column) const
{
    if (!m_others.empty()) {
        if (const auto other = m_others.find({row, column}); other != m_others.end())
            return other->second.get();
    }
    const auto at = static_cast<std::size_t>(row);
    return at < m_rows.size() && m_rows[at] ? &m_rows[at][static_cast<std::size_t>(column)] : nullptr;
}

CGridCellBase& CGridCellStore::Make(int row, int column)
{
    if (const auto other = m_others.find({row, column}); other != m_others.end())
        return *other->second;
    const auto at = static_cast<std::size_t>(row);
    if (at >= m_rows.size())
        m_rows.resize(at + 1);
    if (!m_rows[at])
        m_rows[at] = std::make_unique<CGridCell[]>(static_cast<std::size_t>(m_nColumns));
    return m_rows[at][static_cast<std::size_t>(column)];
}

void CGridCellStore::Put(int row, int column, std::unique_ptr<CGridCellBase> cell)
{
    m_others[{row, column}] = std::move(cell);
}
