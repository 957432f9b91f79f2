#include "files/CsvPutBack.h"
#include "files/EditedSave.h"
#include "files/PutBack.h"
#include "files/WordRuns.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/files/OneType.h"
#include "tests/files/OrdinaryUser.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

// A save of the edited cells alone, for each of the four types.

namespace {

using Texts = std::vector<std::u16string>;

struct EditedSave : OneType, testing::TestWithParam<RecipeType> {
    EditedSave() : OneType(GetParam()) {}

    void Open()
    {
        MakeAndRead();
        stored = CStoredCells(rows, type.type, LogicalBytes(type.type, path).value());
    }

    SaveResult SaveEditedCells() { return SaveEdited(rows, stored, path, reporter, progress); }

    /// All cells; what that changes can be put back.
    void SaveAll()
    {
        saved.path = path;
        saved.before = stored;
        if (type.IsTable())
            saved.oldTable = ReadWholeFile(path, 1000);
        CSavePlan plan;
        plan.Begin(rows, stored, path, false);
        EXPECT_EQ(plan.Finish(progress), Outcome::Done);
        saved.changes = plan.Changes();
        EXPECT_TRUE(Save().isSaved);
        rows.MarkSaved();
        saved.after = ReadStoredCells(rows, type.type, path);
    }

    CStoredCells stored;
    SavedChanges saved;
};

INSTANTIATE_TEST_SUITE_P(Types, EditedSave, testing::ValuesIn(kTypes),
                         [](const auto& one) { return std::string(one.param.name); });

TEST_P(EditedSave, ChangesTheEditedCellsAndNothingElse)
{
    Open();
    rows.SetText(1, 3, u"-8.5");
    rows.SetText(2, 5, u"77");
    EXPECT_TRUE(SaveEditedCells().isSaved);
    EXPECT_EQ(reporter.shown, Texts());
    Texts shown = kTexts;
    shown[9] = u"-8.5";
    shown[17] = u"77";
    EXPECT_EQ(TextsInFile(), shown);
    if (type.IsTable()) {
        EXPECT_EQ(BytesInFile(), TableFile(shown, false));
        return;
    }
    auto words = kWords;
    words[1][4] = 0;
    words[1][5] = 0xC108;
    words[2].back() = 77;
    EXPECT_EQ(BytesInFile(), Joined({kAround, RowBytes(words), kAround}));
}

TEST_P(EditedSave, LeavesTheFileAloneWithoutAnEditedCell)
{
    Open();
    const auto before = fs::last_write_time(path) - std::chrono::hours(1);
    fs::last_write_time(path, before);
    EXPECT_TRUE(SaveEditedCells().isSaved);
    EXPECT_EQ(fs::last_write_time(path), before);
}

TEST_P(EditedSave, KnowsWhatIsStoredThen)
{
    Open();
    rows.SetText(0, 0, u"12");
    EXPECT_EQ(PlanOfEdited(rows, stored).size(), 1u);
    EXPECT_TRUE(SaveEditedCells().isSaved);
    EXPECT_EQ(PlanOfEdited(rows, stored).size(), 0u);
    EXPECT_EQ(stored.FileBytes(), LogicalBytes(type.type, path));
}

TEST_P(EditedSave, NeverMakesAFileThatIsMissing)
{
    Open();
    rows.SetText(0, 0, u"12");
    fs::remove(path);
    const SaveResult result = SaveEditedCells();
    EXPECT_FALSE(result.isSaved);
    EXPECT_EQ(result.isLeftOut, IsPaged(type.type));
    EXPECT_EQ(reporter.shown.size(), IsPaged(type.type) ? 0u : 1u);
    EXPECT_FALSE(fs::exists(path));
    EXPECT_EQ(rows.EditedCount(), 1u);
}

TEST_P(EditedSave, ReportsAFileThatMayNotBeWrittenAsASaveDoes)
{
    Open();
    rows.SetText(0, 0, u"12");
    MakeReadOnly(path);
    MakeReadOnly(folder.Path());
    const Bytes before = ReadAll(path);
    {
        const COrdinaryUser ordinary;
        const SaveResult result = SaveEditedCells();
        EXPECT_FALSE(result.isSaved);
        EXPECT_EQ(result.isLeftOut, IsPaged(type.type));
    }
    EXPECT_EQ(reporter.shown, IsPaged(type.type) ? Texts() : Texts{SaveError()});
    EXPECT_TRUE(ReadAll(path) == before);
}

TEST_P(EditedSave, PutsBackWhatNobodyEdited)
{
    Open();
    const Bytes before = BytesInFile();
    SaveAll();
    EXPECT_TRUE(PutBack(saved, rows, reporter, progress).isSaved);
    EXPECT_EQ(BytesInFile(), before);
    EXPECT_EQ(CountPutBack(saved), saved.UneditedCount());
}

TEST_P(EditedSave, WhatWasEditedStaysWhenTheRestIsPutBack)
{
    Open();
    rows.SetText(1, 3, u"-8.5");
    SaveAll();
    EXPECT_TRUE(PutBack(saved, rows, reporter, progress).isSaved);
    Texts shown = kTexts;
    shown[9] = u"-8.5";
    EXPECT_EQ(TextsInFile(), shown);
}

/// Rows over the end of a flat file, and a column that a save rewrites.
struct FlatPutBack : testing::Test {
    void Open(const Bytes& bytes, std::int32_t rowCount)
    {
        WriteAll(path, bytes);
        ColumnCoding coding = Unsigned32Column();
        coding.dataType = DataType::Unsigned16;
        coding.dataLength = 1;
        coding.decimalDigits = 2;
        rows.LayOut({coding}, 0, rowCount);
        EXPECT_EQ(ReadRecipe(FileType::Rcp, rows, path, false, reporter, progress), Outcome::Done);
        saved.path = path;
        saved.before = CStoredCells(rows, FileType::Rcp, bytes.size());
    }

