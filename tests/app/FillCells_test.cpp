// Fill, Calculate, Ctrl+D and Ctrl+Enter: shown first or done at once, one undo, refused cells with their reasons.

#include "controls/GridModel.h"
#include "controls/Strip.h"
#include "tests/app/SaveFixture.h"
#include "views/ChangesPanel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QTest>

namespace {

struct FillCells : SaveFixture {
    static CModalAnswer::Action Type(const QString& field, const QString& text, const QString& button)
    {
        return [=](QWidget& dialog) {
            TypeInto(dialog, field, text);
            ClickOn(dialog, button);
        };
    }

    void Calculate(int operation, const QString& number, const QString& button)
    {
        const CModalAnswer answer({[=](QWidget& dialog) {
            FindIn<QComboBox>(dialog, "comboOperation").setFocus();
            for (int i = 0; i < operation; ++i)
                QTest::keyClick(&FindIn<QComboBox>(dialog, "comboOperation"), Qt::Key_Down);
            TypeInto(dialog, "editNumber", number);
            ClickOn(dialog, button);
        }});
        Choose("actionCalculate");
        Activate();
        EXPECT_EQ(answer.titles, std::vector<QString>{"Calculate"});
    }

    /// The first one opens the cell's editor, which takes the others.
    static void TypeKeys(const QString& text)
    {
        for (const QChar key : text)
            QTest::keyClick(QApplication::focusWidget(), key.toLatin1());
    }

    QStringList Belts()
    {
        QStringList texts;
        for (int row = 1; row < Grid().RowCount(); ++row)
            texts << Grid().GetItemText(row, kBelt);
        return texts;
    }
};

} // namespace

TEST_F(FillCells, ShowsWhatCalculatingWouldDoAndIsOneUndo)
{
    ChooseCells(1, kBelt, 4, kBelt); // 1.05, 0.75, 2.00, 0.05
    Calculate(1, "0.50", "buttonPreview");
    EXPECT_EQ(Strip(), "Calculate: 3 cells would change, 1 is refused.");
    EXPECT_EQ(StripButtons(), (QStringList{"Apply", "Discard"}));
    EXPECT_EQ(Panel().windowTitle(), "Calculate");
    EXPECT_EQ(Listed(), (QStringList{"1 Belt 1.50>0.55 ", "2 Belt 0.75>0.25 ", "3 Belt 2.00>1.50 ",
                                     "4 Belt 0.50> refused: -0.45 lies outside 0.00 to 99.99"}));
    EXPECT_EQ(Belts(), (QStringList{"1.50", "0.75", "2.00", "0.50"}));
    EXPECT_FALSE(IsModified());

    PressInStripByKeys("Apply");
    EXPECT_EQ(NextUndo(), "Calculate (3 cells)");
    EXPECT_EQ(Told(), "Calculate changed 3 cells.");
    EXPECT_EQ(Strip(), "Calculate changed 3 cells, 1 cell was refused.");
    EXPECT_EQ(QApplication::focusWidget(), &Grid());
    SaveEditedOnly();
    EXPECT_EQ(Oven(), OvenWith({{0, 55}, {5, 25}, {10, 150}}));
    Undo();
    EXPECT_EQ(Belts(), (QStringList{"1.50", "0.75", "2.00", "0.50"}));
}

TEST_F(FillCells, CalculatesAtOnceAndListsTheRefusedWhenAsked)
{
    ChooseCells(1, kBelt, 2, kName);
    Calculate(2, "2", "buttonOk");
    EXPECT_EQ(Strip(), "Calculate changed 4 cells, 2 cells were refused.");
    EXPECT_EQ(NextUndo(), "Calculate (4 cells)");
    ClickInStrip("Show");
    EXPECT_EQ(Panel().windowTitle(), "Refused: Calculate");
    EXPECT_EQ(Listed(), (QStringList{"1 Name ABCD> refused: there is no number to change",
                                     "2 Name EFGH> refused: there is no number to change"}));
    Undo();
    EXPECT_EQ(Strip(), "");
    EXPECT_NE(Panel().windowTitle(), "Refused: Calculate");
}

TEST_F(FillCells, IsWithdrawnAndToldWhenTheTableChanged)
{
    ChooseCells(1, kBelt, 4, kBelt);
    Calculate(0, "1", "buttonPreview");
    TypeIntoCell(3, kSteam, "4.5");
    EXPECT_EQ(Strip(), "Calculate was not applied: the table was changed meanwhile.");
    EXPECT_EQ(StripButtons(), QStringList{});
    EXPECT_EQ(NextUndo(), "Typing");
    EXPECT_NE(Panel().windowTitle(), "Calculate");
    Undo();
    EXPECT_EQ(Strip(), "");

    Calculate(0, "1", "buttonPreview");
    WriteOven("third.rcp");
    Open("third.rcp");
    EXPECT_EQ(Strip(), "");
    EXPECT_FALSE(IsModified());
}

TEST_F(FillCells, IsWithdrawnAndToldWhenTheFileIsSaved)
{
    TypeIntoCell(3, kSteam, "4.5"); // so that there is something to save
    ChooseCells(1, kBelt, 4, kBelt);
    Calculate(0, "1", "buttonPreview"); // to the 1.05 that is shown as 1.50, and that the save makes 1.50
    Key(Qt::Key_S, Qt::ControlModifier);
    EXPECT_FALSE(StripButtons().contains("Apply"));
    EXPECT_NE(Panel().windowTitle(), "Calculate");
    Calculate(0, "1", "buttonPreview");
    EXPECT_EQ(Listed().value(0), "1 Belt 1.50>2.50 ");
    PressInStripByKeys("Apply");
    EXPECT_EQ(Belts().value(0), "2.50");
}

