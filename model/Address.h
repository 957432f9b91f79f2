#pragma once

#include <compare>
#include <cstdint>

// Where the words of a recipe lie, and their bytes. Each is a type of its own, so that none is taken for the other, and
// only FirstByteOf leads from one to the other.

/// The address of a 16-bit word, counted from 0. A setting may be any number: no file has the words below 0.
struct WordAddress {
    constexpr explicit WordAddress(std::int64_t address) : number(address) {}

    friend constexpr bool operator==(WordAddress, WordAddress) = default;
    friend constexpr auto operator<=>(WordAddress a, WordAddress b) { return a.number <=> b.number; }

    std::int64_t number;
};

constexpr WordAddress operator+(WordAddress address, std::int64_t words)
{
    return WordAddress(address.number + words);
}

/// How many bytes lie before a byte, counted from the first one of word 0: in a flat file its place in the file, in a
/// paged one its logical address.
struct ByteOffset {
    constexpr explicit ByteOffset(std::uint64_t offset) : number(offset) {}

    friend constexpr bool operator==(ByteOffset, ByteOffset) = default;
    friend constexpr auto operator<=>(ByteOffset a, ByteOffset b) { return a.number <=> b.number; }

    std::uint64_t number;
};

constexpr ByteOffset operator+(ByteOffset offset, std::uint64_t bytes)
{
    return ByteOffset(offset.number + bytes);
}

/// The bytes from `begin` up to, but without, `end`, which does not lie before `begin`.
constexpr std::uint64_t operator-(ByteOffset end, ByteOffset begin)
{
    return end.number - begin.number;
}

/// Where a word begins; for one that is a little below 0, as a setting of 32 bits may be, past the end of any file.
constexpr ByteOffset FirstByteOf(WordAddress address)
{
    return ByteOffset(2 * static_cast<std::uint64_t>(address.number));
}
