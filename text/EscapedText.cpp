#include "text/EscapedText.h"

#include "text/Surrogates.h"
#include "text/Utf8Text.h"

namespace {

bool IsPlainAscii(char16_t unit)
{
    return unit >= 0x20 && unit < 0x7F;
}

bool IsUnseen(char16_t unit)
{
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || (unit >= 0x2028 && unit <= 0x202E) ||
           (unit >= 0x2066 && unit <= 0x2069) || unit == 0xFEFF || IsHighSurrogate(unit) || IsLowSurrogate(unit);
}

bool BeginsWithPair(std::u16string_view text)
{
    return text.size() > 1 && IsHighSurrogate(text[0]) && IsLowSurrogate(text[1]);
}

void AppendEscape(char16_t unit, std::string& line)
{
    constexpr char kDigits[] = "0123456789abcdef";
    line += '\\';
    switch (unit) {
    case u'\n':
        line += 'n';
        return;
    case u'\r':
        line += 'r';
        return;
    case u'\t':
        line += 't';
        return;
    default:
        line += 'u';
        for (int shift = 12; shift >= 0; shift -= 4)
            line += kDigits[(unit >> shift) & 0xF];
    }
}

} // namespace

std::u16string EscapedText(std::u16string_view text)
{
    std::string line;
    line.reserve(text.size());
    AppendEscaped(text, line);
    return FromUtf8(line);
}

void AppendEscaped(std::u16string_view text, std::string& line)
{
    for (TakePlain(text, line, IsPlainAscii); !text.empty(); TakePlain(text, line, IsPlainAscii)) {
        if (BeginsWithPair(text) || !IsUnseen(text.front())) {
            AppendUtf8(TakeCharacter(text), line);
        } else {
            AppendEscape(text.front(), line);
            text.remove_prefix(1);
        }
    }
}
