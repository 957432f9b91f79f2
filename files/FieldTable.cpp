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

std::size_t CFieldTable::FurtherBytes() const
{
    return m_text.capacity() * sizeof(char16_t) + m_ends.capacity() * sizeof(std::uint32_t) +
           m_lines.capacity() * sizeof(LineBegin);
}
