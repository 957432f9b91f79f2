#include "merge/MergeFileChoice.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"
#include "text/PathText.h"

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<std::u16string>;

struct MergeFileChoice : testing::Test {
    CTempFolder folder;
    CRecordingReporter reporter;
};

TEST_F(MergeFileChoice, LengthIsInBytesAndTheOddOneMakesNoWord)
{
    WriteAll(folder / "nine.rcp", Bytes(9));
    EXPECT_EQ(MeasureMergeFile(folder / "nine.rcp", MergeSource::First, reporter), 9);
    EXPECT_EQ(MeasureMergeFile(folder / "nine.rcp", MergeSource::Second, reporter), 9);
    EXPECT_EQ(WholeWords(9), 4);
    EXPECT_TRUE(reporter.shown.empty());
}

TEST_F(MergeFileChoice, EmptyFileHasNoWords)
{
    WriteAll(folder / "empty.rcp", {});
    EXPECT_EQ(MeasureMergeFile(folder / "empty.rcp", MergeSource::First, reporter), 0);
    EXPECT_EQ(WholeWords(0), 0);
    EXPECT_TRUE(reporter.shown.empty());
}

TEST_F(MergeFileChoice, LengthMayExceed32Bits)
{
    WriteAll(folder / "long.rcp", {});
    fs::resize_file(folder / "long.rcp", 6'000'000'001); // takes no room on the disk
    EXPECT_EQ(MeasureMergeFile(folder / "long.rcp", MergeSource::Second, reporter), 6'000'000'001);
    EXPECT_EQ(WholeWords(6'000'000'001), 3'000'000'000);
}

TEST_F(MergeFileChoice, FirstFileThatCannotBeOpenedIsReported)
{
    const fs::path gone = folder / "gone.rcp";
    EXPECT_EQ(MeasureMergeFile(gone, MergeSource::First, reporter), std::nullopt);
    EXPECT_EQ(reporter.shown, Texts{u"Can't open file " + PathText(gone) + u",it can't be mergered!"}); // kept
    EXPECT_FALSE(fs::exists(gone));
}

TEST_F(MergeFileChoice, SecondFileThatCannotBeOpenedIsReported)
{
    EXPECT_EQ(MeasureMergeFile(folder.Path(), MergeSource::Second, reporter), std::nullopt);
    EXPECT_EQ(reporter.shown, Texts{u"Can't open file " + PathText(folder.Path()) + u",it can't be merged!"});
}

} // namespace
