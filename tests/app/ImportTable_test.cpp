// Tables of other programs: pasted with a look at them first, and imported from text files.

#include "controls/Strip.h"
#include "tests/app/SaveFixture.h"
#include "views/ChangesPanel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>
#include <QWheelEvent>

#include <fstream>

namespace {

struct ImportTable : SaveFixture {
    /// Pastes with the key, at the cell.
    void PasteWithPreview(int row, int column, const QString& text)
    {
        QApplication::clipboard()->setText(text);
        ClickCell(row, column);
        Key(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
        Activate();
    }

    void Import(const char* bytes, std::vector<CModalAnswer::Action> actions)
    {
        std::ofstream(folder / "t.txt", std::ios::binary) << bytes;
        actions.insert(actions.begin(), ChoosePath(Path("t.txt")));
        const CModalAnswer answer(std::move(actions));
        Trigger(*frame, "actionImportTable");
        Activate();
    }

    static QString Notice(const QWidget& dialog) { return FindIn<QLabel>(dialog, "labelNotice").text(); }
    static bool MayGoOn(const QWidget& dialog)
    {
        const bool mayDo = FindIn<QPushButton>(dialog, "buttonOk").isEnabled();
        EXPECT_EQ(FindIn<QPushButton>(dialog, "buttonPreview").isEnabled(), mayDo);
        return mayDo;
    }
    /// By keys.
    static void ChooseIn(const QWidget& dialog, const QString& name, int index)
    {
        auto& combo = FindIn<QComboBox>(dialog, name);
        QTest::keyClick(&combo, Qt::Key_Home);
        for (int i = 0; i < index; ++i)
            QTest::keyClick(&combo, Qt::Key_Down);
        EXPECT_EQ(combo.currentIndex(), index);
    }
};

} // namespace

TEST_F(ImportTable, PastesDecimalCommasWithTwoKeys)
{
    const CModalAnswer answer({CModalAnswer::Key(Qt::Key_Return)});
    PasteWithPreview(1, kBelt, "1,15\t2,5\tA\r\n1,25\t3,5\tB\r\n");
    EXPECT_EQ(answer.titles, std::vector<QString>{"Paste with preview"});
    EXPECT_EQ(Shown().mid(0, 6), (QStringList{"1.15", "2.5", "A", "1.25", "3.5", "B"}));
    EXPECT_EQ(NextUndo(), "Paste (5 cells)"); // one has its value already
    EXPECT_EQ(Told(), "Paste changed 5 cells.");
    EXPECT_EQ(Selected(), "1,2 1,4 2,2 2,3 2,4");
    EXPECT_EQ(Strip(), "");
    SaveEditedOnly();
    EXPECT_EQ(Oven()[0], std::byte{115});
    Undo();
    EXPECT_EQ(Grid().GetItemText(1, kName), "ABCD");
}

TEST_F(ImportTable, AppliesNothingWhileAColumnIsUndecided)
{
    const CModalAnswer answer({[](QWidget& dialog) {
        EXPECT_FALSE(MayGoOn(dialog));
        EXPECT_EQ(Notice(dialog), "Column 2: “1,000” can be read in two ways. Choose how the numbers of the column are "
                                  "written.");
        EXPECT_EQ(FindIn<QComboBox>(dialog, "comboNumbers1").currentText(), "Decimal comma");
        EXPECT_EQ(FindIn<QComboBox>(dialog, "comboNumbers2").currentIndex(), -1);
        EXPECT_EQ(dialog.focusWidget(), &FindIn<QComboBox>(dialog, "comboNumbers2"));
        QTest::keyClick(&dialog, Qt::Key_Return);
        EXPECT_TRUE(dialog.isVisible());
        ChooseIn(dialog, "comboNumbers2", 1);
        EXPECT_TRUE(MayGoOn(dialog));
        EXPECT_EQ(Notice(dialog), "");
        ChooseIn(dialog, "comboNumbers2", 0);
        ClickOn(dialog, "buttonOk");
    }});
    PasteWithPreview(1, kBelt, "1,5\t1,000\n");
    EXPECT_EQ(Grid().GetItemText(1, kSteam), "1.0");
    EXPECT_EQ(Told(), "Paste changed 2 cells."); // 1.50 is shown, but 1.05 was stored
    SaveEditedOnly();
    EXPECT_EQ(Oven(), OvenWith({{0, 150}, {1, 0x0000}, {2, 0x3F80}}));
}

TEST_F(ImportTable, ShowsOldAndNewBeforeItIsApplied)
{
    const CModalAnswer answer({CModalAnswer::PressNamed("buttonPreview")});
    PasteWithPreview(3, kBelt, "1,15;x;Long name\n;2,5;B;C\n3,5;4,5;C\n");
    EXPECT_EQ(Strip(),
              "Paste: 3 cells would change, 2 are refused. 1 line does not fit and is left out. 1 column is left "
              "out: no item is for it. 1 empty field leaves its cell as it is.");
    EXPECT_EQ(Listed(), (QStringList{"3 Belt 2.00>1.15 ", "3 Steam 1.5> refused: x is no number with a decimal comma",
                                     "3 Name IJKL> refused: Long name is longer than 2 characters", "4 Steam 3.0>2.5 ",
                                     "4 Name MNOP>B "}));
    EXPECT_FALSE(IsModified());
    PressInStripByKeys("Apply");
    EXPECT_EQ(NextUndo(), "Paste (3 cells)");
}

TEST_F(ImportTable, GoesToTheItemsOfTheTitles)
{
    Import("Name,Belt,Other\nab,1.5,9\ncd,2.5,9\n", {[](QWidget& dialog) {
               EXPECT_EQ(dialog.windowTitle(), "Import table");
               EXPECT_EQ(FindIn<QLabel>(dialog, "labelSummary").text(),
                         "2 lines for rows 1 to 2. 1 column is left out: no item is for it.");
               const auto& table = FindIn<QTableWidget>(dialog, "tableColumns");
               EXPECT_EQ(table.item(0, 2)->text(), "Name");
               EXPECT_EQ(table.item(2, 2)->text(), "left out");
               TypeInto(dialog, "qt_spinbox_lineedit", "2");
               ClickOn(dialog, "buttonOk");
           }});
    EXPECT_EQ(Shown().mid(3, 6), (QStringList{"1.50", "25.0", "ab", "2.50", "1.5", "cd"}));
    EXPECT_EQ(NextUndo(), "Import table (4 cells)");
    EXPECT_EQ(Strip(), "Import changed 4 cells. 1 column is left out: no item is for it.");
    Undo();
    EXPECT_EQ(Strip(), "");
}

TEST_F(ImportTable, AsksWhatACommaIs)
{
    Import("1,5\n2,5\n", {[](QWidget& dialog) {
               EXPECT_FALSE(MayGoOn(dialog));
               EXPECT_EQ(Notice(dialog), "A comma may separate two fields here, or stand in one number. Choose what "
                                         "separates the fields.");
               ChooseIn(dialog, "comboSeparator", 4);
               EXPECT_TRUE(MayGoOn(dialog));
               ClickOn(dialog, "buttonOk");
           }});
    EXPECT_EQ(Grid().GetItemText(2, kBelt), "2.50");
    EXPECT_EQ(Grid().GetItemText(1, kSteam), "2.5");
}

TEST_F(ImportTable, SaysOfAllColumnsOnlyWhatHoldsForAll)
{
    Import("1,234;1,234\n", {[](QWidget& dialog) {
               auto& all = FindIn<QComboBox>(dialog, "comboAllNumbers");
               ChooseIn(dialog, "comboAllNumbers", 0);
               QTest::keyClick(&all, Qt::Key_Down);
               EXPECT_EQ(FindIn<QComboBox>(dialog, "comboNumbers2").currentText(), "Decimal point");
               EXPECT_EQ(all.currentText(), "Decimal point");
               ChooseIn(dialog, "comboNumbers2", 0);
               EXPECT_EQ(all.currentIndex(), -1);
               ChooseIn(dialog, "comboAllNumbers", 0);
               QTest::keyClick(&all, Qt::Key_Down);
               ClickOn(dialog, "checkTitles"); // looks at the columns anew
               ClickOn(dialog, "checkTitles");
               EXPECT_FALSE(MayGoOn(dialog));
               EXPECT_EQ(all.currentIndex(), -1);
               ClickOn(dialog, "buttonCancel");
           }});
    EXPECT_FALSE(IsModified());
}

TEST_F(ImportTable, TakesTheRowThatIsTypedWhenAButtonsKeyIsPressed)
{
    Import("2,5\t3,5\n", {[](QWidget& dialog) {
               FindIn<QWidget>(dialog, "spinFirstRow").setFocus();
               QTest::keyClick(dialog.focusWidget(), Qt::Key_A, Qt::ControlModifier);
               QTest::keyClick(dialog.focusWidget(), Qt::Key_3);
               QTest::keyClick(dialog.focusWidget(), Qt::Key_P, Qt::AltModifier);
               QTest::qWait(200); // the button is pressed and let go
           }});
    EXPECT_EQ(Listed(), (QStringList{"3 Belt 2.00>2.50 ", "3 Steam 1.5>3.5 "}));
}

TEST_F(ImportTable, LetsTheWheelDecideNothing)
{
    Import("1,234;1,234\n", {[](QWidget& dialog) {
               auto& choice = FindIn<QComboBox>(dialog, "comboNumbers2");
               const QPointF middle = choice.rect().center();
               QWheelEvent wheel(middle, choice.mapToGlobal(middle), {}, QPoint(0, -120), Qt::NoButton, Qt::NoModifier,
                                 Qt::NoScrollPhase, false);
               QApplication::sendEvent(&choice, &wheel);
               EXPECT_EQ(choice.currentIndex(), -1);
               ClickOn(dialog, "buttonCancel");
           }});
}

TEST_F(ImportTable, TellsAFileThatItCannotTake)
{
    std::ofstream(folder / "large.txt", std::ios::binary).seekp((64 << 20) + 1).put('x');
    for (const char* name : {"large.txt", "absent.txt"}) {
        const CModalAnswer answer({ChoosePath(Path(name)), CModalAnswer::Press(QMessageBox::Ok)});
        Trigger(*frame, "actionImportTable");
        ASSERT_EQ(answer.texts.size(), 2U) << name;
        EXPECT_EQ(answer.texts[1], QLatin1String(name) == "large.txt"
                                       ? QStringLiteral("A table to be imported may have 64 MiB at most.")
                                       : "Open file " + Path("absent.txt") + " error!");
    }
    EXPECT_FALSE(IsModified());
}

TEST_F(ImportTable, IsOffWithoutATable)
{
    EXPECT_TRUE(Action("actionImportTable").isEnabled());
    QApplication::clipboard()->setText("1");
    OpenEditMenu();
    EXPECT_FALSE(Action("actionPastePreview").isEnabled());
    CloseEditMenu();
    Key(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(Told(), "No cell is chosen to paste into.");
    ClickCell(1, kBelt);
    QApplication::clipboard()->clear();
    Key(Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(Told(), "The clipboard holds no text.");
}
