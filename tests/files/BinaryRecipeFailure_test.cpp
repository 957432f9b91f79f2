#include "files/BinaryRecipeFile.h"
#include "tests/files/AllocationLimit.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/files/TestColumns.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"
#include "text/PathText.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::u16string>;

/// One row of two words that show "7" and "8", read from good.rcp.
struct BinaryRecipeFailure : testing::Test {
    BinaryRecipeFailure()
    {
        WriteAll(good, WordBytes({7, 8}));
        rows.LayOut({Signed16Column(), Signed16Column()}, 0, 1);
        EXPECT_EQ(ReadBinaryRecipe(rows, good, false, reporter, progress), Outcome::Done);
    }

    void ExpectReadFails(const fs::path& path)
    {
        reporter.shown.clear();
        EXPECT_EQ(ReadBinaryRecipe(rows, path, false, reporter, progress), Outcome::Failed);
        EXPECT_EQ(reporter.shown, Texts{u"Open file " + PathText(path) + u" error!"});
        EXPECT_EQ(rows.Text(0, 0), u"");
        EXPECT_EQ(rows.Text(0, 1), u"");
    }

    void ExpectSaveFails(const fs::path& path)
    {
        reporter.shown.clear();
        EXPECT_FALSE(SaveBinaryRecipe(rows, path, reporter, progress));
        EXPECT_EQ(reporter.shown, Texts{u"Can't save file " + PathText(path) + u",please check file or your disk!"});
        EXPECT_EQ(rows.Text(0, 0), u"7") << "the rows stay";
    }

    CTempFolder folder;
    fs::path good = folder / "good.rcp";
    CRecipeRows rows;
    CRecordingReporter reporter;
    CNoProgress progress;
};

TEST_F(BinaryRecipeFailure, FileCutWhileItIsReadShowsWhatArrived)
{
    constexpr std::int32_t kRows = 40'000'000; // more bytes than one read takes
    fs::resize_file(good, 2 * std::uintmax_t{kRows});
    rows.LayOut({Signed16Column()}, 0, kRows);
    CCuttingProgress cutting(good, 4);
    EXPECT_EQ(ReadBinaryRecipe(rows, good, false, reporter, cutting), Outcome::Done);
    EXPECT_TRUE(reporter.shown.empty());
    EXPECT_EQ(rows.Text(1, 0), u"8");
    EXPECT_EQ(rows.Text(kRows - 1, 0), u"0") << "as if the file had ended there";
}

TEST_F(BinaryRecipeFailure, DanglingLinkIsReported)
{
    fs::create_symlink(folder / "missing", folder / "link.rcp");
    ExpectReadFails(folder / "link.rcp");
}

TEST_F(BinaryRecipeFailure, PipeIsReportedAndDoesNotHang)
{
    ASSERT_EQ(mkfifo((folder / "pipe.rcp").c_str(), 0600), 0);
    ExpectReadFails(folder / "pipe.rcp");
}

TEST_F(BinaryRecipeFailure, EmptyPathIsReportedWhenTheDocumentIsNotNew)
{
    ExpectReadFails({});
}

TEST_F(BinaryRecipeFailure, ReadWithoutMemoryIsReported)
{
    const CAllocationLimit limit(3);
    ExpectReadFails(good);
}

TEST_F(BinaryRecipeFailure, SaveToAnEmptyPathIsReported)
{
    ExpectSaveFails({});
}

TEST_F(BinaryRecipeFailure, SaveToAPipeIsReportedAndDoesNotHang)
{
    ASSERT_EQ(mkfifo((folder / "pipe.rcp").c_str(), 0600), 0);
    ExpectSaveFails(folder / "pipe.rcp");
}

TEST_F(BinaryRecipeFailure, SaveToADeviceIsReported)
{
    ExpectSaveFails("/dev/full");
}

TEST_F(BinaryRecipeFailure, SaveOnAFullDiskIsReportedAndLeavesNoNewFile)
{
    {
        const CFileSizeLimit limit(3);
        ExpectSaveFails(folder / "new.rcp");
    }
    EXPECT_FALSE(fs::exists(folder / "new.rcp"));
}

TEST_F(BinaryRecipeFailure, SaveThatFindsNoRoomToGrowTouchesNoOldWord)
{
    rows.LayOut({Signed16Column(), Signed16Column()}, 1, 2000);
    rows.SetText(0, 0, u"9");
    {
        const CFileSizeLimit limit(5000);
        const SaveResult result = SaveBinaryRecipe(rows, good, reporter, progress);
        EXPECT_FALSE(result.isSaved);
        EXPECT_FALSE(result.mayHoldOldAndNew);
    }
    EXPECT_EQ(ReadAll(good), WordBytes({7, 8}));
}

TEST_F(BinaryRecipeFailure, GapBeforeTheStretchTakesNoRoom)
{
    rows.LayOut({Signed16Column(), Signed16Column()}, 0x7FFFFF00, 1);
    EXPECT_TRUE(SaveBinaryRecipe(rows, folder / "far.rcp", reporter, progress));
    struct stat status {};
    ASSERT_EQ(stat((folder / "far.rcp").string().c_str(), &status), 0);
    EXPECT_EQ(status.st_size, 2 * std::int64_t{0x7FFFFF00} + 4);
    EXPECT_LT(status.st_blocks, 1000);
}

TEST_F(BinaryRecipeFailure, SaveWithoutMemoryIsReportedAndWritesNothing)
{
    {
        const CAllocationLimit limit(3);
        ExpectSaveFails(folder / "new.rcp");
    }
    EXPECT_FALSE(fs::exists(folder / "new.rcp"));
}

TEST_F(BinaryRecipeFailure, SaveBeforeTheFirstWordIsReportedAndWritesNothing)
{
    rows.LayOut({Signed16Column()}, -1, 1);
    rows.SetText(0, 0, u"7");
    ExpectSaveFails(folder / "new.rcp");
    EXPECT_FALSE(fs::exists(folder / "new.rcp"));
}

TEST_F(BinaryRecipeFailure, SaveGivenUpWritesNothingAndSaysNothing)
{
    rows.SetText(0, 0, u"9");
    CImpatientProgress impatient(0);
    EXPECT_FALSE(SaveBinaryRecipe(rows, good, reporter, impatient));
    EXPECT_FALSE(SaveBinaryRecipe(rows, folder / "new.rcp", reporter, impatient));
    EXPECT_TRUE(reporter.shown.empty());
    EXPECT_EQ(ReadAll(good), WordBytes({7, 8}));
    EXPECT_FALSE(fs::exists(folder / "new.rcp"));
    EXPECT_EQ(rows.Text(0, 0), u"9");
}

TEST_F(BinaryRecipeFailure, SaveGivenUpHalfwayWritesNothing)
{
    constexpr std::int32_t kRows = 200000;
    CImpatientProgress impatient(2);
    rows.LayOut({Signed16Column()}, 0, kRows);
    EXPECT_FALSE(SaveBinaryRecipe(rows, good, reporter, impatient));
    EXPECT_EQ(impatient.reports.size(), 3u);
    EXPECT_EQ(ReadAll(good), WordBytes({7, 8}));
}

TEST_F(BinaryRecipeFailure, SaveIsNotGivenUpOnceItWrites)
{
    CImpatientProgress impatient(1);
    EXPECT_TRUE(SaveBinaryRecipe(rows, folder / "new.rcp", reporter, impatient));
    EXPECT_EQ(impatient.reports.size(), 2u);
    EXPECT_EQ(ReadAll(folder / "new.rcp"), WordBytes({7, 8}));
}

} // namespace
