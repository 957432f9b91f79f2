#include "files/RecipeFile.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/files/TestColumns.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"
#include "text/PathText.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::u16string>;

struct RecipeFile : testing::Test {
    CTempFolder folder;
    fs::path path = folder / "a.rcp";
    CRecipeRows rows;
    CRecordingReporter reporter;
    CNoProgress progress;
};

/// Saves `rows` under a new name, as the user does, and reads them from there.
void MoveTo(const fs::path& path, CRecipeRows& rows, CReporter& reporter)
{
    CNoProgress progress;
    const FileType type = FileTypeOf(path).value();
    ASSERT_TRUE(PrepareSaveAs(type, path, rows.StartAddress(), reporter));
    ASSERT_TRUE(SaveRecipe(type, rows, path, reporter, progress));
    ASSERT_EQ(ReadRecipe(type, rows, path, false, reporter, progress), Outcome::Done);
}

TEST_F(RecipeFile, WordsGoThroughEveryTypeAndBack)
{
    constexpr std::int32_t kRows = 40000; // of 3 words: beyond the flat part of the smaller paged file
    Bytes bytes(6 * kRows);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::byte>(i * 7 + i / 256);
    WriteAll(path, bytes);
    const std::vector<ColumnCoding> columns = {Signed16Column(), Hex16Column(), Signed16Column()};
    rows.LayOut(columns, 0, kRows);
    ASSERT_EQ(ReadRecipe(FileType::Rcp, rows, path, false, reporter, progress), Outcome::Done);
    for (const char* name : {"a.erp", "b.rcp", "c.frp", "d.erp", "e.rcp"})
        MoveTo(folder / name, rows, reporter);
    EXPECT_TRUE(ReadAll(folder / "b.rcp") == bytes);
    EXPECT_TRUE(ReadAll(folder / "e.rcp") == bytes);

    MoveTo(folder / "f.csv", rows, reporter);
    MoveTo(folder / "g.rcp", rows, reporter);
    Bytes expected = bytes; // kept: a quoted number is not a number, so the last column is lost
    for (std::size_t i = 0; i < expected.size(); i += 6)
        expected[i + 4] = expected[i + 5] = std::byte{0};
    EXPECT_TRUE(ReadAll(folder / "g.rcp") == expected);
    EXPECT_TRUE(reporter.shown.empty());
}

TEST_F(RecipeFile, NewDocumentNeedsNoFile)
{
    rows.LayOut({Signed16Column()}, 0, 1);
    EXPECT_EQ(ReadRecipe(FileType::Rcp, rows, {}, true, reporter, progress), Outcome::Done);
    EXPECT_EQ(rows.Text(0, 0), u"0");
}

TEST_F(RecipeFile, UnknownTypeReadsAndWritesNothing)
{
    WriteAll(path, WordBytes({7}));
    rows.LayOut({Signed16Column()}, 0, 1);
    const auto unknown = static_cast<FileType>(4);
    EXPECT_EQ(ReadRecipe(unknown, rows, path, false, reporter, progress), Outcome::Done);
    EXPECT_EQ(rows.Text(0, 0), u"");
    EXPECT_TRUE(SaveRecipe(unknown, rows, path, reporter, progress));
    EXPECT_TRUE(PrepareSaveAs(unknown, path, 100, reporter));
    EXPECT_EQ(ReadAll(path), WordBytes({7}));
    EXPECT_TRUE(reporter.shown.empty());
}

TEST_F(RecipeFile, SaveAsFillsAFlatFileWithOneZeroByteAWord) // kept: not two
{
    WriteAll(path, WordBytes({7, 8, 9}));
    EXPECT_TRUE(PrepareSaveAs(FileType::Rcp, path, 100, reporter));
    EXPECT_EQ(ReadAll(path), Bytes(100));
    EXPECT_TRUE(reporter.shown.empty());
}

TEST_F(RecipeFile, SaveAsWithStartAddressOneLeavesOneByte)
{
    EXPECT_TRUE(PrepareSaveAs(FileType::Rcp, path, 1, reporter));
    EXPECT_EQ(ReadAll(path), Bytes(1));
}

TEST_F(RecipeFile, SaveAsFromWordZeroLeavesAFlatFileAlone)
{
    WriteAll(path, WordBytes({7}));
    EXPECT_TRUE(PrepareSaveAs(FileType::Rcp, path, 0, reporter));
    EXPECT_EQ(ReadAll(path), WordBytes({7}));
    EXPECT_TRUE(PrepareSaveAs(FileType::Rcp, folder / "new.rcp", 0, reporter));
    EXPECT_FALSE(fs::exists(folder / "new.rcp"));
}

TEST_F(RecipeFile, SaveAsBeforeTheFirstWordLeavesAnEmptyFlatFile)
{
    WriteAll(path, WordBytes({7}));
    EXPECT_TRUE(PrepareSaveAs(FileType::Rcp, path, -5, reporter));
    EXPECT_EQ(ReadAll(path), Bytes());
}

TEST_F(RecipeFile, SaveAsReportsAFlatFileThatCannotBeCreated)
{
    const fs::path bad = folder / "missing" / "a.rcp";
    EXPECT_FALSE(PrepareSaveAs(FileType::Rcp, bad, 100, reporter));
    EXPECT_EQ(reporter.shown, Texts{u"Open " + PathText(bad) + u" failed ,It can't save!"});
}

TEST_F(RecipeFile, SaveAsReportsAFlatFileThatDoesNotFit)
{
    const CFileSizeLimit limit(99);
    EXPECT_FALSE(PrepareSaveAs(FileType::Rcp, path, 100, reporter));
    EXPECT_EQ(reporter.shown, Texts{u"Open " + PathText(path) + u" failed ,It can't save!"});
}

TEST_F(RecipeFile, SaveAsOfATableNeedsNothing)
{
    EXPECT_TRUE(PrepareSaveAs(FileType::Csv, folder / "missing" / "a.csv", 100, reporter));
    EXPECT_TRUE(reporter.shown.empty());
}

struct SaveAsPaged : testing::TestWithParam<FileType> {
    CTempFolder folder;
    CRecordingReporter reporter;
};

TEST_P(SaveAsPaged, CreatesAMissingFileEmpty)
{
    EXPECT_TRUE(PrepareSaveAs(GetParam(), folder / "a", 100, reporter));
    EXPECT_EQ(ReadAll(folder / "a"), Bytes());
}

TEST_P(SaveAsPaged, LeavesAnExistingFileAsItIs)
{
    WriteAll(folder / "a", WordBytes({7}));
    EXPECT_TRUE(PrepareSaveAs(GetParam(), folder / "a", 100, reporter));
    EXPECT_EQ(ReadAll(folder / "a"), WordBytes({7}));
}

TEST_P(SaveAsPaged, ReportsAFileThatCannotBeOpened)
{
    EXPECT_FALSE(PrepareSaveAs(GetParam(), folder / "missing" / "a", 100, reporter));
    EXPECT_FALSE(PrepareSaveAs(GetParam(), folder.Path(), 100, reporter));
    const std::u16string message = u"Can't open the file that need save!";
    EXPECT_EQ(reporter.shown, (Texts{message, message}));
}

std::string NameOfType(const testing::TestParamInfo<FileType>& info)
{
    return info.param == FileType::Erp ? "Erp" : "Frp";
}

INSTANTIATE_TEST_SUITE_P(Types, SaveAsPaged, testing::Values(FileType::Erp, FileType::Frp), NameOfType);

} // namespace
