#pragma once

#include "model/ColumnCoding.h"

#include <optional>
#include <string>
#include <string_view>

// Numbers as other programs write them into tables: with a decimal comma or a decimal point, and with signs between the
// thousands.

/// How the numbers of a column are written.
enum class NumberSign {
    Undecided, ///< they can be read in two ways: nobody but the user can tell
    Comma,     ///< the decimals stand after a comma
    Point,     ///< the decimals stand after a point
    AsText,    ///< fields are taken as they stand
};

/// The number that `field` is in full when its decimals stand after `sign`, a comma or a point: with a sign, an
/// exponent, and between its thousands blanks (also those that do not break), apostrophes, or the other one of comma
/// and point. Blanks around it do not count. Written with digits and a point, "1234.5": as typed into a cell. Nothing
/// for any other field.
std::optional<std::u16string> PlainNumber(std::u16string_view field, NumberSign sign);

/// Looks at the fields of a column and tells how its numbers are written.
///
/// A field such as "1,5" settles it; "12" and "1 234" are the same either way. "1,234" and "1.234" are two numbers,
/// with one more field of the column to tell which; "05/06" is none, but looks as if it stood for one. A column of text
/// or of hexadecimal values has no numbers to be read: it is taken as it stands.
class CColumnForms {
public:
    explicit CColumnForms(const ColumnCoding& coding);

    void Take(std::u16string_view field);

    NumberSign Sign() const;

    /// The first field that can be read in two ways, or stands against the fields before it; empty while there is none.
    const std::u16string& Doubtful() const { return m_doubtful; }

private:
    void Doubt(std::u16string_view field);

    bool m_hasNumbers;
    bool m_hasComma = false; ///< a field is a number with a decimal comma alone
    bool m_hasPoint = false;
    bool m_hasEither = false; ///< a field is another number with each
    bool m_hasOther = false;  ///< a field looks like a date or a fraction
    std::u16string m_doubtful;
};

/// The text that a cell of the column gets for `field`, in a column whose numbers are written with `sign`: a number
/// with the item's decimals, or more where it has more. Nothing for a field of a column of numbers that is none so:
/// "1.5" is no number with a decimal comma, and must not become one with a point.
std::optional<std::u16string> TextOfField(const ColumnCoding& coding, std::u16string_view field, NumberSign sign);
