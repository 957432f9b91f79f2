// Notes of items in the window: set, undone, shared with another window, and at the table at once.

#include "controls/GridCtrl.h"
#include "library/NotesFile.h"
#include "tests/app/EditFixture.h"
#include "views/RecipeDataShowView.h"

#include <QApplication>
#include <QCheckBox>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

namespace {

/// The table has the columns Word and Name.
struct Notes : EditFixture {
    static CModalAnswer::Action EnterUnit(const QString& unit)
    {
        return [unit](QWidget& dialog) {
            TypeInto(dialog, "editUnit", unit);
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        };
    }

    static void PressInList(CMainFrame& window, int row, Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        ASSERT_TRUE(ShowActive(window));
        auto& list = FindIn<QTreeWidget>(window, "listItems");
        list.setFocus(Qt::TabFocusReason);
        QTest::keyClick(&list, Qt::Key_Home);
        for (int i = 0; i < row; ++i)
            QTest::keyClick(&list, Qt::Key_Down);
        QTest::keyClick(&list, key, modifiers);
    }

    static void SetUnit(CMainFrame& window, int row, const QString& unit)
    {
        const CModalAnswer answer({EnterUnit(unit)});
        PressInList(window, row, Qt::Key_Return, Qt::ControlModifier);
        EXPECT_EQ(answer.titles.size(), 1U);
        ASSERT_TRUE(ShowActive(window));
    }

    /// Opens the menu of the first column's title.
    QMenu& TitleMenu()
    {
        QWidget& titles = *Grid().horizontalHeader()->viewport();
        QContextMenuEvent event(QContextMenuEvent::Mouse, {20, 10}, titles.mapToGlobal(QPoint(20, 10)));
        QApplication::sendEvent(&titles, &event);
        return dynamic_cast<QMenu&>(*QApplication::activePopupWidget());
    }

    void ChooseInTitleMenu()
    {
        QMenu& menu = TitleMenu();
        QAction& notes = *menu.actions().back();
        ASSERT_TRUE(notes.isEnabled());
        QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(&notes).center());
    }

    /// Why the command is off; empty where it is not.
    QString WhyTitleMenuIsOff()
    {
        QMenu& menu = TitleMenu();
        const QAction& notes = *menu.actions().back();
        const QString why = notes.isEnabled() ? QString() : notes.toolTip();
        QTest::keyClick(&menu, Qt::Key_Escape);
        return why;
    }

    /// Those of the table's columns.
    std::u16string Units() const
    {
        std::u16string units;
        for (const ColumnCoding& column : frame->Document().Rows().Columns())
            units += column.notes->unit + u"|";
        return units;
    }

    void TurnAutoUseOff()
    {
        auto& box = Find<QCheckBox>("checkAutoUse");
        QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(8, box.height() / 2));
        ASSERT_FALSE(box.isChecked());
    }

    void RenameFirstItem()
    {
        const CModalAnswer answer({[](QWidget& dialog) {
            TypeInto(dialog, "editDescription", "Other");
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        }});
        PressInList(*frame, 0, Qt::Key_Return);
        Activate();
    }

    std::size_t Stored() const { return ReadNotes(folder / "RecipeFile.Notes.json").notes.size(); }
};

} // namespace

TEST_F(Notes, AreAtTheTableAtOnceAndTheRestStays)
{
    TypeIntoCell(1, 2, "12");
    const Bytes library = ReadAll(folder / "RecipeFile.Dat");
    int told = 0;
    QObject::connect(&Find<CRecipeDataShowView>("dataPane"), &CRecipeDataShowView::NotesChanged, frame.get(),
                     [&told] { ++told; });
    SetUnit(*frame, 0, "°C");
    EXPECT_EQ(Units(), u"°C||");
    EXPECT_EQ(told, 1);
    EXPECT_EQ(Shown().front(), "12");
    EXPECT_TRUE(IsModified());
    EXPECT_EQ(Stored(), 1U);
    EXPECT_EQ(ReadAll(folder / "RecipeFile.Dat"), library);
    Grid().setFocus();
    EXPECT_EQ(NextUndo(), "Notes of Word");
    Undo();
    EXPECT_EQ(Units(), u"||");
    EXPECT_EQ(told, 2);
    EXPECT_EQ(Stored(), 0U);
    EXPECT_EQ(Told(), "Undone: Notes of Word");
    EXPECT_EQ(NextUndo(), "Typing");
    Redo();
    EXPECT_EQ(Units(), u"°C||");
    EXPECT_EQ(Stored(), 1U);
}

