#pragma once

#include "model/ColumnCoding.h"
#include "model/WordCodec.h"
#include "text/Decimal.h"

#include <optional>
#include <string>
#include <string_view>

/// How a typed text comes back from the words that a save stores for it.
enum class TypedVerdict {
    Fine,           ///< as the same number, however it is written, or as the same text
    StoredAsZero,   ///< an empty text in a column of numbers
    AnotherNumber,  ///< other words than those of the typed number are stored: 1.15 as 1.14
    ShownAsAnother, ///< the right words are stored, and shown as another number: 0.05 as 0.50
    NoNumber,       ///< it is no number in full, or one of too many digits (CDecimal): what it begins with is stored
    AnotherText,    ///< a string that is cut, or has characters that the code page has not
};

/// What becomes of a typed text.
struct TypedValue {
    TypedVerdict verdict = TypedVerdict::Fine;
    std::optional<CDecimal> typed;  ///< the number that was typed
    std::u16string words;           ///< that a save stores, one a unit
    std::optional<CDecimal> stored; ///< the number that these words are
    std::u16string shown;           ///< the text of these words when they are read again

    /// The words that store the typed number exactly (of a float or double: the nearest), where a save stores others
    /// and the value has room for them.
    std::optional<std::u16string> exactWords;
};

/// What a save to a file of `kind` makes of `text`, typed into a cell of the column, and how it is read again. The text
/// need not have passed the cell's check. Leading and trailing blanks do not count. Of a real number the nearest words
/// are the right ones.
TypedValue JudgeTyped(const ColumnCoding& coding, RecipeKind kind, std::u16string_view text);
