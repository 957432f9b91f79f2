#pragma once

#include "model/DataItem.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

// An integer cell's text as a string of bits and back, as the bit browser shows and takes them.

/// The bits of one row of the bit browser's matrix: those of one word.
inline constexpr std::size_t kBitsPerRow = 16;

/// The bits of `text`, the text of a cell of `item`: 16 or 32 characters "0" or "1" by the item's type, the most
/// significant one first. Empty for a type that is no integer.
///
/// A decimal text is its leading integer times 10 to the power of the item's decimal digits, the low bits of it.
/// kept: the fraction is not carried into the bits, so 12.34 with two decimal digits is 1200; in a hexadecimal text any
/// character counts by its low 8 bits, and one that is no digit counts 0 but takes its place.
std::u16string BitsOfText(const DataItem& item, std::u16string_view text);

/// The text of the value that `bits`, up to 32 characters as above, make in a cell of `item`; none for a type that is
/// no integer.
///
/// kept: the value is not divided by the decimal digits; a signed value above the item's upper limit has 65536 taken
/// off; an unsigned one with bit 31 set is negative; hexadecimal digits are lower-case here and upper-case in the
/// table.
std::optional<std::u16string> TextOfBits(const DataItem& item, std::u16string_view bits);
