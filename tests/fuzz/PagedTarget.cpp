#include "files/PagedFile.h"
#include "tests/fuzz/FuzzInput.h"
#include "tests/fuzz/Property.h"
#include "tests/fuzz/Scratch.h"
#include "tests/fuzz/Targets.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace {

constexpr std::uint64_t kBlock = 4096;
constexpr std::uint64_t kAddressEnd = std::uint64_t{1} << 32;

/// A run of bytes in the file.
struct Place {
    std::uint64_t begin;
    std::uint64_t length;
};

/// A paged file as its layout is described, looked at byte by byte.
class CPlainPagedFile {
public:
    CPlainPagedFile(Bytes bytes, PagedKind kind) : m_bytes(std::move(bytes)), m_flat(FlatBytes(kind)) {}

    static std::uint64_t FlatBytes(PagedKind kind) { return kind == kErp ? 1048576 : 65536; }

    const Bytes& Content() const { return m_bytes; }

    /// The directory and the tables that the stretch needs, none of whose entries lead where they must not; nothing
    /// when one does, or when the stretch has no addresses.
    std::optional<std::vector<std::uint64_t>> TablesOf(std::uint64_t first, std::uint64_t count) const
    {
        std::vector<std::uint64_t> tables;
        if (first + count > kAddressEnd)
            return std::nullopt;
        if (count == 0 || first + count <= m_flat || m_bytes.size() <= m_flat)
            return tables;
        std::vector<std::uint64_t> taken{m_flat};
        if (!HasBlock(m_flat) || !TakeEntries(m_flat, taken))
            return std::nullopt;
        tables.push_back(m_flat);
        const std::uint64_t last = (first + count - 1) / kBlock / 1024;
        for (std::uint64_t index = std::max(first, m_flat) / kBlock / 1024; index <= last; ++index) {
            const std::uint64_t table = Entry(m_flat, index);
            if (table != 0 && !TakeEntries(table, taken))
                return std::nullopt;
            if (table != 0)
                tables.push_back(table);
        }
        return tables;
    }

    /// Where the byte at a logical address lies; nothing where it has no place in the file.
    std::optional<std::uint64_t> PlaceOf(std::uint64_t address) const
    {
        std::uint64_t place = address;
        if (address >= m_flat) {
            if (!HasBlock(m_flat))
                return std::nullopt;
            const std::uint64_t table = Entry(m_flat, address / kBlock / 1024 % 1024);
            const std::uint64_t page = table == 0 || !HasBlock(table) ? 0 : Entry(table, address / kBlock % 1024);
            if (page == 0)
                return std::nullopt;
            place = page + address % kBlock;
        }
        return place < m_bytes.size() ? std::optional(place) : std::nullopt;
    }

    Bytes Logical(std::uint64_t first, std::uint64_t count) const
    {
        Bytes bytes;
        bytes.reserve(static_cast<std::size_t>(count));
        for (std::uint64_t address = first; address < first + count; ++address) {
            const auto place = PlaceOf(address);
            bytes.push_back(place ? m_bytes[*place] : std::byte{0});
        }
        return bytes;
    }

    std::uint64_t Entry(std::uint64_t table, std::uint64_t index) const
    {
        return static_cast<std::uint32_t>(LoadLE32(m_bytes, static_cast<std::size_t>(table + 4 * index)));
    }

private:
    bool HasBlock(std::uint64_t offset) const { return offset + kBlock <= m_bytes.size(); }

    bool TakeEntries(std::uint64_t table, std::vector<std::uint64_t>& taken) const
    {
        for (std::uint64_t index = 0; index < 1024; ++index) {
            const std::uint64_t offset = Entry(table, index);
            if (offset == 0)
                continue;
            const bool isTaken = std::any_of(taken.begin(), taken.end(), [offset](std::uint64_t other) {
                return offset < other + kBlock && other < offset + kBlock;
            });
            if (offset < m_flat + kBlock || !HasBlock(offset) || isTaken)
                return false;
            taken.push_back(offset);
        }
        return true;
    }

    Bytes m_bytes;
    std::uint64_t m_flat;
};

struct Work {
    bool isWrite;
    std::int64_t word;
    std::uint64_t first; ///< the byte address
    Bytes bytes;         ///< to write; or room for what is read
};

/// Bytes that tell where they came from.
Bytes Pattern(std::uint64_t count, std::uint8_t seed)
{
    Bytes bytes(static_cast<std::size_t>(count));
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::byte>(1 + (seed + i * 7) % 255);
    return bytes;
}

