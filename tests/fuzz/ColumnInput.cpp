#include "tests/fuzz/ColumnInput.h"

#include "model/DataItem.h"

namespace {

std::int32_t UsualLength(DataType type)
{
    switch (type) {
    case DataType::Signed16:
    case DataType::Unsigned16:
    case DataType::Hex16:
        return 1;
    case DataType::Double:
        return 4;
    default:
        return 2;
    }
}

/// Most of the time what the dialog would make of the digits, else any numbers.
void TakeBounds(CFuzzInput& input, ColumnCoding& column)
{
    if (input.TakeByte() % 4 != 0) {
        DataItem item;
        item.dataType = column.dataType;
        item.integerDigits = column.integerDigits;
        item.decimalDigits = column.decimalDigits;
        deriveBounds(item);
        column.minValue = item.minValue;
        column.maxValue = item.maxValue;
    } else {
        column.minValue = input.TakeNumber<std::int64_t>();
        column.maxValue = input.TakeNumber<std::int64_t>();
    }
}

} // namespace

ColumnCoding TakeColumn(CFuzzInput& input)
{
    constexpr std::int32_t kMostWords = 6;
    ColumnCoding column;
    column.dataType = static_cast<DataType>(static_cast<std::int32_t>(input.TakeBelow(11)) - 1);
    const auto shape = input.TakeByte();
    column.codeType = static_cast<CodeType>(shape % 3 - 1);
    column.unicode = shape / 4 % 2;
    column.dataLength = shape / 8 % 4 != 0 ? UsualLength(column.dataType)
                                           : static_cast<std::int32_t>(input.TakeBelow(kMostWords + 2)) - 1;
    column.integerDigits = shape / 32 % 4 != 0 ? shape / 32 + 1 : input.TakeNumber<std::int32_t>();
    column.decimalDigits =
        shape % 4 != 0 ? static_cast<std::int32_t>(input.TakeBelow(6)) : input.TakeNumber<std::int32_t>();
    TakeBounds(input, column);
    return column;
}
