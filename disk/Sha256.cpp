#include "disk/Sha256.h"

#include <algorithm>
#include <bit>
#include <string_view>

namespace {

constexpr std::array<std::uint32_t, 64> kRoundConstants = {
    0x428A2F98, 0x71374491, 0xB5C0FBCF, 0xE9B5DBA5, 0x3956C25B, 0x59F111F1, 0x923F82A4, 0xAB1C5ED5,
    0xD807AA98, 0x12835B01, 0x243185BE, 0x550C7DC3, 0x72BE5D74, 0x80DEB1FE, 0x9BDC06A7, 0xC19BF174,
    0xE49B69C1, 0xEFBE4786, 0x0FC19DC6, 0x240CA1CC, 0x2DE92C6F, 0x4A7484AA, 0x5CB0A9DC, 0x76F988DA,
    0x983E5152, 0xA831C66D, 0xB00327C8, 0xBF597FC7, 0xC6E00BF3, 0xD5A79147, 0x06CA6351, 0x14292967,
    0x27B70A85, 0x2E1B2138, 0x4D2C6DFC, 0x53380D13, 0x650A7354, 0x766A0ABB, 0x81C2C92E, 0x92722C85,
    0xA2BFE8A1, 0xA81A664B, 0xC24B8B70, 0xC76C51A3, 0xD192E819, 0xD6990624, 0xF40E3585, 0x106AA070,
    0x19A4C116, 0x1E376C08, 0x2748774C, 0x34B0BCB5, 0x391C0CB3, 0x4ED8AA4A, 0x5B9CCA4F, 0x682E6FF3,
    0x748F82EE, 0x78A5636F, 0x84C87814, 0x8CC70208, 0x90BEFFFA, 0xA4506CEB, 0xBEF9A3F7, 0xC67178F2};

constexpr std::size_t kLengthBytes = 8;

std::uint32_t BigEndian(std::span<const std::byte> bytes)
{
    std::uint32_t value = 0;
    for (const std::byte byte : bytes.first(4))
        value = value << 8 | std::to_integer<std::uint32_t>(byte);
    return value;
}

std::array<std::uint32_t, 64> ScheduleOf(std::span<const std::byte> block)
{
    std::array<std::uint32_t, 64> schedule{};
    for (std::size_t i = 0; i < 16; ++i)
        schedule[i] = BigEndian(block.subspan(4 * i));
    for (std::size_t i = 16; i < schedule.size(); ++i) {
        const std::uint32_t early = schedule[i - 15];
        const std::uint32_t late = schedule[i - 2];
        schedule[i] = schedule[i - 16] + (std::rotr(early, 7) ^ std::rotr(early, 18) ^ (early >> 3)) + schedule[i - 7] +
                      (std::rotr(late, 17) ^ std::rotr(late, 19) ^ (late >> 10));
    }
    return schedule;
}

} // namespace

void CSha256::TakeBlock(std::span<const std::byte, kBlockBytes> block)
{
    const auto schedule = ScheduleOf(block);
    auto [a, b, c, d, e, f, g, h] = m_state;
    for (std::size_t i = 0; i < schedule.size(); ++i) {
        const std::uint32_t first = h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) + ((e & f) ^ (~e & g)) +
                                    kRoundConstants[i] + schedule[i];
        const std::uint32_t second =
            (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
        h = g;
        g = f;
        f = e;
        e = d + first;
        d = c;
        c = b;
        b = a;
        a = first + second;
    }
    const std::array<std::uint32_t, 8> added = {a, b, c, d, e, f, g, h};
    for (std::size_t i = 0; i < added.size(); ++i)
        m_state[i] += added[i];
}

void CSha256::Append(std::span<const std::byte> bytes)
{
    m_bytes += bytes.size();
    while (!bytes.empty()) {
        if (m_begunBytes == 0 && bytes.size() >= kBlockBytes) {
            TakeBlock(bytes.first<kBlockBytes>());
            bytes = bytes.subspan(kBlockBytes);
            continue;
        }
        const std::size_t count = std::min(bytes.size(), kBlockBytes - m_begunBytes);
        std::copy_n(bytes.begin(), count, m_begun.begin() + static_cast<std::ptrdiff_t>(m_begunBytes));
        m_begunBytes += count;
        bytes = bytes.subspan(count);
        if (m_begunBytes == kBlockBytes) {
            TakeBlock(m_begun);
            m_begunBytes = 0;
        }
    }
}

std::string CSha256::Finish()
{
    const std::uint64_t bits = 8 * m_bytes;
    const std::array<std::byte, kBlockBytes> padding = {std::byte{0x80}}; // and zeros
    constexpr std::size_t kLengthPlace = kBlockBytes - kLengthBytes;
    const bool isRoom = m_begunBytes < kLengthPlace;
    Append(std::span(padding).first((isRoom ? kLengthPlace : kLengthPlace + kBlockBytes) - m_begunBytes));
    std::array<std::byte, kLengthBytes> length{};
    for (std::size_t i = 0; i < kLengthBytes; ++i)
        length[i] = static_cast<std::byte>(bits >> (8 * (kLengthBytes - 1 - i)));
    Append(length);

    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (const std::uint32_t word : m_state)
        for (int shift = 28; shift >= 0; shift -= 4)
            text += kDigits[(word >> shift) & 0xF];
    return text;
}
