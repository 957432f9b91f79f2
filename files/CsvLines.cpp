#include "files/CsvLines.h"

#include <utility>

std::size_t CsvLine::FieldCount() const
{
    return ends.size() - (Raw(ends.size() - 1).empty() ? 1 : 0);
}

std::u16string_view CsvLine::Raw(std::size_t column) const
{
    const std::size_t begin = column == 0 ? 0 : ends[column - 1] + 1;
    return std::u16string_view(text).substr(begin, ends[column] - begin);
}

std::u16string_view CsvLine::Shown(std::size_t column, const CsvTextForm& form) const
{
    const std::u16string_view raw = Raw(column);
    return IsSeparated(column) && form.stripsQuotes ? WithoutQuotes(raw) : raw;
}

bool CCsvLineCollector::Take(const CsvRawField& field)
{
    if (m_hasEnded) {
        m_line = {};
        m_line.number = field.line;
        m_line.offset = field.offset;
    }
    m_line.text += field.raw;
    m_line.ends.push_back(m_line.text.size());
    m_hasEnded = field.EndsLine();
    if (m_hasEnded)
        m_line.length = field.offset + field.length - m_line.offset;
    else
        m_line.text += m_form.separator;
    return m_hasEnded;
}

bool CCsvLineReader::Next()
{
    if (m_hasLine)
        m_lines.pop_front();
    while (m_lines.empty() && m_cutter.Continue(*this))
        ;
    m_hasLine = !m_lines.empty() && !HasFailed();
    return m_hasLine;
}

void CCsvLineReader::Take(const CsvRawField& field)
{
    if (m_other != nullptr)
        m_other->Take(field);
    if (m_collector.Take(field))
        m_lines.push_back(std::move(m_collector.Line()));
}
