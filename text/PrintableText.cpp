#include "text/PrintableText.h"

#include "text/Utf8Text.h"

#include <algorithm>
#include <iterator>

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

// The blocks of the wide East Asian scripts and of the emoji.
constexpr Range kWide[] = {
    {0x1100, 0x115F}, {0x2E80, 0x303E}, {0x3041, 0xA4CF}, {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},
    {0xFE30, 0xFE6F}, {0xFF00, 0xFF60}, {0xFFE0, 0xFFE6}, {0x1F300, 0x1FAFF}, {0x20000, 0x3FFFD},
};

bool IsWide(char32_t character)
{
    return character >= kWide[0].first &&
           std::any_of(std::begin(kWide), std::end(kWide),
                       [character](const Range& range) { return character >= range.first && character <= range.last; });
}

bool IsControl(char32_t character)
{
    return character < 0x20 || (character >= 0x7F && character < 0xA0) || character == 0x2028 || character == 0x2029;
}

} // namespace

std::size_t DisplayWidth(std::u16string_view text)
{
    std::size_t width = 0;
    while (!text.empty())
        width += IsWide(TakeCharacter(text)) ? 2U : 1U;
    return width;
}

void AppendPrintable(std::u16string_view text, std::string& line)
{
    while (!text.empty()) {
        const char32_t character = TakeCharacter(text);
        AppendUtf8(IsControl(character) ? U'\uFFFD' : character, line);
    }
}
