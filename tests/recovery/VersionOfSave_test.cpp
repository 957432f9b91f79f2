#include "changes/SaveRecords.h"
#include "changes/WordDifferences.h"
#include "files/PagedFile.h"
#include "files/RecipeFile.h"
#include "recovery/VersionRestore.h"
#include "tests/files/TestColumns.h"
#include "tests/recovery/VersionTest.h"
#include "tests/support/FakeChanges.h"
#include "tests/support/RecordingReporter.h"

#include <algorithm>

namespace fs = std::filesystem;

namespace {

/// A save of whose file only the changes were kept, as they were planned.
struct VersionOfSave : VersionTest {
    /// Reads rows of the file, edits one of each three, and saves all; gives the stamp of the version kept before.
    std::string Save(const fs::path& file, std::int32_t start, std::int32_t rowCount, const char16_t* text)
    {
        const FileType type = *FileTypeOf(file);
        CRecipeRows rows;
        rows.LayOut({Signed16Column()}, start, rowCount);
        EXPECT_EQ(ReadRecipe(type, rows, file, false, reporter, progress), Outcome::Done);
        const CStoredCells stored(rows, type, LogicalBytes(type, file).value());
        for (std::int32_t row = 0; row < rowCount; row += 3)
            rows.SetText(row, 0, text);
        CSavePlan plan;
        plan.Begin(rows, stored, file, false);
        EXPECT_EQ(plan.Finish(progress), Outcome::Done);
        const VersionKept kept = store.KeepChanges(file, u"Save", CPlannedChanges(plan, {file, u"Oven"}));
        EXPECT_EQ(kept.result, Result::Kept) << std::string(kept.reason.begin(), kept.reason.end());
        EXPECT_TRUE(SaveRecipe(type, rows, file, reporter, progress));
        return kept.stamp;
    }

    /// Every word that the file has, from the first one on.
    static Bytes WordsOf(const fs::path& file)
    {
        CFileWords words(*FileTypeOf(file), file);
        Bytes bytes(words.Count());
        EXPECT_TRUE(words.Read(0, bytes));
        return bytes;
    }

    CRecordingReporter reporter;
    CNoProgress progress;
};

TEST_F(VersionOfSave, OfAFlatFileIsTheSameToTheByte)
{
    for (const std::size_t size : {0U, 5U, 20U, 3000U}) { // the rows begin behind the end, at it, or before it
        WriteAll(recipe, Bytes(size, std::byte{7}));
        const Bytes before = ReadAll(recipe);
        const std::string first = Save(recipe, 10, 700, u"12");
        const Bytes between = ReadAll(recipe);
        const std::string second = Save(recipe, 1000, 3, u"13");
        EXPECT_TRUE(RestoreVersion(store, recipe, first, reporter)) << size;
        EXPECT_EQ(ReadAll(recipe), before) << size;
        EXPECT_TRUE(RestoreVersion(store, recipe, second, reporter)) << size;
        EXPECT_EQ(ReadAll(recipe), between) << size;
        EXPECT_TRUE(store.Forget(recipe));
    }
    EXPECT_TRUE(reporter.shown.empty());
}

/// Pages that the save made stay, and are zero.
TEST_F(VersionOfSave, OfAPagedFileIsTheSameInEveryWord)
{
    const fs::path file = folder / "a.frp";
    WriteAll(file, Bytes(100, std::byte{7}));
    const Bytes before = WordsOf(file);
    const std::string first = Save(file, 40, 20, u"12");
    const std::string second = Save(file, 40000, 6000, u"13");
    const Bytes between = WordsOf(file);
    const std::string third = Save(file, 32000, 3000, u"14");

    EXPECT_TRUE(RestoreVersion(store, file, third, reporter));
    EXPECT_EQ(WordsOf(file), between);
    const fs::path out = folder / "out.frp";
    EXPECT_TRUE(WriteVersion(store, file, store.Find(file, first).at(0), out, reporter));
    EXPECT_TRUE(RestoreVersion(store, file, first, reporter));
    for (const fs::path& path : {file, out}) {
        Bytes words = WordsOf(path);
        EXPECT_TRUE(std::all_of(words.begin() + static_cast<std::ptrdiff_t>(before.size()), words.end(),
                                [](std::byte b) { return b == std::byte{0}; }));
        words.resize(before.size());
        EXPECT_EQ(words, before);
    }
    EXPECT_TRUE(RestoreVersion(store, file, third, reporter));
    EXPECT_EQ(WordsOf(file), between);
    EXPECT_TRUE(RestoreVersion(store, file, second, reporter));
    EXPECT_TRUE(reporter.shown.empty());
}

/// What another program writes into a word that was kept is not lost.
TEST_F(VersionOfSave, OfAPagedFileIsRefusedWhereAWordIsAnother)
{
    const fs::path file = folder / "a.frp";
    WriteAll(file, Bytes(100, std::byte{7}));
    const std::string stamp = Save(file, 40000, 600, u"13");
    ASSERT_TRUE(PagedWrite(file, WordAddress(40003), 1, WordBytes({77}), kFrp));
    const Bytes now = ReadAll(file);
    EXPECT_FALSE(RestoreVersion(store, file, stamp, reporter));
    ASSERT_EQ(reporter.shown.size(), 1U);
    EXPECT_NE(reporter.shown[0].find(u": RW40003!"), std::u16string::npos);
    EXPECT_EQ(ReadAll(file), now);
}

TEST_F(VersionOfSave, OfADamagedPagedFileIsNotKept)
{
    const fs::path file = folder / "a.frp";
    WriteAll(file, Bytes(70000, std::byte{7}));
    CFakeChanges changes;
    changes.header = {.type = FileType::Frp, .bytes = 65536, .newBytes = 65536};
    ChangeRecord record;
    record.address = WordAddress(40000);
    record.oldWords = WordBytes({0});
    record.newWords = WordBytes({8});
    changes.records.push_back(record);
    EXPECT_EQ(store.KeepChanges(file, u"Save", changes).result, Result::Failed);
    EXPECT_TRUE(store.List(file).empty());
}

} // namespace
