#include "disk/Crc32.h"

#include <array>

namespace {

constexpr std::size_t kAtOnce = 8; // bytes

/// The remainders of each byte with 0 to 7 zero bytes after it.
constexpr auto kRemainders = [] {
    std::array<std::array<std::uint32_t, 256>, kAtOnce> tables{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t value = byte;
        for (int bit = 0; bit < 8; ++bit)
            value = (value & 1) != 0 ? (value >> 1) ^ 0xEDB88320 : value >> 1;
        tables[0][byte] = value;
    }
    for (std::size_t zeros = 1; zeros < kAtOnce; ++zeros)
        for (std::size_t byte = 0; byte < 256; ++byte) {
            const std::uint32_t value = tables[zeros - 1][byte];
            tables[zeros][byte] = (value >> 8) ^ tables[0][value & 0xFF];
        }
    return tables;
}();

} // namespace

std::uint32_t Crc32(std::span<const std::byte> bytes, std::uint32_t before)
{
    const auto at = [&bytes](std::size_t i) { return std::to_integer<std::uint32_t>(bytes[i]); };
    std::uint32_t crc = ~before;
    for (; bytes.size() >= kAtOnce; bytes = bytes.subspan(kAtOnce)) {
        crc ^= at(0) | at(1) << 8 | at(2) << 16 | at(3) << 24;
        crc = kRemainders[7][crc & 0xFF] ^ kRemainders[6][(crc >> 8) & 0xFF] ^ kRemainders[5][(crc >> 16) & 0xFF] ^
              kRemainders[4][crc >> 24] ^ kRemainders[3][at(4)] ^ kRemainders[2][at(5)] ^ kRemainders[1][at(6)] ^
              kRemainders[0][at(7)];
    }
    for (std::size_t i = 0; i < bytes.size(); ++i)
        crc = (crc >> 8) ^ kRemainders[0][(crc ^ at(i)) & 0xFF];
    return ~crc;
}
