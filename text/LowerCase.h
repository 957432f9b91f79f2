#pragma once

#include <string>
#include <string_view>

/// `text` with its Latin, Greek, Cyrillic, Armenian and full-width letters in lower case, unit by unit: no locale and
/// no change of length. Everything else stays as it is.
std::u16string LowerCase(std::u16string_view text);
