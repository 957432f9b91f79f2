// What the window does when another program writes the open file.

#include "tests/app/SaveFixture.h"
#include "views/ChangesPanel.h"

#include <QApplication>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QToolButton>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<QString>;

const QString kOneDiffers = "oven.rcp was changed by another program: 1 value shown differs.";
const QString kTwoDiffer = "oven.rcp was changed by another program: 2 values shown differ.";
const QString kQuestion = "oven.rcp was changed by another program since it was read.";

/// The belt of row 3 is 2.00 here and 2.10 there: theirs.
struct OtherPrograms : SaveFixture {
    void SetUp() override
    {
        SaveFixture::SetUp();
        Activate();
    }

    fs::path File() const { return folder / "oven.rcp"; }

    void WriteInPlace(const Bytes& bytes)
    {
        CFile file(File(), CFile::Mode::ReadWrite);
        ASSERT_TRUE(file.WriteAt(0, bytes));
    }

    void ReplaceBy(const Bytes& bytes)
    {
        WriteAll(folder / "other", bytes);
        fs::rename(folder / "other", File());
    }

    bool IsTold(const QString& text)
    {
        return WaitFor([&] { return Strip() == text; });
    }

    /// The window looks when it becomes the active one.
    void BecomeActive()
    {
        QEvent event(QEvent::WindowActivate);
        QApplication::sendEvent(frame.get(), &event);
    }

    static CModalAnswer::Action Press(const char* button) { return CModalAnswer::PressNamed(QLatin1String(button)); }

    const Bytes theirs = OvenWith({{10, 210}});
};

} // namespace

TEST_F(OtherPrograms, AreToldOfWhenTheyReplaceTheFile)
{
    ReplaceBy(theirs);
    EXPECT_TRUE(IsTold(kOneDiffers));
    EXPECT_EQ(StripButtons(), (QStringList{"Show", "Read again", "Keep mine"}));
    EXPECT_EQ(Grid().GetItemText(3, kBelt), "2.00") << "what is shown stays";
}

TEST_F(OtherPrograms, AreToldOfWhenTheyWriteInPlaceWithTheSameTime)
{
    BecomeActive();
    EXPECT_EQ(Strip(), "");
    const auto time = fs::last_write_time(File());
    WriteInPlace(theirs);
    fs::last_write_time(File(), time);
    EXPECT_TRUE(IsTold(kOneDiffers));
}

/// Both kinds of writing are heard of again after an event of the other kind.
TEST_F(OtherPrograms, AreToldOfEachTime)
{
    ReplaceBy(theirs);
    ASSERT_TRUE(IsTold(kOneDiffers));
    WriteInPlace(OvenWith({{10, 210}, {15, 7}}));
    ASSERT_TRUE(IsTold(kTwoDiffer));
    ReplaceBy(theirs);
    ASSERT_TRUE(IsTold(kOneDiffers));
    WriteInPlace(oven);
    EXPECT_TRUE(IsTold("")) << "it is again as it was";
}

TEST_F(OtherPrograms, AreNotToldOfForWordsOutsideTheTable)
{
    ReplaceBy(OvenWith({{20, 5}}));
    BecomeActive();
    EXPECT_EQ(Strip(), "");
}

TEST_F(OtherPrograms, AreLookedForWhenTheWindowBecomesActive)
{
    WriteInPlace(theirs);
    BecomeActive(); // before any event was handled
    EXPECT_EQ(Strip(), kOneDiffers);
}

TEST_F(OtherPrograms, AreToldOfWhenTheyRemoveTheFileAndMakeItAgain)
{
    fs::remove(File());
    EXPECT_TRUE(IsTold("oven.rcp was removed by another program. Its values are only in this window."));
    EXPECT_EQ(StripButtons(), QStringList{"Save as..."});
    WriteAll(File(), oven);
    EXPECT_TRUE(IsTold("")) << "as it was";
    fs::remove(File());
    EXPECT_TRUE(WaitFor([this] { return !Strip().isEmpty(); }));
    WriteAll(File(), theirs);
    EXPECT_TRUE(IsTold(kOneDiffers));
}

TEST_F(OtherPrograms, AreToldOfWhenAFolderHasTheName)
{
    fs::remove(File());
    fs::create_directory(File());
    EXPECT_TRUE(IsTold("oven.rcp is no file any more. Its values are only in this window."));
}

TEST_F(OtherPrograms, AreNotToldOfAgainOnceDismissed)
{
    ReplaceBy(theirs);
    ASSERT_TRUE(IsTold(kOneDiffers));
    QTest::mouseClick(&Find<QToolButton>("buttonDismissStrip"), Qt::LeftButton);
    BecomeActive();
    EXPECT_EQ(Strip(), "");
    ReplaceBy(OvenWith({{10, 210}, {15, 7}}));
    EXPECT_TRUE(IsTold(kTwoDiffer)) << "it is another one now";
}

