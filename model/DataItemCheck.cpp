#include "model/DataItemCheck.h"

#include <algorithm>

namespace {

constexpr std::int32_t kShortestArray = 2;
constexpr std::uint32_t kMostStringBytes = 512 * 1024;

bool IsArrayTooLarge(const ItemLengths& lengths)
{
    const auto words = static_cast<std::uint32_t>(lengths.dataLength);
    return lengths.dataType == DataType::String && words * words * 2 > kMostStringBytes; // kept: the length squared
}

std::optional<std::u16string_view> ArrayFault(const ItemLengths& lengths)
{
    if (lengths.arrayLength < kShortestArray)
        return u"The length of array can't be less than 2!";
    if (IsArrayTooLarge(lengths))
        return u"The value that data length multiply by the length of  the array is too large,it exceed 512k!";
    return std::nullopt;
}

std::optional<std::u16string_view> StringFault(std::int32_t words)
{
    if (words < 1)
        return u"The data length can't be less than 1!";
    if (static_cast<std::uint32_t>(words) * 2 > kMostStringBytes)
        return u"The Data Length is too large ,it can't exceed 512k!";
    return std::nullopt;
}

/// The digits before and after the point that a number of `type` may have together; 0 for what is no decimal number.
std::int32_t MostDigits(DataType type)
{
    switch (type) {
    case DataType::Signed16:
        return 6;
    case DataType::Unsigned16:
        return 5;
    case DataType::Signed32:
    case DataType::Unsigned32:
    case DataType::Float:
    case DataType::Double:
        return 11;
    default:
        return 0;
    }
}

std::int32_t MostIntegerDigits(DataType type)
{
    switch (type) {
    case DataType::Hex16:
        return 4;
    case DataType::Hex32:
        return 8;
    default:
        return MostDigits(type);
    }
}

/// What `taken` leaves of `most` digits, `least` or more. An item from a file may have taken any number of them.
std::int32_t Room(std::int32_t most, std::int32_t taken, std::int32_t least)
{
    return std::max(most - std::clamp(taken, 0, most), least);
}

/// kept: unsigned types and the float may have a single digit
bool NeedsTwoIntegerDigits(DataType type, std::int32_t decimalDigits)
{
    const bool isSigned = type == DataType::Signed16 || type == DataType::Signed32;
    return type == DataType::Double || (isSigned && decimalDigits == 0);
}

} // namespace

std::optional<std::u16string_view> ItemLengthFault(const ItemLengths& lengths)
{
    if (lengths.isArray)
        if (const auto fault = ArrayFault(lengths))
            return fault;
    return lengths.dataType == DataType::String ? StringFault(lengths.dataLength) : std::nullopt;
}

std::optional<std::int32_t> ProposedLength(DataType type)
{
    constexpr std::int32_t kStringLength = 4;
    if (type == DataType::String)
        return kStringLength;
    const auto words = static_cast<std::int32_t>(WordsOfType(type));
    return words > 0 ? std::optional(words) : std::nullopt;
}

DigitCounts FitDecimalDigits(DataType type, DigitCounts chosen)
{
    const std::int32_t most = MostDigits(type);
    if (chosen.decimalDigits > most)
        chosen.decimalDigits = 0;
    else
        chosen.decimalDigits = std::min(chosen.decimalDigits, Room(most, chosen.integerDigits, 0));
    return chosen;
}

DigitCounts FitIntegerDigits(DataType type, DigitCounts chosen)
{
    if (chosen.integerDigits == 1 && NeedsTwoIntegerDigits(type, chosen.decimalDigits))
        chosen.integerDigits = 2;
    const std::int32_t room = Room(MostIntegerDigits(type), chosen.decimalDigits, 1);
    chosen.integerDigits = std::min(chosen.integerDigits, room);
    return chosen;
}
