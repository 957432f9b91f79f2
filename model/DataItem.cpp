#include "model/DataItem.h"

#include "text/NumberText.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using Limits = std::numeric_limits<std::int64_t>;

/// The number written as `count` digits 9, at most `Limits::max()`; 0 without digits.
std::int64_t Nines(std::int64_t count)
{
    if (count > Limits::digits10)
        return Limits::max();
    std::int64_t value = 0;
    for (std::int64_t i = 0; i < count; ++i)
        value = value * 10 + 9;
    return value;
}

/// The number written as "-" and `count` digits 9, at least `Limits::min()`; 0 for the sign alone.
std::int64_t NegativeNines(std::int64_t count)
{
    return count > Limits::digits10 ? Limits::min() : -Nines(count);
}

struct Bounds {
    std::int64_t minValue = 0;
    std::int64_t maxValue = 0;
};

/// As many nines as there are digits, or `full` from `fullDigits` digits on. The sign takes the place of a digit.
Bounds SignedBounds(std::int64_t digits, std::int64_t fullDigits, Bounds full)
{
    return digits < fullDigits ? Bounds{NegativeNines(digits - 1), Nines(digits)} : full;
}

Bounds UnsignedBounds(std::int64_t digits, std::int64_t fullDigits, std::int64_t full)
{
    return {0, digits < fullDigits ? Nines(digits) : full};
}

Bounds HexadecimalBounds(std::int32_t digits)
{
    if (digits == 8)
        return {0, std::numeric_limits<std::uint32_t>::max()};
    // kept: the largest value passes through a signed 32-bit number, so 9 to 13 digits give -1
    return {0, TruncateTo32(std::ldexp(1.0, 4 * std::min(digits, 256)) - 1)};
}

Bounds RealBounds(std::int32_t integerDigits)
{
    const std::int64_t moreDigits = std::max(integerDigits - std::int64_t{1}, std::int64_t{0});
    return {NegativeNines(moreDigits), Nines(moreDigits + 1)};
}

Bounds BoundsOf(const DataItem& item)
{
    const std::int32_t integerDigits = std::max(item.integerDigits, 0);
    const std::int64_t digits = std::int64_t{integerDigits} + std::max(item.decimalDigits, 0);
    switch (item.dataType) {
    case DataType::Signed16:
        return SignedBounds(digits, 5, {-32768, 32767});
    case DataType::Signed32:
        return SignedBounds(digits, 10, {-2147483648, 2147483647});
    case DataType::Unsigned16:
        return UnsignedBounds(digits, 5, 65535);
    case DataType::Unsigned32:
        return UnsignedBounds(digits, 10, 4294967295);
    case DataType::Hex16:
    case DataType::Hex32:
        return HexadecimalBounds(integerDigits);
    case DataType::Float:
    case DataType::Double:
        return RealBounds(integerDigits);
    case DataType::String:
    case DataType::NotChosen:
        break;
    }
    return {};
}

} // namespace

std::optional<std::size_t> StoredItemSize(std::int32_t version)
{
    switch (version) {
    case 0:
        return 312;
    case 20:
        return 320;
    default:
        return std::nullopt;
    }
}

std::unique_ptr<DataItem> CreateItem(std::int32_t version)
{
    return StoredItemSize(version) ? std::make_unique<DataItem>() : nullptr;
}

DataItem DefaultItem()
{
    DataItem item;
    item.dataLength = 1;
    item.dataType = DataType::Signed16;
    item.codeType = CodeType::Bin;
    SetText(item.description, u"Desc1");
    item.arrayLength = -1;
    item.minValue = -999;
    item.maxValue = 9999;
    return item;
}

void deriveBounds(DataItem& item)
{
    const Bounds bounds = BoundsOf(item);
    item.minValue = bounds.minValue;
    item.maxValue = bounds.maxValue;
}

bool HaveSameRecord(const DataItem& a, const DataItem& b)
{
    DataItem item = a;
    item.notes = b.notes;
    return item == b;
}
