#pragma once

#include <cstddef>
#include <string_view>

// A character beyond U+FFFF is two units in UTF-16, a pair of surrogates; one of them alone is no character.

constexpr bool IsHighSurrogate(char32_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

constexpr bool IsLowSurrogate(char32_t unit)
{
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// The first `most` units of `text`; one fewer where that would cut a pair in two.
constexpr std::u16string_view CutText(std::u16string_view text, std::size_t most)
{
    if (text.size() <= most)
        return text;
    const bool isInPair = most > 0 && IsHighSurrogate(text[most - 1]) && IsLowSurrogate(text[most]);
    return text.substr(0, isInPair ? most - 1 : most);
}
