#pragma once

#include "model/DataType.h"

#include <cstdint>
#include <optional>
#include <string_view>

// What a data item may hold that is put together from lists and typed numbers.

/// The typed numbers of an item with the choices that decide what they must be.
struct ItemLengths {
    bool isArray = false;
    std::int32_t arrayLength = 0; ///< elements; looked at for an array only
    DataType dataType = DataType::NotChosen;
    std::int32_t dataLength = 0; ///< of one element in 16-bit words; looked at for a string only
};

/// What is wrong with `lengths`: the message of the first check that fails, nothing when an item may have them.
///
/// kept: the size of a string array is taken from its element length squared, modulo 2^32, whatever the array length.
std::optional<std::u16string_view> ItemLengthFault(const ItemLengths& lengths);

/// The words of one element of `type`; for a string the number that is proposed. Nothing for a code outside 0 to 8.
std::optional<std::int32_t> ProposedLength(DataType type);

/// Digits before and after the point.
struct DigitCounts {
    std::int32_t integerDigits = 0;
    std::int32_t decimalDigits = 0;

    friend bool operator==(const DigitCounts&, const DigitCounts&) = default;
};

/// `chosen` with the decimals brought down to what `type` has room for, after another number of decimals was chosen.
DigitCounts FitDecimalDigits(DataType type, DigitCounts chosen);

/// `chosen` with the integer digits brought to what `type` has room for, after another number of them was chosen.
///
/// kept: a signed type without decimals, and any double, has at least 2 integer digits as long as they fit; the other
/// types may have 1.
DigitCounts FitIntegerDigits(DataType type, DigitCounts chosen);