/// A table entry: mostly a block of the file, sometimes beside one, sometimes anything.
std::uint32_t TakeEntry(CFuzzInput& input, std::uint64_t flat)
{
    const std::uint8_t kind = input.TakeByte();
    const auto block = static_cast<std::uint32_t>(flat + kBlock * (kind / 8));
    if (kind % 8 < 6)
        return block;
    return kind % 8 == 6 ? block + input.TakeByte() - 128 : input.Take<std::uint32_t>();
}

/// A file of a flat part, blocks of zeros or pattern after it, and some entries put into them.
Bytes TakeFile(CFuzzInput& input, PagedKind kind)
{
    const std::uint64_t flat = CPlainPagedFile::FlatBytes(kind);
    const std::uint8_t shape = input.TakeByte();
    if (shape % 8 == 0) // cut within the flat part
        return Pattern(input.Take<std::uint16_t>(), shape);
    Bytes file(static_cast<std::size_t>(flat));
    const Bytes end = Pattern(kBlock, shape);
    std::copy(end.begin(), end.end(), file.end() - static_cast<std::ptrdiff_t>(end.size()));
    const std::uint32_t blocks = shape % 8 == 1 ? 0 : 1 + input.TakeBelow(10);
    const std::uint16_t filled = input.Take<std::uint16_t>();
    for (std::uint32_t i = 0; i < blocks; ++i) {
        const Bytes block =
            i > 0 && (filled >> i & 1) != 0 ? Pattern(kBlock, static_cast<std::uint8_t>(i)) : Bytes(kBlock);
        file.insert(file.end(), block.begin(), block.end());
    }
    for (std::uint32_t edits = blocks == 0 ? 0 : input.TakeBelow(16); edits > 0; --edits) {
        const std::uint64_t table = flat + kBlock * input.TakeBelow(blocks);
        const std::uint64_t index = input.TakeFlag() ? input.TakeBelow(1024) : input.TakeBelow(20);
        const std::uint32_t entry = TakeEntry(input, flat);
        for (std::uint64_t i = 0; i < 4; ++i)
            file[static_cast<std::size_t>(table + 4 * index + i)] = static_cast<std::byte>(entry >> (8 * i));
    }
    if (shape % 8 == 2)
        file.resize(file.size() - input.Take<std::uint16_t>() % kBlock);
    return file;
}

/// A word address near one where something changes, or any.
std::int64_t TakeWord(CFuzzInput& input, PagedKind kind)
{
    const auto flat = static_cast<std::int64_t>(CPlainPagedFile::FlatBytes(kind));
    const std::uint8_t where = input.TakeByte();
    const std::int64_t near = input.Take<std::int16_t>();
    switch (where % 8) {
    case 0:
        return near;
    case 1:
    case 2:
        return flat / 2 + near % 64;
    case 3:
        return flat / 2 + where / 8 * std::int64_t{2048} + near % 2048;
    case 4:
    case 5:
        return where / 8 * std::int64_t{2097152} + near; // a table ends, another begins
    case 6:
        return std::int64_t{2147483648} + near % 64;
    default:
        return input.Take<std::int64_t>();
    }
}

Work TakeWork(CFuzzInput& input, PagedKind kind)
{
    const std::uint8_t shape = input.TakeByte();
    const std::int64_t word = TakeWord(input, kind);
    const std::uint16_t count = shape / 2 % 4 == 0 ? input.Take<std::uint16_t>() % 9000 : input.TakeByte();
    return {shape % 2 != 0, word, 2 * static_cast<std::uint64_t>(word), Pattern(count, shape)};
}

/// Requires that of the bytes in `before` only those that hold the stretch differ in `after`, and entries that led
/// nowhere.
void RequireUntouched(const CPlainPagedFile& before, const CPlainPagedFile& after, const Work& work,
                      std::vector<std::uint64_t> tables)
{
    Bytes content = after.Content();
    Require(content.size() >= before.Content().size(), "a file never gets shorter");
    content.resize(before.Content().size());
    const auto takeBack = [&](std::uint64_t place) {
        if (place < content.size())
            content[static_cast<std::size_t>(place)] = before.Content()[static_cast<std::size_t>(place)];
    };
    if (work.isWrite)
        for (std::uint64_t address = work.first; address < work.first + work.bytes.size(); ++address)
            takeBack(after.PlaceOf(address).value());
    for (const std::uint64_t table : tables)
        for (std::uint64_t index = 0; index < 1024; ++index)
            if (before.Entry(table, index) == 0)
                for (std::uint64_t i = 0; i < 4; ++i)
                    takeBack(table + 4 * index + i);
    Require(AreSame(content, before.Content()), "what lies outside the stretch stays as it was");
}

