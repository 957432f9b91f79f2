#pragma once

#include "text/Decimal.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// What a value of an item is called: "off" for 0.
struct ValueText {
    std::u16string value; ///< as a user types it into a cell of the item
    std::u16string text;

    friend bool operator==(const ValueText&, const ValueText&) = default;
};

/// What the values of an item, all of them where it is an array, mean to those who read them. Nothing in it has a part
/// in how values are read, checked or stored.
struct ItemNotes {
    static constexpr std::size_t kMostBits = 32;
    static constexpr std::size_t kLongestUnit = 32;      ///< characters
    static constexpr std::size_t kLongestName = 128;     ///< of a bit or a value
    static constexpr std::size_t kLongestComment = 4000; ///< all lines
    static constexpr std::size_t kMostTexts = 1000;

    std::u16string unit;              ///< "°C"
    std::optional<CDecimal> lowest;   ///< sensible value, in the item's unit
    std::optional<CDecimal> highest;  ///< the same
    std::u16string comment;           ///< may have several lines, with LF between them
    std::vector<std::u16string> bits; ///< names from bit 0 on, empty for a bit without one; kMostBits of them at most
    std::vector<ValueText> texts;     ///< for single values

    bool IsEmpty() const { return *this == ItemNotes{}; }

    friend bool operator==(const ItemNotes&, const ItemNotes&) = default;
};

/// The same without what says nothing: empty names after the last bit that has one, texts that name nothing, blanks
/// around unit and names.
ItemNotes Tidied(ItemNotes notes);

/// Whether `notes` give a range, be it open at one end.
bool HasRange(const ItemNotes& notes);

/// The sensible range for the user to read, without the unit: "150 to 280", "150 or more", "280 or less", or empty.
std::u16string RangeText(const ItemNotes& notes);

/// How a value that lies outside the range does, without the value and with the unit: "lies outside 150 to 280 °C",
/// "lies below 150 °C", "lies above 280 °C".
std::u16string OutsideRangeText(const ItemNotes& notes);

/// The name of bit `bit`; empty when it has none.
std::u16string_view NameOfBit(const ItemNotes& notes, std::size_t bit);
