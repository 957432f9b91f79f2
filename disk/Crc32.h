#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

/// The CRC-32 of `bytes`, as archives and networks use it (reflected polynomial EDB88320), going on from `before`, that
/// of the bytes before them.
std::uint32_t Crc32(std::span<const std::byte> bytes, std::uint32_t before = 0);
