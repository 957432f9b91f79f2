#include "tests/changes/RandomPair.h"

#include "files/PagedFile.h"
#include "files/PagedRecipeFile.h"
#include "files/RecipeFile.h"
#include "tests/support/Formats.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace fs = std::filesystem;

namespace {

constexpr const char* kExtensions[] = {".rcp", ".csv", ".erp", ".frp"};

} // namespace

CRandomPair::CRandomPair(unsigned seed, FileType type)
    : m_type(type),
      m_random(seed),
      m_before(m_folder / (std::string("a") + kExtensions[static_cast<int>(type)])),
      m_after(m_folder / (std::string("b") + kExtensions[static_cast<int>(type)]))
{
    MakeTables();
    if (type == FileType::Csv)
        MakeTexts();
    else
        MakeWords();
}

void CRandomPair::MakeTables()
{
    static constexpr std::array<int, 9> kWords{1, 2, 1, 2, 1, 2, 2, 4, 3};
    std::int32_t start = Below(30);
    if (IsPaged(m_type) && Below(2) == 0) // over the end of the flat part
        start = static_cast<std::int32_t>(FlatBytes(KindOf(m_type)) / 2) - Below(60);
    for (int count = Below(3); count >= 0 && (m_tables.empty() || m_type != FileType::Csv); --count) {
        std::vector<DataItem> items;
        for (int i = Below(5); i >= 0; --i) {
            const int type = Below(9);
            DataItem item = MakeItem(u"Item", static_cast<DataType>(type), kWords[static_cast<std::size_t>(type)],
                                     1 + Below(5), Below(3));
            item.unicode = Below(2);
            if (Below(10) == 0)
                item.dataLength += 1;
            items.push_back(item);
        }
        m_tables.push_back(MakeTable(MakeFormat(u"Random", items), start, 1 + Below(12)));
        start += Below(80); // into the one before, or after it
    }
}

std::byte CRandomPair::RandomByte()
{
    switch (Below(4)) {
    case 0:
    case 1:
        return std::byte{0};
    case 2:
        return static_cast<std::byte>(0x41 + Below(26));
    default:
        return static_cast<std::byte>(Below(256));
    }
}

Bytes CRandomPair::Changed(Bytes bytes)
{
    for (int changes = Below(5); changes > 0 && !bytes.empty(); --changes) {
        const auto place = static_cast<std::size_t>(Below(static_cast<int>(bytes.size())));
        const auto length = std::min<std::size_t>(static_cast<std::size_t>(Below(60)), bytes.size() - place);
        for (std::size_t i = 0; i < length; ++i)
            bytes[place + i] = RandomByte();
    }
    const std::size_t old = bytes.size();
    if (Below(2) == 0)
        bytes.resize(static_cast<std::size_t>(Below(600)));
    for (std::size_t i = old; i < bytes.size(); ++i)
        bytes[i] = RandomByte();
    return bytes;
}

void CRandomPair::MakeWords()
{
    Bytes bytes(static_cast<std::size_t>(Below(500)));
    for (std::byte& byte : bytes)
        byte = RandomByte();
    const Bytes changed = Changed(bytes);
    if (!IsPaged(m_type)) {
        WriteAll(m_before, bytes);
        WriteAll(m_after, changed);
        return;
    }
    const std::int64_t first = Below(m_tables.front().layout.StartAddress() + 1);
    WritePages(m_before, bytes, first);
    WritePages(m_after, changed, Below(4) == 0 ? Below(m_tables.front().layout.StartAddress() + 1) : first);
}

void CRandomPair::WritePages(const fs::path& path, const Bytes& bytes, std::int64_t first) const
{
    Bytes words = bytes;
    words.resize(words.size() / 2 * 2);
    WriteAll(path, {});
    EXPECT_TRUE(PagedWrite(path, WordAddress(first), words.size() / 2, words, KindOf(m_type)));
}

/// As a save leaves a line, or one that ends otherwise.
std::u16string CRandomPair::RandomLine(int fields)
{
    static const std::array<std::u16string, 7> values{u"5", u"1.50", u"AB", u"", u"0", u"-7", u"\u4E2D"};
    std::u16string line;
    for (int field = 0; field < fields; ++field) {
        line += field == 0 ? u"" : u"\t";
        line += u'"' + values[static_cast<std::size_t>(Below(7))] + u'"';
    }
    return line;
}

/// Both in the form that Save writes.
void CRandomPair::MakeTexts()
{
    std::vector<std::u16string> lines;
    for (int count = Below(14); count > 0; --count)
        lines.push_back(RandomLine(1 + Below(7)));
    const auto write = [&lines](const fs::path& path) {
        std::u16string text;
        for (const std::u16string& line : lines)
            text += line + u"\r\n";
        WriteAll(path, Utf16File(text));
    };
    write(m_before);
    for (int changes = Below(4); changes > 0 && !lines.empty(); --changes)
        lines[static_cast<std::size_t>(Below(static_cast<int>(lines.size())))] = RandomLine(1 + Below(7));
    if (Below(2) == 0) {
        const auto old = lines.size();
        lines.resize(static_cast<std::size_t>(Below(14)));
        for (auto i = old; i < lines.size(); ++i)
            lines[i] = RandomLine(1 + Below(7));
    }
    write(m_after);
}

Bytes LogicalContent(FileType type, const fs::path& path)
{
    if (!IsPaged(type))
        return ReadAll(path);
    Bytes bytes(LogicalBytes(type, path).value());
    bytes.resize((bytes.size() + 1) / 2 * 2);
    CPagedReader file;
    EXPECT_TRUE(file.Open(path, KindOf(type)) && file.Read(WordAddress(0), bytes));
    const auto isNotZero = [](std::byte b) { return b != std::byte{0}; };
    bytes.erase(std::find_if(bytes.rbegin(), bytes.rend(), isNotZero).base(), bytes.end());
    return bytes;
}
