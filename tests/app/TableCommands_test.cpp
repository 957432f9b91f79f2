// Frozen columns, hidden rows and copying in other forms, as the menus offer them.

#include "controls/GridCtrl.h"
#include "controls/GridModel.h"
#include "tests/app/EditFixture.h"
#include "views/RecipeDataShowView.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QScrollBar>
#include <QTest>
#include <QToolButton>

namespace {

/// The table has the columns Word and Name and the rows 1 "ABCD", 2 "EFGH", 3 "IJKL", 4 "MNOP".
struct TableCommands : EditFixture {
    /// Opens the menu by a click and chooses the command there.
    void ChooseIn(const char* menu, const char* action)
    {
        auto& entries = Find<QMenu>(menu);
        entries.popup(frame->mapToGlobal(QPoint(50, 50)));
        ASSERT_TRUE(Action(action).isEnabled()) << action;
        QTest::mouseClick(&entries, Qt::LeftButton, {}, entries.actionGeometry(&Action(action)).center());
    }

    bool IsOffered(const char* menu, const char* action)
    {
        auto& entries = Find<QMenu>(menu);
        entries.popup(frame->mapToGlobal(QPoint(50, 50)));
        const bool isOffered = Action(action).isEnabled();
        QTest::keyClick(&entries, Qt::Key_Escape);
        return isOffered;
    }

    /// Fills the dialog by its fields and ends it with Enter.
    static void Answer(QWidget& dialog, const char* item, const char* condition, const char* value)
    {
        FindIn<QComboBox>(dialog, "comboItem").setCurrentText(item);
        FindIn<QComboBox>(dialog, "comboCondition").setCurrentText(condition);
        auto& field = FindIn<QLineEdit>(dialog, "editValue");
        field.setFocus();
        field.selectAll();
        QTest::keyClicks(&field, value);
        QTest::keyClick(&dialog, Qt::Key_Return);
    }

    void ShowOnly(const char* item, const char* condition, const char* value)
    {
        const CModalAnswer answer({[=](QWidget& dialog) { Answer(dialog, item, condition, value); }});
        ChooseIn("menuView", "actionShowRows");
        EXPECT_EQ(answer.titles, std::vector<QString>{"Show only rows that"});
        Activate();
        Grid().setFocus();
    }

    /// What the status bar says of hidden rows; empty while none is.
    QString Notice()
    {
        auto& notice = Find<QToolButton>("fieldRowsShown");
        return notice.isVisible() ? notice.text() : QString();
    }
    QString Clipboard() { return QApplication::clipboard()->text(); }
    CRecipeDataShowView& Pane() { return Find<CRecipeDataShowView>("dataPane"); }
};

} // namespace

TEST_F(TableCommands, OnlyTheRowsThatAreSoAreShownAndTheStatusBarSaysIt)
{
    EXPECT_FALSE(IsOffered("menuView", "actionShowAllRows"));
    ShowOnly("Word", "is greater than", "2");
    EXPECT_EQ(Grid().RowCount(), 3);
    EXPECT_EQ(Grid().GetItemText(1, 0), "3");
    EXPECT_EQ(Grid().GetItemText(2, 3), "MNOP");
    EXPECT_EQ(Notice(), "2 of 4 rows are shown.");
    TypeIntoCell(1, 2, "0"); // it is so no more, and stays under the user's hands
    EXPECT_EQ(Grid().RowCount(), 3);
    EXPECT_EQ(Notice(), "2 of 4 rows are shown.");
    Save();
    EXPECT_EQ(ReadAll(folder / "a.rcp").size(), original.size());
    EXPECT_EQ(ReadAll(folder / "a.rcp")[0], original[0]);
    EXPECT_EQ(ReadAll(folder / "a.rcp")[12], std::byte{0});
    EXPECT_EQ(Notice(), "2 of 4 rows are shown.");
    ChooseIn("menuView", "actionShowAllRows");
    EXPECT_EQ(Grid().RowCount(), 5);
    EXPECT_EQ(Notice(), "");
}

