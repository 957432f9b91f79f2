// The panel of changes in the window: how it opens, where its lines lead, and that it stays true.

#include "controls/Strip.h"
#include "tests/app/SaveFixture.h"
#include "tests/files/OrdinaryUser.h"
#include "views/ChangesPanel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QToolButton>

namespace {

struct ChangesPanelInFrame : SaveFixture {
    void Open() { Key(Qt::Key_F9); }
    QWidget* Focus() { return QApplication::focusWidget(); }
    bool IsInPanel() { return Panel().isAncestorOf(Focus()); }
    int Line() { return Lines().currentIndex().row(); }
};

const QStringList kThree{"1 Belt 1.50 [0069]>1.50 [0096] decimals", "2 Steam 25.0 [51EC 41C8]>25.0 [0000 41C8] digits",
                         "4 Belt 0.50 [0005]>0.50 [0032] decimals"};

} // namespace

TEST_F(ChangesPanelInFrame, OpensByAClickOnTheField)
{
    EXPECT_FALSE(Panel().isVisible());
    QTest::mouseClick(&FieldButton(), Qt::LeftButton);
    EXPECT_TRUE(Panel().isVisible());
    EXPECT_TRUE(IsInPanel());
    EXPECT_EQ(Panel().windowTitle(), "Changes on saving");
    EXPECT_EQ(PanelSummary(), "0 edited, 3 others change");
    EXPECT_EQ(Listed(), kThree);
}

TEST_F(ChangesPanelInFrame, OpensByItsKeyAndEscapeLeavesIt)
{
    Open();
    EXPECT_TRUE(IsInPanel());
    EXPECT_EQ(Listed(), kThree);
    Key(Qt::Key_Escape);
    EXPECT_EQ(Focus(), &Grid());
    EXPECT_TRUE(Panel().isVisible());
    Open();
    EXPECT_TRUE(IsInPanel());
}

TEST_F(ChangesPanelInFrame, ClosedByItsButtonGivesTheFocusBack)
{
    Open();
    auto* close = Panel().findChild<QAbstractButton*>(QStringLiteral("qt_dockwidget_closebutton"));
    ASSERT_NE(close, nullptr);
    QTest::mouseClick(close, Qt::LeftButton);
    EXPECT_FALSE(Panel().isVisible());
    EXPECT_EQ(Focus(), &Grid());
}

TEST_F(ChangesPanelInFrame, StandsLastInTheOrderOfTheKeyF6)
{
    Save();
    Open();
    const auto next = [this](Qt::KeyboardModifiers with = {}) {
        Key(Qt::Key_F6, with);
        if (Find<CStrip>("strip").isAncestorOf(Focus()))
            return "strip";
        return IsInPanel() ? "panel" : Focus() == &Grid() ? "grid" : "formats";
    };
    EXPECT_STREQ(next(), "strip");
    EXPECT_STREQ(next(), "formats");
    EXPECT_STREQ(next(), "grid");
    EXPECT_STREQ(next(), "panel");
    EXPECT_STREQ(next(Qt::ShiftModifier), "grid");
}

TEST_F(ChangesPanelInFrame, EnterAndADoubleClickGoToTheCell)
{
    Open();
    Key(Qt::Key_Down);
    Key(Qt::Key_Return);
    EXPECT_EQ(Focus(), &Grid());
    EXPECT_EQ(Selected(), "2,3");
    const QModelIndex line = Lines().model()->index(2, 3);
    const QPoint at = Lines().visualRect(line).center();
    QTest::mouseClick(Lines().viewport(), Qt::LeftButton, {}, at);
    QTest::mouseDClick(Lines().viewport(), Qt::LeftButton, {}, at);
    EXPECT_EQ(Focus(), &Grid());
    EXPECT_EQ(Selected(), "4,2");
    EXPECT_TRUE(Told().startsWith("RW15, ")) << Told().toStdString();
}

TEST_F(ChangesPanelInFrame, F8ShowsTheCellsOneAfterTheOtherAndStays)
{
    Open();
    for (const char* cell : {"1,2", "2,3", "4,2", "4,2"}) {
        Key(Qt::Key_F8);
        EXPECT_EQ(Selected(), cell);
        EXPECT_TRUE(IsInPanel());
    }
    Key(Qt::Key_F8, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "2,3");
    Key(Qt::Key_Escape);
    TypeIntoCell(3, kBelt, "2.50");
    ClickCell(1, kBelt);
    Key(Qt::Key_F8); // the window's, which goes to edited cells
    EXPECT_EQ(Selected(), "3,2");
}

TEST_F(ChangesPanelInFrame, StaysTrueUnderEditsUndoSavesAndReading)
{
    Open();
    TypeIntoCell(2, kBelt, "1.15");
    QStringList edited = kThree;
    edited.insert(1, "2 Belt 0.75>1.15 (reads 1.14) edited");
    EXPECT_EQ(Listed(), edited);
    EXPECT_EQ(PanelSummary(), "1 edited, 3 others change");
    Undo();
    EXPECT_EQ(Listed(), kThree);
    EXPECT_EQ(PanelSummary(), "0 edited, 3 others change");
    Save();
    WaitForPlan();
    EXPECT_EQ(Listed(), QStringList());
    EXPECT_EQ(PanelSummary(), "No value changes.");
    WriteOven("oven.rcp");
    QTest::mouseClick(&Find<QPushButton>("buttonRefreshData"), Qt::LeftButton);
    WaitForPlan();
    EXPECT_EQ(Listed(), kThree);
}

