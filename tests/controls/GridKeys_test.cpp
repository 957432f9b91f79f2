// The keys on a grid that edits nothing, other than those that move the focus cell: they begin edits and leave the
// grid.

#include "controls/GridModel.h"
#include "tests/controls/GridTestBed.h"
#include "tests/support/GuiTest.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QScrollBar>
#include <QTest>

namespace {

struct GridKeys : CGridTestBed {};

TEST_F(GridKeys, TheFocusOnTheGridChoosesNoCell)
{
    Fill(4, 5);
    field->setFocus();
    grid->setFocus(Qt::TabFocusReason);
    EXPECT_EQ(window.focusWidget(), grid);
    EXPECT_EQ(Focus(), "none");
    EXPECT_EQ(log, Lines{});
}

TEST_F(GridKeys, TabLeavesTheGridFromItsLastCell)
{
    Fill(4, 5);
    Click(3, 4);
    Press(Qt::Key_Tab);
    EXPECT_EQ(window.focusWidget(), field);
    EXPECT_EQ(Focus(), "3,4");
}

TEST_F(GridKeys, ShiftTabLeavesTheGridFromItsFirstCell)
{
    Fill(4, 5);
    Click(1, 2);
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(window.focusWidget(), button);
    EXPECT_EQ(Focus(), "1,2");
}

TEST_F(GridKeys, TabLeavesAGridWithoutCells)
{
    grid->setFocus();
    Press(Qt::Key_Tab);
    EXPECT_EQ(window.focusWidget(), field);
}

TEST_F(GridKeys, CtrlTabLeavesTheGridFromEveryCell)
{
    Fill(4, 5);
    Click(2, 3);
    Press(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(window.focusWidget(), field);
    grid->setFocus();
    Press(Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(window.focusWidget(), button);
    EXPECT_EQ(Focus(), "2,3");
}

TEST_F(GridKeys, TypingEditsAndDoesNotSearch)
{
    Fill(6, 6);
    Click(2, 3);
    Type("5");
    EXPECT_EQ(Focus(), "2,3");
    ASSERT_NE(Editor(), nullptr);
    Press(Qt::Key_Escape);
    grid->keyboardSearch("5");
    EXPECT_EQ(Focus(), "2,3");
}

TEST_F(GridKeys, KeysWithCtrlOrAltStartNoEdit)
{
    Fill(6, 6);
    Click(2, 3);
    Press(Qt::Key_B, Qt::ControlModifier);
    Press(Qt::Key_B, Qt::AltModifier);
    Press(Qt::Key_F2, Qt::ControlModifier);
    Press(Qt::Key_Return, Qt::AltModifier);
    EXPECT_EQ(Editor(), nullptr);
}

TEST_F(GridKeys, AltGrTypesACharacter)
{
    Fill(6, 6);
    Click(2, 3);
    QKeyEvent altGr(QEvent::KeyPress, Qt::Key_At, Qt::ControlModifier | Qt::AltModifier, "@");
    QApplication::sendEvent(grid, &altGr);
    ASSERT_NE(Editor(), nullptr);
    EXPECT_EQ(Editor()->text(), QString("@"));
}

TEST_F(GridKeys, ShiftF10AsksForTheMenuOfTheFocusCell)
{
    Fill(6, 6);
    Press(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_EQ(log, Lines{}); // no focus cell
    Click(4, 5);
    log.clear();
    Press(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_EQ(log, Lines{"-5 of 102800 at 4,5"});
    EXPECT_EQ(grid->ContextMenuPosition(), grid->viewport()->mapToGlobal(Center(4, 5)));
}

TEST_F(GridKeys, TheMenuKeyAsksForTheMenuOfTheFocusCell)
{
    Fill(6, 6);
    QContextMenuEvent key(QContextMenuEvent::Keyboard, QPoint(1, 1), grid->mapToGlobal(QPoint(1, 1)));
    QApplication::sendEvent(grid, &key);
    EXPECT_EQ(log, Lines{});
    Click(4, 5);
    log.clear();
    QApplication::sendEvent(grid, &key);
    EXPECT_EQ(log, Lines{"-5 of 102800 at 4,5"});
    EXPECT_EQ(grid->ContextMenuPosition(), grid->viewport()->mapToGlobal(Center(4, 5)));
}

TEST_F(GridKeys, AFocusCellOutOfSightIsScrolledIntoItForItsMenu)
{
    Fill(200, 6);
    Click(4, 5);
    grid->verticalScrollBar()->setValue(150);
    Press(Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_TRUE(grid->viewport()->rect().contains(grid->viewport()->mapFromGlobal(grid->ContextMenuPosition())));
}

TEST_F(GridKeys, ARowsRemovalTakesTheFocusAlong)
{
    Fill(6, 6);
    Click(5, 3);
    grid->SetRowCount(1);
    EXPECT_EQ(Focus(), "none");
    EXPECT_EQ(Selected(), "");
}

TEST_F(GridKeys, AFocusCellCanBeSetAmongTheDataCellsOnly)
{
    Fill(4, 5);
    EXPECT_TRUE(grid->SetFocusCell(2, 3));
    EXPECT_EQ(log, Lines{"-100 of 102800 at 2,3"});
    EXPECT_EQ(Selected(), "2,3");
    EXPECT_FALSE(grid->SetFocusCell(0, 3));
    EXPECT_FALSE(grid->SetFocusCell(2, 1));
    EXPECT_EQ(Focus(), "2,3");
    EXPECT_EQ(log.size(), 1u);
}

TEST_F(GridKeys, AGridEmptiedByWhoeverIsToldHasNoFocusCell)
{
    Fill(4, 5);
    QObject::connect(grid, &CGridCtrl::Notify, [this](const GridNotification&) { grid->DeleteAllItems(); });
    EXPECT_FALSE(grid->SetFocusCell(2, 3));
    EXPECT_EQ(Focus(), "none");
}

} // namespace
