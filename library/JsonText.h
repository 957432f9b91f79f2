#pragma once

#include <string>
#include <string_view>

/// Appends `text` as a JSON string, quotes included, in UTF-8. Half a surrogate pair becomes U+FFFD.
void AppendJsonText(std::u16string_view text, std::string& json);
