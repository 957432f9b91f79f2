#pragma once

#include "model/DataFormat.h"

#include <cstdint>
#include <optional>
#include <string>

inline constexpr std::int32_t kMostElementBytes = 512 * 1024;    ///< of one value; the string limit
inline constexpr std::int64_t kMostColumns = 32768;              ///< data columns
inline constexpr std::int64_t kMostRows = std::int64_t{1} << 24; ///< data rows
inline constexpr std::int64_t kMostStretchWords = std::int64_t{1} << 31;

/// Why `format` with `rowCount` rows cannot be shown: the message that names the first limit it breaks, or nothing. To
/// be asked before the columns are laid out, because a damaged library file may hold any number.
std::optional<std::u16string> ShowFault(const DataFormat& format, std::int32_t rowCount);
