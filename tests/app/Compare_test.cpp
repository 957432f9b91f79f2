// The table compared with another file, as a user sees it: cells that differ, the list, the strip; values taken over;
// what ends it.

#include "controls/Strip.h"
#include "recovery/VersionStore.h"
#include "tests/app/SaveFixture.h"
#include "tests/support/Variable.h"
#include "views/ChangesPanel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QTableView>
#include <QTableWidget>
#include <QTest>
#include <QTimer>

namespace fs = std::filesystem;

namespace {

/// The window over "oven.rcp", and "old.rcp" in which the belts of rows 1 and 3 and a word after the rows are others.
struct Compare : SaveFixture {
    void SetUp() override
    {
        SaveFixture::SetUp();
        WriteAll(folder / "old.rcp", old);
    }

    void CompareWith(const std::string& name)
    {
        const CModalAnswer answer({ChoosePath(Path(name))});
        Trigger(*frame, "actionCompareWith");
        ASSERT_FALSE(answer.titles.empty());
        EXPECT_EQ(answer.titles.front(), "Compare with");
        Activate();
    }

    /// The message box that says why nothing is compared.
    QString RefusalOf(const std::string& name)
    {
        const CModalAnswer answer({ChoosePath(Path(name)), CModalAnswer::Press(QMessageBox::Ok)});
        Trigger(*frame, "actionCompareWith");
        Activate();
        return answer.texts.size() == 2 ? answer.texts.back() : QStringLiteral("%1 dialogs").arg(answer.texts.size());
    }

    /// Row and column of each cell with the mark.
    QString Differing()
    {
        QStringList cells;
        for (int row = 1; row < Grid().RowCount(); ++row)
            for (int column = 2; column < Grid().ColumnCount(); ++column)
                if (Marks(row, column).differs)
                    cells << QStringLiteral("%1,%2").arg(row).arg(column);
        return cells.join(QLatin1Char(' '));
    }

    QWidget* Focus() { return QApplication::focusWidget(); }
    bool IsInPanel() { return Panel().isAncestorOf(Focus()); }
    void ClosePanel()
    {
        auto* close = Panel().findChild<QAbstractButton*>(QStringLiteral("qt_dockwidget_closebutton"));
        ASSERT_NE(close, nullptr);
        QTest::mouseClick(close, Qt::LeftButton);
    }

    const Bytes old = OvenWith({{0, 170}, {10, 210}, {20, 0x0001}});
    const QStringList three{"1 Belt 1.50>1.70 ", "3 Belt 2.00>2.10 ", "  FFFF>0001 "};
};

} // namespace

TEST_F(Compare, MarksAndListsWhatDiffersAndSaysItInTheStrip)
{
    CompareWith("old.rcp");
    EXPECT_EQ(Strip(), "Compared with old.rcp: 2 values differ, 1 word outside the table.");
    EXPECT_EQ(StripButtons(), (QStringList{"Show", "End comparing"}));
    EXPECT_EQ(Differing(), "1,2 3,2");
    EXPECT_TRUE(Panel().isVisible());
    EXPECT_TRUE(IsInPanel());
    EXPECT_EQ(Panel().windowTitle(), "Compared with old.rcp");
    EXPECT_EQ(PanelSummary(), "2 values differ, 1 word outside the table");
    EXPECT_EQ(Listed(), three);
    EXPECT_EQ(Tip(3, kBelt), "<p>Old.rcp: 2.10</p>"); // as all tips begin
    EXPECT_TRUE(Description(3, kBelt).endsWith("old.rcp: 2.10")) << Description(3, kBelt).toStdString();
    EXPECT_FALSE(Description(2, kName).contains("old.rcp"));
    ClickCell(3, kBelt);
    EXPECT_TRUE(Told().endsWith("old.rcp: 2.10")) << Told().toStdString();
    EXPECT_FALSE(IsModified());
    EXPECT_EQ(ReadAll(folder / "old.rcp"), old);
    EXPECT_EQ(Oven(), oven);
}

