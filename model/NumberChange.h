#pragma once

#include "model/ColumnCoding.h"
#include "text/Decimal.h"

#include <optional>
#include <string>
#include <string_view>

/// A change of a number by another one.
struct NumberChange {
    enum class Kind { Add, Subtract, Multiply, Divide };

    Kind kind = Kind::Add;
    CDecimal by;
};

/// The change that `text` is in full: "+N", "-N", "*N" or "/N", N being a decimal number, with a sign of its own only
/// where it multiplies or divides.
std::optional<NumberChange> ReadNumberChange(std::u16string_view text);

/// Why a changed number cannot be stored.
enum class ChangeFault {
    None,
    DividesByZero,
    OutsideLimits, ///< of the item, or below 0 in a BCD-coded one
    DoesNotFit,    ///< into the words of its type
};

/// What a change gives.
struct ChangedNumber {
    ChangeFault fault = ChangeFault::None;
    CDecimal number;      ///< rounded to the item's decimals, half away from zero; 0 after a division by zero
    std::u16string words; ///< that store it exactly (of a float or double: the nearest), one a unit; none after a fault
};

/// `stored`, a number in the item's unit (StoredNumber.h), changed. Exact up to the one rounding at the end. The limits
/// are those of the raw word for an integer, and those of the value itself for a float or double.
ChangedNumber Changed(const ColumnCoding& coding, const CDecimal& stored, const NumberChange& change);