TEST_F(OtherPrograms, HaveTheirValuesListedAndTakenOver)
{
    ReplaceBy(theirs);
    ASSERT_TRUE(IsTold(kOneDiffers));
    ClickInStrip("Show");
    ASSERT_TRUE(Panel().isVisible());
    EXPECT_EQ(Listed(), QStringList{"3 Belt 2.00>2.10 "});
    ChooseLine(0);
    QTest::mouseClick(&Find<QPushButton>("buttonTakeOver"), Qt::LeftButton);
    EXPECT_EQ(Grid().GetItemText(3, kBelt), "2.10");
    EXPECT_EQ(NextUndo(), "Take over");
    EXPECT_TRUE(IsModified());
    Save();
    EXPECT_EQ(Oven()[20], std::byte{210}) << "the words as they were";
}

TEST_F(OtherPrograms, AreReadAgain)
{
    TypeIntoCell(1, kBelt, "1.70");
    ReplaceBy(theirs);
    ASSERT_TRUE(IsTold(kOneDiffers));
    ClickInStrip("Read again");
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(Grid().GetItemText(3, kBelt), "2.10");
    EXPECT_EQ(Grid().GetItemText(1, kBelt), "1.50");
    EXPECT_FALSE(IsModified());
    Grid().setFocus();
    Undo();
    EXPECT_EQ(Grid().GetItemText(1, kBelt), "1.70") << "the edit comes back";
}

TEST_F(OtherPrograms, AreWrittenOverOnceTheUserKeepsWhatIsShown)
{
    ReplaceBy(theirs);
    ASSERT_TRUE(IsTold(kOneDiffers));
    ClickInStrip("Keep mine");
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(Field(), "0 edited, 4 others change");
    Grid().setFocus();
    Save();
    EXPECT_EQ(Oven(), ovenAsShown);
}

TEST_F(OtherPrograms, StopASaveThatTheUserCancels)
{
    TypeIntoCell(1, kBelt, "1.70");
    ReplaceBy(theirs);
    const CModalAnswer answer({CModalAnswer::Key(Qt::Key_Escape)});
    Save();
    EXPECT_EQ(answer.texts, Texts{kQuestion});
    EXPECT_EQ(Oven(), theirs);
    EXPECT_TRUE(IsModified());
}

TEST_F(OtherPrograms, KeepTheirValuesWhenOnlyTheEditedOnesAreSaved)
{
    TypeIntoCell(1, kBelt, "1.70");
    ReplaceBy(theirs);
    const CModalAnswer answer({Press("buttonSaveEditedOnly")});
    Save();
    EXPECT_EQ(answer.texts, Texts{kQuestion});
    EXPECT_EQ(Oven(), OvenWith({{0, 170}, {10, 210}}));
    EXPECT_FALSE(IsModified());
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(Field(), "0 edited, 3 others change") << "theirs is one of them";
}

TEST_F(OtherPrograms, AreWrittenOverWhenTheUserWantsIt)
{
    TypeIntoCell(1, kBelt, "1.70");
    ReplaceBy(theirs);
    const CModalAnswer answer({Press("buttonSaveAll")});
    Save();
    EXPECT_EQ(Oven()[20], std::byte{200});
    EXPECT_FALSE(IsModified());
    EXPECT_EQ(Strip(), "oven.rcp: 1 value that another program had written was overwritten.");
    ClickInStrip("Show");
    EXPECT_EQ(Listed(), QStringList{"3 Belt 2.00>2.10 "});
}

TEST_F(OtherPrograms, AreAskedAboutByASaveOfEditedValuesThatTheyChangedToo)
{
    TypeIntoCell(3, kBelt, "2.20");
    ReplaceBy(theirs);
    const CModalAnswer answer({Press("buttonCancelSave")});
    SaveEditedOnly();
    EXPECT_EQ(answer.texts, Texts{kQuestion});
    EXPECT_EQ(Oven(), theirs);
}

TEST_F(OtherPrograms, AreNotAskedAboutByASaveOfOtherEditedValues)
{
    TypeIntoCell(1, kBelt, "1.70");
    ReplaceBy(theirs);
    SaveEditedOnly();
    EXPECT_EQ(Oven(), OvenWith({{0, 170}, {10, 210}}));
}

