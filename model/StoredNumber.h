#pragma once

#include "model/ColumnCoding.h"
#include "text/Decimal.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

// The number that the words of a value are, in the unit of its item, and back: word 105 of an unsigned item with two
// decimals is 1.05, although a cell shows 1.50 for it. What is shown follows the limits and loses digits (WordCodec.h);
// the stored number does neither. A BCD mark changes nothing, as nowhere in the words.

/// How words are to be told where they may be no number.
enum class NumberKind {
    None, ///< a string, a value of an unknown type, or one that not all words are there of
    Finite,
    Infinity,
    MinusInfinity,
    NotANumber, ///< a float's or double's NaN
};

/// What the words at the beginning of `words` are. Those that follow the value do not count.
NumberKind KindOfNumber(const ColumnCoding& coding, std::span<const std::byte> words);

/// The number, exactly; nothing unless it is finite. An integer is that of its type's own width, whatever its limits:
/// in two's complement when it is signed, scaled by its decimals; a hexadecimal value has no sign and no decimals. A
/// float or double is the shortest decimal number that gives it back.
std::optional<CDecimal> StoredNumber(const ColumnCoding& coding, std::span<const std::byte> words);

/// The stored number as NumberText writes it; "nan", "inf" and "-inf" for a float or double that has none, and empty
/// for anything else.
std::u16string StoredNumberText(const ColumnCoding& coding, std::span<const std::byte> words);

/// `number` as a user would write it in the column, without loss: an integer with the item's decimals, a hexadecimal
/// value that it can hold in its digits, a float or double with an exponent where it were too long to read.
std::u16string NumberText(const ColumnCoding& coding, const CDecimal& number);

/// A number's text without the blanks around it, with which doubles are shown.
std::u16string_view WithoutBlanks(std::u16string_view text);

/// The number that a cell's `text` is in full, hexadecimal where its column is; blanks around it do not count. Nothing
/// for any other text, for a number of too many digits (CDecimal), and in a column that holds no numbers.
std::optional<CDecimal> NumberOfText(const ColumnCoding& coding, std::u16string_view text);

/// The words that store `number`, one a unit, as many as the value takes: the number in the first of them and zeros
/// after it. Of a float or double those of the nearest one. Nothing for an integer that `number` is none of exactly,
/// for what does not fit, and for what holds no numbers.
std::optional<std::u16string> WordsOfNumber(const ColumnCoding& coding, const CDecimal& number);

/// The decimals that an item's numbers have: none for a hexadecimal value, and no more than texts show.
std::int32_t DecimalsOf(const ColumnCoding& coding);
