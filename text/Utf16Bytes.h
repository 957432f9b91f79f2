#pragma once

#include <bit>
#include <span>

/// Turns UTF-16 units from the machine's byte order into that of a file, low byte first, or back. Most machines have
/// that order themselves.
inline void SwapUnlessLowByteFirst(std::span<char16_t> units)
{
    if constexpr (std::endian::native == std::endian::big)
        for (char16_t& unit : units)
            unit = static_cast<char16_t>(unit << 8 | unit >> 8);
}
