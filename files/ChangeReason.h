#pragma once

#include <cstddef>
#include <cstdint>

/// Why a save changes a value. Where several hold it is the first of them in this order.
enum class ChangeReason : std::uint8_t {
    Edited,
    Type,     ///< the rows were read as another type than they are saved as
    End,      ///< it lies behind the end of the file
    Limits,   ///< an integer shown as another number because of its limits
    Decimals, ///< an integer with decimals whose text codes to another number
    Digits,   ///< a float or double whose text codes to another number
    Coding,   ///< a BCD or hexadecimal value that its coding does not give back
    Text,     ///< characters that the string cannot hold, or what lies behind its end
    Quotes,   ///< of a ".csv"
    Rows,     ///< of a ".csv": a line or field that is not shown is dropped
    Form,     ///< only the form of the file changes, such as line ends
};

inline constexpr std::size_t kChangeReasons = 11;
