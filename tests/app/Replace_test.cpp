// Replacing what the bar finds: one cell, or all of them as one edit.

#include "controls/GridCtrl.h"
#include "tests/app/FindFixture.h"

#include <QApplication>
#include <QLabel>
#include <QTest>

namespace {

struct Replace : FindFixture {
    /// Ctrl+H, and both texts by keys.
    void Ask(const QString& find, const QString& with)
    {
        Key(Qt::Key_H, Qt::ControlModifier);
        ASSERT_TRUE(Bar().isVisible());
        QTest::keyClicks(QApplication::focusWidget(), find);
        auto& field = Find<QLineEdit>("editReplacement");
        ASSERT_TRUE(field.isVisible());
        field.setFocus();
        QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClicks(&field, with);
    }
};

} // namespace

TEST_F(Replace, TakesOneCellAndGoesToTheNext)
{
    TypeIntoCell(3, 2, "12");
    ClickCell(1, 2);
    Ask("1", "5");
    EXPECT_EQ(Selected(), "1,2");
    Key(Qt::Key_Return);
    EXPECT_TRUE(Told("1 replaced. Found at row 3, Word. 1 of 1."));
    EXPECT_EQ(Grid().GetItemText(1, 2), "5");
    EXPECT_EQ(Selected(), "3,2");
    EXPECT_EQ(Grid().GetItemText(3, 2), "12") << "it is only shown";
    ClickButton("buttonReplace");
    EXPECT_TRUE(Told("1 replaced. Not found."));
    EXPECT_EQ(Grid().GetItemText(3, 2), "52");
    Grid().setFocus();
    Undo();
    EXPECT_EQ(Grid().GetItemText(3, 2), "12");
    EXPECT_EQ(Grid().GetItemText(1, 2), "5") << "each is an edit of its own";
}

TEST_F(Replace, ShowsACellBeforeItIsReplaced)
{
    Ask("3", "7");
    ClickCell(1, 2);
    ClickButton("buttonReplace");
    EXPECT_EQ(Selected(), "3,2");
    EXPECT_EQ(Grid().GetItemText(3, 2), "3");
    ClickButton("buttonReplace");
    EXPECT_EQ(Grid().GetItemText(3, 2), "7");
}

TEST_F(Replace, SaysWhyACellIsRefusedAndLeavesIt)
{
    ClickCell(1, 2);
    Ask("2", "x");
    ClickButton("buttonReplace");
    EXPECT_TRUE(Told("Row 2, Word is not replaced: x is not a number. Found at row 2, Word. 1 of 1. The search went "
                     "round."));
    EXPECT_EQ(Grid().GetItemText(2, 2), "2");
    EXPECT_FALSE(IsModified());
}

TEST_F(Replace, AllIsOneEditAndTellsHowMany)
{
    TypeIntoCell(1, 3, "E3");
    TypeIntoCell(2, 2, "33");
    ClickCell(1, 2);
    Ask("3", "4");
    ClickButton("buttonReplaceAll");
    EXPECT_TRUE(Told("3 replaced. Not found."));
    EXPECT_EQ(Shown(), (QStringList{"1", "E4", "44", "EFGH", "4", "IJKL", "4", "MNOP"}));
    Grid().setFocus();
    EXPECT_EQ(NextUndo(), "Replace (3 cells)");
    Undo();
    EXPECT_EQ(Shown(), (QStringList{"1", "E3", "33", "EFGH", "3", "IJKL", "4", "MNOP"}));
    EXPECT_TRUE(Told("Found: 3."));
}

TEST_F(Replace, AllListsThoseThatWereRefused)
{
    TypeIntoCell(1, 3, "4");
    ClickCell(1, 2);
    Ask("4", "a");
    ClickButton("buttonReplaceAll");
    EXPECT_TRUE(Told("1 replaced, 1 refused. Found: 1."));
    EXPECT_EQ(Grid().GetItemText(1, 3), "a");
    EXPECT_EQ(Grid().GetItemText(4, 2), "4");
    EXPECT_EQ(Lines(), QStringList{"RW9|4|Word|4||refused: a is not a number"});
}

TEST_F(Replace, AllChangesNothingWhereEveryCellIsRefusedOrTheSame)
{
    ClickCell(1, 2);
    Ask("2", "2");
    ClickButton("buttonReplaceAll");
    EXPECT_TRUE(Told("Nothing replaced, 1 as they should be already. Found: 1."));
    EXPECT_FALSE(IsModified());
    EXPECT_EQ(NextUndo(), "");
}

TEST_F(Replace, KeepsToTheScopeThatIsChosen)
{
    TypeIntoCell(1, 3, "2");
    ClickCell(1, 3);
    ChooseIn("comboFindScope", 1);
    Ask("2", "7");
    ClickButton("buttonReplaceAll");
    EXPECT_TRUE(Told("1 replaced. Not found in the column."));
    EXPECT_EQ(Grid().GetItemText(2, 2), "2");
}
