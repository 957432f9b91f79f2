// Edits that a window did not save, and the next one offers.

#include "recovery/UnsavedStore.h"
#include "recovery/VersionStore.h"
#include "tests/app/SaveFixture.h"
#include "tests/support/RecordingReporter.h"
#include "views/ChangesPanel.h"

#include <QApplication>
#include <QPushButton>
#include <QRegularExpression>
#include <QTableView>
#include <QTest>

namespace fs = std::filesystem;

namespace {

using Texts = std::vector<QString>;

struct UnsavedEdits : SaveFixture {
    void SetUp() override
    {
        SaveFixture::SetUp();
        frame->KeepIn(data);
    }

    void TearDown() override { Leave(); }

    /// The window goes as if its program had been ended.
    void Leave() { frame.reset(); }

    void StartAgain()
    {
        Leave();
        Start();
        frame->KeepIn(data);
    }

    /// The strip of a window that has just been started offers edits, with these words before and after the time.
    bool IsOffered(const QString& before, const QString& after)
    {
        const QRegularExpression text('^' + QRegularExpression::escape(before) + " \\d\\d:\\d\\d " +
                                      QRegularExpression::escape(after) + '$');
        return WaitFor([&] { return text.match(Strip()).hasMatch(); });
    }

    std::vector<UnsavedEntry> Journals() const { return CUnsavedStore(data).List(); }

    std::size_t CountOf(UnsavedState state) const
    {
        std::size_t count = 0;
        for (const UnsavedEntry& entry : Journals())
            count += entry.state == state ? 1 : 0;
        return count;
    }

    void EditTwo()
    {
        TypeIntoCell(2, kBelt, "0.80");
        TypeIntoCell(4, kSteam, "3.5");
    }

    fs::path data = folder / "home" / "vantor";
};

} // namespace

TEST_F(UnsavedEdits, AreOfferedByTheNextWindowAndPutBack)
{
    EditTwo();
    StartAgain();
    ASSERT_TRUE(IsOffered("2 edits to oven.rcp of", "were not saved."));
    EXPECT_EQ(StripButtons(), (QStringList{"Put back", "Show", "Discard"}));
    EXPECT_EQ(Oven(), oven) << "nothing is written unasked";
    ClickInStrip("Put back");
    EXPECT_EQ(Title(), TitleWith("oven.rcp"));
    EXPECT_EQ(Grid().GetItemText(2, kBelt), "0.80");
    EXPECT_EQ(Grid().GetItemText(4, kSteam), "3.5");
    EXPECT_EQ(Told(), "2 edits were put back.");
    EXPECT_EQ(Strip(), "");
    EXPECT_TRUE(IsModified());
    EXPECT_EQ(QApplication::focusWidget(), &Grid());
    EXPECT_EQ(NextUndo(), "Put back (2 cells)");
    EXPECT_EQ(CountOf(UnsavedState::Left), 0u);
    EXPECT_EQ(CountOf(UnsavedState::Open), 1u) << "they are this window's now";
    Undo();
    EXPECT_EQ(Grid().GetItemText(2, kBelt), "0.75");
}

TEST_F(UnsavedEdits, OfOneCellAreToldInTheSingular)
{
    TypeIntoCell(2, kBelt, "0.80");
    StartAgain();
    ASSERT_TRUE(IsOffered("1 edit to oven.rcp of", "was not saved."));
    ClickInStrip("Put back");
    EXPECT_EQ(Told(), "1 edit was put back.");
}

TEST_F(UnsavedEdits, ArePutBackIntoTheFileThatIsOpenAlready)
{
    EditTwo();
    StartAgain();
    Open("oven.rcp");
    ASSERT_TRUE(IsOffered("2 edits to oven.rcp of", "were not saved."));
    TypeIntoCell(1, kBelt, "1.70");
    ClickInStrip("Put back");
    EXPECT_EQ(Grid().GetItemText(1, kBelt), "1.70") << "what is edited here stays";
    EXPECT_EQ(Grid().GetItemText(2, kBelt), "0.80");
}

