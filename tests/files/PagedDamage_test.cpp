#include "files/PagedFile.h"
#include "files/PagedRecipeFile.h"
#include "tests/files/TestColumns.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"
#include "text/PathText.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::u16string>;

// The picture that is damaged: one word at address 40000 of an ".frp".
constexpr std::size_t kDirectory = 65536;
constexpr std::size_t kTable = 69632;
constexpr std::size_t kPage = 73728;
constexpr std::size_t kEnd = 77824;

void StoreEntry(Bytes& bytes, std::size_t pos, std::uint32_t entry)
{
    for (std::size_t i = 0; i < 4; ++i)
        bytes.at(pos + i) = static_cast<std::byte>(entry >> (8 * i));
}

Bytes SoundFile()
{
    Bytes bytes(kEnd);
    StoreEntry(bytes, kDirectory, kTable);
    StoreEntry(bytes, kTable + 4 * 19, kPage);
    bytes[kPage + 2176] = std::byte{7};
    return bytes;
}

struct DamageCase {
    const char* name;
    std::size_t at; ///< where the bad entry lies
    std::uint32_t entry;
    std::size_t length; ///< of the file
    friend void PrintTo(const DamageCase& c, std::ostream* out) { *out << c.name; }
};

struct PagedDamage : testing::TestWithParam<DamageCase> {
    PagedDamage()
    {
        Bytes bytes = SoundFile();
        StoreEntry(bytes, GetParam().at, GetParam().entry);
        bytes.resize(GetParam().length);
        WriteAll(path, bytes);
        damaged = bytes;
    }

    CTempFolder folder;
    fs::path path = folder / "a.frp";
    Bytes damaged;
};

TEST_P(PagedDamage, IsRefusedAndNothingIsWritten)
{
    Bytes word = WordBytes({1});
    EXPECT_FALSE(PagedWrite(path, WordAddress(40000), 1, word, kFrp));
    EXPECT_FALSE(PagedRead(path, WordAddress(40000), 1, word, kFrp));
    EXPECT_TRUE(ReadAll(path) == damaged);
}

TEST_P(PagedDamage, DoesNotHarmTheFlatPart)
{
    for (const std::int64_t address : {0, 100, 32767}) {
        Bytes word(2);
        EXPECT_TRUE(PagedWrite(path, WordAddress(address), 1, WordBytes({0x1234}), kFrp)) << address;
        EXPECT_TRUE(PagedRead(path, WordAddress(address), 1, word, kFrp)) << address;
        EXPECT_EQ(word, WordBytes({0x1234})) << address;
    }
}

