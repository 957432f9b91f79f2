#include "files/CsvRecipeFile.h"
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

/// One row that shows "7" and "8", read from good.csv.
struct CsvFailure : testing::Test {
    CsvFailure()
    {
        WriteAll(good, BytesOf({'7', ',', '8'}));
        rows.LayOut({Signed16Column(), Signed16Column()}, 0, 1);
        EXPECT_EQ(ReadCsv(rows, good, reporter, progress), Outcome::Done);
    }

    void ExpectReadFails(const fs::path& path)
    {
        reporter.shown.clear();
        EXPECT_EQ(ReadCsv(rows, path, reporter, progress), Outcome::Failed);
        EXPECT_EQ(reporter.shown, Texts{u"Can't open file " + PathText(path) + u"!"});
        EXPECT_EQ(TextsOf(rows), (Texts{u"", u""}));
    }

    void ExpectSaveFails(const fs::path& path)
    {
        reporter.shown.clear();
        EXPECT_FALSE(SaveCsv(rows, path, reporter, progress));
        EXPECT_EQ(reporter.shown, Texts{u"Save file " + PathText(path) + u" failed!"});
        EXPECT_EQ(TextsOf(rows), (Texts{u"7", u"8"})) << "the rows stay";
    }

    std::size_t FilesInFolder() const
    {
        return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder.Path()), fs::directory_iterator()));
    }

    CTempFolder folder;
    fs::path good = folder / "good.csv";
    CRecipeRows rows;
    CRecordingReporter reporter;
    CNoProgress progress;
};

TEST_F(CsvFailure, PipeIsReportedAndDoesNotHang)
{
    ASSERT_EQ(mkfifo((folder / "pipe.csv").c_str(), 0600), 0);
    ExpectReadFails(folder / "pipe.csv");
}

TEST_F(CsvFailure, EmptyPathIsReported)
{
    ExpectReadFails({});
}

TEST_F(CsvFailure, FileCutWhileItIsReadShowsWhatArrived)
{
    constexpr std::int32_t kRows = 200'000; // more bytes than one read takes
    Bytes lines;
    for (std::int32_t row = 0; row < kRows; ++row)
        for (const char c : {'7', ',', '8', '\n'})
            lines.push_back(static_cast<std::byte>(c));
    WriteAll(good, lines);
    rows.LayOut({Signed16Column(), Signed16Column()}, 0, kRows);
    CCuttingProgress cutting(good, 4);
    EXPECT_EQ(ReadCsv(rows, good, reporter, cutting), Outcome::Done);
    EXPECT_TRUE(reporter.shown.empty());
    EXPECT_EQ(rows.Text(0, 1), u"8");
    EXPECT_EQ(rows.Text(kRows - 1, 0), u"0") << "as if the file had ended there";
}

TEST_F(CsvFailure, ReadWithoutMemoryIsReported)
{
    const CAllocationLimit limit(3);
    ExpectReadFails(good);
}

TEST_F(CsvFailure, PathOfAnyLengthIsGoodEnough)
{
    fs::path deep = folder.Path();
    for (int i = 0; i < 10; ++i)
        deep /= std::string(60, 'd');
    fs::create_directories(deep);
    EXPECT_TRUE(SaveCsv(rows, deep / "a.csv", reporter, progress));
    EXPECT_EQ(ReadCsv(rows, deep / "a.csv", reporter, progress), Outcome::Done);
    EXPECT_EQ(rows.Text(0, 0), u"7");
}

TEST_F(CsvFailure, SaveToAnEmptyPathIsReported)
{
    ExpectSaveFails({});
}

TEST_F(CsvFailure, SaveToAPipeIsReportedAndDoesNotHang)
{
    ASSERT_EQ(mkfifo((folder / "pipe.csv").c_str(), 0600), 0);
    ExpectSaveFails(folder / "pipe.csv");
}

TEST_F(CsvFailure, SaveToADeviceIsReported)
{
    ExpectSaveFails("/dev/full");
}

TEST_F(CsvFailure, FullDiskIsReportedAndTheOldFileStays)
{
    {
        const CFileSizeLimit limit(6);
        ExpectSaveFails(good);
        ExpectSaveFails(folder / "new.csv");
    }
    EXPECT_EQ(ReadAll(good), BytesOf({'7', ',', '8'}));
    EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(CsvFailure, SaveGivenUpLeavesTheOldFileAndSaysNothing)
{
    CImpatientProgress impatient(0);
    EXPECT_FALSE(SaveCsv(rows, good, reporter, impatient));
    EXPECT_FALSE(SaveCsv(rows, folder / "new.csv", reporter, impatient));
    EXPECT_TRUE(reporter.shown.empty());
    EXPECT_EQ(ReadAll(good), BytesOf({'7', ',', '8'}));
    EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(CsvFailure, LongSaveIsGivenUpHalfway)
{
    rows.LayOut({Signed16Column()}, 0, 500000);
    CImpatientProgress impatient(1);
    EXPECT_FALSE(SaveCsv(rows, good, reporter, impatient));
    EXPECT_EQ(impatient.reports.size(), 2u);
    EXPECT_LT(impatient.reports.back().first, 500000u);
    EXPECT_EQ(ReadAll(good), BytesOf({'7', ',', '8'}));
    EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(CsvFailure, LongSaveOntoAFullDiskIsReportedAndTheOldFileStays)
{
    rows.LayOut({Signed16Column()}, 0, 500000);
    {
        const CFileSizeLimit limit(500000); // less than is written at once
        EXPECT_FALSE(SaveCsv(rows, good, reporter, progress));
    }
    EXPECT_EQ(reporter.shown, Texts{u"Save file " + PathText(good) + u" failed!"});
    EXPECT_EQ(ReadAll(good), BytesOf({'7', ',', '8'}));
    EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(CsvFailure, SaveWithoutMemoryIsReportedAndTheOldFileStays)
{
    {
        const CAllocationLimit limit(CAllocationLimit::kNone, 100000); // less than is written at once
        ExpectSaveFails(good);
    }
    EXPECT_EQ(ReadAll(good), BytesOf({'7', ',', '8'}));
    EXPECT_EQ(FilesInFolder(), 1u);
}

TEST_F(CsvFailure, SaveUnderTheLongestNameMayBeGivenUp)
{
    const fs::path longest = folder / (std::string(251, 'n') + ".csv");
    CImpatientProgress impatient(0);
    EXPECT_FALSE(SaveCsv(rows, longest, reporter, impatient));
    EXPECT_EQ(FilesInFolder(), 1u);
    EXPECT_TRUE(SaveCsv(rows, longest, reporter, progress));
    EXPECT_EQ(ReadAll(longest).size(), 20u);
}

} // namespace
