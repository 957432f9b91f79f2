#include "disk/Sha256.h"
#include "files/RecipeFile.h"
#include "library/FormatStore.h"
#include "library/NotesFile.h"
#include "merge/MergeFiles.h"
#include "recovery/Journal.h"
#include "recovery/VersionNote.h"
#include "tests/recovery/UnsavedSample.h"
#include "tests/recovery/VersionTest.h"
#include "tests/support/FakeChanges.h"
#include "tests/support/Formats.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

// What one system writes another one reads, and a file that is the same has the same bytes everywhere. Each file is
// written here and compared with what was written on the system where the test was made.

namespace fs = std::filesystem;

namespace {

std::string HashOf(std::span<const std::byte> bytes)
{
    CSha256 hash;
    hash.Append(bytes);
    return hash.Finish();
}

std::string HashOf(std::string_view text)
{
    return HashOf(std::as_bytes(std::span(text)));
}

/// Texts outside ASCII in units only: bytes of the ANSI code page are the system's own.
DataFormat AllKinds()
{
    DataItem name = MakeItem(u"名称", DataType::String, 4, 4);
    name.unicode = 1;
    DataItem bcd = MakeItem(u"Clock", DataType::Unsigned32, 2, 8);
    bcd.codeType = CodeType::Bcd;
    return MakeFormat(u"Öfen", {MakeItem(u"Level", DataType::Signed16, 1, 4, 2), bcd, name,
                                ArrayOf(MakeItem(u"Temp", DataType::Float, 2, 4, 1), 2),
                                MakeItem(u"Sum", DataType::Double, 4, 9, 3), MakeItem(u"Bits", DataType::Hex16, 1, 4)});
}

CRecipeRows SampleRows()
{
    constexpr std::array kTexts = {u"-12.05", u"12345678", u"été", u"0.1", u"235.5", u"123456.789", u"BEEF"};
    CRecipeRows rows;
    rows.LayOut(LayOutColumns(AllKinds()), 600'000, 3); // in a page of both paged types
    rows.ShowNewDocument();
    for (std::size_t column = 0; column < kTexts.size(); ++column)
        rows.SetText(1, column, kTexts[column]);
    rows.SetText(2, 2, u"面包");
    return rows;
}

struct RecipeCase {
    const char* name;
    FileType type;
    const char* hash;
    friend void PrintTo(const RecipeCase& c, std::ostream* out) { *out << c.name; }
};

struct SameRecipe : testing::TestWithParam<RecipeCase> {};

struct SameOnEverySystem : VersionTest {
    static std::string HashOfFile(const fs::path& path) { return HashOf(ReadAll(path)); }

    CRecordingReporter reporter;
};

/// The lines of a journal without what differs each time: the moment of a command, and the checksums that it goes into.
std::string WithoutMoments(const Bytes& journal)
{
    constexpr std::string_view kTime = R"({"time":")";
    constexpr std::size_t kStamp = 20;
    std::istringstream lines(std::string(reinterpret_cast<const char*>(journal.data()), journal.size()));
    std::string text;
    for (std::string line; std::getline(lines, line);) {
        line.erase(0, 9); // the checksum and a blank
        if (line.starts_with(kTime))
            line.erase(kTime.size(), kStamp);
        text += line + '\n';
    }
    return text;
}

} // namespace

