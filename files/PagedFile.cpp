#include "files/PagedFile.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <thread>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kBlockBytes = 4096; // of the directory, of a table and of a page
constexpr std::uint64_t kAddressEnd = std::uint64_t{1} << 32;
constexpr std::array<std::byte, 16384> kZeros{};
constexpr int kMostTries = 8;
constexpr std::chrono::milliseconds kPauseBetweenTries{10};

std::size_t DirectoryIndex(std::uint64_t address)
{
    return address >> 22 & 0x3FF;
}

std::size_t TableIndex(std::uint64_t address)
{
    return address >> 12 & 0x3FF;
}

/// How many of the next `left` bytes lie in the page of `address`.
std::size_t BytesInPage(std::uint64_t address, std::size_t left)
{
    return std::min<std::size_t>(left, kBlockBytes - address % kBlockBytes);
}

bool HasAddress(std::int64_t wordAddress, std::uint64_t byteCount)
{
    if (wordAddress < 0 || wordAddress > static_cast<std::int64_t>(kAddressEnd / 2))
        return false;
    return byteCount <= kAddressEnd - 2 * static_cast<std::uint64_t>(wordAddress);
}

std::uint64_t ByteAddress(std::int64_t wordAddress)
{
    return 2 * static_cast<std::uint64_t>(wordAddress);
}

std::uint32_t LoadEntry(std::span<const std::byte> bytes, std::size_t index)
{
    std::uint32_t entry = 0;
    for (std::size_t i = 0; i < 4; ++i)
        entry |= std::to_integer<std::uint32_t>(bytes[4 * index + i]) << (8 * i);
    return entry;
}

std::array<std::byte, 4> EntryBytes(std::uint32_t entry)
{
    std::array<std::byte, 4> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::byte>(entry >> (8 * i));
    return bytes;
}

} // namespace

bool CPagePlaces::Take(std::uint32_t offset)
{
    const std::size_t block = offset / kBlockBytes;
    if (block + 2 > m_begins.size())
        m_begins.resize(block + 2);
    const bool isHereFree = m_begins[block] == 0;
    const bool isBeforeFree = block == 0 || m_begins[block - 1] == 0 || offset - m_begins[block - 1] >= kBlockBytes;
    const bool isBehindFree = m_begins[block + 1] == 0 || m_begins[block + 1] - offset >= kBlockBytes;
    if (!isHereFree || !isBeforeFree || !isBehindFree)
        return false;
    m_begins[block] = offset;
    return true;
}

bool CPagedFile::Open(const fs::path& path, PagedKind kind)
{
    m_flatBytes = kind == kErp ? 1U << 20 : 1U << 16;
    m_directory.reset();
    m_tables.clear();
    m_tables.resize(std::tuple_size_v<decltype(Table::entries)>);
    m_places = CPagePlaces();
    return m_file.Open(path, CFile::Mode::ReadWrite);
}

bool CPagedFile::IsSound(std::int64_t wordAddress, std::uint64_t byteCount)
{
    const auto size = m_file.Size();
    if (!size || !HasAddress(wordAddress, byteCount))
        return false;
    const std::uint64_t end = ByteAddress(wordAddress) + byteCount;
    if (byteCount == 0 || end <= m_flatBytes || *size <= m_flatBytes)
        return true;
    if (!LoadDirectory())
        return false;
    const std::uint64_t first = std::max<std::uint64_t>(ByteAddress(wordAddress), m_flatBytes);
    for (std::size_t index = DirectoryIndex(first); index <= DirectoryIndex(end - 1); ++index)
        if (m_directory->entries[index] != 0 && !LoadTable(index))
            return false;
    return true;
}

bool CPagedFile::Write(std::int64_t wordAddress, std::span<const std::byte> bytes)
{
    if (!IsSound(wordAddress, bytes.size()))
        return false;
    const std::uint64_t first = ByteAddress(wordAddress);
    std::size_t done = BytesInFlatPart(first, bytes.size());
    if (done > 0 && !(ExtendTo(first) && m_file.WriteAt(first, bytes.first(done))))
        return false;
    while (done < bytes.size()) {
        const std::uint64_t address = first + done;
        const auto piece = bytes.subspan(done, BytesInPage(address, bytes.size() - done));
        const auto page = PageOf(address);
        if (!page || !m_file.WriteAt(*page + address % kBlockBytes, piece))
            return false;
        done += piece.size();
    }
    return true;
}

bool CPagedFile::Read(std::int64_t wordAddress, std::span<std::byte> bytes)
{
    std::fill(bytes.begin(), bytes.end(), std::byte{0});
    const auto size = m_file.Size();
    if (!size || !IsSound(wordAddress, bytes.size()))
        return false;
    const std::uint64_t first = ByteAddress(wordAddress);
    std::size_t done = BytesInFlatPart(first, bytes.size());
    if (done > 0 && !m_file.ReadAt(first, bytes.first(done)))
        return false;
    while (done < bytes.size() && *size > m_flatBytes) {
        const std::uint64_t address = first + done;
        const auto piece = bytes.subspan(done, BytesInPage(address, bytes.size() - done));
        const auto page = PageOf(address);
        if (!page || m_file.ReadAt(*page + address % kBlockBytes, piece) != piece.size())
            return false;
        done += piece.size();
    }
    return true;
}

