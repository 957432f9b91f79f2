#pragma once

#include "files/CsvRules.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// How a text is written as a field of a table so that reading shows it again as it is; nothing when no such field does.

/// As a field that a separator follows.
std::optional<std::u16string> SeparatedCsvField(const CsvTextForm& form, std::u16string_view text, bool isInQuotes);

/// As the last field of a line: bare; what would not be read so gets a separator, after which nothing comes.
std::optional<std::u16string> LastCsvField(const CsvTextForm& form, std::u16string_view text);

/// Why a text cannot be written; `line` and `column` are counted from 0.
std::u16string RefusedCsvText(std::uint64_t line, std::size_t column);

/// Why a line cannot be made longer.
std::u16string RefusedLongerLine(std::uint64_t line);

/// `text` as bytes of the table.
std::string CsvTextBytes(const CsvTextForm& form, std::u16string_view text);