TEST_F(ChangesPanelInFrame, FollowsTheFileThatIsOpened)
{
    WriteAll(folder / "b.rcp", WordBytes({5, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    Open();
    OpenByDialog("b.rcp");
    WaitForPlan();
    EXPECT_EQ(Listed(), QStringList{"1 Belt 0.50 [0005]>0.50 [0032] decimals"});
    Key(Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(Listed(), QStringList());
}

/// Only other changes make a long list be looked through again.
TEST_F(ChangesPanelInFrame, KeepsWhatItsFilterFoundWhileCellsAreChosen)
{
    constexpr int kRows = 20'000;
    Bytes bytes(2 * 5 * kRows);
    for (std::size_t row = 0; row < kRows; ++row)
        bytes[2 * 5 * row] = std::byte{5}; // shown as "0.50"
    WriteAll(folder / "long.rcp", bytes);
    TypeInto(*frame, "editReadCount", QString::number(kRows));
    OpenByDialog("long.rcp");
    WaitForPlan();
    Open();
    TypeInto(Panel(), "editFilter", "0005");
    EXPECT_TRUE(WaitFor([this] { return Lines().model()->rowCount() == kRows; }));
    ClickCell(2, kBelt);
    EXPECT_EQ(Lines().model()->rowCount(), kRows);
    ChooseLine(3);
    Key(Qt::Key_F8);
    EXPECT_EQ(Lines().model()->rowCount(), kRows);
    EXPECT_EQ(Line(), 4);
}

/// The rows that its lines speak of are gone while the message about the next file is shown.
TEST_F(ChangesPanelInFrame, IsPaintedWhileAFileThatFailsToOpenIsReported)
{
    Open();
    ASSERT_EQ(Listed().size(), 3);
    MakeFile("locked.rcp");
    std::filesystem::permissions(folder / "locked.rcp", std::filesystem::perms::none);
    const COrdinaryUser user;
    const CModalAnswer answer({[this](QWidget& dialog) {
        Panel().repaint();
        Lines().viewport()->repaint();
        CModalAnswer::Press(QMessageBox::Ok)(dialog);
    }});
    frame->OpenPath(Path("locked.rcp"));
    EXPECT_EQ(answer.texts.size(), 1u);
    WaitForPlan();
    EXPECT_EQ(Listed(), QStringList());
    EXPECT_EQ(FieldButton().isVisible(), false);
}

TEST_F(ChangesPanelInFrame, KeepsTheChosenLineWhileOtherCellsAreChosenAndEdited)
{
    Open();
    ChooseLine(1);
    ClickCell(3, kName);
    EXPECT_EQ(Line(), 1);
    EXPECT_TRUE(Lines().selectionModel()->isRowSelected(1));
    TypeIntoCell(1, kSteam, "7.0");
    EXPECT_EQ(Listed().size(), 4);
    EXPECT_EQ(Line(), 2);
    EXPECT_TRUE(Lines().selectionModel()->isRowSelected(2));
}

TEST_F(ChangesPanelInFrame, KeepsTheGridWhereItIs)
{
    WriteAll(folder / "long.rcp", Bytes(2 * 5 * 300));
    TypeInto(*frame, "editReadCount", "300");
    OpenByDialog("long.rcp");
    ClickCell(1, kBelt);
    Key(Qt::Key_End, Qt::ControlModifier);
    const int row = Grid().rowAt(5);
    ASSERT_GT(row, 100);
    Open();
    Key(Qt::Key_Escape);
    int focusRow = 0;
    int focusColumn = 0;
    EXPECT_TRUE(Grid().FocusCell(focusRow, focusColumn));
    EXPECT_EQ(focusRow, 300);
    EXPECT_EQ(Grid().rowAt(5), row);
}

TEST_F(ChangesPanelInFrame, LeavesRoomForTheTableInALowWindow)
{
    frame->resize(800, 600);
    Open();
    QCoreApplication::sendPostedEvents();
    EXPECT_TRUE(WaitFor([this] { return Panel().height() <= 200; })) << Panel().height();
    EXPECT_GE(Lines().viewport()->height(), 3 * Lines().rowHeight(0));
    EXPECT_GE(Grid().viewport()->height(), 8 * 26) << "eight rows of the grid";
    EXPECT_LE(frame->height(), 600);
    EXPECT_LE(frame->width(), 800);
}

/// From opening the file to the last look, with the keyboard alone.
TEST_F(ChangesPanelInFrame, IsUsedByTheKeyboardAlone)
{
    Open();
    Key(Qt::Key_Down);
    Key(Qt::Key_K, Qt::ControlModifier); // the steam keeps its digits
    EXPECT_EQ(Field(), "0 edited, 2 others change");
    Key(Qt::Key_Home, Qt::ControlModifier);
    Key(Qt::Key_Return); // to the first belt
    ASSERT_EQ(Focus(), &Grid());
    Key(Qt::Key_F2);
    Key(Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(Focus(), "1.15");
    Key(Qt::Key_Return);
    EXPECT_EQ(Strip(), "1.15 will be stored as 1.14.");
    PressInStripByKeys("Store exactly");
    EXPECT_EQ(Focus(), &Grid());
    Save();
    EXPECT_EQ(Oven(), OvenWith({{0, 115}, {15, 50}}));
    PressInStripByKeys("Put back");
    EXPECT_EQ(Oven(), OvenWith({{0, 115}}));
    EXPECT_EQ(Focus(), &Grid());
    EXPECT_EQ(Field(), "0 edited, 1 other changes");
}
