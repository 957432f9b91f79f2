// What a save stored although nobody had edited it: told afterwards, shown, and put back.

#include "controls/Strip.h"
#include "tests/app/SaveFixture.h"
#include "views/ChangesPanel.h"
#include "views/StripSubject.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QToolButton>

namespace fs = std::filesystem;

namespace {

const QString kThree = "3 values that you did not edit were stored as shown.";

struct StoredAsShown : SaveFixture {
    /// Seen or not.
    bool IsInStrip() { return Find<CStrip>("strip").HasMessage(static_cast<int>(StripSubject::StoredAsShown)); }
    void Dismiss() { QTest::mouseClick(&Find<QToolButton>("buttonDismissStrip"), Qt::LeftButton); }
};

} // namespace

TEST_F(StoredAsShown, IsToldAfterASaveAndPutBackByTheMouse)
{
    EXPECT_EQ(Strip(), "");
    Save();
    EXPECT_EQ(Oven(), ovenAsShown);
    EXPECT_EQ(Strip(), kThree);
    EXPECT_EQ(StripButtons(), (QStringList{"Show", "Put back"}));
    ClickInStrip("Put back");
    EXPECT_EQ(Oven(), oven);
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(Told(), "3 values were put back.");
    EXPECT_FALSE(IsModified());
    EXPECT_EQ(QApplication::focusWidget(), &Grid());
    EXPECT_FALSE(ClosingAsks());
}

TEST_F(StoredAsShown, IsPutBackByTheKeyboard)
{
    TypeIntoCell(2, kBelt, "0.80");
    Save();
    EXPECT_EQ(Strip(), kThree);
    PressInStripByKeys("Put back");
    EXPECT_EQ(Oven(), OvenWith({{5, 80}}));
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(QApplication::focusWidget(), &Grid());
}

TEST_F(StoredAsShown, OfOneValueIsToldInTheSingular)
{
    PasteAt(1, kBelt, "1.60\n0.75\n2.00\n0.60"); // both belts are edited then
    Save();
    EXPECT_EQ(Strip(), "1 value that you did not edit was stored as shown.");
    ClickInStrip("Put back");
    EXPECT_EQ(Told(), "1 value was put back.");
    EXPECT_EQ(Oven(), OvenWith({{0, 160}, {15, 60}}));
}

TEST_F(StoredAsShown, IsNotToldWhereNothingWasStoredOtherwise)
{
    TypeIntoCell(2, kBelt, "0.80");
    SaveEditedOnly();
    EXPECT_EQ(Strip(), "");
    WriteAll(folder / "oven.rcp", ovenAsShown);
    OpenByDialog("oven.rcp");
    Save();
    EXPECT_EQ(Strip(), "");
}

TEST_F(StoredAsShown, LeavesWhatWasEditedSince)
{
    Save();
    TypeIntoCell(1, kBelt, "3.00");
    EXPECT_EQ(Strip(), kThree);
    ClickInStrip("Put back");
    EXPECT_EQ(Oven(), OvenWith({{0, 150}}));
    EXPECT_EQ(Told(), "2 values were put back. Another one was edited or changed since.");
    EXPECT_EQ(Grid().GetItemText(1, kBelt), "3.00");
    EXPECT_TRUE(IsModified());
}

TEST_F(StoredAsShown, LeavesWhatAnotherProgramWroteSince)
{
    Save();
    Bytes others = ovenAsShown;
    others[2 * 15] = std::byte{77};
    WriteAll(folder / "oven.rcp", others);
    ClickInStrip("Put back");
    EXPECT_EQ(Oven(), OvenWith({{15, 77}}));
    EXPECT_EQ(Told(), "2 values were put back. Another one was edited or changed since.");
}

TEST_F(StoredAsShown, IsPutBackAfterAnotherFileWasOpened)
{
    Save();
    OpenByDialog("a.rcp");
    EXPECT_EQ(Strip(), "oven.rcp: " + kThree);
    const Bytes other = ReadAll(folder / "a.rcp");
    ClickInStrip("Show");
    EXPECT_EQ(Listed().size(), 3);
    Key(Qt::Key_Return); // the line is of another table
    EXPECT_EQ(Selected(), "");
    PressInStripByKeys("Put back");
    EXPECT_EQ(Oven(), oven);
    EXPECT_EQ(ReadAll(folder / "a.rcp"), other);
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(Told(), "3 values were put back.");
}

