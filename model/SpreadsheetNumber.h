#pragma once

#include "model/ColumnCoding.h"

#include <string>

/// `text`, which a cell of the column shows, for a spreadsheet whose decimal sign is `point`: a number has that sign
/// instead of its point and no blanks around it, and anything else stays as it is.
std::u16string SpreadsheetNumber(const ColumnCoding& coding, std::u16string text, char16_t point);
