#include "controls/TabbedText.h"

#include <algorithm>

namespace {

constexpr QChar kTab = u'\t';
constexpr QChar kQuote = u'"';

bool IsLineEnd(QChar c)
{
    return c == u'\n' || c == u'\r';
}

bool EndsField(QChar c)
{
    return c == kTab || IsLineEnd(c);
}

bool NeedsQuotes(QStringView text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return EndsField(c) || c == kQuote; });
}

} // namespace

void AppendTabbedField(QString& out, QStringView text)
{
    if (!NeedsQuotes(text)) {
        out += text;
        return;
    }
    out += kQuote;
    for (const QChar c : text) {
        if (c == kQuote)
            out += kQuote;
        out += c;
    }
    out += kQuote;
}

bool CTabbedTextReader::Next(QString& field)
{
    if (!m_bMore || (m_nPos == m_text.size() && (m_nPos == 0 || m_bRowEnded)))
        return false;
    if (m_bRowEnded) {
        ++m_nRow;
        m_nColumn = -1;
    }
    ++m_nColumn;
    field.clear();
    if (m_bUnclosed || m_nPos == m_text.size() || m_text[m_nPos] != kQuote || !ReadQuoted(field))
        ReadPlain(field);
    PassSeparator();
    return true;
}

/// False when the quote is never closed; then nothing was read.
bool CTabbedTextReader::ReadQuoted(QString& field)
{
    qsizetype from = m_nPos + 1;
    for (;;) {
        const qsizetype quote = m_text.indexOf(kQuote, from);
        if (quote < 0) {
            field.clear();
            m_bUnclosed = true;
            return false;
        }
        field += m_text.sliced(from, quote - from);
        from = quote + 1;
        if (from == m_text.size() || m_text[from] != kQuote)
            break;
        field += kQuote;
        ++from;
    }
    m_nPos = from;
    ReadPlain(field); // what stands between the closing quote and the separator
    return true;
}

void CTabbedTextReader::ReadPlain(QString& field)
{
    const qsizetype from = m_nPos;
    while (m_nPos < m_text.size() && !EndsField(m_text[m_nPos]))
        ++m_nPos;
    field += m_text.sliced(from, m_nPos - from);
}

void CTabbedTextReader::PassSeparator()
{
    m_bMore = m_nPos < m_text.size();
    if (!m_bMore)
        return;
    const QChar separator = m_text[m_nPos++];
    m_bRowEnded = IsLineEnd(separator);
    if (separator == u'\r' && m_nPos < m_text.size() && m_text[m_nPos] == u'\n')
        ++m_nPos;
}
