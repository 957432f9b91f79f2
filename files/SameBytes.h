#pragma once

#include <cstddef>
#include <cstring>
#include <span>

/// Whether both hold the same bytes. In long strides: the library's own comparison takes bytes one by one.
inline bool AreEqual(std::span<const std::byte> a, std::span<const std::byte> b)
{
    return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size()) == 0);
}
