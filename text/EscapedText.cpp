#include "text/EscapedText.h"

#include "text/Surrogates.h"

#include <cstddef>

namespace {

bool IsUnseen(char16_t unit)
{
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || (unit >= 0x2028 && unit <= 0x202E) ||
           (unit >= 0x2066 && unit <= 0x2069) || unit == 0xFEFF;
}

bool IsPairAt(std::u16string_view text, std::size_t i)
{
    return IsHighSurrogate(text[i]) && i + 1 < text.size() && IsLowSurrogate(text[i + 1]);
}

void AppendEscape(char16_t unit, std::u16string& line)
{
    constexpr char16_t kDigits[] = u"0123456789abcdef";
    line += u'\\';
    switch (unit) {
    case u'\n':
        line += u'n';
        return;
    case u'\r':
        line += u'r';
        return;
    case u'\t':
        line += u't';
        return;
    default:
        line += u'u';
        for (int shift = 12; shift >= 0; shift -= 4)
            line += kDigits[(unit >> shift) & 0xF];
    }
}

} // namespace

std::u16string EscapedText(std::u16string_view text)
{
    std::u16string line;
    line.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (IsPairAt(text, i))
            line += text[i++];
        else if (IsUnseen(text[i]) || IsHighSurrogate(text[i]) || IsLowSurrogate(text[i])) {
            AppendEscape(text[i], line);
            continue;
        }
        line += text[i];
    }
    return line;
}
