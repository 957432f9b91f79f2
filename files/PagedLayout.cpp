#include "files/PagedLayout.h"

#include <algorithm>

std::uint32_t FlatBytes(PagedKind kind)
{
    return kind == kErp ? 1U << 20 : 1U << 16;
}

std::size_t DirectoryIndex(ByteOffset address)
{
    return address.number >> 22 & 0x3FF;
}

std::size_t TableIndex(ByteOffset address)
{
    return address.number >> 12 & 0x3FF;
}

std::uint32_t PlaceInPage(ByteOffset address)
{
    return static_cast<std::uint32_t>(address.number % kBlockBytes);
}

ByteOffset NextPage(ByteOffset address)
{
    return address + (kBlockBytes - PlaceInPage(address));
}

std::size_t BytesInPage(ByteOffset address, std::size_t left)
{
    return std::min<std::size_t>(left, NextPage(address) - address);
}
