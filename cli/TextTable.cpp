#include "cli/TextTable.h"

#include "text/PrintableText.h"

#include <algorithm>

CTextTable::CTextTable(const std::vector<Align>& columns)
{
    for (const Align align : columns)
        m_columns.push_back({align, 0});
}

void CTextTable::MakeRoom(std::size_t column, std::u16string_view text)
{
    m_columns[column].width = std::max(m_columns[column].width, DisplayWidth(text));
}

void CTextTable::AppendCell(std::u16string_view text, std::string& lines)
{
    const Column& column = m_columns[m_next];
    const std::size_t width = DisplayWidth(text);
    const std::size_t padding = column.width - std::min(width, column.width);
    const bool isLast = ++m_next == m_columns.size();

    if (column.align == Align::Right)
        lines.append(padding, ' ');
    AppendPrintable(text, lines);
    if (column.align == Align::Left && !isLast)
        lines.append(padding, ' ');
    lines += isLast ? "\n" : "  ";
    if (isLast)
        m_next = 0;
}
