#pragma once

#include <cstddef>
#include <string_view>

// By what the text of a table, ".csv", is told apart (CsvFields.h says the whole of it).

/// One of the two kinds of text that a table can be.
struct CsvTextForm {
    bool isUtf16;         ///< else text of the ANSI code page
    char16_t separator;   ///< between two fields
    bool stripsQuotes;    ///< of fields that a separator ends
    std::size_t begin;    ///< where the text begins, in bytes
    std::size_t unitSize; ///< of the separator, in bytes
};

inline constexpr CsvTextForm kUtf16Csv{true, u'\t', true, 2, 2};
inline constexpr CsvTextForm kAnsiCsv{false, u',', false, 0, 1};

inline constexpr std::size_t kLongestAnsiLine = 2047; // bytes, the line feed included

/// What a file is that begins with these two bytes; zeros stand for bytes that it does not have.
constexpr const CsvTextForm& CsvFormOf(std::byte first, std::byte second)
{
    const bool isUtf16 = first == std::byte{0xFF} || second == std::byte{0xFE}; // kept: one of them is enough
    return isUtf16 ? kUtf16Csv : kAnsiCsv;
}

/// What a field shows that a separator ends, where quotes are stripped.
constexpr std::u16string_view WithoutQuotes(std::u16string_view field)
{
    while (field.starts_with(u'"'))
        field.remove_prefix(1);
    while (field.ends_with(u'"'))
        field.remove_suffix(1);
    return field;
}

/// What a field shows that is not there.
inline constexpr std::u16string_view kMissingField = u"0";
