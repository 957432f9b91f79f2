#include "disk/File.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/views/MergeParamFixture.h"
#include "text/PathText.h"
#include "text/Utf8Text.h"

#include <QTest>

namespace fs = std::filesystem;

namespace {

TEST_F(MergeParam, MergesBothStretchesAndCloses)
{
    ChooseAll();
    ClickMerge();
    ExpectClosedWithOk();
    ExpectMerged(k128KBytes, bothStretches);
    EXPECT_EQ(ReadAll(folder / "first.rcp"), firstBytes);
    EXPECT_EQ(ReadAll(folder / "second.rcp"), secondBytes);
}

TEST_F(MergeParam, MergesTheSecondRightAfterTheFirstAtEnter)
{
    ChooseAll();
    Type("editSecondPlace", "3");
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Return);
    ExpectClosedWithOk();
    ExpectMerged(k128KBytes, WordBytes({0x1312, 0x1413, 0x1514, 0x2B2A}));
}

TEST_F(MergeParam, MergesIntoTheLargerSize)
{
    ChooseAll();
    FindIn<QWidget>(*dialog, "radio128K").setFocus();
    QTest::keyClick(dialog->focusWidget(), Qt::Key_Right);
    Type("editSecondPlace", "261631"); // the last word
    ClickMerge();
    ExpectClosedWithOk();
    Bytes expected = firstStretch;
    expected.resize(k256KBytes - 2);
    expected.insert(expected.end(), secondBytes.begin(), secondBytes.begin() + 2);
    ExpectMerged(k256KBytes, expected);
}

TEST_F(MergeParam, MergesAfterARefusalWasPutRight)
{
    ChooseAll();
    Type("editSecondPlace", "2");
    ClickMerge();
    EXPECT_EQ(reporter.shown.size(), 1u);
    reporter.shown.clear();
    Type("editSecondPlace", "5");
    ClickMerge();
    ExpectClosedWithOk();
    ExpectMerged(k128KBytes, bothStretches);
}

TEST_F(MergeParam, ReplacesALongerFileEntirely)
{
    WriteAll(folder / "merged.rcp", Bytes(300'000, std::byte{0xFF}));
    reporter.answer = true;
    ChooseAll();
    EXPECT_EQ(reporter.asked.size(), 1u);
    ClickMerge();
    ExpectClosedWithOk();
    ExpectMerged(k128KBytes, bothStretches);
}

TEST_F(MergeParam, KeepsTheBlanksAroundTheMergedName)
{
    ChooseAll();
    ChooseMerged(" b ");
    ClickMerge();
    ExpectClosedWithOk();
    EXPECT_TRUE(fs::exists(folder / " b .rcp"));
}

TEST_F(MergeParam, MergedFileThatCannotBeCreatedIsReported)
{
    fs::create_directory(folder / "merged.rcp");
    ChooseAll();
    const auto fields = Fields();
    ClickMerge();
    ExpectStaysOpen(u"Merge file " + PathText(folder / "merged.rcp") + u" failed!", fields);
    EXPECT_TRUE(fs::is_empty(folder / "merged.rcp"));
}

TEST_F(MergeParam, FirstFileDeletedSinceItWasChosenIsReportedAndLeavesZeros)
{
    ChooseAll();
    fs::remove(folder / "first.rcp");
    const auto fields = Fields();
    ClickMerge();
    ExpectStaysOpen(u"Open file " + PathText(folder / "first.rcp") + u" failed!", fields);
    ExpectMerged(k128KBytes, {});
}

TEST_F(MergeParam, SecondFileDeletedSinceItWasChosenIsReportedAndLeavesTheFirstStretch)
{
    ChooseAll();
    fs::remove(folder / "second.rcp");
    const auto fields = Fields();
    ClickMerge();
    ExpectStaysOpen(u"Open file " + PathText(folder / "second.rcp") + u" failed!", fields);
    ExpectMerged(k128KBytes, firstStretch);
    WriteAll(folder / "second.rcp", secondBytes); // and the next try succeeds
    reporter.shown.clear();
    ClickMerge();
    ExpectClosedWithOk();
    ExpectMerged(k128KBytes, bothStretches);
}

TEST_F(MergeParam, AFullDiskIsReportedAndLeavesWhatWasWritten)
{
    ChooseAll();
    const auto fields = Fields();
    {
        const CFileSizeLimit limit(1000);
        ClickMerge();
    }
    const std::u16string merged = PathText(folder / "merged.rcp");
    const std::u16string reason =
        FromUtf8(ReasonUtf8(std::make_error_code(std::errc::file_too_large))); // in the user's language
    ExpectStaysOpen(u"Merge file " + merged + u" failed!\nWriting " + merged + u": " + reason, fields);
    ExpectMerged(1000, {});
    reporter.shown.clear();
    ClickMerge(); // there is room again
    ExpectClosedWithOk();
    ExpectMerged(k128KBytes, bothStretches);
}

TEST_F(MergeParam, AMergeIntoOneOfTheSourcesIsRefused)
{
    reporter.answer = true;
    ChooseAll();
    ChooseMerged("first");
    const auto fields = Fields();
    ClickMerge();
    ExpectStaysOpen(u"Merge file " + PathText(folder / "first.rcp") + u" failed!", fields);
    EXPECT_EQ(ReadAll(folder / "first.rcp"), firstBytes);
}

struct Cancelled : MergeParam, testing::WithParamInterface<const char*> {};

TEST_P(Cancelled, ClosesAndWritesNothing)
{
    ChooseAll();
    if (GetParam() == std::string("Escape"))
        QTest::keyClick(dialog->focusWidget(), Qt::Key_Escape);
    else
        ClickOn(*dialog, "buttonCancel");
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Rejected);
    EXPECT_TRUE(reporter.shown.empty());
    EXPECT_FALSE(fs::exists(folder / "merged.rcp"));
}

INSTANTIATE_TEST_SUITE_P(Ways, Cancelled, testing::Values("Escape", "Button"),
                         [](const auto& c) { return std::string(c.param); });

} // namespace
