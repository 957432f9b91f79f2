#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// What is wrong in a JSON text, and where: "/formats/0/items/2/dataType" is that field of the first format's third
/// item, "/" the whole.
struct JsonFault {
    std::u16string place;
    std::u16string text;
};

/// "line 2, column 7" for the last of the `end` bytes that the parser has taken; the end of the text counts as one.
std::u16string LineAndColumn(std::string_view json, std::size_t end);

/// `key` as a part of a place, in which "~" and "/" have a meaning of their own.
std::string EscapedKey(std::string_view key);

/// Whether `number`, as it stands in the text, has neither a fraction nor an exponent.
bool IsJsonInteger(std::string_view number);
