#include "files/WordsOfFile.h"

#include "files/PagedRecipeFile.h"

#include <algorithm>

CWordsOfFile::CWordsOfFile(FileType type, const std::filesystem::path& path) : m_isPaged(IsPaged(type))
{
    const bool isOpen = m_isPaged ? m_pages.Open(path, KindOf(type)) : m_file.Open(path, CFile::Mode::Read);
    if (isOpen)
        m_count = m_isPaged ? m_pages.LogicalBytes() : m_file.Size();
}

bool CWordsOfFile::IsSound(std::uint64_t offset, std::uint64_t byteCount)
{
    return !m_isPaged || m_pages.IsSound(WordAddress(static_cast<std::int64_t>(offset / 2)), byteCount);
}

bool CWordsOfFile::Read(std::uint64_t offset, std::span<std::byte> bytes)
{
    if (m_isPaged)
        return m_pages.Read(WordAddress(static_cast<std::int64_t>(offset / 2)), bytes);
    const auto length = m_file.ReadAt(offset, bytes);
    if (length)
        std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(*length), bytes.end(), std::byte{0});
    return length.has_value();
}
