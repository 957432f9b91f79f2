#pragma once

#include <QString>

#include <cstddef>

/// "1 row", "12 rows"
QString RowCountText(std::size_t rows);
