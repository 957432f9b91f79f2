#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Appends the words of which `bytes`, low byte first, are made: four hexadecimal digits in capitals each, a blank
/// between. A last byte that is no whole word has two digits.
void AppendWordsText(std::span<const std::byte> bytes, std::string& text);

/// The bytes of the words in `text`, which is as AppendWordsText makes it; small letters are taken, too. Nothing when
/// it is anything else.
std::optional<std::vector<std::byte>> WordsFromText(std::u16string_view text);
