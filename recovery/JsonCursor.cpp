#include "recovery/JsonCursor.h"

#include "text/Utf8Text.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <system_error>

namespace {

/// The character that a letter after a backslash stands for; 0 for none.
char16_t EscapedBy(char letter)
{
    switch (letter) {
    case 'b':
        return u'\b';
    case 'f':
        return u'\f';
    case 'n':
        return u'\n';
    case 'r':
        return u'\r';
    case 't':
        return u'\t';
    case '"':
    case '\\':
        return static_cast<char16_t>(letter);
    default:
        return u'\0';
    }
}

bool IsAscii(char c)
{
    return static_cast<unsigned char>(c) < 0x80;
}

} // namespace

bool CJsonCursor::TakeNumber(std::int64_t least, std::int64_t most, std::int64_t& number)
{
    const auto [end, fault] = std::from_chars(m_rest.data(), m_rest.data() + m_rest.size(), number);
    if (fault != std::errc() || number < least || number > most)
        return false;
    m_rest.remove_prefix(static_cast<std::size_t>(end - m_rest.data()));
    return true;
}

bool CJsonCursor::TakeText(std::u16string& text)
{
    text.clear();
    if (!Take("\""))
        return false;
    while (!Take("\"")) {
        const bool isTaken = Take("\\") ? TakeEscape(text) : TakeRun(text);
        if (!isTaken)
            return false;
    }
    return true;
}

/// What follows a backslash.
bool CJsonCursor::TakeEscape(std::u16string& text)
{
    constexpr std::size_t kDigits = 4;
    if (!Take("u")) {
        const char16_t character = m_rest.empty() ? u'\0' : EscapedBy(m_rest.front());
        if (character == u'\0')
            return false;
        text += character;
        m_rest.remove_prefix(1);
        return true;
    }
    std::uint16_t unit = 0;
    const char* const begin = m_rest.data();
    if (m_rest.size() < kDigits || std::from_chars(begin, begin + kDigits, unit, 16).ptr != begin + kDigits)
        return false;
    text += static_cast<char16_t>(unit);
    m_rest.remove_prefix(kDigits);
    return true;
}

/// The characters up to a quote or a backslash, one at least.
bool CJsonCursor::TakeRun(std::u16string& text)
{
    const auto isEnd = [](char c) { return c == '"' || c == '\\' || (IsAscii(c) && c < ' '); };
    const auto length = static_cast<std::size_t>(std::find_if(m_rest.begin(), m_rest.end(), isEnd) - m_rest.begin());
    const std::string_view run = m_rest.substr(0, length);
    if (run.empty())
        return false;
    m_rest.remove_prefix(length);
    if (std::all_of(run.begin(), run.end(), IsAscii)) {
        text.append(run.begin(), run.end());
        return true;
    }
    const std::u16string units = FromUtf8(run);
    text += units;
    return ToUtf8(units) == run;
}
