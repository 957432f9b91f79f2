// Ctrl+F and what follows: texts and numbers found in the table, counted, listed.

#include "controls/GridCtrl.h"
#include "controls/GridModel.h"
#include "tests/app/FindFixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QTableView>
#include <QTest>

namespace {

struct FindBarKeys : FindFixture {
    /// Opens a file of so many rows of zeros but for a 7 in the first row and in the last one.
    void OpenLong(std::size_t rows)
    {
        Bytes words(rows * 6);
        words[0] = words[(rows - 1) * 6] = std::byte{7};
        WriteAll(folder / "long.rcp", words);
        UseRows(QString::number(rows));
        OpenThroughDialog("long.rcp");
        Grid().setFocus();
    }

    void UseRows(const QString& rows)
    {
        auto& count = GoToField("editReadCount");
        count.selectAll();
        QTest::keyClicks(&count, rows);
    }
};

} // namespace

TEST_F(FindBarKeys, ShowTheFirstHitWhileTyping)
{
    ClickCell(1, 2);
    Look("FG");
    EXPECT_EQ(Selected(), "2,3");
    EXPECT_TRUE(Told("Found at row 2, Name. 1 of 1."));
    EXPECT_TRUE(Find<QLineEdit>("editFind").hasFocus()) << "to type on";
}

TEST_F(FindBarKeys, LookFromTheFocusCellOnAndRound)
{
    ClickCell(3, 2);
    Look("2");
    EXPECT_EQ(Selected(), "2,2");
    EXPECT_TRUE(Told("Found at row 2, Word. 1 of 1. The search went round."));
    Key(Qt::Key_Backspace);
    Look("4");
    EXPECT_EQ(Selected(), "4,2") << "what is typed is looked for from where the focus was before";
}

