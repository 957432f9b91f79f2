#pragma once

#include <string>
#include <string_view>

/// Appends `text` as a JSON string, quotes included, in UTF-8. Half a surrogate pair becomes U+FFFD.
void AppendJsonText(std::u16string_view text, std::string& json);

/// As AppendJsonText, but half a surrogate pair is written as the escape of its number, such as \ud83d, so that no unit
/// of the text is lost. Not every reader of JSON takes such an escape.
void AppendWholeJsonText(std::u16string_view text, std::string& json);
