#pragma once

#include "model/ColumnCoding.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

// Which values lie outside the limits of their column. The limits are those of the raw word value, or of the float
// itself; texts for the user show them with the column's decimals. Strings, and values of an unknown type, have none.

/// The value at byte `pos` of `image` as the user would write it, when it lies outside the limits of `coding`; nothing
/// when it lies within them, or when not all of its words are in `image`.
///
/// It is the words that are judged, not what is shown for them: a signed word below its lower limit is shown as 0.
std::optional<std::u16string> ValueOutsideLimits(const ColumnCoding& coding, std::span<const std::byte> image,
                                                 std::size_t pos);

/// The same for the value that `text` codes, which need not have been checked; the result is then `text` itself.
std::optional<std::u16string> ValueOutsideLimits(const ColumnCoding& coding, std::u16string_view text);

/// What may stand in a cell, for the user to read: "-9.99 to 99.99", "0 to FFFF", "up to 8 characters"; empty for an
/// unknown type.
std::u16string LimitsText(const ColumnCoding& coding);
