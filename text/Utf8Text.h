#pragma once

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
