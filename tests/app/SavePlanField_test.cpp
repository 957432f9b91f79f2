// What the field in the status bar counts of the changes that a save will make.

#include "controls/GridCtrl.h"
#include "tests/app/SaveFixture.h"
#include "views/ChangesPanel.h"
#include "views/TextCrossing.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTest>
#include <QToolButton>

namespace {

struct SavePlanField : SaveFixture {
    void Press(const char* button) { QTest::mouseClick(&Find<QPushButton>(button), Qt::LeftButton); }

    QTimer& CountingTimer() { return Find<QTimer>("timerCounting"); }

    /// Opens a file of zeros with so many rows.
    void OpenLong(int rows)
    {
        MakeFile("long.rcp", 5 * static_cast<std::size_t>(rows));
        TypeInto(*frame, "editReadCount", QString::number(rows));
        Open("long.rcp");
    }
};

Bytes AnsiBytes(std::u16string_view text)
{
    Bytes bytes;
    for (const char16_t unit : text)
        bytes.push_back(static_cast<std::byte>(unit));
    return bytes;
}

/// Four lines, of which the first is as long as the rows would be as words.
constexpr std::u16string_view kTable =
    u"1.50,2.5,ABCDEFGHIJKLMNOPQRSTUVWXYZABCDE\n0.75,25.0,CD\n2.00,1.5,EF\n0.50,3.0,GH\n";

} // namespace

TEST_F(SavePlanField, IsHiddenWhileNothingIsOpenOrNothingChanges)
{
    frame.reset();
    Start();
    EXPECT_FALSE(FieldButton().isVisible());
    WriteAll(folder / "calm.rcp", ovenAsShown);
    Open("calm.rcp");
    EXPECT_EQ(Field(), "");
}

TEST_F(SavePlanField, FollowsEditsUndoSavesAndReading)
{
    EXPECT_EQ(Field(), "0 edited, 3 others change");
    TypeIntoCell(2, kBelt, "0.80");
    EXPECT_EQ(Field(), "1 edited, 3 others change");
    TypeIntoCell(1, kBelt, "1.00");
    EXPECT_EQ(Field(), "2 edited, 2 others change");
    Undo();
    EXPECT_EQ(Field(), "1 edited, 3 others change");
    Undo();
    EXPECT_EQ(Field(), "0 edited, 3 others change");
    Redo();
    Save();
    EXPECT_EQ(Field(), "");
    Undo();
    EXPECT_EQ(Field(), "1 edited");
    WriteOven("oven.rcp");
    Press("buttonRefreshData");
    EXPECT_EQ(Field(), "0 edited, 3 others change");
    PasteAt(1, kBelt, "1\n2\n3\n4");
    EXPECT_EQ(Field(), "4 edited, 1 other changes");
}

TEST_F(SavePlanField, FollowsPuttingBackAndSavingEditedOnly)
{
    TypeIntoCell(2, kBelt, "0.80");
    SaveEditedOnly();
    EXPECT_EQ(Field(), "0 edited, 3 others change");
    Save();
    EXPECT_EQ(Field(), "");
    ClickInStrip("Put back");
    EXPECT_EQ(Field(), "0 edited, 3 others change");
}