TEST_F(TableCommands, AClickOnTheNoticeShowsAllRows)
{
    ShowOnly("Name", "contains", "ef");
    EXPECT_EQ(Notice(), "1 of 4 rows is shown.");
    QTest::mouseClick(&Find<QToolButton>("fieldRowsShown"), Qt::LeftButton);
    EXPECT_EQ(Notice(), "");
    EXPECT_EQ(Grid().RowCount(), 5);
    EXPECT_TRUE(Grid().hasFocus());
}

TEST_F(TableCommands, AnUndoInAHiddenRowShowsItAndTheNoticeTells)
{
    TypeIntoCell(1, 2, "9");
    ShowOnly("Word", "is", "3");
    Undo();
    EXPECT_EQ(Grid().RowCount(), 3);
    EXPECT_EQ(Selected(), "1,2");
    EXPECT_EQ(Notice(), "2 of 4 rows are shown, 1 of them was hidden before.");
    EXPECT_EQ(Grid().GetItemText(1, 2), "1");
}

TEST_F(TableCommands, WhereNoRowIsSoAllIsAsBefore)
{
    ShowOnly("Word", "is", "77");
    EXPECT_EQ(Grid().RowCount(), 5);
    EXPECT_EQ(Notice(), "");
    EXPECT_EQ(Told(), "No row is so. The rows that are shown stay.");
    ShowOnly("Word", "is not", "77");
    EXPECT_EQ(Notice(), "");
    EXPECT_EQ(Told(), "All rows are so.");
}

TEST_F(TableCommands, TheDialogSaysWhyAValueIsNoneAndStaysOpen)
{
    const CModalAnswer answer({[](QWidget& dialog) { Answer(dialog, "Word", "is less than", "1,5"); },
                               [](QWidget& dialog) {
                                   auto& notice = FindIn<QLabel>(dialog, "labelNotice");
                                   EXPECT_TRUE(notice.isVisible());
                                   EXPECT_EQ(notice.text(), "Type a number with a point, not a comma.");
                                   FindIn<QComboBox>(dialog, "comboCondition").setCurrentText("is edited");
                                   EXPECT_FALSE(notice.isVisible());
                                   EXPECT_FALSE(FindIn<QLineEdit>(dialog, "editValue").isEnabled());
                                   QTest::keyClick(&dialog, Qt::Key_Escape);
                               }});
    ChooseIn("menuView", "actionShowRows");
    EXPECT_EQ(answer.titles.size(), 2u);
    EXPECT_EQ(Grid().RowCount(), 5);
}

TEST_F(TableCommands, ARefusedEditStopsTheCommands)
{
    ClickCell(2, 2);
    QTest::keyClicks(QApplication::focusWidget(), "x");
    const CModalAnswer answer;
    QApplication::clipboard()->setText("before");
    Trigger(*frame, "actionShowRows");
    EXPECT_EQ(answer.texts, std::vector<QString>{"Col 2,Row 2 data error !"});
}

TEST_F(TableCommands, AHiddenStatusBarIsShownWhenRowsAreHidden)
{
    ChooseIn("menuView", "actionStatusBar");
    ShowOnly("Word", "is", "3");
    EXPECT_EQ(Notice(), "1 of 4 rows is shown.");
    EXPECT_TRUE(Action("actionStatusBar").isChecked());
}

TEST_F(TableCommands, AnotherFileShowsAllItsRows)
{
    ShowOnly("Word", "is", "3");
    MakeFile("b.rcp");
    OpenThroughDialog("b.rcp");
    EXPECT_EQ(Notice(), "");
    EXPECT_EQ(Grid().RowCount(), 5);
}

TEST_F(TableCommands, APasteGoesDownTheRowsThatAreShownAndTellsWhatDidNotFit)
{
    ShowOnly("Word", "is not", "2");
    PasteAt(1, 2, "7\n8\n9\n10\n11\n");
    EXPECT_EQ(Told(), "2 rows did not fit.");
    ChooseIn("menuView", "actionShowAllRows");
    EXPECT_EQ(Shown(), (QStringList{"7", "ABCD", "2", "EFGH", "8", "IJKL", "9", "MNOP"}));
    Undo();
    EXPECT_EQ(Shown(), (QStringList{"1", "ABCD", "2", "EFGH", "3", "IJKL", "4", "MNOP"}));
}

