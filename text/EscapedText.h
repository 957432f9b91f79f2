#pragma once

#include <string>
#include <string_view>

/// `text` in one line in which every unit can be seen: control characters, half surrogate pairs and what turns the
/// direction of writing become escapes such as \n, \t or \u0007. A backslash stays as it is, so that this is for people
/// and is not read back.
std::u16string EscapedText(std::u16string_view text);

/// Appends the same in UTF-8 to `line`.
void AppendEscaped(std::u16string_view text, std::string& line);