TEST_F(UnsavedEdits, ComeBackInTheLayoutThatTheyHad)
{
    GoToField("editReadCount");
    Key(Qt::Key_2);
    Key(Qt::Key_Return);
    TypeIntoCell(2, kBelt, "0.80");
    StartAgain();
    ASSERT_TRUE(IsOffered("1 edit to oven.rcp of", "was not saved."));
    ClickInStrip("Put back");
    EXPECT_EQ(frame->Document().Rows().RowCount(), 2);
    EXPECT_EQ(Grid().GetItemText(2, kBelt), "0.80");
}

TEST_F(UnsavedEdits, WhoseCellsHoldOtherValuesNowAreListed)
{
    EditTwo();
    Leave();
    WriteAll(folder / "oven.rcp", OvenWith({{5, 90}}));
    StartAgain();
    ASSERT_TRUE(IsOffered("2 edits to oven.rcp of", "were not saved."));
    ClickInStrip("Put back");
    EXPECT_EQ(Grid().GetItemText(4, kSteam), "3.5");
    EXPECT_EQ(Grid().GetItemText(2, kBelt), "0.90");
    EXPECT_EQ(Told(), "1 edit was put back. 1 was not: the file holds another value there now.");
    EXPECT_TRUE(Panel().isVisible());
    EXPECT_EQ(Listed(), QStringList{"2 Belt 0.75>0.80 edited"});
    EXPECT_EQ(CountOf(UnsavedState::Dropped), 1u) << "they can still be had";
    ChooseLine(0);
    QTest::mouseClick(&Find<QPushButton>("buttonTakeOver"), Qt::LeftButton);
    EXPECT_EQ(Grid().GetItemText(2, kBelt), "0.80");
}

TEST_F(UnsavedEdits, AreShownBeforeAnythingIsOpened)
{
    EditTwo();
    StartAgain();
    ASSERT_TRUE(IsOffered("2 edits to oven.rcp of", "were not saved."));
    ClickInStrip("Show");
    EXPECT_EQ(Listed(), (QStringList{"2 Belt 0.75>0.80 edited", "4 Steam 3.0>3.5 edited"}));
    EXPECT_FALSE(frame->Document().IsOpen());
    EXPECT_TRUE(IsOffered("2 edits to oven.rcp of", "were not saved."));
}

TEST_F(UnsavedEdits, AreKeptForAWhileWhenDiscarded)
{
    EditTwo();
    StartAgain();
    ASSERT_TRUE(IsOffered("2 edits to oven.rcp of", "were not saved."));
    ClickInStrip("Discard");
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(CountOf(UnsavedState::Dropped), 1u);
    StartAgain();
    QTest::qWait(300);
    EXPECT_EQ(Strip(), "");
}

TEST_F(UnsavedEdits, OfSeveralWindowsAreOfferedOneAfterTheOtherTheOldestFirst)
{
    WriteOven("second.rcp");
    EditTwo();
    Leave();
    Start();
    frame->KeepIn(data / "other"); // so that it claims nothing
    Leave();
    {
        CRecipeDocument second;
        second.KeepUnsavedIn(data);
        CFormatStore store(folder / "RecipeFile.Dat");
        second.StartOpen(folder / "second.rcp", FileType::Rcp);
        second.TakeSettings({*store.Library().formats[0], 0, 4});
        CRecordingReporter reporter;
        CNoProgress progress;
        second.Read(FileType::Rcp, reporter, progress);
        second.SetTexts(EditKind::Typing, {{{0, 0}, u"1.70"}});
    }
    StartAgain();
    ASSERT_TRUE(IsOffered("2 edits to oven.rcp of", "were not saved."));
    ClickInStrip("Discard");
    ASSERT_TRUE(IsOffered("1 edit to second.rcp of", "was not saved."));
    ClickInStrip("Put back");
    EXPECT_EQ(Title(), TitleWith("second.rcp"));
}