TEST_P(PagedDamage, IsReportedOnceByAReadAndByASave)
{
    CRecordingReporter reporter;
    CNoProgress progress;
    CRecipeRows rows;
    rows.LayOut({Signed16Column()}, 32767, 10000); // the first row is in the flat part
    EXPECT_EQ(ReadPaged(rows, path, FileType::Frp, reporter, progress), Outcome::Failed);
    EXPECT_EQ(reporter.shown, Texts{u"Open file " + PathText(path) + u" error!"});
    EXPECT_EQ(rows.Text(0, 0), u"");

    reporter.shown.clear();
    rows.SetText(0, 0, u"7");
    EXPECT_FALSE(SavePaged(rows, path, FileType::Frp, reporter, progress));
    EXPECT_EQ(reporter.shown, Texts{u"Can't save file " + PathText(path) + u",please check file or your disk!"});
    EXPECT_TRUE(ReadAll(path) == damaged);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, PagedDamage, testing::Values(
    //         name                            entry at            leads to     file ends at
    DamageCase{"TablePastTheEnd",              kDirectory,         kEnd,        kEnd},
    DamageCase{"TableFarAway",                 kDirectory,         0xFFFFFFFF,  kEnd},
    DamageCase{"TableCutByTheEnd",             kDirectory,         kPage + 1,   kEnd},
    DamageCase{"TableInTheFlatPart",           kDirectory,         0x1000,      kEnd},
    DamageCase{"TableInTheLastOfTheFlatPart",  kDirectory,         61440,       kEnd},
    DamageCase{"TableAtTheFirstByte",          kDirectory,         1,           kEnd},
    DamageCase{"TableAtTheEndOfTheFlatPart",   kDirectory,         65532,       kEnd},
    DamageCase{"TableIsTheDirectory",          kDirectory,         kDirectory,  kEnd},
    DamageCase{"TableOverTheDirectory",        kDirectory,         kTable - 1,  kEnd},
    DamageCase{"TwoTablesInOnePlace",          kDirectory + 4,     kTable,      kEnd},
    DamageCase{"TwoTablesThatOverlap",         kDirectory + 4,     kTable + 2,  kEnd},
    DamageCase{"OtherTablePastTheEnd",         kDirectory + 4092,  kEnd,        kEnd},
    DamageCase{"PagePastTheEnd",               kTable + 4 * 19,    kEnd,        kEnd},
    DamageCase{"PageFarAway",                  kTable + 4 * 19,    0x80000000,  kEnd},
    DamageCase{"PageCutByTheEnd",              kTable + 4 * 19,    kPage,       kEnd - 1},
    DamageCase{"PageInTheFlatPart",            kTable + 4 * 19,    4096,        kEnd},
    DamageCase{"PageIsTheDirectory",           kTable + 4 * 19,    kDirectory,  kEnd},
    DamageCase{"PageIsItsTable",               kTable + 4 * 19,    kTable,      kEnd},
    DamageCase{"PageOverItsTable",             kTable + 4 * 19,    kTable + 5,  kEnd},
    DamageCase{"TwoPagesInOnePlace",           kTable + 4 * 20,    kPage,       kEnd},
    DamageCase{"TwoPagesThatOverlap",          kTable + 4 * 20,    kPage - 4,   kEnd},
    DamageCase{"DirectoryCutByTheEnd",         kDirectory,         kTable,      kTable - 1},
    DamageCase{"OneByteOfADirectory",          kDirectory,         kTable,      kDirectory + 1}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

struct PagedNeighbours : testing::Test {
    CTempFolder folder;
    fs::path path = folder / "a.frp";
};

TEST_F(PagedNeighbours, SoundFileIsRead)
{
    WriteAll(path, SoundFile());
    Bytes word(2);
    EXPECT_TRUE(PagedRead(path, WordAddress(40000), 1, word, kFrp));
    EXPECT_EQ(word, WordBytes({7}));
}

TEST_F(PagedNeighbours, PageOfTwoTablesIsRefused)
{
    Bytes bytes = SoundFile();
    bytes.resize(kEnd + 4096);
    StoreEntry(bytes, kDirectory + 4, kEnd);
    StoreEntry(bytes, kEnd, kPage);
    WriteAll(path, bytes);
    CPagedFile file;
    ASSERT_TRUE(file.Open(path, kFrp));
    EXPECT_FALSE(file.IsSound(WordAddress(40000), 2 * 2097152));
    EXPECT_TRUE(ReadAll(path) == bytes);
}

TEST_F(PagedNeighbours, StretchIsSoundUpToTheTableThatIsDamaged)
{
    Bytes bytes = SoundFile();
    bytes.resize(kEnd + 4096);
    StoreEntry(bytes, kDirectory + 4, kEnd);
    StoreEntry(bytes, kEnd, 1);
    WriteAll(path, bytes);
    constexpr std::int64_t kLastWordBefore = 2097151;
    for (const std::uint64_t byteCount : {0U, 1U, 2U, 3U, 4U}) {
        CPagedFile file;
        ASSERT_TRUE(file.Open(path, kFrp));
        EXPECT_EQ(file.IsSound(WordAddress(kLastWordBefore), byteCount), byteCount <= 2) << byteCount;
    }
    for (const std::uint64_t byteCount : {0U, 1U}) {
        CPagedFile file;
        ASSERT_TRUE(file.Open(path, kFrp));
        EXPECT_EQ(file.IsSound(WordAddress(kLastWordBefore + 1), byteCount), byteCount == 0) << byteCount;
    }
}

TEST_F(PagedNeighbours, NoBytesAreSoundInADamagedFile)
{
    Bytes bytes = SoundFile();
    StoreEntry(bytes, kDirectory + 4092, 1);
    WriteAll(path, bytes);
    CPagedFile file;
    ASSERT_TRUE(file.Open(path, kFrp));
    EXPECT_TRUE(file.IsSound(WordAddress(40000), 0));
    EXPECT_FALSE(file.IsSound(WordAddress(40000), 1));
}

TEST_F(PagedNeighbours, TableAndPageMayBeginAtAnyByte)
{
    Bytes bytes(kEnd + 2);
    StoreEntry(bytes, kDirectory, kTable + 1);
    StoreEntry(bytes, kTable + 1 + 4 * 19, kPage + 2);
    bytes[kPage + 2 + 2176] = std::byte{7};
    WriteAll(path, bytes);
    Bytes word(2);
    EXPECT_TRUE(PagedRead(path, WordAddress(40000), 1, word, kFrp));
    EXPECT_EQ(word, WordBytes({7}));
    EXPECT_TRUE(PagedWrite(path, WordAddress(40000), 1, WordBytes({0x1234}), kFrp));
    bytes[kPage + 2 + 2176] = std::byte{0x34};
    bytes[kPage + 2 + 2177] = std::byte{0x12};
    EXPECT_TRUE(ReadAll(path) == bytes);
}

TEST_F(PagedNeighbours, ExtremeEntriesAreRefusedWhereverTheyStand)
{
    for (const std::size_t table : {kDirectory, kTable})
        for (const std::size_t index : {0U, 1U, 19U, 20U, 1022U, 1023U})
            for (const std::uint32_t entry : {0xFFFFFFFFU, 1U, 0x7FFFFFFFU, 0x80000000U}) {
                Bytes bytes = SoundFile();
                StoreEntry(bytes, table + 4 * index, entry);
                WriteAll(path, bytes);
                Bytes word = WordBytes({1});
                EXPECT_FALSE(PagedWrite(path, WordAddress(40000), 1, word, kFrp))
                    << table << ' ' << index << ' ' << entry;
                EXPECT_FALSE(PagedRead(path, WordAddress(40000), 1, word, kFrp))
                    << table << ' ' << index << ' ' << entry;
                EXPECT_TRUE(ReadAll(path) == bytes) << table << ' ' << index << ' ' << entry;
            }
}

TEST_F(PagedNeighbours, LongerFlatPartIsGuardedAlike)
{
    constexpr std::size_t kErpDirectory = 1048576;
    constexpr std::int64_t kWord = 524288; // the first after the flat part
    for (const std::uint32_t entry : {0xFFFFFFFFU, 1U, 65536U, 1048576U, 1052671U, 1056768U, 0x80000000U}) {
        Bytes bytes(kErpDirectory + 2 * 4096);
        StoreEntry(bytes, kErpDirectory, entry);
        WriteAll(path, bytes);
        Bytes word = WordBytes({1});
        EXPECT_FALSE(PagedWrite(path, WordAddress(kWord), 1, word, kErp)) << entry;
        EXPECT_FALSE(PagedRead(path, WordAddress(kWord), 1, word, kErp)) << entry;
        EXPECT_TRUE(ReadAll(path) == bytes) << entry;
    }
}

TEST_F(PagedNeighbours, FileCutWhileOpenFailsTheRead)
{
    WriteAll(path, SoundFile());
    CPagedFile file;
    Bytes word(2);
    ASSERT_TRUE(file.Open(path, kFrp));
    ASSERT_TRUE(file.Read(WordAddress(40000), word));
    fs::resize_file(path, kPage);
    EXPECT_FALSE(file.Read(WordAddress(40000), word));
    fs::resize_file(path, 10);
    EXPECT_TRUE(file.Read(WordAddress(0), word)) << "the flat part may be of any length";
}

/// What is made afresh must not come to lie in the directory that is at hand.
TEST_F(PagedNeighbours, DirectoryCutWhileOpenFailsTheWriteAndNothingIsWritten)
{
    WriteAll(path, Bytes(kTable));
    CPagedFile file;
    ASSERT_TRUE(file.Open(path, kFrp));
    ASSERT_TRUE(file.IsSound(WordAddress(40000), 2));
    fs::resize_file(path, kTable - 1);
    EXPECT_FALSE(file.Write(WordAddress(40000), WordBytes({7})));
    EXPECT_TRUE(ReadAll(path) == Bytes(kTable - 1));
}

TEST(PagePlaces, NeverShareAByteAtTheBeginning)
{
    CPagePlaces places;
    EXPECT_TRUE(places.Take(1));
    EXPECT_FALSE(places.Take(4096));
    EXPECT_TRUE(places.Take(4097));
    EXPECT_FALSE(places.Take(8192));
    EXPECT_TRUE(places.Take(8193));
}

TEST(PagePlaces, MayBeginAtTheLastByteThatAnEntryCanName)
{
    CPagePlaces places;
    EXPECT_TRUE(places.Take(0xFFFFFFFF));
    EXPECT_FALSE(places.Take(0xFFFFF000));
    EXPECT_TRUE(places.Take(0xFFFFEFFF));
}

TEST_F(PagedNeighbours, DirectoryThatIsCutIsNoSounderTheSecondTime)
{
    WriteAll(path, Bytes(kTable - 1));
    CPagedFile file;
    ASSERT_TRUE(file.Open(path, kFrp));
    EXPECT_FALSE(file.IsSound(WordAddress(40000), 2));
    EXPECT_FALSE(file.IsSound(WordAddress(40000), 2));
}

TEST(PagePlaces, NeverShareAByte)
{
    CPagePlaces places;
    EXPECT_TRUE(places.Take(65536));
    EXPECT_TRUE(places.Take(73728));
    EXPECT_TRUE(places.Take(77825)) << "any offset will do";
    for (const std::uint32_t taken : {65536U, 65535U, 69631U, 61441U, 69633U, 73727U, 73729U, 77824U, 77826U, 81920U})
        EXPECT_FALSE(places.Take(taken)) << taken;
    EXPECT_TRUE(places.Take(69632)) << "between two";
    EXPECT_TRUE(places.Take(81921)) << "close after";
    EXPECT_TRUE(places.Take(0xFFFFF000)) << "the last";
    EXPECT_FALSE(places.Take(0xFFFFFFFF));
    EXPECT_TRUE(places.Take(1)) << "the first";
    EXPECT_FALSE(places.Take(4096));
}

} // namespace
