#include "files/PagedFile.h"

#include "model/LittleEndian.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <limits>
#include <thread>

namespace fs = std::filesystem;

namespace {

constexpr int kMostTries = 8;
constexpr std::chrono::milliseconds kPauseBetweenTries{10};

std::array<std::byte, kBlockBytes> TableBytes(std::span<const std::uint32_t> entries)
{
    std::array<std::byte, kBlockBytes> bytes;
    StoreEach(bytes, entries);
    return bytes;
}

} // namespace

bool CPagedFile::OpenTarget(const WriteTarget& target, PagedKind kind)
{
    CFile* const holding = target.Holding();
    if (holding == nullptr)
        return Open(target.path, kind);
    Borrow(*holding, kind);
    return true;
}

bool CPagedFile::MakeRoom(WordAddress wordAddress, std::uint64_t byteCount)
{
    return MakeRoom(std::array{Stretch{wordAddress, byteCount}});
}

bool CPagedFile::MakeRoom(std::span<const Stretch> stretches)
{
    const auto oldEnd = File().Size();
    const auto isSound = [this](const Stretch& stretch) { return IsSound(stretch.first, stretch.byteCount); };
    if (!oldEnd || !std::all_of(stretches.begin(), stretches.end(), isSound))
        return false;
    auto newEnd = oldEnd;
    for (const Stretch& stretch : stretches) {
        const ByteOffset first = FirstByteOf(stretch.first);
        if (newEnd && stretch.byteCount > 0)
            newEnd = EnterBlocks(first, first + stretch.byteCount, *newEnd);
    }
    return newEnd && (*newEnd == *oldEnd || GrowTo(*oldEnd, *newEnd));
}

bool CPagedFile::PrepareToRead(WordAddress wordAddress, std::uint64_t byteCount)
{
    const auto size = File().Size();
    return size && (*size > m_flatBytes ? MakeRoom(wordAddress, byteCount) : IsSound(wordAddress, byteCount));
}

bool CPagedFile::Write(WordAddress wordAddress, std::span<const std::byte> bytes)
{
    if (!MakeRoom(wordAddress, bytes.size()))
        return false;
    const ByteOffset first = FirstByteOf(wordAddress);
    std::size_t done = BytesInFlatPart(first, bytes.size());
    if (!File().WriteAt(first.number, bytes.first(done)))
        return false;
    while (done < bytes.size()) {
        const ByteOffset address = first + done;
        const auto piece = bytes.subspan(done, BytesInPage(address, bytes.size() - done));
        if (!File().WriteAt(PageOf(address) + PlaceInPage(address), piece))
            return false;
        done += piece.size();
    }
    return true;
}

/// Enters all that the bytes from `first` to `end` lack in the directory and the tables at hand, in the order of the
/// bytes and from `fileEnd` on: gives the length that the file is to have, nothing when an entry cannot lead so far.
std::optional<std::uint64_t> CPagedFile::EnterBlocks(ByteOffset first, ByteOffset end, std::uint64_t fileEnd)
{
    fileEnd = std::max(fileEnd, std::min(end, FlatEnd()).number);
    if (end <= FlatEnd())
        return fileEnd;
    if (fileEnd == m_flatBytes) {
        m_directory = MakeTable(m_flatBytes);
        fileEnd += kBlockBytes;
    }
    for (ByteOffset address = std::max(first, FlatEnd()); address < end; address = NextPage(address)) {
        const std::size_t directoryIndex = DirectoryIndex(address);
        if (!EnterTable(directoryIndex, fileEnd))
            return std::nullopt;
        Table& table = *m_tables[directoryIndex];
        if (table.entries[TableIndex(address)] == 0 && !EnterBlock(table, TableIndex(address), fileEnd))
            return std::nullopt;
    }
    return fileEnd;
}

bool CPagedFile::EnterTable(std::size_t directoryIndex, std::uint64_t& fileEnd)
{
    const std::uint32_t& entry = m_directory->entries[directoryIndex];
    if (entry != 0)
        return LoadTable(directoryIndex);
    if (!EnterBlock(*m_directory, directoryIndex, fileEnd))
        return false;
    m_tables[directoryIndex] = MakeTable(entry);
    return true;
}

