#pragma once

#include "model/DataFormat.h"

#include <cstdint>
#include <string_view>
#include <vector>

/// An item as the data item dialog would make it, bounds included.
DataItem MakeItem(std::u16string_view description, DataType type, std::int32_t words, std::int32_t integerDigits,
                  std::int32_t decimalDigits = 0);

/// `item` as an array of `length` elements.
DataItem ArrayOf(DataItem item, std::int32_t length);

/// A format of `items`, its count kept right.
DataFormat MakeFormat(std::u16string_view name, const std::vector<DataItem>& items);
