// The Edit menu as it is seen when it is open, and its commands chosen from it.

#include "controls/GridCtrl.h"
#include "tests/app/EditFixture.h"

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QTest>
#include <QTreeWidget>

namespace {

struct EditMenuEntries : EditFixture, testing::WithParamInterface<bool> {
    void SetUp() override
    {
        QApplication::clipboard()->clear();
        EditFixture::SetUp();
    }

    /// What the menu says, opened by keys or by the mouse.
    QStringList Entries()
    {
        QMenu& menu = GetParam() ? OpenEditMenuByKeys() : OpenEditMenu();
        const QStringList entries = EntriesOf(menu);
        CloseEditMenu();
        return entries;
    }
};

INSTANTIATE_TEST_SUITE_P(Opened, EditMenuEntries, testing::Bool(),
                         [](const auto& c) { return c.param ? "ByKeys" : "ByMouse"; });

/// The entries that never change their names, "-" before those that are off.
QStringList With(QStringList first, bool cut, bool copy, bool paste, bool changes, bool isChosen = true,
                 bool isOpen = true)
{
    const auto add = [&first](bool on, const char* text) {
        first << (on ? QString() : QStringLiteral("-")) + QString::fromUtf8(text);
    };
    add(cut, "Cu&t");
    add(copy, "&Copy");
    add(paste, "&Paste");
    add(changes, "&Next change");
    add(changes, "Pre&vious change");
    add(false, "Store e&xactly"); // have tests of their own
    add(false, "&Keep stored");
    add(isChosen, "Copy &with titles");
    add(isChosen, "Copy for &spreadsheet");
    add(isChosen && paste, "Paste wit&h preview…");
    add(isOpen, "I&mport table…");
    add(isOpen, "Exp&ort table…");
    add(isOpen, "Recipe sheet…");
    add(true, "&Go to…");
    add(true, "&Find…");
    add(true, "Find next");
    add(true, "Find previous");
    add(true, "Rep&lace…");
    add(isOpen, "Find value in fil&e…");
    add(isChosen, "F&ill…");
    add(isChosen, "Fill &down");
    add(isChosen, "C&alculate…");
    return first;
}

struct EditMenuCommands : EditFixture {};

} // namespace

TEST_P(EditMenuEntries, WithNothingOpenAreOff)
{
    frame.reset();
    Start();
    Grid().setFocus();
    EXPECT_EQ(Entries(), With({"-&Undo", "-&Redo"}, false, false, false, false, false, false));
}

TEST_P(EditMenuEntries, OfTheGridWithNothingDone)
{
    EXPECT_EQ(Entries(), With({"-&Undo", "-&Redo"}, false, false, false, false, false)) << "no cell is chosen";
    ClickCell(1, 2);
    EXPECT_EQ(Entries(), With({"-&Undo", "-&Redo"}, true, true, false, false));
    QApplication::clipboard()->setText("5");
    EXPECT_EQ(Entries(), With({"-&Undo", "-&Redo"}, true, true, true, false));
}

TEST_P(EditMenuEntries, NameATypedCellAndManyCells)
{
    TypeIntoCell(1, 2, "9");
    EXPECT_EQ(Entries(), With({"&Undo Typing", "-&Redo"}, true, true, false, true));
    PasteAt(1, 2, "5\tP\n6\tQ\n7\tR");
    EXPECT_EQ(Entries(), With({"&Undo Paste (6 cells)", "-&Redo"}, true, true, true, true));
}

TEST_P(EditMenuEntries, AfterAnUndoNameBoth)
{
    TypeIntoCell(1, 2, "9");
    PasteAt(1, 2, "5\tP\n6\tQ\n7\tR");
    Undo();
    EXPECT_EQ(Entries(), With({"&Undo Typing", "&Redo Paste (6 cells)"}, true, true, true, true));
    Undo();
    EXPECT_EQ(Entries(), With({"-&Undo", "&Redo Typing"}, true, true, true, false));
}

TEST_P(EditMenuEntries, OfAFieldSpeakOfTheField)
{
    TypeIntoCell(1, 2, "9"); // the document's, which a field has nothing to do with
    GoToField("editReadCount").deselect();
    EXPECT_EQ(Entries(), With({"-&Undo", "-&Redo"}, false, false, false, true));
    QTest::keyClicks(QApplication::focusWidget(), "1");
    EXPECT_EQ(Entries(), With({"&Undo", "-&Redo"}, false, false, false, true));
    Undo();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
    QApplication::clipboard()->setText("5");
    EXPECT_EQ(Entries(), With({"-&Undo", "&Redo"}, true, true, true, true));
}

TEST_P(EditMenuEntries, OfACellsEditorSpeakOfTheEditorAndLeaveItOpen)
{
    TypeIntoCell(2, 2, "9");
    ClickCell(1, 2);
    Key(Qt::Key_F2); // what it holds is selected
    QTest::keyClicks(QApplication::focusWidget(), "7");
    const QMenu& menu = GetParam() ? OpenEditMenuByKeys() : OpenEditMenu();
    EXPECT_EQ(EntriesOf(menu), With({"&Undo", "-&Redo"}, false, false, false, true));
    EXPECT_TRUE(Grid().IsEditing());
    EXPECT_EQ(Grid().GetItemText(1, 2), "1");
}

