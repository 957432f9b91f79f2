#pragma once

#include "model/ColumnCoding.h"
#include "model/ItemNotes.h"
#include "text/Decimal.h"

#include <cstddef>
#include <string_view>
#include <vector>

// What the notes of an item call the values in its columns.

/// What `notes` call the value that a cell of the column shows as `text`; empty when they do not name it. Numbers are
/// compared as numbers: "0.0" is the value "0".
std::u16string_view TextOfValue(const ItemNotes& notes, const ColumnCoding& coding, std::u16string_view text);

/// The names of the bits that are set in a value of the column, `number` in the item's unit, from bit 0 on; none of a
/// value without bits.
std::vector<std::u16string_view> NamesOfSetBits(const ItemNotes& notes, const ColumnCoding& coding,
                                                const CDecimal& number);

/// Whether a value of the column has bits to name: an integer of one or two words. How many it has: 16, 32, else 0.
std::size_t BitsToName(const ColumnCoding& coding);
