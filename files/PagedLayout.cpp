#include "files/PagedLayout.h"

#include <algorithm>

std::uint32_t FlatBytes(PagedKind kind)
{
    return kind == kErp ? 1U << 20 : 1U << 16;
}

std::uint64_t ByteAddress(std::int64_t wordAddress)
{
    return 2 * static_cast<std::uint64_t>(wordAddress);
}

std::size_t DirectoryIndex(std::uint64_t address)
{
    return address >> 22 & 0x3FF;
}

std::size_t TableIndex(std::uint64_t address)
{
    return address >> 12 & 0x3FF;
}

std::size_t BytesInPage(std::uint64_t address, std::size_t left)
{
    return std::min<std::size_t>(left, kBlockBytes - address % kBlockBytes);
}