    void Save()
    {
        CSavePlan plan;
        plan.Begin(rows, saved.before, path, false);
        EXPECT_EQ(plan.Finish(progress), Outcome::Done);
        saved.changes = plan.Changes();
        EXPECT_TRUE(SaveRecipe(FileType::Rcp, rows, path, reporter, progress).isSaved);
        rows.MarkSaved();
        saved.after = ReadStoredCells(rows, FileType::Rcp, path);
    }

    bool PutBackAll() { return PutBack(saved, rows, reporter, progress).isSaved; }

    CTempFolder folder;
    fs::path path = folder / "a.rcp";
    CRecordingReporter reporter;
    CNoProgress progress;
    CRecipeRows rows;
    SavedChanges saved;
};

TEST_F(FlatPutBack, CutsAFileThatGrew)
{
    Open(WordBytes({105, 115}), 5);
    Save();
    EXPECT_EQ(fs::file_size(path), 10u);
    EXPECT_EQ(saved.UneditedCount(), 5u);
    EXPECT_TRUE(PutBackAll());
    EXPECT_EQ(ReadAll(path), WordBytes({105, 115}));
}

TEST_F(FlatPutBack, KeepsTheWordsUpToAnEditedCell)
{
    Open(WordBytes({105, 115}), 5);
    rows.SetText(3, 0, u"2.50");
    Save();
    EXPECT_EQ(saved.UneditedCount(), 4u);
    EXPECT_TRUE(PutBackAll());
    EXPECT_EQ(ReadAll(path), WordBytes({105, 115, 0, 250}));
}

TEST_F(FlatPutBack, LeavesWhatWasEditedSince)
{
    Open(WordBytes({105, 115, 105}), 3);
    Save();
    rows.SetText(0, 0, u"9.99");
    EXPECT_TRUE(PutBackAll());
    EXPECT_EQ(ReadAll(path), WordBytes({150, 115, 105}));
    EXPECT_EQ(saved.UneditedCount(), CountPutBack(saved) + 1);
}

TEST_F(FlatPutBack, LeavesWhatAnotherProgramWrote)
{
    Open(WordBytes({105, 115, 105}), 3);
    Save();
    WriteAll(path, WordBytes({150, 7, 150}));
    EXPECT_TRUE(PutBackAll());
    EXPECT_EQ(ReadAll(path), WordBytes({105, 7, 105}));
    EXPECT_EQ(saved.UneditedCount(), CountPutBack(saved) + 1);
}

TEST_F(FlatPutBack, DoesNotCutAFileThatAnotherProgramMadeLonger)
{
    Open(WordBytes({105}), 2);
    Save();
    WriteAll(path, WordBytes({150, 0, 9}));
    EXPECT_TRUE(PutBackAll());
    EXPECT_EQ(ReadAll(path), WordBytes({105, 0, 9}));
}

TEST_F(FlatPutBack, OfAFileThatIsGoneIsAFailedSave)
{
    Open(WordBytes({105}), 1);
    Save();
    fs::remove(path);
    EXPECT_FALSE(PutBackAll());
    EXPECT_EQ(reporter.shown.size(), 1u);
    EXPECT_FALSE(fs::exists(path));
}

TEST(WordRuns, TouchingOnesAreOne)
{
    CWordRuns runs;
    runs.Append(WordAddress(3), WordBytes({1, 2}));
    runs.Append(WordAddress(5), WordBytes({3}));
    runs.Append(WordAddress(7), {});
    runs.Append(WordAddress(8), WordBytes({4}));
    ASSERT_EQ(runs.Count(), 2u);
    EXPECT_EQ(runs.At(0).first, WordAddress(3));
    EXPECT_EQ(runs.At(0).bytes.size(), 6u);
    EXPECT_EQ(runs.At(1).first, WordAddress(8));
}

TEST(WordRuns, AFullDiskIsFoundBeforeAWordIsTouched)
{
    CTempFolder folder;
    const fs::path path = folder / "a.rcp";
    WriteAll(path, WordBytes({1, 2}));
    CWordRuns runs;
    runs.Append(WordAddress(0), WordBytes({9}));
    runs.Append(WordAddress(5000), WordBytes({9}));
    CRecordingReporter reporter;
    {
        const CFileSizeLimit full(100);
        EXPECT_FALSE(WriteWordRuns(FileType::Rcp, runs, path, std::nullopt, reporter).isSaved);
    }
    EXPECT_EQ(reporter.shown.size(), 1u);
    EXPECT_EQ(ReadAll(path), WordBytes({1, 2}));
}

TEST(WordRuns, GivePagesToTheirOwnWordsAlone)
{
    CTempFolder folder;
    const fs::path path = folder / "a.frp";
    WriteAll(path, {});
    CWordRuns runs;
    runs.Append(WordAddress(40000), WordBytes({7}));
    runs.Append(WordAddress(60000), WordBytes({8}));
    CRecordingReporter reporter;
    EXPECT_TRUE(WriteWordRuns(FileType::Frp, runs, path, std::nullopt, reporter).isSaved);
    EXPECT_EQ(fs::file_size(path), 65536u + 4u * 4096u) << "directory, table and two pages";
    Bytes word(2);
    EXPECT_TRUE(PagedRead(path, WordAddress(60000), 1, word, kFrp));
    EXPECT_EQ(word, WordBytes({8}));
}

TEST(WordRuns, WithoutRoomForAllPagesGetNone)
{
    CTempFolder folder;
    const fs::path path = folder / "a.frp";
    WriteAll(path, Bytes(65536, std::byte{7}));
    CWordRuns runs;
    runs.Append(WordAddress(40000), WordBytes({7}));
    runs.Append(WordAddress(60000), WordBytes({8}));
    CRecordingReporter reporter;
    {
        const CFileSizeLimit full(65536 + 3 * 4096);
        EXPECT_FALSE(WriteWordRuns(FileType::Frp, runs, path, std::nullopt, reporter).isSaved);
    }
    EXPECT_EQ(reporter.shown.size(), 1u);
    EXPECT_EQ(ReadAll(path), Bytes(65536, std::byte{7}));
}

TEST(WordRuns, BelowWordZeroAreAFailedSave)
{
    CTempFolder folder;
    const fs::path path = folder / "a.rcp";
    WriteAll(path, WordBytes({1, 2}));
    CWordRuns runs;
    runs.Append(WordAddress(-1), WordBytes({9}));
    CRecordingReporter reporter;
    EXPECT_FALSE(WriteWordRuns(FileType::Rcp, runs, path, std::nullopt, reporter).isSaved);
    EXPECT_EQ(ReadAll(path), WordBytes({1, 2}));
}

} // namespace