TEST_F(TableCommands, TheMessageOfRefusedValuesSaysHowManyInItsSecondText)
{
    const CModalAnswer answer({[](QWidget& dialog) {
        auto& box = dynamic_cast<QMessageBox&>(dialog);
        EXPECT_EQ(box.text(), "Col 1,Row 2 data error !");
        EXPECT_EQ(box.informativeText(), "2 of 8 values were refused. 2 rows did not fit.");
        CModalAnswer::Press(QMessageBox::Ok)(dialog);
    }});
    PasteAt(1, 2, "1,5\ta\n2,5\tb\n3\tc\n4\td\n5\te\n6\tf\n");
    EXPECT_EQ(answer.texts.size(), 1u);
}

TEST_F(TableCommands, ChosenCellsAreCopiedWithTheirTitles)
{
    EXPECT_FALSE(IsOffered("menuEdit", "actionCopyWithTitles"));
    ChooseCells(1, 2, 2, 3);
    ChooseIn("menuEdit", "actionCopyWithTitles");
    EXPECT_EQ(Clipboard(), "Word\tName\n1\tABCD\n2\tEFGH\n");
    ShowOnly("Word", "is not", "2");
    Key(Qt::Key_A, Qt::ControlModifier);
    ChooseIn("menuEdit", "actionCopyForSpreadsheet");
    EXPECT_EQ(Clipboard(), "Word\tName\n1\tABCD\n3\tIJKL\n4\tMNOP\n");
}

TEST_F(TableCommands, AColumnStaysInSightWhileTheTableScrolls)
{
    EXPECT_FALSE(IsOffered("menuView", "actionFreezeColumns"));
    EXPECT_FALSE(IsOffered("menuView", "actionUnfreezeColumns"));
    ClickCell(2, 2);
    ChooseIn("menuView", "actionFreezeColumns");
    Grid().SetColumnWidth(3, 3000);
    QApplication::processEvents();
    Grid().horizontalScrollBar()->setValue(500);
    const auto left = [this] { return Grid().visualRect(Grid().Model().BodyIndex(1, 2)).left(); };
    EXPECT_EQ(left(), 0);
    Trigger(*frame, "actionSave");
    EXPECT_EQ(left(), 0);
    OpenThroughDialog("a.rcp"); // the same columns
    Grid().SetColumnWidth(3, 3000);
    QApplication::processEvents();
    Grid().horizontalScrollBar()->setValue(500);
    EXPECT_EQ(left(), 0);
    ChooseIn("menuView", "actionUnfreezeColumns");
    EXPECT_EQ(left(), -500);
}

TEST_F(TableCommands, ATitlesMenuFreezesUpToItsColumn)
{
    QWidget& titles = *Grid().horizontalHeader()->viewport();
    QContextMenuEvent event(QContextMenuEvent::Mouse, {20, 10}, titles.mapToGlobal(QPoint(20, 10)));
    QApplication::sendEvent(&titles, &event);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    EXPECT_EQ(EntriesOf(*menu), (QStringList{"&Freeze up to this column", "-&Unfreeze columns", "&Notes…"}));
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(menu->actions().front()).center());
    EXPECT_EQ(Grid().FrozenColumnCount(), 1);
    EXPECT_TRUE(IsOffered("menuView", "actionUnfreezeColumns"));
}

TEST_F(TableCommands, ColumnsThatAreTooWideToStayAreTold)
{
    Grid().SetColumnWidth(2, 5000);
    ClickCell(1, 2);
    ChooseIn("menuView", "actionFreezeColumns");
    EXPECT_EQ(Told(),
              "These columns would leave too little room for the others: they scroll until the window is wider.");
    EXPECT_TRUE(IsOffered("menuView", "actionUnfreezeColumns"));
}