TEST_F(Notes, LeaveASavedFileUnmodified)
{
    SetUnit(*frame, 0, "°C");
    EXPECT_FALSE(IsModified());
    Grid().setFocus();
    Undo();
    EXPECT_FALSE(IsModified());
    EXPECT_EQ(ReadAll(folder / "a.rcp"), original);
}

TEST_F(Notes, TheFirstRowStaysInTheListOfItems)
{
    const auto firstRow = [this] { return Find<QTreeWidget>("listItems").topLevelItem(0)->text(4); };
    const QString before = firstRow();
    ASSERT_FALSE(before.isEmpty());
    SetUnit(*frame, 0, "°C");
    EXPECT_EQ(firstRow(), before);
}

TEST_F(Notes, OfAColumnAreAskedForFromItsTitle)
{
    const CModalAnswer answer({EnterUnit("m")});
    ChooseInTitleMenu();
    EXPECT_EQ(answer.titles, std::vector<QString>{"Notes of Word"});
    EXPECT_EQ(Units(), u"m||");
    Activate();
    Grid().setFocus();
    EXPECT_EQ(NextUndo(), "Notes of Word");
}

TEST_F(Notes, OfAnItemThatIsAnotherByNowAreNotOfferedAtItsTitle)
{
    TurnAutoUseOff();
    EXPECT_EQ(WhyTitleMenuIsOff(), "");
    RenameFirstItem();
    EXPECT_EQ(WhyTitleMenuIsOff(), "The item is another one in the list by now: use the data format first");
    ClickOn(*frame, "buttonUseFormat");
    EXPECT_EQ(WhyTitleMenuIsOff(), "");
    ClickOn(*frame, "buttonDeleteFormat");
    EXPECT_EQ(WhyTitleMenuIsOff(), "The table's data format is not in the list any more");
}

TEST_F(Notes, AnUndoneReadingShowsThoseOfNow)
{
    TypeInto(*frame, "editReadCount", "2");
    ClickOn(*frame, "buttonRefreshData");
    SetUnit(*frame, 0, "m");
    Grid().setFocus();
    Undo(); // the notes
    Undo();
    EXPECT_EQ(Shown().size(), 8);
    EXPECT_EQ(Units(), u"||");
    Redo();
    Redo();
    EXPECT_EQ(Shown().size(), 4);
    EXPECT_EQ(Units(), u"m||");
}

TEST_F(Notes, OfAnotherWindowComeWithTheNextLookAtTheLibrary)
{
    CMainFrame second(folder / "vantor");
    SetUnit(second, 0, "m");
    EXPECT_EQ(Units(), u"||");
    SetUnit(*frame, 1, "pcs");
    EXPECT_EQ(Units(), u"m|pcs|");
    EXPECT_EQ(Stored(), 2U);
    SetUnit(second, 1, "kg"); // over those of the first window, which it has not seen
    Activate();
    ClickOn(*frame, "buttonRefreshData");
    EXPECT_EQ(Units(), u"m|kg|");
}

TEST_F(Notes, BothWindowsKeepTheirOwnFieldsOfOneItem)
{
    CMainFrame second(folder / "vantor");
    SetUnit(*frame, 0, "m");
    const CModalAnswer answer({[](QWidget& dialog) {
        EXPECT_EQ(TextIn(dialog, "editUnit"), "");
        TypeInto(dialog, "editLowest", "5");
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
    }});
    PressInList(second, 0, Qt::Key_Return, Qt::ControlModifier);
    const auto notes = ReadNotes(folder / "RecipeFile.Notes.json").notes;
    ASSERT_EQ(notes.size(), 1U);
    EXPECT_EQ(notes.begin()->second.unit, u"m");
    EXPECT_EQ(RangeText(notes.begin()->second), u"5 or more");
}
