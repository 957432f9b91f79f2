#include "text/DelimitedText.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::size_t kLinesLookedAt = 100;
constexpr std::size_t kUnitsLookedAt = 256 * 1024;
constexpr char16_t kQuote = u'"';

constexpr std::array kSeparators{FieldSeparator::Tab, FieldSeparator::Semicolon, FieldSeparator::Bar,
                                 FieldSeparator::Comma};

bool IsLineEnd(char16_t c)
{
    return c == u'\n' || c == u'\r';
}

/// Goes through a text field by field.
class CFieldCutter {
public:
    CFieldCutter(std::u16string_view text, FieldSeparator separator) : m_text(text), m_separator(separator) {}

    bool IsAtEnd() const { return m_pos == m_text.size(); }
    bool IsAtRowBegin() const { return m_isAtRowBegin; }

    void AppendField(std::u16string& out)
    {
        if (m_text[m_pos] == kQuote && m_areQuotesClosed)
            AppendQuoted(out);
        const auto from = m_text.begin() + static_cast<std::ptrdiff_t>(m_pos);
        const auto end = std::find_if(from, m_text.end(), [this](char16_t c) { return IsLineEnd(c) || Separates(c); });
        out.append(from, end); // also what stands between a closing quote and the separator
        m_pos += static_cast<std::size_t>(end - from);
        m_isAtRowBegin = false;
    }

    /// Whether a further field follows in the row.
    bool PassSeparator()
    {
        if (IsAtEnd())
            return false;
        m_isAtRowBegin = IsLineEnd(m_text[m_pos]);
        m_pos += m_text.substr(m_pos).starts_with(u"\r\n") ? 2U : 1U;
        return !m_isAtRowBegin;
    }

private:
    bool Separates(char16_t c) const
    {
        return m_separator != FieldSeparator::None && c == static_cast<char16_t>(m_separator);
    }

    /// Nothing is appended when the quote is never closed.
    void AppendQuoted(std::u16string& out)
    {
        std::u16string field;
        for (std::size_t from = m_pos + 1;;) {
            const std::size_t quote = m_text.find(kQuote, from);
            m_areQuotesClosed = quote != std::u16string_view::npos;
            if (!m_areQuotesClosed)
                return;
            field += m_text.substr(from, quote - from);
            from = quote + 1;
            if (from == m_text.size() || m_text[from] != kQuote) {
                m_pos = from;
                break;
            }
            field += kQuote;
            ++from;
        }
        out += field;
    }

    std::u16string_view m_text;
    FieldSeparator m_separator;
    std::size_t m_pos = 0;
    bool m_isAtRowBegin = true;
    bool m_areQuotesClosed = true; ///< until one is met that is not; no later one is then
};

/// How many fields each of the first lines has; a line that was cut off is left out.
std::vector<std::size_t> FieldCounts(std::u16string_view text, FieldSeparator separator)
{
    const bool isCut = text.size() > kUnitsLookedAt;
    const CDelimitedText cut(text.substr(0, kUnitsLookedAt), separator);
    const std::size_t rows = cut.RowCount() - (isCut && cut.RowCount() > 1 ? 1 : 0);
    std::vector<std::size_t> counts;
    for (std::size_t row = 0; row < std::min(rows, kLinesLookedAt); ++row)
        if (cut.FieldCount(row) > 1 || !cut.Field(row, 0).empty())
            counts.push_back(cut.FieldCount(row));
    return counts;
}

bool AreDigits(std::u16string_view text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), [](char16_t c) { return c >= u'0' && c <= u'9'; });
}

/// Whether each line is one number or two, "1,5" for example.
bool MayBeOneNumberEach(std::u16string_view text)
{
    const CDelimitedText cut(text.substr(0, kUnitsLookedAt), FieldSeparator::Comma);
    for (std::size_t row = 0; row < std::min(cut.RowCount(), kLinesLookedAt); ++row) {
        std::u16string_view first = cut.Field(row, 0);
        if (first.starts_with(u'-') || first.starts_with(u'+'))
            first.remove_prefix(1);
        if (cut.FieldCount(row) > 2 || (!first.empty() && !AreDigits(first)) ||
            (cut.FieldCount(row) == 2 && !AreDigits(cut.Field(row, 1))))
            return false;
    }
    return true;
}

} // namespace

std::optional<FieldSeparator> SeparatorOf(std::u16string_view text)
{
    const auto decided = [&](FieldSeparator separator) -> std::optional<FieldSeparator> {
        if (separator == FieldSeparator::Comma && MayBeOneNumberEach(text))
            return std::nullopt;
        return separator;
    };
    std::optional<FieldSeparator> anywhere;
    for (const FieldSeparator separator : kSeparators) {
        const auto counts = FieldCounts(text, separator);
        const bool isSomewhere = std::any_of(counts.begin(), counts.end(), [](std::size_t count) { return count > 1; });
        if (isSomewhere && std::all_of(counts.begin(), counts.end(), [&](std::size_t n) { return n == counts[0]; }))
            return decided(separator);
        if (isSomewhere && !anywhere)
            anywhere = separator;
    }
    return decided(anywhere.value_or(FieldSeparator::None));
}

CDelimitedText::CDelimitedText(std::u16string_view text, FieldSeparator separator)
{
    m_text.reserve(text.size());
    CFieldCutter cutter(text, separator);
    while (!cutter.IsAtEnd()) {
        if (cutter.IsAtRowBegin())
            m_rows.push_back(m_ends.size());
        cutter.AppendField(m_text);
        EndField();
        if (cutter.PassSeparator() && cutter.IsAtEnd())
            EndField(); // an empty one after the last separator
        if (cutter.IsAtRowBegin())
            EndRow();
    }
    EndRow();
    while (!m_rows.empty() && FieldCount(m_rows.size() - 1) == 1 && Field(m_rows.size() - 1, 0).empty()) {
        m_ends.pop_back();
        m_rows.pop_back();
    }
}

void CDelimitedText::EndField()
{
    m_ends.push_back(static_cast<std::uint32_t>(m_text.size()));
}

void CDelimitedText::EndRow()
{
    if (!m_rows.empty())
        m_mostFields = std::max(m_mostFields, m_ends.size() - m_rows.back());
}

std::size_t CDelimitedText::FieldCount(std::size_t row) const
{
    return row < m_rows.size() ? EndOfRow(row) - m_rows[row] : 0;
}

std::u16string_view CDelimitedText::Field(std::size_t row, std::size_t column) const
{
    if (column >= FieldCount(row))
        return {};
    const std::size_t field = m_rows[row] + column;
    const std::size_t begin = field > 0 ? m_ends[field - 1] : 0;
    return std::u16string_view(m_text).substr(begin, m_ends[field] - begin);
}
