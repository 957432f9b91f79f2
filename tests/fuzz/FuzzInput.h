#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <type_traits>

/// The fuzzer's bytes taken apart from front to back. Where they end, zero bytes follow, so that every take succeeds.
class CFuzzInput {
public:
    explicit CFuzzInput(std::span<const std::byte> bytes) : m_bytes(bytes) {}

    bool IsEmpty() const { return m_bytes.empty(); }
    std::span<const std::byte> Rest() const { return m_bytes; }

    std::uint8_t TakeByte()
    {
        if (m_bytes.empty())
            return 0;
        const auto byte = std::to_integer<std::uint8_t>(m_bytes.front());
        m_bytes = m_bytes.subspan(1);
        return byte;
    }

    bool TakeFlag() { return TakeByte() % 2 != 0; }

    /// 0 to `limit` - 1.
    std::uint32_t TakeBelow(std::uint32_t limit)
    {
        return limit <= 256 ? TakeByte() % limit : Take<std::uint32_t>() % limit;
    }

    template <class Integer>
    Integer Take()
    {
        std::make_unsigned_t<Integer> value = 0;
        for (std::size_t i = 0; i < sizeof(Integer); ++i)
            value = static_cast<decltype(value)>(value | static_cast<decltype(value)>(TakeByte()) << (8 * i));
        return static_cast<Integer>(value);
    }

    /// Any number of the type, but often a small one or a limit.
    template <class Integer>
    Integer TakeNumber()
    {
        using Limits = std::numeric_limits<Integer>;
        const std::uint8_t kind = TakeByte();
        switch (kind % 8) {
        case 0:
            return static_cast<Integer>(kind / 8);
        case 1:
            return Limits::max();
        case 2:
            return Limits::min();
        case 3:
            return Take<Integer>();
        case 4:
        case 5:
            return Take<std::int16_t>();
        default:
            return static_cast<std::int8_t>(TakeByte());
        }
    }

    /// At most `most` UTF-16 units, nearly all of them Latin.
    std::u16string TakeText(std::uint32_t most)
    {
        std::u16string text(TakeBelow(most + 1), u'\0');
        for (char16_t& unit : text) {
            const std::uint8_t byte = TakeByte();
            unit = byte < 0xF0 ? byte : Take<std::uint16_t>();
        }
        return text;
    }

private:
    std::span<const std::byte> m_bytes;
};
