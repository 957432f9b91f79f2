#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

/// The SHA-256 (FIPS 180-4) of bytes that come piece by piece.
class CSha256 {
public:
    void Append(std::span<const std::byte> bytes);

    /// Of all bytes so far, as 64 hexadecimal digits in small letters. Nothing may be appended afterwards.
    std::string Finish();

private:
    static constexpr std::size_t kBlockBytes = 64;

    void TakeBlock(std::span<const std::byte, kBlockBytes> block);

    std::array<std::uint32_t, 8> m_state = {0x6A09E667, 0xBB67AE85, 0x3C6EF372, 0xA54FF53A,
                                            0x510E527F, 0x9B05688C, 0x1F83D9AB, 0x5BE0CD19};
    std::array<std::byte, kBlockBytes> m_begun{}; ///< bytes that fill no block yet
    std::size_t m_begunBytes = 0;
    std::uint64_t m_bytes = 0; ///< all of them
};
