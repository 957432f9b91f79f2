#pragma once

#include "model/ColumnCoding.h"

#include <QString>

/// `text`, which a cell of the column shows, for a spreadsheet whose decimal sign is `point`: a number has that sign
/// instead of its point, and anything else stays as it is.
QString SpreadsheetText(const ColumnCoding& coding, const QString& text, const QString& point);
