#include "files/PagedReader.h"

#include "model/LittleEndian.h"

#include <algorithm>
#include <tuple>

namespace fs = std::filesystem;

namespace {

constexpr ByteOffset kAddressEnd(std::uint64_t{1} << 32);

bool HasAddress(WordAddress wordAddress, std::uint64_t byteCount)
{
    const ByteOffset first = FirstByteOf(wordAddress);
    return wordAddress >= WordAddress(0) && first <= kAddressEnd && byteCount <= kAddressEnd - first;
}

} // namespace

bool CPagePlaces::Take(std::uint32_t offset)
{
    const std::size_t block = offset / kBlockBytes;
    m_begins.resize(std::max(m_begins.size(), block + 2));
    const bool isHereFree = m_begins[block] == 0;
    const bool isBeforeFree = block == 0 || offset - m_begins[block - 1] >= kBlockBytes; // also from 0, for none
    const bool isBehindFree = m_begins[block + 1] == 0 || m_begins[block + 1] - offset >= kBlockBytes;
    if (!isHereFree || !isBeforeFree || !isBehindFree)
        return false;
    m_begins[block] = offset;
    return true;
}

bool CPagedReader::Open(const fs::path& path, PagedKind kind)
{
    Begin(kind);
    m_pLent = nullptr;
    return m_own.Open(path, m_mode);
}

void CPagedReader::Begin(PagedKind kind)
{
    m_flatBytes = FlatBytes(kind);
    m_directory.reset();
    m_tables.clear();
    m_tables.resize(std::tuple_size_v<decltype(Table::entries)>);
    m_places = CPagePlaces();
    m_places.Take(m_flatBytes); // the directory's, whether there is one yet or not
}

bool CPagedReader::IsSound(WordAddress wordAddress, std::uint64_t byteCount)
{
    const auto size = File().Size();
    if (!size || !HasAddress(wordAddress, byteCount))
        return false;
    const ByteOffset first = FirstByteOf(wordAddress);
    if (byteCount == 0 || first + byteCount <= FlatEnd() || *size <= m_flatBytes)
        return true;
    if (!LoadDirectory())
        return false;
    const std::size_t lastIndex = DirectoryIndex(first + (byteCount - 1));
    for (std::size_t index = DirectoryIndex(std::max(first, FlatEnd())); index <= lastIndex; ++index)
        if (m_directory->entries[index] != 0 && !LoadTable(index))
            return false;
    return true;
}

std::optional<std::uint64_t> CPagedReader::LogicalBytes()
{
    const auto size = File().Size();
    if (!size || *size <= m_flatBytes)
        return size;
    std::uint64_t end = m_flatBytes;
    for (std::size_t index = LoadDirectory() ? m_tables.size() : 0; index-- > 0 && end == m_flatBytes;) {
        if (m_directory->entries[index] == 0 || !LoadTable(index))
            continue;
        const auto& pages = m_tables[index]->entries;
        const auto last = std::find_if(pages.rbegin(), pages.rend(), [](std::uint32_t page) { return page != 0; });
        const auto count = index * pages.size() + static_cast<std::uint64_t>(pages.rend() - last);
        if (last != pages.rend())
            end = std::max(end, count * kBlockBytes);
    }
    return LastError() ? std::nullopt : std::optional(end);
}

bool CPagedReader::PrepareToRead(WordAddress wordAddress, std::uint64_t byteCount)
{
    return IsSound(wordAddress, byteCount);
}

bool CPagedReader::Read(WordAddress wordAddress, std::span<std::byte> bytes)
{
    std::fill(bytes.begin(), bytes.end(), std::byte{0});
    const auto size = File().Size();
    if (!size || !PrepareToRead(wordAddress, bytes.size()))
        return false;
    const ByteOffset first = FirstByteOf(wordAddress);
    std::size_t done = BytesInFlatPart(first, bytes.size());
    if (!File().ReadAt(first.number, bytes.first(done)))
        return false;
    while (done < bytes.size() && *size > m_flatBytes) {
        const ByteOffset address = first + done;
        const auto piece = bytes.subspan(done, BytesInPage(address, bytes.size() - done));
        const std::uint32_t page = PageOf(address);
        if (page != 0 && File().ReadAt(page + PlaceInPage(address), piece) != piece.size())
            return false;
        done += piece.size();
    }
    return true;
}

std::size_t CPagedReader::BytesInFlatPart(ByteOffset first, std::size_t count) const
{
    return std::min<std::size_t>(count, FlatEnd() - std::min(first, FlatEnd()));
}

/// The offset of the page that holds the byte at `address`, which is sound; 0 where there is none.
std::uint32_t CPagedReader::PageOf(ByteOffset address) const
{
    const auto& table = m_tables[DirectoryIndex(address)];
    return table ? table->entries[TableIndex(address)] : 0;
}

bool CPagedReader::LoadDirectory()
{
    if (!m_directory)
        m_directory = ReadTable(m_flatBytes);
    return m_directory != nullptr;
}

bool CPagedReader::LoadTable(std::size_t directoryIndex)
{
    auto& table = m_tables[directoryIndex];
    if (!table)
        table = ReadTable(m_directory->entries[directoryIndex]);
    return table != nullptr;
}

/// The table at `offset`, whose entries take their places; null when one of them cannot or the end of the file cuts it.
std::unique_ptr<CPagedReader::Table> CPagedReader::ReadTable(std::uint32_t offset)
{
    std::array<std::byte, kBlockBytes> bytes;
    if (File().ReadAt(offset, bytes) != bytes.size())
        return nullptr;
    auto table = std::make_unique<Table>();
    table->offset = offset;
    std::span<const std::byte> rest(bytes);
    for (std::uint32_t& entry : table->entries) {
        entry = LoadLittleEndian<std::uint32_t>(rest.first(4));
        rest = rest.subspan(4);
        if (entry != 0 && !TakesPlace(entry))
            return nullptr;
    }
    return table;
}

/// Whether what an entry leads to lies in the file, after the directory, where nothing else lies.
bool CPagedReader::TakesPlace(std::uint32_t offset)
{
    const auto size = File().Size();
    return size && offset >= m_flatBytes + kBlockBytes && offset + kBlockBytes <= *size && m_places.Take(offset);
}
