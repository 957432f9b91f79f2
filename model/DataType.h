#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// How the words of a value are to be read. Stored as a 32-bit signed integer in every record that holds it; a record
/// from a file may hold any number, so every switch over it needs an answer for an unknown code.
enum class DataType : std::int32_t {
    NotChosen = -1,
    Signed16 = 0,   ///< 1 word
    Signed32 = 1,   ///< 2 words
    Unsigned16 = 2, ///< 1 word
    Unsigned32 = 3, ///< 2 words
    Hex16 = 4,      ///< 1 word
    Hex32 = 5,      ///< 2 words
    Float = 6,      ///< 2 words, IEEE 754 single
    Double = 7,     ///< 4 words, IEEE 754 double
    String = 8,     ///< as many words as its item says
};

/// How an integer is marked. A mark only: no step of the program packs decimal digits into nibbles.
enum class CodeType : std::int32_t {
    NotChosen = -1,
    Bin = 0,
    Bcd = 1,
};

/// The name of `type` in the item tables; empty for a code outside 0 to 8.
std::u16string_view TypeName(DataType type);

/// The name of `type` in the bit browser, which knows the integer and hexadecimal types only; empty for any other.
std::u16string_view BitBrowserTypeName(DataType type);

/// "BIN code", "BCD code", or empty for any other code.
std::u16string_view CodeTypeLabel(CodeType codeType);

/// How many words a value of `type` takes; 0 for a string, which takes as many as its item says, and for an unknown
/// code.
std::size_t WordsOfType(DataType type);

/// Signed and unsigned integers of 16 or 32 bits (codes 0 to 3).
constexpr bool IsDecimalInteger(DataType type)
{
    return type >= DataType::Signed16 && type <= DataType::Unsigned32;
}

/// Hexadecimal values of 16 or 32 bits (codes 4 and 5).
constexpr bool IsHexadecimal(DataType type)
{
    return type == DataType::Hex16 || type == DataType::Hex32;
}

/// Single and double precision (codes 6 and 7).
constexpr bool IsReal(DataType type)
{
    return type == DataType::Float || type == DataType::Double;
}
