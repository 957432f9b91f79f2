#include "model/LimitsNotice.h"

#include "model/CellCheck.h"
#include "model/ColumnCoding.h"
#include "model/DataItem.h"
#include "model/ValueLimits.h"
#include "text/MessageText.h"
#include "text/NumberText.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>

namespace {

ColumnCoding ColumnOf(DataType type, DigitCounts digits)
{
    DataItem item;
    item.dataType = type;
    item.integerDigits = digits.integerDigits;
    item.decimalDigits = digits.decimalDigits;
    deriveBounds(item);
    return {.dataType = type,
            .codeType = CodeType::Bin,
            .integerDigits = digits.integerDigits,
            .decimalDigits = digits.decimalDigits,
            .minValue = item.minValue,
            .maxValue = item.maxValue};
}

/// The shortest numbers other than 0 pass wherever one does: more digits are only more to refuse.
bool AnyNumberPasses(const ColumnCoding& column)
{
    return ValidateCellValue(column, u"1") || ValidateCellValue(column, u".1");
}

/// The largest word value of an integer type.
std::int64_t LargestOf(DataType type)
{
    switch (type) {
    case DataType::Signed16:
        return std::numeric_limits<std::int16_t>::max();
    case DataType::Signed32:
        return std::numeric_limits<std::int32_t>::max();
    case DataType::Unsigned16:
    case DataType::Hex16:
        return std::numeric_limits<std::uint16_t>::max();
    default:
        return std::numeric_limits<std::uint32_t>::max();
    }
}

std::int64_t SmallestOf(DataType type)
{
    const bool isSigned = type == DataType::Signed16 || type == DataType::Signed32;
    return isSigned ? -LargestOf(type) - 1 : 0;
}

/// The word value of the largest number that passes in an integer column. A number is compared with the limits as it is
/// typed, but stored with its decimals.
double LargestThatPasses(const ColumnCoding& column)
{
    const auto limit = static_cast<double>(column.maxValue);
    if (IsHexadecimal(column.dataType))
        return limit;
    const double digits = PowerOfTen(column.integerDigits) * PowerOfTen(column.decimalDigits) - 1;
    return std::min(digits, limit * PowerOfTen(column.decimalDigits));
}

std::u16string RangeOfType(ColumnCoding column)
{
    column.minValue = SmallestOf(column.dataType);
    column.maxValue = LargestOf(column.dataType);
    return LimitsText(column);
}

} // namespace

std::optional<std::u16string> LimitsNotice(DataType type, DigitCounts digits)
{
    if (!IsDecimalInteger(type) && !IsHexadecimal(type) && !IsReal(type))
        return std::nullopt;
    const ColumnCoding column = ColumnOf(type, digits);
    if (!AnyNumberPasses(column))
        return FillMessage(u"These digits give the limits %s: no number will be accepted.", {LimitsText(column)});
    if (!IsReal(type) && LargestThatPasses(column) > static_cast<double>(LargestOf(type)))
        return FillMessage(
            u"The type holds %s. With these digits larger numbers are accepted, too, and stored as others.",
            {RangeOfType(column)});
    return std::nullopt;
}
