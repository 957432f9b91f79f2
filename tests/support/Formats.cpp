#include "tests/support/Formats.h"

DataItem MakeItem(std::u16string_view description, DataType type, std::int32_t words, std::int32_t integerDigits,
                  std::int32_t decimalDigits)
{
    DataItem item = DefaultItem();
    SetText(item.description, description);
    item.dataType = type;
    item.dataLength = words;
    item.integerDigits = integerDigits;
    item.decimalDigits = decimalDigits;
    deriveBounds(item);
    return item;
}

DataItem ArrayOf(DataItem item, std::int32_t length)
{
    item.isArray = 1;
    item.arrayLength = length;
    return item;
}

DataFormat MakeFormat(std::u16string_view name, const std::vector<DataItem>& items)
{
    DataFormat format(name);
    for (const DataItem& item : items) {
        format.insertItem(format.items.size(), std::make_unique<DataItem>(item));
        ++format.itemCount;
    }
    return format;
}