TEST_F(UnsavedEdits, OfAWindowThatIsOpenAreNotOffered)
{
    EditTwo();
    CMainFrame second(folder / "vantor");
    second.KeepIn(data);
    QTest::qWait(300);
    EXPECT_FALSE(second.findChild<QWidget*>("strip")->isVisibleTo(&second));
}

TEST_F(UnsavedEdits, OfANewDocumentComeBackAsNew)
{
    Trigger(*frame, "actionNew");
    TypeIntoCell(1, kBelt, "1.70");
    StartAgain();
    ASSERT_TRUE(IsOffered("1 edit to a new document of", "was not saved."));
    ClickInStrip("Put back");
    EXPECT_EQ(Title(), "Vantor[NoName]");
    EXPECT_TRUE(frame->Document().IsNew());
    EXPECT_EQ(Grid().GetItemText(1, kBelt), "1.70");
}

TEST_F(UnsavedEdits, StayWhereTheirFileHasGone)
{
    EditTwo();
    Leave();
    fs::remove(folder / "oven.rcp");
    StartAgain();
    ASSERT_TRUE(IsOffered("2 edits to oven.rcp of", "were not saved."));
    const CModalAnswer answer(QMessageBox::Ok);
    ClickInStrip("Put back");
    EXPECT_EQ(answer.texts, Texts{"Open error! " + Path("oven.rcp") + " doesn't exit!"});
    EXPECT_TRUE(IsOffered("2 edits to oven.rcp of", "were not saved."));
    WriteOven("oven.rcp");
    ClickInStrip("Put back");
    EXPECT_EQ(Grid().GetItemText(2, kBelt), "0.80");
}

TEST_F(UnsavedEdits, AreNotPutBackWhileOthersAreNotSaved)
{
    EditTwo();
    StartAgain();
    WriteOven("second.rcp");
    Open("second.rcp");
    TypeIntoCell(1, kBelt, "1.70");
    ASSERT_TRUE(IsOffered("2 edits to oven.rcp of", "were not saved."));
    ClickInStrip("Put back");
    EXPECT_EQ(Title(), TitleWith("second.rcp"));
    EXPECT_EQ(ReadAll(folder / "second.rcp"), oven) << "no file is written unasked";
    EXPECT_EQ(Told(), "Save what is open first: another file is to be opened.");
    EXPECT_TRUE(IsOffered("2 edits to oven.rcp of", "were not saved."));
}

TEST_F(UnsavedEdits, ThatHaveNoFolderAreToldOf)
{
    Leave();
    Start();
    frame->KeepIn({});
    Open("oven.rcp");
    TypeIntoCell(2, kBelt, "0.80");
    EXPECT_TRUE(Told().startsWith("What is not saved would be lost with this window: ")) << Told().toStdString();
}

TEST_F(UnsavedEdits, AreCopiedOrPutBackWhereNoVersionCanBeKeptWhichIsTold)
{
    fs::create_directories(data);
    WriteAll(data / "versions", {});
    WriteOven("copy.rcp");
    {
        const CModalAnswer answer({ChoosePath(Path("copy.rcp")), CModalAnswer::Press(QMessageBox::Yes)});
        Trigger(*frame, "actionSaveCopy");
    }
    EXPECT_TRUE(Told().startsWith("No earlier version of file " + Path("copy.rcp"))) << Told().toStdString();
    Activate();
    Grid().setFocus();
    Save();
    ClickInStrip("Put back");
    EXPECT_TRUE(Told().startsWith("No earlier version of file " + Path("oven.rcp"))) << Told().toStdString();
}

TEST_F(UnsavedEdits, AreNoneAfterASave)
{
    EditTwo();
    EXPECT_EQ(CountOf(UnsavedState::Open), 1u);
    Save();
    EXPECT_TRUE(Journals().empty());
    StartAgain();
    QTest::qWait(300);
    EXPECT_EQ(Strip(), "");
}