/// Requires that the pages in which the stretch begins and ends show what they showed, outside of it.
void RequireSameAround(const CPlainPagedFile& before, const CPlainPagedFile& after, const Work& work)
{
    const std::uint64_t begin = work.first - work.first % kBlock;
    const std::uint64_t end = work.first + work.bytes.size();
    const std::uint64_t behind = (kBlock - end % kBlock) % kBlock;
    Require(before.Logical(begin, work.first - begin) == after.Logical(begin, work.first - begin),
            "the words before the stretch stay as they were");
    Require(before.Logical(end, behind) == after.Logical(end, behind), "the words after the stretch stay as they were");
}

/// Requires that whoever only reads gets the same bytes, and changes nothing.
void RequireReadOnly(const std::filesystem::path& path, PagedKind kind, const Work& work, bool isSound,
                     const CPlainPagedFile& before)
{
    Bytes bytes = work.bytes;
    CPagedReader reader;
    Require(reader.Open(path, kind), "a file that is there can be opened to read");
    Require(reader.Read(WordAddress(work.word), bytes) == isSound,
            "a read is refused when, and only when, the way is damaged");
    Require(!isSound || bytes == before.Logical(work.first, bytes.size()), "what is read is what the file holds");
    Require(AreSame(FileContent(path), before.Content()), "whoever only reads changes nothing");
}

/// Does the work by one call and requires all that is promised of it; false when the file refused it.
bool DoAsDescribed(const std::filesystem::path& path, PagedKind kind, const Work& work)
{
    const CPlainPagedFile before(FileContent(path), kind);
    const bool hasAddress = work.word >= 0 && work.word <= std::int64_t{2147483648};
    const auto tables = hasAddress ? before.TablesOf(work.first, work.bytes.size()) : std::nullopt;
    RequireReadOnly(path, kind, work, tables.has_value(), before);
    Bytes bytes = work.bytes;
    CPagedFile file;
    Require(file.Open(path, kind), "a file that is there can be opened");
    const bool done = work.isWrite ? file.Write(WordAddress(work.word), bytes) && file.Close()
                                   : file.Read(WordAddress(work.word), bytes);
    Require(done == tables.has_value(), "work is refused when, and only when, the way to a word is damaged");

    const CPlainPagedFile after(FileContent(path), kind);
    if (!done) {
        Require(AreSame(after.Content(), before.Content()), "refused work changes nothing");
        return false;
    }
    const Bytes wanted = work.isWrite ? work.bytes : before.Logical(work.first, work.bytes.size());
    Require(bytes == wanted, "what is read is what the file holds");
    Require(after.Logical(work.first, work.bytes.size()) == wanted,
            "what was written is there, what was read still is");
    Require(after.TablesOf(work.first, work.bytes.size()).has_value(), "a sound way stays sound");
    RequireUntouched(before, after, work, *tables);
    RequireSameAround(before, after, work);
    return true;
}

} // namespace

void FuzzPaged(FuzzBytes bytes)
{
    CFuzzInput input(bytes);
    const PagedKind kind = input.TakeByte() == 255 ? kErp : kFrp; // the longer file takes longer;
    const Bytes start = TakeFile(input, kind);
    const auto path = ScratchFolder() / "alone.paged";
    const auto openPath = ScratchFolder() / "open.paged";
    PutFile(path, start);
    PutFile(openPath, start);

    // The second file stays open over all the work. In a sound one that makes no difference.
    const std::uint64_t flat = CPlainPagedFile::FlatBytes(kind);
    const bool isSound = CPlainPagedFile(start, kind).TablesOf(flat, kAddressEnd - flat).has_value();
    CPagedFile open;
    Require(open.Open(openPath, kind), "a file that is there can be opened");
    for (std::uint32_t works = 1 + input.TakeBelow(4); works > 0; --works) {
        const Work work = TakeWork(input, kind);
        if (!DoAsDescribed(path, kind, work))
            return;
        Bytes room = work.bytes;
        if (isSound)
            Require(work.isWrite ? open.Write(WordAddress(work.word), room) : open.Read(WordAddress(work.word), room),
                    "work goes on in one open");
    }
    if (isSound)
        Require(open.Close() && AreSame(FileContent(openPath), FileContent(path)),
                "one open gives the bytes that many give");
}
