#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

// Values as all recipe files and libraries hold them: their low byte first, whatever the processor does.

/// The value of the first `count` of `bytes`. Called with a constant, so that it becomes one load.
template <class Value>
Value LoadBytes(const std::byte* bytes, std::size_t count)
{
    Value value = 0;
    for (std::size_t i = 0; i < count; ++i)
        value = static_cast<Value>(value | static_cast<Value>(bytes[i]) << (8 * i));
    return value;
}

/// The value that begins `bytes`; the bytes that are missing are zero.
template <class Value>
Value LoadLittleEndian(std::span<const std::byte> bytes)
{
    if (bytes.size() >= sizeof(Value))
        return LoadBytes<Value>(bytes.data(), sizeof(Value));
    return bytes.size() == 2 ? LoadBytes<Value>(bytes.data(), 2) : LoadBytes<Value>(bytes.data(), bytes.size());
}

/// Puts as many low bytes of `value` into `bytes` as they hold, and zeros after it.
template <class Value>
void StoreLittleEndian(std::span<std::byte> bytes, Value value)
{
    for (std::byte& byte : bytes) {
        byte = static_cast<std::byte>(value);
        value = static_cast<Value>(value >> 8);
    }
}

/// Puts `values` into `bytes`, which has room for them, one after the other.
template <class Values>
void StoreEach(std::span<std::byte> bytes, const Values& values)
{
    for (const auto value : values) {
        StoreLittleEndian(bytes.first(sizeof value), value);
        bytes = bytes.subspan(sizeof value);
    }
}

/// Words, one a unit, as they lie in a file.
inline std::vector<std::byte> BytesOfWords(std::u16string_view words)
{
    std::vector<std::byte> bytes(sizeof(char16_t) * words.size());
    StoreEach(bytes, words);
    return bytes;
}
