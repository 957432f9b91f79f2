#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

// UTF-8, the encoding of path names and of the command line's input and output. What is no valid text on either side
// (a stray byte, half a surrogate pair) becomes U+FFFD; nothing here fails.

/// The UTF-16 text of `bytes`.
std::u16string FromUtf8(std::string_view bytes);

/// `text` in UTF-8.
std::string ToUtf8(std::u16string_view text);

/// Takes the next character off the front of `text`, which must not be empty.
char32_t TakeCharacter(std::u16string_view& text);

/// Appends `character`, which must be a Unicode character, to `bytes`.
void AppendUtf8(char32_t character, std::string& bytes);

/// Takes the units for which `isPlain` holds off the front of `text` and appends them to `bytes`; they are ASCII
/// characters all.
template <class IsPlain>
void TakePlain(std::u16string_view& text, std::string& bytes, IsPlain isPlain)
{
    const auto end = std::find_if_not(text.begin(), text.end(), isPlain);
    const auto count = static_cast<std::size_t>(end - text.begin());
    const std::size_t before = bytes.size();
    bytes.resize(before + count);
    std::transform(text.begin(), end, bytes.begin() + static_cast<std::ptrdiff_t>(before),
                   [](char16_t unit) { return static_cast<char>(unit); });
    text.remove_prefix(count);
}