TEST_F(UnsavedEdits, AreDroppedByClosingWithNo)
{
    EditTwo();
    const CModalAnswer answer(QMessageBox::No);
    EXPECT_TRUE(frame->close());
    EXPECT_EQ(CountOf(UnsavedState::Dropped), 1u);
    EXPECT_EQ(CountOf(UnsavedState::Open), 0u);
}

TEST_F(UnsavedEdits, StayWhenClosingWithYesCannotSave)
{
    EditTwo();
    fs::remove(folder / "oven.rcp");
    fs::create_directory(folder / "oven.rcp");
    const CModalAnswer answer({CModalAnswer::Press(QMessageBox::Yes), CModalAnswer::Press(QMessageBox::Ok)});
    EXPECT_TRUE(frame->close());
    Leave();
    EXPECT_EQ(CountOf(UnsavedState::Left), 1u);
}

TEST_F(UnsavedEdits, AreFlushedAMomentLater)
{
    TypeIntoCell(2, kBelt, "0.80");
    EXPECT_FALSE(frame->Document().Unsaved().IsFlushed());
    EXPECT_TRUE(WaitFor([this] { return frame->Document().Unsaved().IsFlushed(); }));
}

TEST_F(UnsavedEdits, ThatCannotBeKeptAreToldOfInTheStatusBar)
{
    fs::create_directories(data.parent_path());
    fs::remove_all(data);
    WriteAll(data, {});
    TypeIntoCell(2, kBelt, "0.80");
    EXPECT_EQ(Grid().GetItemText(2, kBelt), "0.80");
    EXPECT_TRUE(Told().startsWith("What is not saved would be lost with this window: ")) << Told().toStdString();
    fs::remove(data);
    TypeIntoCell(3, kBelt, "0.90");
    EXPECT_FALSE(Told().startsWith("What is not saved")) << Told().toStdString();
}

TEST_F(UnsavedEdits, OfADamagedJournalStopNoStart)
{
    EditTwo();
    Leave();
    fs::path journal;
    for (const auto& entry : fs::directory_iterator(data / "unsaved"))
        if (entry.is_regular_file())
            journal = entry.path();
    Bytes bytes = ReadAll(journal);
    bytes[20] = std::byte{0xFF};
    WriteAll(journal, bytes);
    StartAgain();
    QTest::qWait(300);
    EXPECT_EQ(Strip(), "");
    Open("oven.rcp");
    EXPECT_EQ(Title(), TitleWith("oven.rcp"));
}

TEST_F(UnsavedEdits, AreSavedOverAVersionThatIsKept)
{
    TypeIntoCell(2, kBelt, "0.80");
    Save();
    EXPECT_EQ(CVersionStore(data).List(folder / "oven.rcp").size(), 1u);
    EXPECT_EQ(CVersionStore(data).List(folder / "oven.rcp")[0].command, u"Save");
}

/// The status bar goes on saying it until a version is kept.
TEST_F(UnsavedEdits, AreSavedWhereNoVersionCanBeKeptWhichIsTold)
{
    fs::create_directories(data);
    WriteAll(data / "versions", {});
    TypeIntoCell(2, kBelt, "0.80");
    Save();
    EXPECT_EQ(Oven()[10], std::byte{80});
    EXPECT_TRUE(Told().startsWith("No earlier version of file ")) << Told().toStdString();
    fs::remove(data / "versions");
    TypeIntoCell(2, kBelt, "0.90");
    Save();
    EXPECT_FALSE(Told().startsWith("No earlier version of file ")) << Told().toStdString();
}

TEST_F(UnsavedEdits, AreListedNoMoreOnceTheyArePutBack)
{
    EditTwo();
    StartAgain();
    ASSERT_TRUE(IsOffered("2 edits to oven.rcp of", "were not saved."));
    ClickInStrip("Show");
    ClickInStrip("Put back");
    EXPECT_EQ(Panel().windowTitle(), "Changes on saving");
}