TEST_F(Compare, IsWorkedByTheKeyboardAlone)
{
    const CModalAnswer answer({ChoosePath(Path("old.rcp"))});
    Key(Qt::Key_F, Qt::AltModifier);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_W);
    ASSERT_TRUE(WaitFor([&] { return !Strip().isEmpty(); }));
    Activate();
    ASSERT_TRUE(IsInPanel());
    Key(Qt::Key_F8);
    EXPECT_EQ(Selected(), "1,2");
    Key(Qt::Key_F8);
    EXPECT_EQ(Selected(), "3,2");
    Key(Qt::Key_T, Qt::ControlModifier);
    EXPECT_EQ(Differing(), "1,2");
    EXPECT_EQ(Grid().GetItemText(3, kBelt), "2.10");
    EXPECT_EQ(Strip(), "Compared with old.rcp: 1 value differs, 1 word outside the table.");
    EXPECT_EQ(Listed(), (QStringList{three[0], three[2]}));
    EXPECT_EQ(NextUndo(), "Take over");
    Key(Qt::Key_Escape);
    EXPECT_EQ(Focus(), &Grid());
    Undo();
    EXPECT_EQ(Differing(), "1,2 3,2");
    EXPECT_EQ(Listed(), three);
    EXPECT_EQ(Strip(), "Compared with old.rcp: 2 values differ, 1 word outside the table.");
    PressInStripByKeys("End comparing");
    EXPECT_EQ(Differing(), "");
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(Focus(), &Grid());
}

TEST_F(Compare, AllIsTakenOverAsOneUndo)
{
    CompareWith("old.rcp");
    Key(Qt::Key_A, Qt::ControlModifier);
    Key(Qt::Key_T, Qt::ControlModifier);
    EXPECT_EQ(Differing(), "");
    EXPECT_EQ(Strip(), "Compared with old.rcp: no value differs, 1 word outside the table.");
    EXPECT_EQ(NextUndo(), "Take over (2 cells)");
    SaveEditedOnly();
    EXPECT_EQ(Oven(), OvenWith({{0, 170}, {10, 210}}));
    EXPECT_EQ(Listed(), QStringList{three[2]});
    Undo();
    EXPECT_EQ(Listed(), (QStringList{"1 Belt 1.50>1.70 ", "3 Belt 2.00>2.10 ", three[2]}));
}

TEST_F(Compare, AWordOutsideTheTableCannotBeTakenOver)
{
    CompareWith("old.rcp");
    ChooseLine(2);
    EXPECT_FALSE(Find<QAbstractButton>("buttonTakeOver").isEnabled());
    Key(Qt::Key_T, Qt::ControlModifier);
    EXPECT_FALSE(IsModified());
    ChooseLine(0);
    EXPECT_TRUE(Find<QAbstractButton>("buttonTakeOver").isEnabled());
}

TEST_F(Compare, FollowsEditsSavesAndReading)
{
    CompareWith("old.rcp");
    TypeIntoCell(1, kBelt, "1.70");
    EXPECT_EQ(Differing(), "3,2");
    TypeIntoCell(2, kName, "ZZ");
    EXPECT_EQ(Differing(), "2,4 3,2");
    EXPECT_EQ(Listed(), (QStringList{"2 Name ZZ>EFGH ", three[1], three[2]}));
    Save(); // rewrites values that were alike in both
    EXPECT_EQ(Differing(), "2,3 2,4 3,2 4,2");
    EXPECT_EQ(Description(4, kBelt).section(", ", -1), "old.rcp: 0.50 [0005]");
    WriteAll(folder / "oven.rcp", old);
    Activate();
    EXPECT_TRUE(WaitFor([this] { return StripButtons().contains("Read again"); }));
    ClickInStrip("Read again");
    EXPECT_EQ(Differing(), "");
}

TEST_F(Compare, SaysThatThereIsNoDifference)
{
    WriteOven("same.rcp");
    CompareWith("same.rcp");
    EXPECT_EQ(Strip(), "Compared with same.rcp: no difference.");
    EXPECT_EQ(StripButtons(), QStringList{"End comparing"});
    EXPECT_FALSE(Panel().isVisible());
    TypeIntoCell(1, kBelt, "1.70");
    EXPECT_EQ(Strip(), "Compared with same.rcp: 1 value differs.");
    ClickInStrip("Show");
    EXPECT_EQ(Listed(), QStringList{"1 Belt 1.70>1.50 "});
    EXPECT_EQ(Differing(), "1,2");
}

TEST_F(Compare, SaysSoInTheStatusBarWhileTheStripHasSomethingWeightier)
{
    Save();
    WriteAll(folder / "same.rcp", Oven());
    ASSERT_EQ(StripButtons(), (QStringList{"Show", "Put back"}));
    CompareWith("same.rcp");
    EXPECT_EQ(StripButtons(), (QStringList{"Show", "Put back"}));
    EXPECT_EQ(Told(), "Compared with same.rcp: no difference.");
    Find<CStrip>("strip").setFocus();
    Key(Qt::Key_Escape);
    EXPECT_EQ(Strip(), "Compared with same.rcp: no difference.");
}

