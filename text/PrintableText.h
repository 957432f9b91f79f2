#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The places that `text` takes in a line of a terminal: two for an East Asian wide character, else one.
std::size_t DisplayWidth(std::u16string_view text);

/// Appends `text` in UTF-8, fit for a line of output: a control character would break the line, and half a surrogate
/// pair is no text, so both become U+FFFD.
void AppendPrintable(std::u16string_view text, std::string& line);
