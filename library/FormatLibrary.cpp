#include "library/FormatLibrary.h"

#include "disk/File.h"
#include "disk/Replacement.h"
#include "model/LittleEndian.h"
#include "text/NumberText.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::int32_t kStartMark = 100;
constexpr std::int32_t kEndMark = 200;
constexpr std::size_t kMarkerSize = 32; ///< bytes of the marker with its zeros
constexpr std::size_t kMarkerLength = kMarkerSize / sizeof(char16_t);
constexpr std::size_t kRecordHeadSize = 264; ///< start mark, name and item count
constexpr std::size_t kMarkSize = 4;
constexpr std::size_t kSettingsSize = 40; ///< both numbers and the pattern

/// Little-endian fields put one after another.
class CFieldWriter {
public:
    void Put32(std::int32_t value) { Put(static_cast<std::uint32_t>(value)); }
    void Put64(std::int64_t value) { Put(static_cast<std::uint64_t>(value)); }

    template <std::size_t N>
    void PutText(const FixedText<N>& text)
    {
        for (const char16_t unit : text)
            Put(static_cast<std::uint16_t>(unit));
    }

    const std::vector<std::byte>& Bytes() const { return m_bytes; }

private:
    template <class Value>
    void Put(Value value)
    {
        std::array<std::byte, sizeof(Value)> bytes;
        StoreLittleEndian(bytes, value);
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    }

    std::vector<std::byte> m_bytes;
};

/// The same fields taken from a buffer that holds them all.
class CFieldReader {
public:
    explicit CFieldReader(std::span<const std::byte> bytes) : m_bytes(bytes) {}

    std::int32_t Take32() { return static_cast<std::int32_t>(Take<std::uint32_t>()); }
    std::int64_t Take64() { return static_cast<std::int64_t>(Take<std::uint64_t>()); }

    template <std::size_t N>
    FixedText<N> TakeText()
    {
        FixedText<N> text;
        for (char16_t& unit : text)
            unit = static_cast<char16_t>(Take<std::uint16_t>());
        return text;
    }

private:
    template <class Value>
    Value Take()
    {
        const auto value = LoadLittleEndian<Value>(m_bytes);
        m_bytes = m_bytes.subspan(sizeof(Value));
        return value;
    }

    std::span<const std::byte> m_bytes;
};

void PutItem(CFieldWriter& out, const DataItem& item)
{
    out.Put32(item.reserved0);
    out.Put32(item.dataLength);
    out.Put32(static_cast<std::int32_t>(item.dataType));
    out.Put32(item.integerDigits);
    out.Put32(item.decimalDigits);
    out.Put32(static_cast<std::int32_t>(item.codeType));
    out.PutText(item.description);
    out.Put32(item.isArray);
    out.Put32(item.reserved1);
    out.Put32(item.reserved2);
    out.Put32(item.arrayLength);
    out.Put64(item.minValue);
    out.Put64(item.maxValue);
    out.Put32(item.unicode);
    out.Put32(0); // padding
}

/// The fields that the records of all versions hold.
DataItem TakeCommonFields(CFieldReader& in)
{
    DataItem item;
    item.reserved0 = in.Take32();
    item.dataLength = in.Take32();
    item.dataType = static_cast<DataType>(in.Take32());
    item.integerDigits = in.Take32();
    item.decimalDigits = in.Take32();
    item.codeType = static_cast<CodeType>(in.Take32());
    item.description = in.TakeText<128>();
    item.isArray = in.Take32();
    item.reserved1 = in.Take32();
    item.reserved2 = in.Take32();
    item.arrayLength = in.Take32();
    item.minValue = in.Take64();
    item.maxValue = in.Take64();
    return item;
}

DataItem TakeItem(CFieldReader& in)
{
    DataItem item = TakeCommonFields(in);
    item.unicode = in.Take32();
    return item;
}

DataItem TakeOldItem(CFieldReader& in)
{
    const DataItem old = TakeCommonFields(in);
    DataItem item = old;
    SetText(item.description, TextOf(old.description));
    item.arrayLength = static_cast<std::int32_t>(old.codeType); // kept: not from the old arrayLength
    return item;
}

void PutSettings(CFieldWriter& out, const FormatLibrary& library)
{
    out.Put32(library.startAddress);
    out.Put32(library.rowCount);
    out.PutText(library.filePattern);
}

void PutFormat(CFieldWriter& out, const DataFormat& format)
{
    const std::size_t count = format.savedItemCount();
    out.Put32(kStartMark);
    out.PutText(format.name);
    out.Put32(static_cast<std::int32_t>(count));
    for (std::size_t i = 0; i < count; ++i)
        PutItem(out, *format.items[i]);
    out.Put32(kEndMark);
}

