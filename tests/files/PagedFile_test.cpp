#include "files/PagedFile.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kFrpFlat = 65536;
constexpr std::size_t kErpFlat = 1048576;

/// The word at a byte of `bytes`.
std::uint32_t WordAt(const Bytes& bytes, std::size_t pos)
{
    return std::to_integer<std::uint32_t>(bytes.at(pos)) | std::to_integer<std::uint32_t>(bytes.at(pos + 1)) << 8;
}

struct PagedFile : testing::Test {
    void Write(std::int64_t wordAddress, std::initializer_list<std::uint16_t> words, PagedKind kind = kFrp)
    {
        EXPECT_TRUE(PagedWrite(path, WordAddress(wordAddress), words.size(), WordBytes(words), kind));
    }

    Bytes Read(std::int64_t wordAddress, std::size_t wordCount, PagedKind kind = kFrp)
    {
        Bytes bytes(2 * wordCount, std::byte{0xEE});
        EXPECT_TRUE(PagedRead(path, WordAddress(wordAddress), wordCount, bytes, kind));
        return bytes;
    }

    CTempFolder folder;
    fs::path path = folder / "a.frp";
};

TEST_F(PagedFile, FirstWordBeyondTheFlatPartMakesDirectoryTableAndPage)
{
    WriteAll(path, Bytes(kFrpFlat));
    Write(40000, {0x1234}); // byte 80000 = 19 * 4096 + 2176
    const Bytes bytes = ReadAll(path);
    ASSERT_EQ(bytes.size(), 77824u);
    EXPECT_EQ(LoadLE32(bytes, 65536), 69632);
    EXPECT_EQ(LoadLE32(bytes, 69632 + 4 * 19), 73728);
    EXPECT_EQ(WordAt(bytes, 73728 + 2176), 0x1234u);

    Bytes rest = bytes;
    for (const std::size_t pos : {65537U, 65538U, 69709U, 69710U, 75904U, 75905U})
        rest[pos] = std::byte{0};
    EXPECT_EQ(rest, Bytes(77824)) << "all else is zero";
    EXPECT_EQ(Read(40000, 1), WordBytes({0x1234}));
}

TEST_F(PagedFile, LargerKindHasALargerFlatPart)
{
    WriteAll(path, {});
    Write(40000, {0x1234}, kErp);
    EXPECT_EQ(ReadAll(path).size(), 80002u);
    Write(524288, {0x5678}, kErp); // byte 1048576 = 256 * 4096
    const Bytes bytes = ReadAll(path);
    ASSERT_EQ(bytes.size(), kErpFlat + 3 * 4096);
    EXPECT_EQ(WordAt(bytes, 80000), 0x1234u);
    EXPECT_EQ(LoadLE32(bytes, 1048576), 1052672);
    EXPECT_EQ(LoadLE32(bytes, 1052672 + 4 * 256), 1056768);
    EXPECT_EQ(WordAt(bytes, 1056768), 0x5678u);
}

TEST_F(PagedFile, LastWordOfTheFlatPartMakesNoDirectory)
{
    WriteAll(path, {});
    Write(32767, {0x1234});
    const Bytes bytes = ReadAll(path);
    ASSERT_EQ(bytes.size(), kFrpFlat);
    EXPECT_EQ(WordAt(bytes, 65534), 0x1234u);
}

TEST_F(PagedFile, ValueAcrossTheEndOfTheFlatPartIsSplit)
{
    WriteAll(path, {});
    Write(32767, {0x1111, 0x2222}); // bytes 65534 to 65537
    const Bytes bytes = ReadAll(path);
    ASSERT_EQ(bytes.size(), 77824u);
    EXPECT_EQ(WordAt(bytes, 65534), 0x1111u);
    EXPECT_EQ(LoadLE32(bytes, 65536), 69632);
    EXPECT_EQ(LoadLE32(bytes, 69632 + 4 * 16), 73728);
    EXPECT_EQ(WordAt(bytes, 73728), 0x2222u);
    EXPECT_EQ(Read(32767, 2), WordBytes({0x1111, 0x2222}));
}

TEST_F(PagedFile, ValueAcrossPagesIsSplit)
{
    WriteAll(path, {});
    Write(34815, {0x1111, 0x2222}); // the last word of page 16 and the first of page 17
    const Bytes bytes = ReadAll(path);
    ASSERT_EQ(bytes.size(), kFrpFlat + 4 * 4096);
    EXPECT_EQ(LoadLE32(bytes, 69632 + 4 * 16), 73728);
    EXPECT_EQ(LoadLE32(bytes, 69632 + 4 * 17), 77824);
    EXPECT_EQ(WordAt(bytes, 73728 + 4094), 0x1111u);
    EXPECT_EQ(WordAt(bytes, 77824), 0x2222u);
}