TEST_F(SavePlanField, OfANewDocumentCountsWhatIsEditedAlone)
{
    Key(Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(Field(), "");
    TypeIntoCell(1, kBelt, "1.00");
    EXPECT_EQ(Field(), "1 edited");
    const CModalAnswer answer({ChoosePath(Path("new.rcp"))});
    Save();
    EXPECT_EQ(Field(), "");
}

TEST_F(SavePlanField, FollowsOpenAndAnotherLayout)
{
    WriteAll(folder / "one.rcp", WordBytes({5, 0, 0, 0, 0}));
    OpenByDialog("one.rcp"); // three more rows lie past its end
    EXPECT_EQ(Field(), "0 edited, 10 others change");
    OpenByDialog("oven.rcp");
    EXPECT_EQ(Field(), "0 edited, 3 others change");
    Find<QComboBox>("comboFormats").setFocus();
    Key(Qt::Key_Down);
    Press("buttonUseFormat");
    EXPECT_EQ(Field(), "") << "whole words are stored as they are shown";
    Undo();
    EXPECT_EQ(Field(), "0 edited, 3 others change");
}

TEST_F(SavePlanField, SaysOfATableInCapitalsThatItIsReadAsAnotherType)
{
    WriteAll(folder / "t.CSV", AnsiBytes(kTable));
    OpenByDialog("t.CSV");
    EXPECT_EQ(Grid().GetItemText(1, kBelt), "1.50");
    EXPECT_EQ(Field(), "0 edited, 5 others change") << "quotes around the last fields, and the form";
    Press("buttonRefreshData"); // which looks at the ending as it is written
    EXPECT_NE(Grid().GetItemText(1, kBelt), "1.50");
    EXPECT_EQ(Field(), "0 edited, 13 others change: the rows were read as another type") << "the form among them";
    EXPECT_EQ(FieldButton().accessibleName(),
              "Changes on saving: 0 edited, 13 others change: the rows were read as another type");
    Save();
    EXPECT_EQ(Strip(), "12 values that you did not edit were stored as shown: the rows were read as another type.");
    ClickInStrip("Put back");
    EXPECT_EQ(ReadAll(folder / "t.CSV"), AnsiBytes(kTable));
}

TEST_F(SavePlanField, SaysThatItIsCountingAndKeepsWhatItKnows)
{
    OpenLong(400'000);
    EXPECT_TRUE(FieldButton().isVisible());
    EXPECT_EQ(FieldButton().text(), QString::fromUtf8("0 edited, counting…"));
    TypeIntoCell(2, kBelt, "0.80");
    EXPECT_TRUE(frame->Document().IsPlanOpen());
    EXPECT_TRUE(FieldButton().text().endsWith(QString::fromUtf8("counting…"))) << FieldButton().text().toStdString();
    EXPECT_EQ(Field(), "1 edited");
}

/// What opens, edits and scrolls does not count: only the timer does, a slice at a time.
TEST_F(SavePlanField, NothingWaitsForTheCounting)
{
    OpenLong(1'000'000);
    const CSavePlan& plan = frame->Document().Plan();
    const auto isAtTheBeginning = [&plan] { return !plan.IsBegun() || plan.NextRow() == 0; };
    EXPECT_TRUE(isAtTheBeginning());
    TypeIntoCell(1, kBelt, "0.80");
    Grid().viewport()->repaint();
    Key(Qt::Key_PageDown);
    Key(Qt::Key_End, Qt::ControlModifier);
    Grid().viewport()->repaint();
    EXPECT_TRUE(isAtTheBeginning());
    EXPECT_TRUE(CountingTimer().isActive());
}

TEST_F(SavePlanField, CountsInSlices)
{
    OpenLong(100'000);
    const CSavePlan& plan = frame->Document().Plan();
    std::set<int> stops;
    EXPECT_TRUE(WaitFor([&] {
        if (plan.IsBegun())
            stops.insert(plan.NextRow());
        return plan.IsFinished();
    }));
    EXPECT_GT(stops.size(), 3u);
    EXPECT_EQ(Field(), "");
    EXPECT_FALSE(CountingTimer().isActive());
}

TEST_F(SavePlanField, WakesNobodyWhenItIsFinished)
{
    WaitForPlan();
    EXPECT_FALSE(CountingTimer().isActive());
    ClickCell(2, kBelt);
    ClickCell(3, kSteam);
    EXPECT_FALSE(CountingTimer().isActive()) << "a chosen cell is nothing to count";
    TypeIntoCell(2, kBelt, "0.80");
    EXPECT_FALSE(CountingTimer().isActive()) << "one edit is followed at once";
    EXPECT_EQ(FieldButton().text(), "1 edited, 3 others change");
    for (const QTimer* timer : frame->findChildren<QTimer*>())
        EXPECT_FALSE(timer->isActive() && timer->interval() == 0) << timer->objectName().toStdString();
}

TEST_F(SavePlanField, StaysInSightBesideALongRemarkAndAPrompt)
{
    frame->resize(640, 480);
    ClickCell(1, kBelt);
    EXPECT_TRUE(Told().contains("holds 1.05, shown as 1.50"));
    const auto isInSight = [this] {
        const QRect at(FieldButton().mapTo(frame.get(), QPoint()), FieldButton().size());
        return FieldButton().isVisible() && frame->rect().contains(at) &&
               FieldButton().width() >= FieldButton().sizeHint().width();
    };
    QCoreApplication::sendPostedEvents();
    EXPECT_TRUE(isInSight());
    Find<QStatusBar>("statusBar").showMessage("What the command under the mouse does");
    EXPECT_TRUE(isInSight());
}

TEST_F(SavePlanField, IsReachedAndPressedByTheKeyboard)
{
    QToolButton& field = FieldButton();
    EXPECT_EQ(field.accessibleName(), "Changes on saving: 0 edited, 3 others change");
    for (int i = 0; i < 40 && QApplication::focusWidget() != &field; ++i)
        Key(Qt::Key_Tab, QApplication::focusWidget() == &Grid() ? Qt::ControlModifier : Qt::NoModifier);
    ASSERT_EQ(QApplication::focusWidget(), &field);
    Key(Qt::Key_Space);
    EXPECT_TRUE(Panel().isVisible());
    EXPECT_TRUE(Panel().isAncestorOf(QApplication::focusWidget()));
}
