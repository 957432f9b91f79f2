// What is told of an undo or redo, and the way from one changed cell to the next.

#include "controls/GridCtrl.h"
#include "controls/GridModel.h"
#include "tests/app/EditFixture.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QTreeWidget>

namespace {

struct UndoNotice : EditFixture {
    void SetUp() override
    {
        EditFixture::SetUp();
        PasteAt(1, 2, "5\tP\n6\tQ\n7\tR");
        ClickCell(1, 2);
        m_info = Told();
        ASSERT_TRUE(m_info.startsWith("RW0, ")) << m_info.toStdString();
    }

    QString m_info; ///< of the cell 1,2, what the status bar says while there is nothing else
};

struct NextChange : EditFixture {
    void SetUp() override
    {
        EditFixture::SetUp();
        TypeIntoCell(1, 3, "x");
        TypeIntoCell(2, 2, "9");
        TypeIntoCell(4, 2, "8");
    }

    void Next() { Key(Qt::Key_F8); }
    void Previous() { Key(Qt::Key_F8, Qt::ShiftModifier); }
};

const QString kNoFurther = QStringLiteral("There is no further change.");

} // namespace

TEST_F(UndoNotice, NamesWhatWasDone)
{
    Undo();
    EXPECT_EQ(Told(), "Undone: Paste (6 cells)");
    Redo();
    EXPECT_EQ(Told(), "Done again: Paste (6 cells)");
    Redo(); // nothing more
    EXPECT_EQ(Told(), "Done again: Paste (6 cells)");
}

TEST_F(UndoNotice, GoesWithTheNextChosenCell)
{
    Undo();
    ClickCell(4, 2);
    EXPECT_TRUE(Told().startsWith("RW9, ")) << Told().toStdString();
    Redo();
    Key(Qt::Key_Down);
    EXPECT_TRUE(Told().startsWith("RW3, ")) << Told().toStdString();
}

TEST_F(UndoNotice, GoesWithTheNextEdit)
{
    Undo();
    TypeIntoCell(1, 2, "9");
    EXPECT_TRUE(Told().startsWith("RW0, ")) << Told().toStdString();
    Undo();
    EXPECT_EQ(Told(), "Undone: Typing");
    Key(Qt::Key_Delete);
    EXPECT_TRUE(Told().startsWith("RW0, ")) << Told().toStdString();
}

TEST_F(UndoNotice, GoesWithAFormatCommandThatTheDataDoesNotShow)
{
    auto& autoUse = Find<QCheckBox>("checkAutoUse");
    QTest::mouseClick(&autoUse, Qt::LeftButton, {}, QPoint(8, autoUse.height() / 2));
    ASSERT_FALSE(autoUse.isChecked());
    Undo();
    EXPECT_EQ(Told(), "Undone: Paste (6 cells)");
    auto& list = Find<QTreeWidget>("listItems");
    list.setFocus(Qt::TabFocusReason);
    Key(Qt::Key_Delete);
    EXPECT_EQ(NextUndo(), "Del DataItem");
    EXPECT_TRUE(Told().startsWith("RW0, ")) << Told().toStdString();
}

TEST_F(UndoNotice, GoesWithASave)
{
    Undo();
    Save();
    EXPECT_TRUE(Told().startsWith("RW0, ")) << Told().toStdString();
}

TEST_F(UndoNotice, IsToldToScreenReadersWhileWhatWeighsMoreIsShown)
{
    MakeFile("p.frp", 32768);
    OpenThroughDialog("p.frp");
    PasteAt(1, 2, "5\tP\n6\tQ\n7\tR");
    std::filesystem::remove(folder / "p.frp");
    Save();
    const QString weightier = Told();
    ASSERT_EQ(weightier, "p.frp is gone: your changes are not saved.");
    Undo();
    EXPECT_EQ(Told(), weightier);
    auto& label = Find<QLabel>("labelMessage");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&label)->text(QAccessible::Name), "Undone: Paste (6 cells)");
}

TEST_F(NextChange, GoesThroughTheRowsToTheEnd)
{
    ClickCell(1, 2);
    for (const char* cell : {"1,3", "2,2", "4,2"}) {
        Next();
        EXPECT_EQ(Selected(), cell);
        EXPECT_NE(Told(), kNoFurther);
    }
    Next();
    EXPECT_EQ(Selected(), "4,2");
    EXPECT_EQ(Told(), kNoFurther);
    for (const char* cell : {"2,2", "1,3"}) {
        Previous();
        EXPECT_EQ(Selected(), cell);
        EXPECT_NE(Told(), kNoFurther);
    }
    Previous();
    EXPECT_EQ(Selected(), "1,3");
    EXPECT_EQ(Told(), kNoFurther);
}

TEST_F(NextChange, LeavesOutWhatWasTakenBackOrSaved)
{
    Undo();
    ClickCell(2, 2);
    Next();
    EXPECT_EQ(Told(), kNoFurther);
    ClickCell(1, 2);
    Next();
    EXPECT_EQ(Selected(), "1,3");
    Save();
    ClickCell(1, 2);
    Next();
    EXPECT_EQ(Selected(), "1,2");
    EXPECT_EQ(Told(), kNoFurther);
    Undo(); // past the save: the cell differs from the file again
    ClickCell(1, 2);
    Next();
    EXPECT_EQ(Selected(), "2,2");
}

TEST_F(NextChange, GoesOnInTheGridFromAField)
{
    ClickCell(1, 2);
    GoToField("editReadCount");
    Next();
    EXPECT_EQ(Selected(), "1,3");
    EXPECT_EQ(QApplication::focusWidget(), &Grid());
}

TEST_F(NextChange, EndsAnOpenEditFirst)
{
    ClickCell(1, 2);
    Key(Qt::Key_F2);
    QTest::keyClicks(QApplication::focusWidget(), "6");
    Next();
    EXPECT_FALSE(Grid().IsEditing());
    EXPECT_EQ(Grid().GetItemText(1, 2), "6");
    EXPECT_EQ(Selected(), "1,3");
}

TEST_F(NextChange, StaysWhereTheOpenEditIsRefused)
{
    ClickCell(1, 2);
    Key(Qt::Key_F2);
    QTest::keyClicks(QApplication::focusWidget(), "6666666");
    const CModalAnswer answer(QMessageBox::Ok);
    Next();
    EXPECT_EQ(answer.texts.size(), 1u);
    EXPECT_EQ(Selected(), "1,2");
    EXPECT_NE(Told(), kNoFurther);
}

TEST_F(EditFixture, TheFirstChangeIsTheNextWhereNoCellHasTheFocus)
{
    const QPoint cell = Grid().visualRect(Grid().Model().BodyIndex(2, 2)).center();
    QTest::mouseClick(Grid().viewport(), Qt::RightButton, {}, cell); // chooses without the focus
    auto& menu = Find<QMenu>("menuBitBrowse");
    ASSERT_TRUE(WaitFor([&] { return menu.isVisible(); }));
    {
        const CModalAnswer answer({CModalAnswer::PressNamed("buttonOK")});
        QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(menu.actions().front()).center());
    }
    Activate();
    int row = 0;
    int column = 0;
    ASSERT_FALSE(Grid().FocusCell(row, column));
    ASSERT_EQ(NextUndo(), "BitBrowse");
    Grid().setFocus();
    Key(Qt::Key_F8, Qt::ShiftModifier);
    EXPECT_EQ(Told(), kNoFurther);
    Key(Qt::Key_F8);
    EXPECT_EQ(Selected(), "2,2");
}