TEST_F(PagedFile, TablesAndPagesLieInTheOrderInWhichTheyCameToBe)
{
    WriteAll(path, {});
    Write(3 * 2097152, {0x3333});     // directory entry 3, table entry 0
    Write(40000, {0x1111});           // directory entry 0, table entry 19
    Write(3 * 2097152 + 1, {0x4444}); // the first page again
    const Bytes bytes = ReadAll(path);
    ASSERT_EQ(bytes.size(), kFrpFlat + 5 * 4096);
    EXPECT_EQ(LoadLE32(bytes, 65536 + 4 * 3), 69632);
    EXPECT_EQ(LoadLE32(bytes, 69632), 73728);
    EXPECT_EQ(LoadLE32(bytes, 65536), 77824);
    EXPECT_EQ(LoadLE32(bytes, 77824 + 4 * 19), 81920);
    EXPECT_EQ(WordAt(bytes, 73728), 0x3333u);
    EXPECT_EQ(WordAt(bytes, 73730), 0x4444u);
    EXPECT_EQ(WordAt(bytes, 81920 + 2176), 0x1111u);
}

struct AddressCase {
    const char* name;
    std::int64_t wordAddress;
    std::size_t directoryIndex;
    std::size_t tableIndex;
    std::size_t offset;
    friend void PrintTo(const AddressCase& c, std::ostream* out) { *out << c.name; }
};

struct PagedAddress : PagedFile, testing::WithParamInterface<AddressCase> {};

