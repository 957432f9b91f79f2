#pragma once

#include "files/RecipeRows.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Why the words of rows do not look like what their columns make of them.
struct FormatDoubt {
    enum class Kind {
        Floats, ///< floats and doubles that are no numbers, or absurdly large or small ones
        Texts,  ///< texts with control characters before their end, or halves of surrogate pairs
        Limits, ///< values outside their limits
    };

    Kind kind = Kind::Floats;
    std::size_t wrong = 0;                    ///< values that look so
    std::size_t of = 0;                       ///< values of the kind that were looked at and hold anything but zeros
    std::optional<std::int32_t> rowsLookedAt; ///< where these are not all

    friend bool operator==(const FormatDoubt&, const FormatDoubt&) = default;
};

/// What speaks most against the layout of `rows`, by the words that they were read from; nothing when they look right,
/// when there is too little to judge by, and for rows that were not read from words. Zeros speak for nothing, and a few
/// odd values among many sensible ones do not either.
///
/// Of many rows some are looked at, spread over all: it takes the same time for a million rows as for a thousand.
std::optional<FormatDoubt> DoubtAbout(const CRecipeRows& rows);

/// What the user is told of it: "These words look unlike Oven recipe: 11 of 12 floats are no sensible numbers. Is RW100
/// the right start address?"
std::u16string DoubtText(const FormatDoubt& doubt, std::u16string_view format, std::int32_t startAddress);
