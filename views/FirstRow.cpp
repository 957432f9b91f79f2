#include "views/FirstRow.h"

#include "document/RecipeDocument.h"
#include "views/TextCrossing.h"

#include <QStringList>

#include <algorithm>

namespace {

constexpr std::size_t kMostValues = 12; ///< of an array: more is not seen anyway

std::size_t ColumnsOf(const DataItem& item)
{
    return item.isArray != 0 ? static_cast<std::size_t>(std::max(item.arrayLength, 0)) : 1;
}

/// Whatever the notes say.
bool AreItemsSame(const DataFormat& a, const DataFormat& b)
{
    return a.name == b.name && a.itemCount == b.itemCount &&
           std::equal(a.items.begin(), a.items.end(), b.items.begin(), b.items.end(),
                      [](const auto& itemA, const auto& itemB) { return HaveSameRecord(*itemA, *itemB); });
}

} // namespace

void CFirstRow::Follow(const DataFormat* format)
{
    m_columns.clear();
    if (!format || m_document.Rows().RowCount() == 0 || !AreItemsSame(*format, m_document.Format()))
        return;
    m_columns.reserve(format->items.size() + 1);
    m_columns.push_back(0);
    for (const auto& item : format->items)
        m_columns.push_back(m_columns.back() + ColumnsOf(*item));
}

QString CFirstRow::TextOf(int index) const
{
    const auto item = static_cast<std::size_t>(index);
    if (index < 0 || item + 1 >= m_columns.size())
        return {};
    const std::size_t begin = m_columns[item];
    const std::size_t end = std::min(m_columns[item + 1], begin + kMostValues);
    QStringList texts;
    for (std::size_t column = begin; column < end; ++column)
        texts << ToQString(m_document.Rows().Text(0, column)); // empty when the rows are others by now
    if (end < m_columns[item + 1])
        texts << QStringLiteral("…");
    return texts.join(QStringLiteral(", "));
}
