#pragma once

#include <string>
#include <string_view>

/// `text` with its Latin, Greek, Cyrillic, Armenian and full-width letters in lower case, unit by unit: no locale and
/// no change of length. Everything else stays as it is.
std::u16string LowerCase(std::u16string_view text);

/// The same of one unit, at once: out of a table that is made when it is first needed.
char16_t LowerCase(char16_t unit);
