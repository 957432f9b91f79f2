// The inspector: the words of the chosen cell in every way to read them.

#include "tests/app/SaveFixture.h"

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>
#include <QTest>

namespace {

struct Inspector : SaveFixture {
    void SetUp() override
    {
        SaveFixture::SetUp();
        Grid().setFocus();
        Key(Qt::Key_I, Qt::ControlModifier);
    }

    QTableView& Views() { return Find<QTableView>("tableInspector"); }
    QString Cell() { return Find<QLabel>("labelInspected").text(); }
    QString Notice() { return Find<QLabel>("labelInspectorNotice").text(); }

    QModelIndex ValueOf(const QString& name)
    {
        for (int row = 0; row < Views().model()->rowCount(); ++row)
            if (Views().model()->index(row, 0).data().toString() == name)
                return Views().model()->index(row, 1);
        ADD_FAILURE() << name.toStdString();
        return {};
    }

    std::string Shown(const QString& name) { return ValueOf(name).data().toString().toStdString(); }

    void Type(const QString& name, const QString& text)
    {
        Views().scrollTo(ValueOf(name));
        QTest::mouseClick(Views().viewport(), Qt::LeftButton, {}, Views().visualRect(ValueOf(name)).center());
        QTest::keyClick(&Views(), Qt::Key_F2);
        auto* editor = Views().findChild<QLineEdit*>();
        ASSERT_NE(editor, nullptr) << name.toStdString();
        editor->selectAll();
        QTest::keyClicks(editor, text);
        QTest::keyClick(editor, Qt::Key_Return);
        QApplication::processEvents();
    }
};

} // namespace

TEST_F(Inspector, IsHiddenAtFirstAndShownByItsKeyWithTheFocus)
{
    auto& dock = Find<QDockWidget>("inspector");
    EXPECT_TRUE(dock.isVisible());
    EXPECT_TRUE(dock.isAncestorOf(QApplication::focusWidget()));
    EXPECT_TRUE(Action("actionInspector").isChecked());
    Key(Qt::Key_I, Qt::ControlModifier);
    EXPECT_FALSE(dock.isVisible());
    EXPECT_FALSE(Action("actionInspector").isChecked());
    EXPECT_TRUE(Grid().hasFocus());
}

TEST_F(Inspector, ShowsTheWordsOfTheChosenCellInEveryWay)
{
    ClickCell(2, kSteam);
    EXPECT_EQ(Cell(), "RW6, row 2, Steam");
    EXPECT_EQ(Shown("hexadecimal"), "51EC 41C8");
    EXPECT_EQ(Shown("bits"), "0101 0001 1110 1100 0100 0001 1100 1000");
    EXPECT_EQ(Shown("float"), "25.04");
    EXPECT_EQ(Shown("signed 16-bit"), "20972");
    EXPECT_EQ(Shown("signed 32-bit, high word first"), std::to_string(0x51EC41C8));
}

TEST_F(Inspector, ReadsTheWordsAfterTheCellForALongerNumber)
{
    ClickCell(1, kBelt);
    EXPECT_EQ(Shown("signed 16-bit"), "105");
    EXPECT_EQ(Shown("signed 32-bit"), "105");
    EXPECT_FALSE(ValueOf("signed 32-bit").flags().testFlag(Qt::ItemIsEditable));
    EXPECT_EQ(ValueOf("signed 32-bit").data(Qt::AccessibleTextRole),
              "signed 32-bit: 105, read with the words after the cell");
}

TEST_F(Inspector, ShowsTheTextOfAString)
{
    ClickCell(1, kName);
    EXPECT_EQ(Shown("text, 2 characters a word"), "ABCD");
}

TEST_F(Inspector, FollowsTheCellAndItsEdits)
{
    ClickCell(3, kBelt);
    EXPECT_EQ(Shown("unsigned 16-bit"), "200");
    TypeIntoCell(3, kBelt, "7.50");
    EXPECT_EQ(Shown("unsigned 16-bit"), "750");
    Undo();
    EXPECT_EQ(Shown("unsigned 16-bit"), "200");
    ClickCell(2, kBelt);
    EXPECT_EQ(Shown("unsigned 16-bit"), "75");
}

TEST_F(Inspector, ATypedValueBecomesTheCellsAndCanBeUndone)
{
    ClickCell(2, kBelt);
    Type("hexadecimal", "0064");
    EXPECT_EQ(Grid().GetItemText(2, kBelt), "1.00");
    EXPECT_EQ(Shown("bits"), "0000 0000 0110 0100");
    EXPECT_EQ(NextUndo(), "Typing");
    Grid().setFocus();
    Undo();
    EXPECT_EQ(Grid().GetItemText(2, kBelt), "0.75");
    EXPECT_EQ(Shown("hexadecimal"), "004B");
}

TEST_F(Inspector, WordsThatTheTextLosesAreSavedAsTheyAre)
{
    ClickCell(3, kSteam);
    Type("float", "25.04");
    Grid().setFocus();
    SaveEditedOnly();
    EXPECT_EQ(Oven(), OvenWith({{11, 0x51EC}, {12, 0x41C8}}));
}

TEST_F(Inspector, AValueThatTheCellMayNotHaveIsRefusedWithTheReason)
{
    ClickCell(2, kBelt);
    Type("signed 16-bit", "30000");
    EXPECT_NE(Notice(), "");
    EXPECT_TRUE(Find<QLabel>("labelInspectorNotice").isVisible());
    EXPECT_EQ(Grid().GetItemText(2, kBelt), "0.75");
    EXPECT_EQ(Shown("signed 16-bit"), "75");
    EXPECT_FALSE(IsModified());
    ClickCell(3, kBelt);
    EXPECT_EQ(Notice(), "");
}

TEST_F(Inspector, ATextThatIsNoneIsRefusedWithTheReason)
{
    ClickCell(2, kBelt);
    Type("hexadecimal", "12");
    EXPECT_TRUE(Notice().contains("12")) << Notice().toStdString();
    EXPECT_FALSE(IsModified());
}

TEST_F(Inspector, SaysWhenThereIsNothingToShow)
{
    Grid().setFocus();
    Key(Qt::Key_N, Qt::ControlModifier);
    EXPECT_EQ(Cell(), "No cell is chosen.");
    EXPECT_EQ(Shown("hexadecimal"), "");
}

TEST_F(Inspector, SaysThatATableOfTextsHasNoWords)
{
    WriteAll(folder / "oven.csv", Utf16File(u"1\t2\tA\r\n1\t2\tB\r\n"));
    Open("oven.csv");
    ClickCell(1, kBelt);
    EXPECT_EQ(Cell(), "A table of texts has no words.");
}

TEST_F(Inspector, EscapeGoesBackToTheTable)
{
    ClickCell(1, kBelt);
    Views().setFocus();
    Key(Qt::Key_Escape);
    EXPECT_TRUE(Grid().hasFocus());
}

TEST_F(Inspector, TellsScreenReadersWhatAValueIsOf)
{
    ClickCell(2, kBelt);
    EXPECT_EQ(ValueOf("hexadecimal").data(Qt::AccessibleTextRole), "hexadecimal: 004B");
    EXPECT_NE(Views().accessibleName(), "");
}