TEST_P(SameRecipe, IsTheSameByteForByte)
{
    const CTempFolder folder;
    const fs::path path = folder / "recipe";
    CRecordingReporter reporter;
    CNoProgress progress;
    const CRecipeRows rows = SampleRows();
    ASSERT_TRUE(PrepareSaveAs(GetParam().type, path, rows.StartAddress(), reporter));
    ASSERT_TRUE(SaveRecipe(GetParam().type, rows, path, reporter, progress));
    EXPECT_EQ(HashOf(ReadAll(path)), GetParam().hash);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, SameRecipe, testing::Values(
    RecipeCase{"Rcp", FileType::Rcp, "6b6a5c040eafceceb2569210dbe73f72748dbd9d5a798411cf2f513c94bc2f52"},
    RecipeCase{"Csv", FileType::Csv, "73f8c05a9865f920ec333659c5b13f85cc7ea01c2018aa2d51dff02fbcfdacdf"},
    RecipeCase{"Erp", FileType::Erp, "623e0c614d4a8f55f7e78ce5238b677f507602502c4e60a1045ac38d9064e0f6"},
    RecipeCase{"Frp", FileType::Frp, "fe1fa66fdc574a34953271ab4f2de382fb26acf48002fa4be2ca49a265af57aa"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(SameOnEverySystem, LibraryAndNotes)
{
    const fs::path library = folder / "RecipeFile.Dat";
    CFormatStore formats(library);
    formats.AppendFormat(AllKinds());
    formats.RemoveFormat(0); // the built-in one
    formats.SetNotes(0, 0, {.unit = u"°C", .lowest = CDecimal::Parse(u"-5.5"), .comment = u"One line\nand another"});
    formats.SetReadSettings(40'000, 3, u"*.frp");
    ASSERT_TRUE(formats.Save());
    EXPECT_EQ(HashOfFile(library), "8723929ab3a98cf0d1da340f7ea9c57453aaad0ce326e5ddd6adbebae0c4de0e");
    EXPECT_EQ(HashOfFile(NotesPathOf(library)), "b1da755bcfcf30d35d6e6eea32d347bb61e839b09c34f30d4916a1317e69189a");
}

TEST_F(SameOnEverySystem, MergedFile)
{
    const fs::path other = folder / "other.rcp";
    WriteAll(other, WordBytes({7, 8, 9, 10}));
    const fs::path merged = folder / "merged.rcp";
    ASSERT_TRUE(MergeFiles({.firstPath = recipe,
                            .firstFileBytes = 6,
                            .firstReadStart = 1,
                            .firstLength = 2,
                            .firstPlace = 100,
                            .secondPath = other,
                            .secondFileBytes = 8,
                            .secondReadStart = 0,
                            .secondLength = 4,
                            .secondPlace = 60'000,
                            .mergedPath = merged},
                           reporter));
    EXPECT_EQ(HashOfFile(merged), "4a51d03262c72c004daffb6d69cbb11c35cafd2acd0d9581532dec322bc15885");
}

TEST_F(SameOnEverySystem, Journal)
{
    WorkHeader header = SampleHeader();
    header.file = u"/recipes/烤炉.rcp"; // as it stands: each system writes paths in its own form
    header.format = AllKinds();
    std::error_code fault;
    auto journal = CJournal::Begin(data, header, fault);
    ASSERT_TRUE(journal) << fault.message();
    ASSERT_TRUE(journal->Append(std::vector{TextCell({0, 2}, u"\"été\"\n", BytesOf({0, 0, 0, 0, 0, 0, 0, 0})),
                                            UnsavedCell{{1, 0}, CCellState::OfWords(u"\x960"), BytesOf({1, 2}), {}}}));
    ASSERT_TRUE(journal->Flush());
    const Bytes bytes = ReadAll(OnlyJournal(data / "unsaved"));
    EXPECT_EQ(HashOf(WithoutMoments(bytes)), "db46d821e9e9571379db03845a1d89267787721a2ff5d7a0b443df32a53cd759");
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    EXPECT_EQ(HashOf(text.substr(0, text.find('\n') + 1)),
              "2989676cef55ebacf3ab0f6dcdf495406cade0dc5b40ef062b4f88a410120230"); // which is the same each time
}

TEST_F(SameOnEverySystem, VersionOfChangesAndItsNote)
{
    CFakeChanges changes;
    changes.header = {.file = u"烤炉.rcp", .type = FileType::Rcp, .bytes = 6, .newBytes = 8, .tables = {}};
    ChangeRecord record;
    record.address = WordAddress(1);
    record.oldWords = WordBytes({2});
    record.newWords = WordBytes({0xBEEF});
    changes.records.push_back(record);
    record.address = WordAddress(3);
    record.oldWords = {};
    changes.records.push_back(record);
    const VersionKept kept = store.KeepChanges(recipe, u"Save", changes);
    ASSERT_EQ(kept.result, Result::Kept);
    EXPECT_EQ(HashOfFile(OnlyFolder() / (kept.stamp + ".jsonl")),
              "818ff70047c136bf97fc4002ac2d49f60d56502aa6e41b05d6b36c4e6730c62e");
    const VersionNote note{.file = u"/recipes/烤炉.rcp",
                           .time = *TimeOfStamp("20261122T110208.123Z"),
                           .command = u"Save",
                           .words = 3,
                           .bytes = 6};
    EXPECT_EQ(HashOf(NoteToJson(note)),
              "15b9f1e3f5c25c3b85dcde76607b154de2422c5ddfc668167d2bd425eaefc504"); // that of a file holds its path and
                                                                                   // the moment
}
