#pragma once

#include "model/ColumnCoding.h"
#include "model/ItemNotes.h"
#include "text/Decimal.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

// What the notes of an item say of the values in its columns.

/// What `notes` call the value that a cell of the column shows as `text`; empty when they do not name it. Numbers are
/// compared as numbers: "0.0" is the value "0".
std::u16string_view TextOfValue(const ItemNotes& notes, const ColumnCoding& coding, std::u16string_view text);

/// Whether `number`, in the item's unit, lies outside the range that the column's notes call sensible. A value that has
/// a name of its own, as "off" may be the name of 0, does not.
bool IsOutsideRange(const ColumnCoding& coding, const CDecimal& number);

/// The names of those of a value's bits that are set, from bit 0 on, without those that have none.
std::vector<std::u16string_view> NamesOfSetBits(const ColumnCoding& coding, std::uint32_t bits);

/// The bits of a number, in the item's unit, that a cell of the column holds; 0 for what has none to name.
std::uint32_t BitsOfNumber(const ColumnCoding& coding, const CDecimal& number);

/// The bits of a value that is made of `words`, low bytes first.
std::uint32_t BitsOfWords(std::span<const std::byte> words);

/// Whether a value of the column has bits to name: an integer of one or two words. How many it has: 16, 32, else 0.
std::size_t BitsToName(const ColumnCoding& coding);
