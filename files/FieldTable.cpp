#include "files/FieldTable.h"

void CFieldTable::Reserve(std::size_t characters, std::size_t fields)
{
    m_text.reserve(characters);
    m_ends.reserve(fields);
}

void CFieldTable::EndLine()
{
    m_lines.push_back(m_line);
    m_line = {m_text.size(), m_ends.size()};
}