TEST_P(EditMenuEntries, OfTheListOfItemsSpeakOfTheDocument)
{
    TypeIntoCell(1, 2, "9");
    Find<QTreeWidget>("listItems").setFocus();
    EXPECT_EQ(Entries().mid(0, 2), (QStringList{"&Undo Typing", "-&Redo"}));
}

TEST_F(EditMenuCommands, UndoAndRedoTheDocumentFromTheGrid)
{
    TypeIntoCell(1, 2, "9");
    Choose("actionUndo");
    EXPECT_EQ(Grid().GetItemText(1, 2), "1");
    Choose("actionRedo");
    EXPECT_EQ(Grid().GetItemText(1, 2), "9");
}

TEST_F(EditMenuCommands, AreChosenByTheirLetters)
{
    TypeIntoCell(1, 2, "9");
    QTest::keyClick(&OpenEditMenuByKeys(), Qt::Key_U);
    EXPECT_EQ(Grid().GetItemText(1, 2), "1");
    QTest::keyClick(&OpenEditMenuByKeys(), Qt::Key_R);
    EXPECT_EQ(Grid().GetItemText(1, 2), "9");
    QTest::keyClick(&OpenEditMenuByKeys(), Qt::Key_C);
    EXPECT_EQ(QApplication::clipboard()->text(), "9");
    QTest::keyClick(&OpenEditMenuByKeys(), Qt::Key_T);
    EXPECT_NE(Grid().GetItemText(1, 2), "9");
    QTest::keyClick(&OpenEditMenuByKeys(), Qt::Key_P);
    EXPECT_EQ(Grid().GetItemText(1, 2), "9");
    ClickCell(3, 2);
    QTest::keyClick(&OpenEditMenuByKeys(), Qt::Key_V);
    EXPECT_EQ(Selected(), "1,2");
    QTest::keyClick(&OpenEditMenuByKeys(), Qt::Key_N);
    EXPECT_EQ(Told(), "There is no further change.");
}

TEST_F(EditMenuCommands, UndoAndRedoTheFieldThatHadTheFocus)
{
    TypeIntoCell(1, 2, "9");
    QLineEdit& field = GoToField("editReadCount");
    QTest::keyClicks(&field, "3");
    ASSERT_EQ(field.text(), "3");
    Choose("actionUndo");
    EXPECT_EQ(field.text(), "4");
    Choose("actionRedo");
    EXPECT_EQ(field.text(), "3");
    EXPECT_EQ(Grid().GetItemText(1, 2), "9");
}

TEST_F(EditMenuCommands, OfTheClipboardActOnTheFieldThatHadTheFocus)
{
    ClickCell(1, 2);
    QLineEdit& field = GoToField("editReadCount");
    Choose("actionCopy");
    EXPECT_EQ(QApplication::clipboard()->text(), "4");
    Choose("actionCut");
    EXPECT_EQ(field.text(), "");
    QApplication::clipboard()->setText("12");
    Choose("actionPaste");
    EXPECT_EQ(field.text(), "12");
    EXPECT_EQ(Shown(), (QStringList{"1", "ABCD", "2", "EFGH", "3", "IJKL", "4", "MNOP"}));
}

TEST_F(EditMenuCommands, OfTheClipboardActOnTheGridElse)
{
    ChooseCells(1, 2, 2, 2);
    Find<QTreeWidget>("listItems").setFocus();
    Choose("actionCopy");
    EXPECT_EQ(QApplication::clipboard()->text(), "1\n2\n");
    Grid().setFocus();
    Choose("actionCut");
    EXPECT_EQ(Shown(), (QStringList{"", "ABCD", "", "EFGH", "3", "IJKL", "4", "MNOP"}));
    EXPECT_EQ(NextUndo(), "Cut (2 cells)");
    ClickCell(3, 2);
    Choose("actionPaste");
    EXPECT_EQ(Shown(), (QStringList{"", "ABCD", "", "EFGH", "1", "IJKL", "2", "MNOP"}));
    EXPECT_EQ(NextUndo(), "Paste (2 cells)");
}

TEST_F(EditMenuCommands, OfTheClipboardActOnTheOpenEditorOfACell)
{
    ClickCell(1, 3);
    Key(Qt::Key_F2);
    Choose("actionCut");
    EXPECT_EQ(QApplication::clipboard()->text(), "ABCD");
    ASSERT_TRUE(Grid().IsEditing());
    Choose("actionUndo");
    EXPECT_EQ(qobject_cast<QLineEdit*>(QApplication::focusWidget())->text(), "ABCD");
    Key(Qt::Key_Escape);
    EXPECT_EQ(NextUndo(), "");
}

TEST_F(EditMenuCommands, WorkByKeysAfterTheMenuFoundThemOff)
{
    ClickCell(1, 3);
    QApplication::clipboard()->clear();
    EXPECT_TRUE(EntriesOf(OpenEditMenu()).contains("-&Paste"));
    CloseEditMenu();
    QApplication::clipboard()->setText("ok");
    Key(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Grid().GetItemText(1, 3), "ok");
    Key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Grid().GetItemText(1, 3), "ABCD");
}