TEST_P(PagedAddress, LeadsThroughDirectoryAndTable)
{
    WriteAll(path, {});
    Write(GetParam().wordAddress, {0xABCD});
    const Bytes bytes = ReadAll(path);
    ASSERT_EQ(bytes.size(), 77824u);
    EXPECT_EQ(LoadLE32(bytes, 65536 + 4 * GetParam().directoryIndex), 69632);
    EXPECT_EQ(LoadLE32(bytes, 69632 + 4 * GetParam().tableIndex), 73728);
    EXPECT_EQ(WordAt(bytes, 73728 + GetParam().offset), 0xABCDu);
    EXPECT_EQ(Read(GetParam().wordAddress, 1), WordBytes({0xABCD}));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, PagedAddress, testing::Values(
    //          name                    word         directory  table  offset
    AddressCase{"FirstPagedWord",       32768,       0,         16,    0},
    AddressCase{"LastWordOfAPage",      34815,       0,         16,    4094},
    AddressCase{"LastWordOfATable",     2097151,     0,         1023,  4094},
    AddressCase{"FirstOfTheNextTable",  2097152,     1,         0,     0},
    AddressCase{"BelowTheTopBit",       0x3FFFFFFF,  511,       1023,  4094},
    AddressCase{"TopBit",               0x40000000,  512,       0,     0},
    AddressCase{"LastWordOfAll",        0x7FFFFFFF,  1023,      1023,  4094}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(PagedFile, ShortFileGrowsExactlyToTheValue)
{
    WriteAll(path, BytesOf({1, 2, 3}));
    Write(20000, {0x1234}); // more than two blocks of zeros
    Bytes expected = BytesOf({1, 2, 3});
    expected.resize(40002);
    expected[40000] = std::byte{0x34};
    expected[40001] = std::byte{0x12};
    EXPECT_EQ(ReadAll(path), expected);
}

TEST_F(PagedFile, WordsAroundAreKept)
{
    WriteAll(path, WordBytes({1, 2, 3, 4}));
    Write(1, {9, 8});
    EXPECT_EQ(ReadAll(path), WordBytes({1, 9, 8, 4}));
}

TEST_F(PagedFile, SingleBytesAreWrittenAndRead)
{
    WriteAll(path, {});
    CPagedFile file;
    ASSERT_TRUE(file.Open(path, kFrp));
    for (const std::int64_t address : {10, 40000}) {
        Bytes byte = BytesOf({0});
        EXPECT_TRUE(file.Write(WordAddress(address), BytesOf({0x12})));
        EXPECT_TRUE(file.Read(WordAddress(address), byte));
        EXPECT_EQ(byte, BytesOf({0x12})) << address;
    }
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(ReadAll(path).size(), 77824u);
}

TEST_F(PagedFile, NoWordsWriteNothing)
{
    WriteAll(path, {});
    Write(40000, {});
    EXPECT_EQ(ReadAll(path), Bytes());
}

TEST_F(PagedFile, ReadingPastTheEndOfTheFlatPartGivesZerosAndLeavesTheFile)
{
    WriteAll(path, BytesOf({1, 2, 3}));
    EXPECT_EQ(Read(0, 4), BytesOf({1, 2, 3, 0, 0, 0, 0, 0}));
    EXPECT_EQ(Read(32767, 2), Bytes(4));
    EXPECT_EQ(Read(40000, 1), Bytes(2));
    EXPECT_EQ(ReadAll(path), BytesOf({1, 2, 3}));
}

TEST_F(PagedFile, ReadingAFileOfTheFlatPartAloneMakesNoDirectory)
{
    WriteAll(path, Bytes(kFrpFlat));
    EXPECT_EQ(Read(40000, 1), Bytes(2));
    EXPECT_EQ(ReadAll(path), Bytes(kFrpFlat));
}

TEST_F(PagedFile, ReadingALongerFileMakesTablesAndPages) // kept
{
    WriteAll(path, Bytes(kFrpFlat + 4096));
    EXPECT_EQ(Read(40000, 1), Bytes(2));
    const Bytes bytes = ReadAll(path);
    ASSERT_EQ(bytes.size(), 77824u);
    EXPECT_EQ(LoadLE32(bytes, 65536), 69632);
    EXPECT_EQ(LoadLE32(bytes, 69632 + 4 * 19), 73728);
}

TEST_F(PagedFile, PageAppendedToAnOddEndIsFoundThere)
{
    WriteAll(path, {});
    Write(40000, {0x1234});
    Bytes bytes = ReadAll(path);
    bytes.push_back(std::byte{0x77});
    WriteAll(path, bytes);
    Write(32768, {0x5678});
    bytes = ReadAll(path);
    ASSERT_EQ(bytes.size(), 77825u + 4096);
    EXPECT_EQ(LoadLE32(bytes, 69632 + 4 * 16), 77825);
    EXPECT_EQ(WordAt(bytes, 77825), 0x5678u);
    EXPECT_EQ(Read(32768, 1), WordBytes({0x5678}));
    EXPECT_EQ(Read(40000, 1), WordBytes({0x1234}));
}

// Any number of values with one open gives the same as one call a value.

struct Value {
    std::int64_t wordAddress;
    Bytes bytes;
};

/// Values without gaps, as rows lay them, from a place near the end of the flat part, of a table, or of neither.
std::vector<Value> RandomStretch(std::mt19937& random)
{
    constexpr std::int64_t kStarts[] = {0, 32768 - 200, 2097152 - 300, 100000, 0x40000000 - 100};
    std::vector<Value> values;
    std::int64_t address = kStarts[random() % 5] + static_cast<std::int64_t>(random() % 100);
    for (int i = 0; i < 30; ++i) {
        Value value{address, Bytes(2 * (random() % 3 == 0 ? random() % 3000 : random() % 5))};
        for (std::byte& byte : value.bytes)
            byte = static_cast<std::byte>(random());
        address += static_cast<std::int64_t>(value.bytes.size() / 2);
        values.push_back(std::move(value));
    }
    return values;
}

Bytes Joined(const std::vector<Value>& values)
{
    Bytes all;
    for (const Value& value : values)
        all.insert(all.end(), value.bytes.begin(), value.bytes.end());
    return all;
}

struct RandomPagedFile : testing::TestWithParam<unsigned> {
    void StartWith(std::size_t length)
    {
        for (const fs::path& path : {oneByOne, keptOpen, atOnce})
            WriteAll(path, Bytes(length));
    }

    void Write(const std::vector<Value>& values) const
    {
        CPagedFile open;
        ASSERT_TRUE(open.Open(keptOpen, kFrp));
        for (const Value& value : values) {
            ASSERT_TRUE(
                PagedWrite(oneByOne, WordAddress(value.wordAddress), value.bytes.size() / 2, value.bytes, kFrp));
            ASSERT_TRUE(open.Write(WordAddress(value.wordAddress), value.bytes));
        }
        ASSERT_TRUE(open.Close());
        ASSERT_TRUE(open.Open(atOnce, kFrp));
        ASSERT_TRUE(open.Write(WordAddress(values.front().wordAddress), Joined(values)));
        ASSERT_TRUE(open.Close());
    }

    void Read(const std::vector<Value>& values) const
    {
        Bytes read;
        for (const Value& value : values) {
            Bytes bytes(value.bytes.size());
            ASSERT_TRUE(PagedRead(oneByOne, WordAddress(value.wordAddress), bytes.size() / 2, bytes, kFrp));
            read.insert(read.end(), bytes.begin(), bytes.end());
        }
        for (const fs::path& path : {keptOpen, atOnce}) {
            CPagedFile open;
            Bytes together(read.size());
            ASSERT_TRUE(open.Open(path, kFrp) && open.Read(WordAddress(values.front().wordAddress), together));
            ASSERT_TRUE(together == read);
        }
    }

    void ExpectEqualFiles() const
    {
        const Bytes expected = ReadAll(oneByOne);
        EXPECT_TRUE(ReadAll(keptOpen) == expected);
        EXPECT_TRUE(ReadAll(atOnce) == expected);
    }

    CTempFolder folder;
    fs::path oneByOne = folder / "one-by-one.frp";
    fs::path keptOpen = folder / "kept-open.frp";
    fs::path atOnce = folder / "at-once.frp";
};

TEST_P(RandomPagedFile, IsTheSameHoweverItIsWritten)
{
    std::mt19937 random(GetParam());
    constexpr std::size_t kLengths[] = {0, 1000, kFrpFlat - 1, kFrpFlat, kFrpFlat + 4096, kFrpFlat + 4097};
    StartWith(kLengths[random() % 6]);
    for (int round = 0; round < 2; ++round) {
        const auto values = RandomStretch(random);
        Write(values);
        ExpectEqualFiles();
        Read(values);
        Read(RandomStretch(random)); // which makes pages
        ExpectEqualFiles();
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomPagedFile, testing::Range(0U, 12U));

TEST_F(PagedFile, ThatCannotBeOpenedIsLeftAlone)
{
    const Bytes word = WordBytes({1});
    fs::create_directory(folder / "sub");
    ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
    for (const fs::path& bad : {folder / "missing", folder / "sub", folder / "pipe", fs::path()}) {
        EXPECT_FALSE(PagedWrite(bad, WordAddress(0), 1, word, kFrp)) << bad;
        Bytes bytes = BytesOf({7, 7});
        EXPECT_FALSE(PagedRead(bad, WordAddress(0), 1, bytes, kFrp)) << bad;
        EXPECT_EQ(bytes, Bytes(2));
    }
    EXPECT_FALSE(fs::exists(folder / "missing"));
}

TEST_F(PagedFile, ThatCannotBeWrittenCannotBeReadEither) // kept
{
    WriteAll(path, WordBytes({7}));
    fs::permissions(folder.Path(), fs::perms::all);
    fs::permissions(path, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    const COrdinaryUser user;
    Bytes bytes(2);
    EXPECT_FALSE(PagedRead(path, WordAddress(0), 1, bytes, kFrp));
    EXPECT_FALSE(PagedWrite(path, WordAddress(0), 1, bytes, kFrp));
    EXPECT_EQ(ReadAll(path), WordBytes({7}));
}

TEST_F(PagedFile, BufferThatIsTooSmallIsRefused)
{
    WriteAll(path, {});
    Bytes bytes(3);
    EXPECT_FALSE(PagedWrite(path, WordAddress(0), 2, bytes, kFrp));
    EXPECT_FALSE(PagedRead(path, WordAddress(0), 2, bytes, kFrp));
    EXPECT_FALSE(PagedRead(path, WordAddress(0), ~std::size_t{0}, bytes, kFrp));
    EXPECT_EQ(ReadAll(path), Bytes());
}

TEST_F(PagedFile, WordsWithoutAnAddressAreRefused)
{
    WriteAll(path, {});
    CPagedFile file;
    ASSERT_TRUE(file.Open(path, kFrp));
    Bytes two(4);
    for (const std::int64_t address :
         {std::int64_t{-1}, std::int64_t{0x7FFFFFFF}, std::int64_t{0x80000000}, std::int64_t{0x80000001},
          std::int64_t{1} << 40, std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()}) {
        EXPECT_FALSE(file.Write(WordAddress(address), two)) << address;
        EXPECT_FALSE(file.Read(WordAddress(address), two)) << address;
    }
    EXPECT_TRUE(file.Write(WordAddress(0x80000000), {})) << "there is nothing to write";
    EXPECT_FALSE(file.IsSound(WordAddress(0), ~std::uint64_t{0}));
    EXPECT_EQ(ReadAll(path), Bytes());
}

TEST_F(PagedFile, ThatIsNotOpenDoesNothing)
{
    CPagedFile file;
    Bytes bytes = BytesOf({7, 7});
    EXPECT_FALSE(file.IsSound(WordAddress(0), 2));
    EXPECT_FALSE(file.Write(WordAddress(0), bytes));
    EXPECT_FALSE(file.Read(WordAddress(0), bytes));
}

struct LimitCase {
    const char* name;
    rlim_t limit;
    friend void PrintTo(const LimitCase& c, std::ostream* out) { *out << c.name; }
};

struct PagedFullDisk : PagedFile, testing::WithParamInterface<LimitCase> {};

TEST_P(PagedFullDisk, FailsTheWriteAndLeavesTheFileAsItWas)
{
    WriteAll(path, WordBytes({1, 2, 3}));
    {
        const CFileSizeLimit limit(GetParam().limit);
        EXPECT_FALSE(PagedWrite(path, WordAddress(40000), 1, WordBytes({1}), kFrp));
    }
    EXPECT_EQ(ReadAll(path), WordBytes({1, 2, 3}));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, PagedFullDisk, testing::Values(
    LimitCase{"InTheFlatPart",  60000},
    LimitCase{"AtTheDirectory", 65536},
    LimitCase{"AtTheTable",     69632},
    LimitCase{"AtThePage",      77823}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(PagedFile, FullDiskFailsAReadThatMakesPagesAndLeavesTheFileAsItWas)
{
    WriteAll(path, Bytes(kFrpFlat + 4096));
    {
        const CFileSizeLimit limit(kFrpFlat + 4096);
        Bytes bytes(2);
        EXPECT_FALSE(PagedRead(path, WordAddress(40000), 1, bytes, kFrp));
    }
    EXPECT_EQ(ReadAll(path), Bytes(kFrpFlat + 4096));
}

TEST_F(PagedFile, FullDiskTouchesNoOldWordOfAStretchThatNeedsAPage)
{
    WriteAll(path, {});
    Write(32767, {0x1111, 0x2222}); // the last word of the flat part and the first of a page
    const Bytes before = ReadAll(path);
    {
        const CFileSizeLimit limit(before.size() + 4095);
        EXPECT_FALSE(PagedWrite(path, WordAddress(32767), 2050, Bytes(4100, std::byte{7}), kFrp));
    }
    EXPECT_EQ(ReadAll(path), before);
}

TEST_F(PagedFile, RoomChangesNoWord)
{
    WriteAll(path, WordBytes({1, 2, 3}));
    CPagedFile file;
    ASSERT_TRUE(file.Open(path, kFrp));
    EXPECT_TRUE(file.MakeRoom(WordAddress(32767), 4));
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(fs::file_size(path), 77824u);
    EXPECT_EQ(Read(0, 3), WordBytes({1, 2, 3}));
    EXPECT_EQ(Read(32767, 2), WordBytes({0, 0}));
}

TEST_F(PagedFile, EntriesLeadNoFartherThanFourGigabytes)
{
    WriteAll(path, {});
    Write(40000, {0x1234});
    fs::resize_file(path, (std::uint64_t{1} << 32) - 4096);
    Write(32768, {0x5678}); // its page is the last that an entry can lead to
    EXPECT_EQ(fs::file_size(path), std::uint64_t{1} << 32);
    EXPECT_EQ(Read(32768, 1), WordBytes({0x5678}));
    EXPECT_FALSE(PagedWrite(path, WordAddress(50000), 1, WordBytes({1}), kFrp));
    EXPECT_FALSE(PagedWrite(path, WordAddress(3 * 2097152), 1, WordBytes({1}), kFrp)) << "nor does one to a new table";
    EXPECT_EQ(fs::file_size(path), std::uint64_t{1} << 32);
    EXPECT_EQ(Read(40000, 1), WordBytes({0x1234})) << "what is there can be read";
}

TEST_F(PagedFile, EntryMayLeadToTheLastByteThatItCanName)
{
    WriteAll(path, {});
    Write(40000, {0x1234});
    fs::resize_file(path, 0xFFFFFFFF);
    Write(32768, {0x5678});
    EXPECT_EQ(fs::file_size(path), 0xFFFFFFFFU + 4096ULL);
    EXPECT_EQ(Read(32768, 1), WordBytes({0x5678}));
}

} // namespace