TEST_F(FillCells, IsDiscarded)
{
    ChooseCells(1, kBelt, 4, kBelt);
    Calculate(0, "1", "buttonPreview");
    ClickInStrip("Discard");
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(NextUndo(), "");
    Calculate(0, "1", "buttonPreview");
    Find<CStrip>("strip").setFocus();
    Key(Qt::Key_Escape);
    EXPECT_EQ(Strip(), "");
    Calculate(0, "1", "buttonCancel");
    EXPECT_EQ(Strip(), "");
    EXPECT_FALSE(IsModified());
}

TEST_F(FillCells, SaysInTheDialogWhatIsNoNumber)
{
    QStringList told;
    const auto refused = [&told](const QString& text) {
        return [&told, text](QWidget& dialog) {
            TypeInto(dialog, "editNumber", text);
            ClickOn(dialog, "buttonOk");
            told << FindIn<QLabel>(dialog, "labelNotice").text();
        };
    };
    ClickCell(1, kBelt);
    const CModalAnswer answer({refused("1,5"), refused("x"), refused(""), [&](QWidget& dialog) {
                                   QTest::keyClick(&FindIn<QComboBox>(dialog, "comboOperation"), Qt::Key_End);
                                   refused("0")(dialog);
                                   ClickOn(dialog, "buttonCancel");
                               }});
    Trigger(*frame, "actionCalculate");
    EXPECT_EQ(told, (QStringList{"Numbers are typed with a point here, as in 1.5.", "That is not a number.",
                                 "A number is missing.", "Nothing can be divided by 0."}));
    EXPECT_FALSE(IsModified());
}

TEST_F(FillCells, FillsWithAValueOrASeries)
{
    ChooseCells(1, kBelt, 4, kBelt);
    const CModalAnswer value({Type("editValue", "1.15", "buttonOk"), [](QWidget& dialog) {
                                  ClickOn(dialog, "radioSeries");
                                  TypeInto(dialog, "editStart", "0.1");
                                  TypeInto(dialog, "editStep", "0.1");
                                  ClickOn(dialog, "buttonOk");
                              }});
    Choose("actionFill");
    Activate();
    EXPECT_EQ(Belts(), (QStringList{"1.15", "1.15", "1.15", "1.15"}));
    EXPECT_EQ(NextUndo(), "Fill (4 cells)");
    EXPECT_EQ(Told(), "Fill changed 4 cells.");
    EXPECT_EQ(Strip(), ""); // stored exactly: there is nothing to tell
    Choose("actionFill");
    Activate();
    SaveEditedOnly();
    EXPECT_EQ(Oven(), OvenWith({{0, 10}, {5, 20}, {10, 30}, {15, 40}}));
}

TEST_F(FillCells, FillsDownByCtrlD)
{
    ChooseCells(2, kBelt, 4, kName);
    Key(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(Shown(), (QStringList{"1.50", "2.5", "ABCD", "0.75", "25.0", "EFGH", "0.75", "25.0", "EFGH", "0.75",
                                    "25.0", "EFGH"}));
    EXPECT_EQ(NextUndo(), "Fill (6 cells)");
    EXPECT_EQ(Told(), "Fill down changed 6 cells.");
    SaveEditedOnly();
    EXPECT_EQ(Oven()[2 * 11], std::byte{0xEC}); // 25.04, of which one decimal is shown
    Undo();

    ClickCell(2, kName);
    Key(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(Grid().GetItemText(2, kName), "ABCD");
    ClickCell(1, kName);
    Key(Qt::Key_D, Qt::ControlModifier);
    EXPECT_EQ(Told(), "There is no row above to fill down from.");
}

TEST_F(FillCells, CtrlEnterPutsTheTypedTextIntoAllChosenCells)
{
    ChooseCells(1, kBelt, 3, kName);
    TypeKeys("12");
    Key(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_FALSE(Grid().IsEditing());
    EXPECT_EQ(Belts(), (QStringList{"12", "12", "12", "0.50"}));
    EXPECT_EQ(Grid().GetItemText(3, kName), "12");
    EXPECT_EQ(NextUndo(), "Fill (9 cells)");
    EXPECT_EQ(Selected(), "1,2 1,3 1,4 2,2 2,3 2,4 3,2 3,3 3,4");
    Undo();
    EXPECT_EQ(Belts(), (QStringList{"1.50", "0.75", "2.00", "0.50"}));

    ChooseCells(1, kBelt, 2, kName);
    TypeKeys("ab");
    Key(Qt::Key_Enter, Qt::ControlModifier);
    EXPECT_EQ(Strip(), "Fill changed 2 cells, 4 cells were refused.");
    EXPECT_EQ(Grid().GetItemText(1, kName), "ab");
}

TEST_F(FillCells, CommandsAreOffWithoutACell)
{
    OpenEditMenu();
    const auto isOn = [this](const char* name) { return Action(name).isEnabled(); };
    EXPECT_FALSE(isOn("actionFill") || isOn("actionFillDown") || isOn("actionCalculate"));
    CloseEditMenu();
    ClickCell(1, kBelt);
    OpenEditMenu();
    EXPECT_TRUE(isOn("actionFill") && isOn("actionFillDown") && isOn("actionCalculate"));
    CloseEditMenu();
}