/// Enters a block at `fileEnd`, which moves on past it.
bool CPagedFile::EnterBlock(Table& owner, std::size_t index, std::uint64_t& fileEnd)
{
    if (fileEnd > std::numeric_limits<std::uint32_t>::max()) // an entry could not lead there
        return false;
    const auto offset = static_cast<std::uint32_t>(fileEnd);
    if (!m_places.Take(offset))
        return false;
    owner.entries[index] = offset;
    owner.isChanged = true;
    fileEnd += kBlockBytes;
    return true;
}

/// Makes the file longer and puts the changed tables into it. Until the new blocks are on the disk, nothing that the
/// file had leads to them.
bool CPagedFile::GrowTo(std::uint64_t oldEnd, std::uint64_t newEnd)
{
    if (!ReserveRoom(oldEnd, newEnd))
        return false;
    std::vector<Table*> changed = ChangedTables();
    const auto firstOld = std::partition(changed.begin(), changed.end(),
                                         [oldEnd](const Table* table) { return table->offset >= oldEnd; });
    const std::span<Table* const> newTables(changed.begin(), firstOld);
    const std::span<Table* const> oldTables(firstOld, changed.end());
    if (!WriteTables(newTables) || (!oldTables.empty() && !File().Flush())) {
        File().CutTo(oldEnd);
        return false;
    }
    if (!WriteTables(oldTables)) {
        TakeBack(oldTables, oldEnd);
        return false;
    }
    for (Table* table : changed)
        table->isChanged = false;
    return true;
}

/// A disk that is busy gets several tries.
bool CPagedFile::ReserveRoom(std::uint64_t oldEnd, std::uint64_t newEnd)
{
    for (int tries = 1; !File().Reserve(oldEnd, newEnd - oldEnd); ++tries) {
        if (tries == kMostTries)
            return false;
        std::this_thread::sleep_for(kPauseBetweenTries);
    }
    return true;
}

std::vector<CPagedFile::Table*> CPagedFile::ChangedTables()
{
    std::vector<Table*> changed;
    if (m_directory && m_directory->isChanged)
        changed.push_back(m_directory.get());
    for (const auto& table : m_tables)
        if (table && table->isChanged)
            changed.push_back(table.get());
    return changed;
}

bool CPagedFile::WriteTables(std::span<Table* const> tables)
{
    return std::all_of(tables.begin(), tables.end(), [this](const Table* table) {
        return File().WriteAt(table->offset, TableBytes(table->entries));
    });
}

/// Makes nothing lead past `oldEnd` any more and cuts the file there; leaves it long when an entry cannot be taken
/// back.
void CPagedFile::TakeBack(std::span<Table* const> tables, std::uint64_t oldEnd)
{
    for (Table* table : tables)
        for (std::uint32_t& entry : table->entries)
            entry = entry < oldEnd ? entry : 0;
    if (WriteTables(tables))
        File().CutTo(oldEnd);
}

/// An empty one, which counts as changed with its first entry.
std::unique_ptr<CPagedFile::Table> CPagedFile::MakeTable(std::uint32_t offset)
{
    auto table = std::make_unique<Table>();
    table->offset = offset;
    return table;
}

bool PagedWrite(const fs::path& path, WordAddress wordAddress, std::size_t wordCount, std::span<const std::byte> bytes,
                PagedKind kind)
{
    CPagedFile file;
    return wordCount <= bytes.size() / 2 && file.Open(path, kind) &&
           file.Write(wordAddress, bytes.first(2 * wordCount)) && file.Close();
}

bool PagedRead(const fs::path& path, WordAddress wordAddress, std::size_t wordCount, std::span<std::byte> bytes,
               PagedKind kind)
{
    if (wordCount > bytes.size() / 2)
        return false;
    const auto wanted = bytes.first(2 * wordCount);
    std::fill(wanted.begin(), wanted.end(), std::byte{0});
    CPagedFile file;
    return file.Open(path, kind) && file.Read(wordAddress, wanted);
}
