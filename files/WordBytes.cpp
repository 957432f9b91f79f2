#include "files/WordBytes.h"

#include <algorithm>

namespace {

constexpr std::size_t kPieceBytes = std::size_t{64} << 10;
constexpr std::uint64_t kPagedEnd = std::uint64_t{1} << 32; // of logical addresses

} // namespace

bool CFileWords::Read(std::uint64_t offset, std::span<std::byte> bytes)
{
    while (!bytes.empty()) {
        const std::uint64_t begin = offset - offset % kPieceBytes;
        if (begin >= (m_isPaged ? kPagedEnd : Count())) { // in a paged file what leads there may be damaged
            std::fill(bytes.begin(), bytes.end(), std::byte{0});
            return true;
        }
        if (offset == begin && bytes.size() >= kPieceBytes) { // as large as a piece: no other reading needs it
            if (!m_file.Read(begin, bytes.first(kPieceBytes)))
                return false;
            bytes = bytes.subspan(kPieceBytes);
            offset += kPieceBytes;
            continue;
        }
        if (m_pieceBegin != begin) {
            m_piece.resize(kPieceBytes);
            m_pieceBegin.reset();
            if (!m_file.Read(begin, m_piece))
                return false;
            m_pieceBegin = begin;
        }
        const auto part = std::span(m_piece).subspan(static_cast<std::size_t>(offset - begin));
        const std::size_t length = std::min(part.size(), bytes.size());
        std::copy_n(part.begin(), length, bytes.begin());
        bytes = bytes.subspan(length);
        offset += length;
    }
    return true;
}

bool CChangedWords::Read(std::uint64_t offset, std::span<std::byte> bytes)
{
    while (!bytes.empty()) {
        const std::uint64_t begin = offset - offset % kBlockBytes;
        const auto place = static_cast<std::size_t>(offset - begin);
        const auto part = bytes.first(std::min(kBlockBytes - place, bytes.size()));
        const auto block = m_blocks.find(begin);
        if (block != m_blocks.end())
            std::copy_n(block->second.begin() + static_cast<std::ptrdiff_t>(place), part.size(), part.begin());
        else if (!m_base.Read(offset, part))
            return false;
        bytes = bytes.subspan(part.size());
        offset += part.size();
    }
    return true;
}

bool CChangedWords::Write(std::uint64_t offset, std::span<const std::byte> bytes)
{
    while (!bytes.empty()) {
        const auto place = static_cast<std::size_t>(offset % kBlockBytes);
        const std::size_t length = std::min(kBlockBytes - place, bytes.size());
        Block* const block = BlockOf(offset - place);
        if (block == nullptr)
            return false;
        std::copy_n(bytes.begin(), length, block->begin() + static_cast<std::ptrdiff_t>(place));
        bytes = bytes.subspan(length);
        offset += length;
    }
    return true;
}

/// The block that begins at `offset`, from now on one of those that were changed; null after a failure.
CChangedWords::Block* CChangedWords::BlockOf(std::uint64_t offset)
{
    const auto [block, isNew] = m_blocks.try_emplace(offset);
    if (!isNew || m_base.Read(offset, block->second))
        return &block->second;
    m_blocks.erase(block);
    return nullptr;
}

std::vector<std::uint64_t> CChangedWords::ChangedBlocks() const
{
    std::vector<std::uint64_t> offsets;
    for (const auto& [offset, block] : m_blocks)
        offsets.push_back(offset);
    return offsets;
}