/// The silent save before another file is opened asks nothing, and the strip tells.
TEST_F(OtherPrograms, AreToldOfAfterASilentSave)
{
    WriteOven("other.rcp");
    TypeIntoCell(1, kBelt, "1.70");
    ReplaceBy(theirs);
    Open("other.rcp");
    EXPECT_EQ(Title(), TitleWith("other.rcp"));
    EXPECT_EQ(Oven()[20], std::byte{200});
    EXPECT_EQ(Strip(), "oven.rcp: 1 value that another program had written was overwritten.");
}

TEST_F(OtherPrograms, AreNotToldOfForTheWindowsOwnSaves)
{
    TypeIntoCell(1, kBelt, "1.70");
    Save();
    ClickInStrip("Put back");
    TypeIntoCell(2, kBelt, "0.80");
    SaveEditedOnly();
    BecomeActive();
    EXPECT_EQ(Strip(), "");
}

TEST_F(OtherPrograms, HaveWhatTheyWroteKeptBeforeItIsOverwritten)
{
    const fs::path data = folder / "data";
    frame->KeepIn(data);
    TypeIntoCell(1, kBelt, "1.70");
    ReplaceBy(theirs);
    const CModalAnswer answer({Press("buttonSaveAll")});
    Save();
    EXPECT_EQ(Strip(), "oven.rcp: 1 value that another program had written was overwritten. What it held is kept as an "
                       "earlier version.");
    const CVersionStore versions(data);
    ASSERT_EQ(versions.List(File()).size(), 1u);
    EXPECT_EQ(ReadAll(versions.PathOf(File(), versions.List(File())[0])), theirs);
}

/// The window goes on after some seconds.
TEST_F(OtherPrograms, ThatDoNotEndAreToldOf)
{
    TypeIntoCell(1, kBelt, "1.70");
    CFileLock lock;
    ASSERT_EQ(lock.Take(File(), std::chrono::seconds(0)), CFileLock::State::Held);
    Save();
    EXPECT_EQ(Oven()[0], std::byte{170});
    EXPECT_EQ(Strip(), "oven.rcp was saved while another program was writing it.");
}

TEST_F(OtherPrograms, HaveTheirCellsMarkedOnceTheUserKeepsWhatIsShown)
{
    ReplaceBy(theirs);
    ASSERT_TRUE(IsTold(kOneDiffers));
    ClickInStrip("Keep mine");
    EXPECT_TRUE(Marks(3, kBelt).rewritten);
    EXPECT_EQ(QApplication::focusWidget(), &Grid());
}

TEST_F(OtherPrograms, AreHeardOfBehindALink)
{
    fs::create_directory(folder / "links");
    fs::create_symlink(File(), folder / "links" / "oven.rcp");
    Open("links/oven.rcp");
    WaitForPlan();
    QTest::qWait(300); // until it is watched
    fs::remove(File());
    ASSERT_TRUE(WaitFor([this] { return Strip().contains("was removed"); }));
    WriteAll(File(), theirs);
    EXPECT_TRUE(IsTold(kOneDiffers));
}

/// They are dropped by a save, as stated; the plan says so, and what was dropped can be had back.
TEST_F(OtherPrograms, HaveTheLinesCountedThatTheyAppendToATable)
{
    const CModalAnswer answer({ChoosePath(Path("oven.csv"))});
    Trigger(*frame, "actionSaveAs");
    Activate();
    WaitForPlan();
    const Bytes table = ReadAll(folder / "oven.csv");
    Bytes longer = table;
    const Bytes line = UnitBytes(u"\"9\"\t\"9\"\t\"9\"\r\n");
    longer.insert(longer.end(), line.begin(), line.end());
    WriteAll(folder / "oven.csv", longer);
    EXPECT_TRUE(WaitFor([this] { return Field().contains("1 other change"); })) << Field().toStdString();
    Grid().setFocus();
    Save();
    EXPECT_TRUE(StripButtons().contains("Put back"));
    ClickInStrip("Put back");
    EXPECT_EQ(ReadAll(folder / "oven.csv"), longer);
}

/// As a drive that was away.
TEST_F(OtherPrograms, AreHeardOfInAFolderThatWasAway)
{
    fs::create_directory(folder / "drive");
    WriteOven("drive/oven.rcp");
    Open("drive/oven.rcp");
    WaitForPlan();
    QTest::qWait(300); // until it is watched
    fs::rename(folder / "drive", folder / "away");
    BecomeActive();
    ASSERT_TRUE(Strip().contains("was removed")) << Strip().toStdString();
    fs::rename(folder / "away", folder / "drive");
    BecomeActive();
    ASSERT_EQ(Strip(), "");
    CFile file(folder / "drive" / "oven.rcp", CFile::Mode::ReadWrite);
    ASSERT_TRUE(file.WriteAt(0, theirs));
    EXPECT_TRUE(IsTold(kOneDiffers));
}