TEST_F(Compare, ItsOwnFileTellsWhatIsNotSaved)
{
    TypeIntoCell(1, kBelt, "1.70");
    CompareWith("oven.rcp");
    EXPECT_EQ(Strip(), "Compared with oven.rcp: 1 value differs.");
    EXPECT_EQ(Listed(), QStringList{"1 Belt 1.70>1.50 "});
    Key(Qt::Key_Escape);
    Save();
    EXPECT_EQ(Differing(), "");
}

TEST_F(Compare, ItsOwnFileIsReadAsAnotherProgramLeftIt)
{
    WriteAll(folder / "oven.rcp", OvenWith({{0, 170}}));
    CompareWith("oven.rcp");
    EXPECT_EQ(Listed(), QStringList{"1 Belt 1.50>1.70 "});
    ASSERT_TRUE(WaitFor([this] { return StripButtons().contains("Read again"); }));
    ClickInStrip("Read again");
    EXPECT_EQ(Differing(), "");
    EXPECT_EQ(Strip(), "Compared with oven.rcp: no difference.");
}

TEST_F(Compare, EndsWithItsListItsStripAndItsButton)
{
    CompareWith("old.rcp");
    ClosePanel();
    EXPECT_EQ(Differing(), "");
    EXPECT_EQ(Strip(), "");
    EXPECT_EQ(Focus(), &Grid());

    CompareWith("old.rcp");
    Key(Qt::Key_F9); // another list
    EXPECT_EQ(Panel().windowTitle(), "Changes on saving");
    ClosePanel();
    EXPECT_EQ(Differing(), "1,2 3,2");
    ClickInStrip("Show");
    EXPECT_EQ(Listed(), three);
    Find<CStrip>("strip").setFocus();
    Key(Qt::Key_Escape);
    EXPECT_EQ(Differing(), "");
    EXPECT_EQ(Panel().windowTitle(), "Changes on saving");

    CompareWith("old.rcp");
    ClickInStrip("End comparing");
    EXPECT_EQ(Differing(), "");
    EXPECT_EQ(frame->Document().Comparison(), nullptr);
}

TEST_F(Compare, EndsWithAnotherFileAndAnotherLayout)
{
    WriteOven("third.rcp");
    CompareWith("old.rcp");
    Open("third.rcp");
    EXPECT_EQ(Differing(), "");
    EXPECT_EQ(Strip(), "");
    CompareWith("old.rcp");
    Trigger(*frame, "actionNew");
    EXPECT_EQ(Differing(), "");
    EXPECT_EQ(Strip(), "");
    CompareWith("old.rcp");
    EXPECT_EQ(Differing().left(3), "1,2");
    TypeInto(*frame, "editStartAddress", "5");
    QTest::mouseClick(&Find<QAbstractButton>("buttonUseFormat"), Qt::LeftButton);
    EXPECT_EQ(Differing(), "");
    EXPECT_EQ(frame->Document().Comparison(), nullptr);
    EXPECT_EQ(Strip(), "");
}

TEST_F(Compare, OfAnotherTypeIsByText)
{
    WriteAll(folder / "old.csv", Utf16File(u"1.50\t\"2.5\"\t\"ABCD\"\r\n0.75\t\"9.5\"\t\"EFGH\"\r\n"
                                           u"xyz\t\"1.5\"\t\"IJKL\"\r\n"));
    CompareWith("old.csv");
    EXPECT_TRUE(Listed().contains("2 Steam 25.0>9.5 ")) << Listed().join('\n').toStdString();
    EXPECT_TRUE(Listed().contains("3 Belt 2.00>xyz "));
    EXPECT_TRUE(Listed().contains("4 Belt 0.50> "));
    EXPECT_FALSE(Strip().contains("outside"));
    EXPECT_TRUE(Description(4, kBelt).endsWith("old.csv: no value"));
    const qsizetype steam = Listed().indexOf("2 Steam 25.0>9.5 ");
    ChooseLine(static_cast<int>(steam));
    Key(Qt::Key_T, Qt::ControlModifier);
    EXPECT_EQ(Grid().GetItemText(2, kSteam), "9.5");
    ChooseLine(static_cast<int>(Listed().indexOf("3 Belt 2.00>xyz ")));
    Key(Qt::Key_T, Qt::ControlModifier);
    EXPECT_EQ(Grid().GetItemText(3, kBelt), "2.00");
    EXPECT_EQ(Told(), "1 value was not taken over: its cell cannot have it.");
}