std::size_t CPagedFile::BytesInFlatPart(std::uint64_t first, std::size_t count) const
{
    return first < m_flatBytes ? std::min<std::size_t>(count, m_flatBytes - first) : 0;
}

/// Makes the file at least `length` bytes long. A disk that is busy gets several tries.
bool CPagedFile::ExtendTo(std::uint64_t length)
{
    const auto isLongEnough = [&] {
        const auto size = m_file.Size();
        return size && *size >= length;
    };
    for (int tries = 0; !isLongEnough(); ++tries) {
        if (tries == kMostTries)
            return false;
        if (tries > 0)
            std::this_thread::sleep_for(kPauseBetweenTries);
        AppendZeros(length);
    }
    return true;
}

void CPagedFile::AppendZeros(std::uint64_t length)
{
    for (std::uint64_t end = m_file.Size().value_or(length); end < length;) {
        const auto block = std::span(kZeros).first(std::min<std::size_t>(kZeros.size(), length - end));
        if (!m_file.WriteAt(end, block))
            return;
        end += block.size();
    }
}

/// The offset of the page that holds the byte at `address`; nothing after a failure.
std::optional<std::uint32_t> CPagedFile::PageOf(std::uint64_t address)
{
    const std::size_t index = TableIndex(address);
    Table* const table = TableOf(DirectoryIndex(address));
    if (table == nullptr || (table->entries[index] == 0 && !AppendBlock(*table, index)))
        return std::nullopt;
    return table->entries[index];
}

/// The directory, made when the file has none; null after a failure.
CPagedFile::Table* CPagedFile::Directory()
{
    if (m_directory)
        return m_directory.get();
    if (!ExtendTo(m_flatBytes))
        return nullptr;
    if (m_file.Size() == m_flatBytes && !m_file.WriteAt(m_flatBytes, std::span(kZeros).first(kBlockBytes)))
        return nullptr;
    return LoadDirectory() ? m_directory.get() : nullptr;
}

/// A page table, made when there is none; null after a failure.
CPagedFile::Table* CPagedFile::TableOf(std::size_t directoryIndex)
{
    Table* const directory = Directory();
    if (directory == nullptr)
        return nullptr;
    if (directory->entries[directoryIndex] == 0 && !AppendBlock(*directory, directoryIndex))
        return nullptr;
    return LoadTable(directoryIndex) ? m_tables[directoryIndex].get() : nullptr;
}

bool CPagedFile::LoadDirectory()
{
    if (!m_directory && m_places.Take(m_flatBytes))
        m_directory = ReadTable(m_flatBytes);
    return m_directory != nullptr;
}

bool CPagedFile::LoadTable(std::size_t directoryIndex)
{
    auto& table = m_tables[directoryIndex];
    if (!table)
        table = ReadTable(m_directory->entries[directoryIndex]);
    return table != nullptr;
}

/// The table at `offset`, whose entries take their places; null when one of them cannot or the end of the file cuts it.
std::unique_ptr<CPagedFile::Table> CPagedFile::ReadTable(std::uint32_t offset)
{
    std::array<std::byte, kBlockBytes> bytes;
    if (m_file.ReadAt(offset, bytes) != bytes.size())
        return nullptr;
    auto table = std::make_unique<Table>();
    table->offset = offset;
    for (std::size_t i = 0; i < table->entries.size(); ++i) {
        table->entries[i] = LoadEntry(bytes, i);
        if (table->entries[i] != 0 && !TakesPlace(table->entries[i]))
            return nullptr;
    }
    return table;
}

/// Whether what an entry leads to lies in the file, behind the directory, where nothing else lies.
bool CPagedFile::TakesPlace(std::uint32_t offset)
{
    const auto size = m_file.Size();
    return size && offset >= m_flatBytes + kBlockBytes && offset + kBlockBytes <= *size && m_places.Take(offset);
}

/// Appends a table or page of zeros to the file and enters it in `owner`.
bool CPagedFile::AppendBlock(Table& owner, std::size_t index)
{
    const auto size = m_file.Size();
    if (!size || *size > std::numeric_limits<std::uint32_t>::max()) // an entry could not lead there
        return false;
    const auto offset = static_cast<std::uint32_t>(*size);
    if (!m_file.WriteAt(offset, std::span(kZeros).first(kBlockBytes)) || !TakesPlace(offset))
        return false;
    owner.entries[index] = offset;
    return m_file.WriteAt(owner.offset + 4 * index, EntryBytes(offset));
}

bool PagedWrite(const fs::path& path, std::int64_t wordAddress, std::size_t wordCount, std::span<const std::byte> bytes,
                PagedKind kind)
{
    CPagedFile file;
    return wordCount <= bytes.size() / 2 && file.Open(path, kind) &&
           file.Write(wordAddress, bytes.first(2 * wordCount)) && file.Close();
}

bool PagedRead(const fs::path& path, std::int64_t wordAddress, std::size_t wordCount, std::span<std::byte> bytes,
               PagedKind kind)
{
    if (wordCount > bytes.size() / 2)
        return false;
    const auto wanted = bytes.first(2 * wordCount);
    std::fill(wanted.begin(), wanted.end(), std::byte{0});
    CPagedFile file;
    return file.Open(path, kind) && file.Read(wordAddress, wanted);
}
