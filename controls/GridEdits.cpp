#include "controls/GridEdits.h"

#include "controls/GridModel.h"

#include <algorithm>

namespace {

constexpr std::int64_t kMostRoom = std::int64_t{1} << 20; // texts; more may be expected than there is memory for

} // namespace

void CGridEdits::MakeRoom(std::int64_t texts)
{
    m_texts.reserve(static_cast<std::size_t>(std::min(texts, kMostRoom)));
}

CGridEdits::Change CGridEdits::Add(int row, int column, QString text)
{
    if (!m_model.IsEditable(row, column))
        return Change::ReadOnly;
    ++m_nOffered;
    if (m_model.Text(row, column) == text)
        return Change::Same;
    if (m_check && !m_check(column, text)) {
        ++m_nRefused;
        if (!m_firstRefusal)
            m_firstRefusal = Cell(row, column);
        return Change::Refused;
    }
    m_texts.push_back({row, column, std::move(text)});
    return Change::Done;
}