TEST_F(Compare, OfAFileThatCannotBeReadChangesNothing)
{
    CompareWith("old.rcp");
    EXPECT_TRUE(RefusalOf("gone.rcp").contains("gone.rcp"));
    EXPECT_EQ(Strip(), "Compared with old.rcp: 2 values differ, 1 word outside the table.");
    WriteAll(folder / "a.txt", old);
    EXPECT_TRUE(RefusalOf("a.txt").startsWith("The type of file "));
    EXPECT_EQ(Differing(), "1,2 3,2");
    const CModalAnswer answer({CancelDialog()});
    Trigger(*frame, "actionCompareWith");
    EXPECT_EQ(Differing(), "1,2 3,2");
}

TEST_F(Compare, GoesOnWhenTheOtherFileIsGone)
{
    CompareWith("old.rcp");
    fs::remove(folder / "old.rcp");
    ChooseLine(0);
    Key(Qt::Key_T, Qt::ControlModifier);
    SaveEditedOnly();
    EXPECT_EQ(Oven(), OvenWith({{0, 170}}));
    EXPECT_EQ(Strip(), "Compared with old.rcp: 1 value differs, 1 word outside the table.");
    EXPECT_EQ(Listed(), (QStringList{three[1], three[2]}));
}

TEST_F(Compare, SaysOfAnEmptyListThatWordsOutsideAreNotKnown)
{
    WriteOven("same.rcp");
    fs::remove(folder / "oven.rcp");
    TypeIntoCell(1, kBelt, "1.70");
    CompareWith("same.rcp");
    EXPECT_EQ(PanelSummary(), "1 value differs, the words outside the table cannot be read");
    Undo();
    EXPECT_EQ(Listed(), QStringList{});
    EXPECT_EQ(PanelSummary(), "no value differs, the words outside the table cannot be read");
}

TEST_F(Compare, IsOffWhileNoRowsAreShown)
{
    EXPECT_TRUE(Action("actionCompareWith").isEnabled());
    WriteAll(folder / "a.txt", old);
    Open("a.txt");
    EXPECT_FALSE(Action("actionCompareWith").isEnabled());
    Start();
    EXPECT_FALSE(Action("actionCompareWith").isEnabled());
}

TEST_F(Compare, StandsInTheMenuAsTheOthersDo)
{
    QStringList entries;
    for (const QAction* action : Find<QMenu>("menuFile").actions())
        entries << (action->isSeparator() ? QStringLiteral("-") : action->objectName());
    const qsizetype first = entries.indexOf("actionSaveEdited");
    EXPECT_EQ(entries.mid(first - 1, 8),
              (QStringList{"-", "actionSaveEdited", "actionSaveCopy", "actionChangesOnSaving", "actionEarlierVersions",
                           "actionCompareWith", "actionApplyPatch", "-"}));
    EXPECT_FALSE(Action("actionCompareWith").statusTip().isEmpty());
}

TEST_F(Compare, AnEarlierVersionIsComparedInTheTable)
{
    const CVariable variable{"VANTOR_VERSIONS", nullptr};
    const CVersionStore store(folder / "data");
    frame->KeepIn(store.DataFolder());
    Activate();
    TypeIntoCell(3, kBelt, "2.10");
    SaveEditedOnly();
    TypeIntoCell(1, kBelt, "1.70");
    const CModalAnswer answer({[](QWidget& dialog) {
        const auto& counting = FindIn<QTimer>(dialog, "timerVersions");
        ASSERT_TRUE(WaitFor([&] { return !counting.isActive(); }));
        ClickOn(dialog, "buttonCompare");
    }});
    Trigger(*frame, "actionEarlierVersions");
    Activate();
    EXPECT_EQ(Differing(), "1,2 3,2");
    EXPECT_TRUE(Strip().startsWith("Compared with the version of ")) << Strip().toStdString();
    EXPECT_TRUE(Strip().endsWith(": 2 values differ.")) << Strip().toStdString();
    EXPECT_EQ(Listed(), (QStringList{"1 Belt 1.70>1.50 ", "3 Belt 2.10>2.00 "}));
    Save(); // the version stays what it was
    EXPECT_EQ(Differing(), "1,2 2,3 3,2 4,2");
    frame.reset();
}
