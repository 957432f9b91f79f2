#pragma once

#include "model/DataItemCheck.h"
#include "model/DataType.h"

#include <optional>
#include <string>

/// What an item of `type` with these digits would do to the numbers that are typed later, when that is nothing good:
/// its limits (deriveBounds) let none of them pass, or they let numbers pass that the type cannot hold. Nothing when
/// all is well. The item may be stored all the same.
///
/// A float that is stored with fewer digits than were typed is no such number, and a string has no limits.
std::optional<std::u16string> LimitsNotice(DataType type, DigitCounts digits);