TEST_F(FindBarKeys, GoToTheNextAndThePreviousHit)
{
    TypeIntoCell(2, 2, "12");
    TypeIntoCell(4, 2, "21");
    ClickCell(1, 2);
    Look("1");
    EXPECT_TRUE(Told("Found at row 1, Word. 1 of 3."));
    Key(Qt::Key_Return);
    EXPECT_TRUE(Told("Found at row 2, Word. 2 of 3."));
    Key(Qt::Key_F3);
    EXPECT_TRUE(Told("Found at row 4, Word. 3 of 3."));
    Key(Qt::Key_F3);
    EXPECT_TRUE(Told("Found at row 1, Word. 1 of 3. The search went round."));
    Key(Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_TRUE(Told("Found at row 4, Word. 3 of 3. The search went round."));
    Key(Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_TRUE(Told("Found at row 2, Word. 2 of 3."));
    EXPECT_EQ(Selected(), "2,2");
}

TEST_F(FindBarKeys, GoOnAfterTheBarWasClosed)
{
    ClickCell(1, 2);
    Look("I");
    EXPECT_EQ(Selected(), "3,3");
    Key(Qt::Key_Escape);
    EXPECT_FALSE(Bar().isVisible());
    EXPECT_TRUE(Grid().hasFocus());
    TypeIntoCell(4, 3, "Pi");
    Key(Qt::Key_F3);
    EXPECT_TRUE(WaitFor([this] {
        return EditFixture::Told() == "Found at row 3, Name. 1 of 2. The search went round.";
    })) << EditFixture::Told().toStdString();
    EXPECT_EQ(Selected(), "3,3");
    EXPECT_TRUE(Grid().hasFocus());
    Key(Qt::Key_F3);
    EXPECT_TRUE(WaitFor([this] { return EditFixture::Told() == "Found at row 4, Name. 2 of 2."; }));
}

TEST_F(FindBarKeys, AskWhereNothingWasLookedForYet)
{
    ClickCell(1, 2);
    Key(Qt::Key_F3);
    EXPECT_TRUE(Bar().isVisible());
    EXPECT_TRUE(Find<QLineEdit>("editFind").hasFocus());
}

TEST_F(FindBarKeys, FindANumberHoweverItIsWritten)
{
    ClickCell(1, 2);
    ChooseIn("comboFindKind", 1);
    Look("03.0");
    EXPECT_EQ(Selected(), "3,2");
    EXPECT_TRUE(Told("Found at row 3, Word. 1 of 1."));
    EXPECT_FALSE(Find<QCheckBox>("checkWholeCell").isEnabled());
    Key(Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), "3,5");
    EXPECT_TRUE(Told("3,5 is no number: decimals come after a point."));
}

TEST_F(FindBarKeys, MindCaseAndWholeCells)
{
    ClickCell(1, 2);
    Look("efgh");
    EXPECT_TRUE(Told("Found at row 2, Name. 1 of 1."));
    QTest::mouseClick(&Find<QCheckBox>("checkMatchCase"), Qt::LeftButton);
    EXPECT_TRUE(Told("Not found."));
    QTest::mouseClick(&Find<QCheckBox>("checkMatchCase"), Qt::LeftButton);
    QTest::mouseClick(&Find<QCheckBox>("checkWholeCell"), Qt::LeftButton);
    EXPECT_TRUE(Told("Found at row 2, Name. 1 of 1."));
    Find<QLineEdit>("editFind").setFocus();
    Key(Qt::Key_Backspace);
    EXPECT_TRUE(Told("Not found."));
}

TEST_F(FindBarKeys, LookInAColumnOrInTheSelection)
{
    TypeIntoCell(2, 3, "4");
    ClickCell(1, 2);
    Look("4");
    EXPECT_TRUE(Told("Found at row 2, Name. 1 of 2."));
    Key(Qt::Key_Escape);
    ClickCell(1, 2);
    Key(Qt::Key_F, Qt::ControlModifier);
    ChooseIn("comboFindScope", 1);
    EXPECT_TRUE(Told("Found at row 4, Word. 1 of 1."));
    Key(Qt::Key_Escape);
    ChooseCells(1, 2, 3, 3);
    Key(Qt::Key_F, Qt::ControlModifier);
    ChooseIn("comboFindScope", 2);
    EXPECT_TRUE(Told("Found at row 2, Name. 1 of 1. The search went round."));
    Find<QLineEdit>("editFind").setFocus();
    Key(Qt::Key_Backspace);
    QTest::keyClicks(QApplication::focusWidget(), "M");
    EXPECT_TRUE(Told("Not found in the selection."));
}

TEST_F(FindBarKeys, LookNowhereWhereNothingIsChosen)
{
    Look("4");
    EXPECT_TRUE(Told("Found at row 4, Word. 1 of 1."));
    Key(Qt::Key_Escape);
    OpenThroughDialog("a.rcp");
    Key(Qt::Key_H, Qt::ControlModifier);
    for (const int scope : {1, 2}) {
        ChooseIn("comboFindScope", scope);
        EXPECT_TRUE(Told("No cell is chosen."));
        ClickButton("buttonReplaceAll");
        EXPECT_TRUE(Told("No cell is chosen."));
        EXPECT_FALSE(IsModified());
    }
    ClickCell(4, 3);
    Key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(Told("Not found in the selection."));
}

TEST_F(FindBarKeys, ForgetWhatWasChosenInOtherRows)
{
    ChooseCells(1, 2, 3, 3);
    Key(Qt::Key_F, Qt::ControlModifier);
    ChooseIn("comboFindScope", 2);
    Look("3");
    EXPECT_TRUE(Told("Found at row 3, Word. 1 of 1. The search went round."));
    UseRows("3");
    QTest::mouseClick(&Find<QPushButton>("buttonUseFormat"), Qt::LeftButton);
    EXPECT_EQ(Grid().RowCount(), 4);
    EXPECT_TRUE(Told("No cell is chosen."));
    Grid().setFocus();
    Key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(Told("No cell is chosen."));
}

TEST_F(FindBarKeys, StayWhereTheUserGoesMeanwhile)
{
    OpenLong(300000);
    ClickCell(2, 2);
    Look("7");
    EXPECT_EQ(Bar().Told(), "Looking…");
    ClickCell(3, 3);
    EXPECT_TRUE(Told("Found: 2."));
    EXPECT_EQ(Selected(), "3,3");
    Key(Qt::Key_F3);
    EXPECT_TRUE(Told("Found at row 300000, Word. 2 of 2."));
}

TEST_F(FindBarKeys, SpeakOfNoCountThatIsNotMade)
{
    OpenLong(300000);
    ClickCell(1, 2);
    Look("7");
    Key(Qt::Key_Escape);
    ClickCell(300, 2);
    Key(Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_TRUE(WaitFor([this] { return EditFixture::Told() == "Found at row 1, Word."; }))
        << EditFixture::Told().toStdString();
}

TEST_F(FindBarKeys, CountAnewWhatEditsAndUndoChange)
{
    ClickCell(1, 2);
    Look("9");
    EXPECT_TRUE(Told("Not found."));
    TypeIntoCell(3, 2, "99");
    EXPECT_TRUE(Told("Found: 1."));
    PasteAt(1, 2, "9\n9");
    EXPECT_TRUE(Told("Found: 3."));
    Undo();
    EXPECT_TRUE(Told("Found: 1."));
    Undo();
    EXPECT_TRUE(Told("Not found."));
}

TEST_F(FindBarKeys, SayThatTheTableIsEmptyOrBecameSo)
{
    frame.reset();
    Start();
    Grid().setFocus();
    Look("1");
    EXPECT_TRUE(Told("The table is empty."));
    OpenThroughDialog("a.rcp");
    Grid().setFocus();
    Key(Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(Told("Found: 1."));
}

TEST_F(FindBarKeys, ListAllHitsInTheChangesPanel)
{
    TypeIntoCell(2, 2, "12");
    ClickCell(1, 2);
    Look("1");
    EXPECT_TRUE(Told("Found at row 1, Word. 1 of 2."));
    ClickButton("buttonListAll");
    EXPECT_EQ(Lines(), (QStringList{"RW0|1|Word||1|", "RW3|2|Word||12|"}));
    auto& lines = Find<QTableView>("tableChanges");
    EXPECT_TRUE(lines.hasFocus());
    Key(Qt::Key_Down);
    Key(Qt::Key_Down);
    Key(Qt::Key_Return);
    EXPECT_EQ(Selected(), "2,2");
    EXPECT_TRUE(Grid().hasFocus());
}

TEST_F(FindBarKeys, KeepTheListTrueToEditsUntilOtherRowsAreShown)
{
    ClickCell(1, 2);
    Look("4");
    ClickButton("buttonListAll");
    EXPECT_EQ(Lines(), QStringList{"RW9|4|Word||4|"});
    TypeIntoCell(1, 2, "44");
    EXPECT_EQ(Lines(), (QStringList{"RW0|1|Word||44|", "RW9|4|Word||4|"}));
    Find<QLineEdit>("editFind").setFocus();
    QTest::keyClicks(&Find<QLineEdit>("editFind"), "4");
    EXPECT_TRUE(Told("Found at row 1, Word. 1 of 1."));
    EXPECT_EQ(Lines().size(), 2) << "the list is of what was looked for then";
    auto& count = GoToField("editReadCount");
    count.selectAll();
    QTest::keyClicks(&count, "3");
    QTest::mouseClick(&Find<QPushButton>("buttonUseFormat"), Qt::LeftButton);
    EXPECT_EQ(Grid().RowCount(), 4);
    EXPECT_EQ(Lines(), QStringList()) << "the plan of a save, in which nothing changes";
}

TEST_F(FindBarKeys, LookThroughManyRowsWhileTheWindowStaysAlive)
{
    MakeFile("long.rcp", 3 * 300000);
    auto& count = GoToField("editReadCount");
    count.selectAll();
    QTest::keyClicks(&count, "300000");
    OpenThroughDialog("long.rcp");
    Grid().setFocus();
    Look("0");
    EXPECT_FALSE(Bar().Told().isEmpty());
    QTest::keyClicks(&Find<QLineEdit>("editFind"), "1");
    EXPECT_TRUE(Told("Not found.")) << "the count of the text before has ended";
}