/// New and Open save silently before they go: the strip tells of that, too.
TEST_F(StoredAsShown, OfASilentSaveIsToldWithTheNameOfItsFile)
{
    TypeIntoCell(2, kBelt, "0.80");
    OpenByDialog("a.rcp");
    EXPECT_EQ(Strip(), "oven.rcp: " + kThree);
    ClickInStrip("Put back");
    EXPECT_EQ(Oven(), OvenWith({{5, 80}}));
}

TEST_F(StoredAsShown, EndsWithTheNextSave)
{
    Save();
    TypeIntoCell(2, kBelt, "0.80");
    Save();
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(frame->Document().StoredAsShown(), nullptr);
}

TEST_F(StoredAsShown, EndsWithASaveUnderAnotherName)
{
    Save();
    const CModalAnswer answer({ChoosePath(Path("other.rcp"))});
    Key(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(Strip(), "");
}

TEST_F(StoredAsShown, StaysDismissed)
{
    Save();
    Dismiss();
    EXPECT_EQ(Strip(), "");
    fs::remove(folder / "oven.rcp");
    fs::create_directory(folder / "oven.rcp");
    TypeIntoCell(2, kBelt, "0.80");
    {
        const CModalAnswer answer(QMessageBox::Ok);
        Save();
        EXPECT_EQ(answer.texts.size(), 1u);
    }
    Activate();
    EXPECT_FALSE(IsInStrip()) << "after a save that failed";
    fs::remove(folder / "oven.rcp");
    WriteOven("oven.rcp");
    QTest::mouseClick(&Find<QPushButton>("buttonRefreshData"), Qt::LeftButton);
    EXPECT_EQ(Strip(), "") << "after reading again";
}

TEST_F(StoredAsShown, ThatCannotBePutBackSaysWhyAndStays)
{
    Save();
    fs::remove(folder / "oven.rcp");
    {
        const CModalAnswer answer(QMessageBox::Ok);
        ClickInStrip("Put back");
        EXPECT_EQ(answer.texts,
                  std::vector<QString>{"Can't save file " + Path("oven.rcp") + ",please check file or your disk!"});
    }
    Activate();
    EXPECT_TRUE(IsInStrip()) << "behind what is said of the file";
    EXPECT_FALSE(Told().contains("put back"));
    WriteAll(folder / "oven.rcp", ovenAsShown);
    EXPECT_TRUE(WaitFor([this] { return Strip() == kThree; }));
    ClickInStrip("Put back");
    EXPECT_EQ(Oven(), oven);
}

TEST_F(StoredAsShown, IsShownInThePanelUntilTheOfferEnds)
{
    Save();
    PressInStripByKeys("Show");
    EXPECT_TRUE(Panel().isVisible());
    EXPECT_TRUE(Panel().isAncestorOf(QApplication::focusWidget()));
    EXPECT_EQ(Panel().windowTitle(), "Stored as shown by the last save");
    EXPECT_EQ(PanelSummary(), "3 stored as shown");
    EXPECT_EQ(Listed(), (QStringList{"1 Belt 1.50 [0069]>1.50 [0096] decimals",
                                     "2 Steam 25.0 [51EC 41C8]>25.0 [0000 41C8] digits",
                                     "4 Belt 0.50 [0005]>0.50 [0032] decimals"}));
    EXPECT_FALSE(Find<QPushButton>("buttonKeepStored").isVisible());
    ChooseLine(2);
    Key(Qt::Key_Return);
    EXPECT_EQ(Selected(), "4,2");
    ClickInStrip("Put back");
    EXPECT_EQ(Panel().windowTitle(), "Changes on saving");
    WaitForPlan();
    EXPECT_EQ(PanelSummary(), "0 edited, 3 others change");
    EXPECT_EQ(Listed().size(), 3);
}

TEST_F(StoredAsShown, InThePanelIsThatOfTheLastSave)
{
    Save();
    ClickInStrip("Show");
    EXPECT_EQ(Listed().size(), 3);
    WriteOven("oven.rcp");
    QTest::mouseClick(&Find<QPushButton>("buttonRefreshData"), Qt::LeftButton);
    TypeIntoCell(1, kBelt, "3.00");
    Save();
    EXPECT_EQ(Strip(), "2 values that you did not edit were stored as shown.");
    EXPECT_EQ(Listed().size(), 2);
    EXPECT_EQ(PanelSummary(), "2 stored as shown");
    EXPECT_EQ(QApplication::focusWidget(), &Grid());
}