std::vector<std::byte> StoredBytes(const FormatLibrary& library)
{
    FixedText<kMarkerLength> marker;
    SetText(marker, FormatLibrary::kMarker);
    CFieldWriter out;
    out.PutText(marker);
    PutSettings(out, library);
    for (const auto& format : library.formats)
        PutFormat(out, *format);
    return out.Bytes();
}

/// The version that a library file's first 32 bytes tell: 0 without the marker.
std::int32_t VersionIn(std::u16string_view marker)
{
    constexpr std::size_t kVersionTail = 2; // ".0"
    constexpr auto kName = FormatLibrary::kMarker.substr(0, FormatLibrary::kMarker.size() - kVersionTail);
    if (marker.size() != FormatLibrary::kMarker.size() || !marker.starts_with(kName))
        return 0;
    return TruncateTo32(ReadDecimal(marker.substr(marker.size() - kVersionTail - 1)) * 10);
}

/// A library file being read from front to back.
class CLibraryInput {
public:
    explicit CLibraryInput(const CFile& file) : m_file(file)
    {
        const auto size = file.Size();
        m_length = static_cast<std::int64_t>(size.value_or(0));
        m_hasFailed = !size;
    }

    std::int64_t Length() const { return m_length; }
    std::int64_t Position() const { return m_position; }
    std::int64_t Left() const { return m_length - m_position; }

    /// Whether the disk has failed, so that what was read since is not what the file holds.
    bool HasFailed() const { return m_hasFailed; }

    void MoveTo(std::int64_t position)
    {
        m_position = position;
        m_held = {};
    }

    /// Reads as much of `bytes` as there is and leaves the rest of them as it was; the position moves on by the length
    /// of all.
    bool Read(std::span<std::byte> bytes)
    {
        while (!bytes.empty() && Fetch()) {
            const auto taken = m_held.first(std::min(m_held.size(), bytes.size()));
            std::copy(taken.begin(), taken.end(), bytes.begin());
            m_held = m_held.subspan(taken.size());
            m_position += static_cast<std::int64_t>(taken.size());
            bytes = bytes.subspan(taken.size());
        }
        m_position += static_cast<std::int64_t>(bytes.size());
        return bytes.empty();
    }

private:
    /// Sees to it that bytes at the position are held; false when there are none.
    bool Fetch()
    {
        if (!m_held.empty())
            return true;
        const auto length = m_file.ReadAt(static_cast<std::uint64_t>(m_position), m_piece);
        m_hasFailed = m_hasFailed || !length;
        m_held = std::span(m_piece).first(length.value_or(0));
        return !m_held.empty();
    }

    const CFile& m_file;
    std::array<std::byte, 65536> m_piece;
    std::span<const std::byte> m_held; ///< the part of it that begins at the position
    std::int64_t m_length = 0;
    std::int64_t m_position = 0;
    bool m_hasFailed = false;
};

std::int32_t ReadVersion(CLibraryInput& file)
{
    std::array<std::byte, kMarkerSize> bytes{};
    file.Read(bytes);
    const auto marker = CFieldReader(bytes).TakeText<kMarkerLength>();
    return VersionIn(TextOf(marker));
}

/// A setting that a short file does not hold stays as it was.
void ReadSettings(CLibraryInput& file, FormatLibrary& library)
{
    CFieldWriter current;
    PutSettings(current, library);
    std::vector<std::byte> bytes = current.Bytes();
    file.Read(bytes);
    if (file.HasFailed())
        return;
    CFieldReader in(bytes);
    library.startAddress = in.Take32();
    library.rowCount = in.Take32();
    library.filePattern = in.TakeText<16>();
}

/// Reads the format records of one file.
class CFormatInput {
public:
    CFormatInput(CLibraryInput& file, const FormatLibrary& library)
        : m_file(file),
          m_isOlder(library.programVersion > library.fileVersion),
          m_isLater(library.programVersion < library.fileVersion),
          m_itemSize(StoredItemSize(m_isOlder ? 0 : library.programVersion).value())
    {
    }

    /// The next record; nothing for a bad one.
    std::unique_ptr<DataFormat> ReadFormat()
    {
        std::array<std::byte, kRecordHeadSize> head{};
        if (!m_file.Read(head))
            return nullptr;
        CFieldReader in(head);
        if (in.Take32() != kStartMark)
            return nullptr;
        auto format = std::make_unique<DataFormat>(ReadName(in));
        format->itemCount = in.Take32();
        return ReadItems(*format) && ReadEndMark() ? std::move(format) : nullptr;
    }

private:
    static std::u16string ReadName(CFieldReader& in)
    {
        const auto name = in.TakeText<128>();
        return std::u16string(CutText(TextOf(name), kReadNameLength));
    }

