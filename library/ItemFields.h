#pragma once

#include "model/DataItem.h"

#include <cstdint>
#include <span>
#include <string_view>

/// A field of a data item as it stands in JSON: an integer in the range of its record, or the description.
struct ItemField {
    std::string_view name;
    std::int64_t least;
    std::int64_t most;
    std::int64_t (*get)(const DataItem& item);       ///< null for the description, which is a text
    void (*set)(DataItem& item, std::int64_t value); ///< `value` is in the range
};

/// All of them, in the order in which they are written.
std::span<const ItemField> ItemFields();

/// The field of that name; null when there is none.
const ItemField* FindItemField(std::string_view name);
