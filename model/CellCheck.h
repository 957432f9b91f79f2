#pragma once

#include "model/ColumnCoding.h"

#include <string_view>

/// Whether `text`, typed by a user, may become the value of a cell of `column`. Changes nothing and shows nothing: each
/// caller refuses in its own words.
///
/// kept: a leading "-" lets any character pass the character check; a 32-bit hexadecimal value with its top bit set
/// counts as negative; a float equal to its lower bound is refused; an ANSI string takes `dataLength` characters only.
bool ValidateCellValue(const ColumnCoding& column, std::u16string_view text);