    bool ReadItems(DataFormat& format)
    {
        const std::int64_t size = static_cast<std::int64_t>(m_itemSize) * std::max(format.itemCount, 0);
        if (size > m_file.Left() - static_cast<std::int64_t>(kMarkSize))
            return false; // the end mark would be missing: not worth reading up to there
        if (m_isLater) {
            m_file.MoveTo(m_file.Position() + size); // records of an unknown form
            return true;
        }
        for (std::int32_t i = 0; i < format.itemCount; ++i)
            format.items.push_back(std::make_unique<DataItem>(ReadItem()));
        return true;
    }

    DataItem ReadItem()
    {
        std::vector<std::byte> bytes(m_itemSize);
        m_file.Read(bytes);
        CFieldReader in(bytes);
        return m_isOlder ? TakeOldItem(in) : TakeItem(in);
    }

    bool ReadEndMark()
    {
        std::array<std::byte, kMarkSize> mark{};
        return m_file.Read(mark) && CFieldReader(mark).Take32() == kEndMark;
    }

    CLibraryInput& m_file;
    bool m_isOlder;
    bool m_isLater;
    std::size_t m_itemSize;
};

/// Reads what follows the marker: the file's length, -1 when a format record is bad.
std::int64_t ReadContent(CLibraryInput& file, FormatLibrary& library)
{
    file.MoveTo(library.fileVersion != 0 ? static_cast<std::int64_t>(kMarkerSize) : 0);
    ReadSettings(file, library);
    CFormatInput input(file, library);
    while (file.Left() != 0) {
        auto format = input.ReadFormat();
        if (!format)
            return -1;
        library.formats.push_back(std::move(format));
    }
    return file.Length();
}

/// What the file at `path` holds, where that is `size` bytes; else nothing.
std::vector<std::byte> BytesAt(const fs::path& path, std::size_t size)
{
    const CFile file(path, CFile::Mode::Read);
    if (file.Size() != size)
        return {};
    std::vector<std::byte> bytes(size);
    return file.ReadAt(0, bytes) == size ? bytes : std::vector<std::byte>();
}

} // namespace

std::int32_t FormatLibrary::ProgramVersion()
{
    return TruncateTo32(ReadDecimal(kMarker.substr(kMarker.size() - 3)) * 10);
}

std::int64_t FormatLibrary::load(const fs::path& libraryPath)
{
    path = libraryPath;
    forget();
    return read(CFile(path, CFile::Mode::OpenOrCreate));
}

std::int64_t FormatLibrary::loadReadOnly(const fs::path& libraryPath)
{
    path = libraryPath;
    forget();
    return read(CFile(path, CFile::Mode::Read));
}

void FormatLibrary::forget()
{
    formats.clear();
    versionsKnown = false;
}

std::int64_t FormatLibrary::read(const CFile& libraryFile)
{
    if (!libraryFile.IsOpen())
        return -1;
    CLibraryInput file(libraryFile);
    fileVersion = ReadVersion(file);
    programVersion = ProgramVersion();
    versionsKnown = true;
    const std::int64_t result = file.Length() == 0 ? 0 : ReadContent(file, *this);
    if (!file.HasFailed())
        return result;
    forget();
    return -1;
}

int FormatLibrary::save(const fs::path& libraryPath) const
{
    const std::vector<std::byte> bytes = StoredBytes(*this);
    if (BytesAt(libraryPath, bytes.size()) == bytes)
        return 0;
    CReplacement file(libraryPath);
    return file.IsOpen() && file.Append(bytes) && file.Finish() ? 0 : -1;
}

bool FormatLibrary::isSavedAt(const fs::path& libraryPath) const
{
    const std::vector<std::byte> bytes = StoredBytes(*this);
    return BytesAt(libraryPath, bytes.size()) == bytes;
}

bool FormatLibrary::hasFormatsOf(const fs::path& libraryPath) const
{
    const std::vector<std::byte> bytes = StoredBytes(*this);
    std::vector<std::byte> held = BytesAt(libraryPath, bytes.size());
    if (held.size() != bytes.size())
        return false;
    const auto settings = bytes.begin() + static_cast<std::ptrdiff_t>(kMarkerSize);
    std::copy(settings, settings + static_cast<std::ptrdiff_t>(kSettingsSize),
              held.begin() + static_cast<std::ptrdiff_t>(kMarkerSize));
    return held == bytes;
}

fs::path LibraryPathBeside(const fs::path& executable, CReporter& reporter)
{
    const fs::path::string_type& name = executable.native();
    const std::size_t separator = name.rfind(fs::path::preferred_separator);
    if (separator == fs::path::string_type::npos) {
        reporter.ShowError(u"Open Recipe FormatData file Error!");
        return fs::path::string_type(name.rbegin(), name.rend());
    }
    return fs::path(name.substr(0, separator + 1)) / FormatLibrary::kFileName;
}
