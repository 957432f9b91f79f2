#pragma once

#include "model/DataType.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// One way in which words can be a number.
struct NumberForm {
    std::u16string name;          ///< "signed 16-bit, 1 decimal", "float, high word first"
    std::vector<std::byte> bytes; ///< of its words, the low byte of each first
    DataType type = DataType::NotChosen;
    std::int32_t decimals = 0;
    bool isHighWordFirst = false; ///< which no item of a data format can say
};

/// All ways in which words can be the number that `text` is: integers with any decimals that an item may have, floats
/// and doubles, with the low or the high word first. A text that is none, but a hexadecimal number, stands for the
/// hexadecimal values; any other has no form.
std::vector<NumberForm> FormsOfNumber(std::u16string_view text);
