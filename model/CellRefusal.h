#pragma once

#include "model/ColumnCoding.h"
#include "model/NumberChange.h"

#include <string>
#include <string_view>

// Why a cell does not take what it was to get, for the user to read: a part of a sentence in which nothing has a line
// of its own, however long or strange the text is.

/// Why ValidateCellValue refuses `text`; for one that it accepts the words say nothing of use.
std::u16string RefusalOf(const ColumnCoding& coding, std::u16string_view text);

/// Why a changed number cannot be stored; empty where it can.
std::u16string RefusalOf(const ColumnCoding& coding, const ChangedNumber& changed);

inline constexpr std::u16string_view kNoNumberToChange = u"there is no number to change";
