#include "cli/ChangeText.h"

#include "changes/WordsText.h"
#include "text/EscapedText.h"
#include "text/NumberText.h"
#include "text/Utf8Text.h"

#include <cstddef>
#include <string_view>

namespace {

constexpr std::string_view kNone = "(none)";
constexpr std::string_view kArrow = " -> ";

/// What is appended to a line part by part, with a gap between.
class CParts {
public:
    explicit CParts(std::string& line) : m_line(line), m_begin(line.size()) {}

    /// The line, to which the next part is to be appended.
    std::string& Next()
    {
        if (m_line.size() > m_begin)
            m_line += "  ";
        return m_line;
    }

private:
    std::string& m_line;
    const std::size_t m_begin;
};

bool IsValue(const ChangeRecord& record)
{
    return record.row || record.line || record.oldText || record.newText;
}

void AppendPlace(const ChangeRecord& record, CParts& parts)
{
    if (record.address)
        AppendDecimal(record.address->number, parts.Next() += "RW");
    if (record.row)
        AppendDecimal(*record.row, parts.Next() += "row ");
    if (record.item)
        AppendEscaped(*record.item, parts.Next());
    else if (record.column)
        AppendDecimal(*record.column, parts.Next() += "column ");
    if (record.line)
        AppendDecimal(*record.line, parts.Next() += "line ");
}

void AppendSide(const std::optional<std::u16string>& text, const WordRun& words, bool withWords, std::string& line)
{
    if (text)
        AppendEscaped(*text, line);
    else if (words.empty())
        line += kNone;
    if (words.empty() || (text && !withWords))
        return;
    line += text ? " [" : "[";
    AppendWordsText(words, line);
    line += ']';
}

void AppendValues(const ChangeRecord& record, std::string& line)
{
    const bool withWords = record.oldText == record.newText;
    AppendSide(record.oldText, record.oldWords, withWords, line);
    line += kArrow;
    AppendSide(record.newText, record.newWords, withWords, line);
}

void AppendRun(const WordRun& words, std::string& line)
{
    if (words.empty())
        line += kNone;
    else
        AppendWordsText(words, line);
}

void AppendWords(const ChangeRecord& record, CParts& parts)
{
    parts.Next() += "words";
    std::string& line = parts.Next();
    AppendRun(record.oldWords, line);
    line += kArrow;
    AppendRun(record.newWords, line);
}

void AppendZeros(const ChangeRecord& record, CParts& parts)
{
    parts.Next() += "zeros";
    AppendDecimal(record.zeros, parts.Next() += record.zeros > 0 ? "+" : "");
}

} // namespace

std::u16string PlaceText(const ChangeRecord& record)
{
    std::string text;
    CParts parts(text);
    AppendPlace(record, parts);
    return FromUtf8(text);
}

std::u16string SideText(const std::optional<std::u16string>& text, const WordRun& words, bool withWords)
{
    std::string side;
    AppendSide(text, words, withWords, side);
    return FromUtf8(side);
}

void AppendChangeText(const ChangeRecord& record, std::string& line)
{
    CParts parts(line);
    AppendPlace(record, parts);
    if (record.zeros != 0)
        AppendZeros(record, parts);
    else if (IsValue(record))
        AppendValues(record, parts.Next());
    else if (record.address)
        AppendWords(record, parts);
    else if (record.why)
        parts.Next() += ToUtf8(WordOf(*record.why));
    line += '\n';
}
