// What the lines of the changes panel offer, and what stays when the list has other changes.

#include "changes/ChangeLines.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/support/ModalAnswer.h"
#include "tests/views/ChangesPanelFixture.h"
#include "views/TextCrossing.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QScrollBar>
#include <QSignalSpy>

#include <fstream>

namespace {

struct ChangesPanelCommands : CChangesPanelFixture {
    ChangesPanelCommands()
    {
        List(AllKinds());
        panel->SetFile(folder / "oven.rcp");
        panel->show();
        EXPECT_TRUE(WaitFor([this] { return Table().isVisible(); }));
    }

    /// Changes of rows 0 to 9.
    std::shared_ptr<CFakeChanges> ListTen()
    {
        auto list = std::make_shared<CFakeChanges>();
        for (int row = 0; row < 10; ++row)
            list->records.push_back(ChangeOfRow(row));
        List(list);
        return list;
    }

    QString PatchPath() const { return ToQPath(folder / "oven.jsonl"); }

    CTempFolder folder;
};

} // namespace

TEST_F(ChangesPanelCommands, CopyPutsTheChosenLinesOnTheClipboard)
{
    ClickRow(0);
    ClickRow(4, Qt::ControlModifier);
    QSignalSpy put(QApplication::clipboard(), &QClipboard::dataChanged);
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(put.count(), 1);
    EXPECT_EQ(QApplication::clipboard()->text(), "RW169\t2\tBelt m/min\t0.75\t1.15 (reads 1.14)\tedited\n"
                                                 "RW730\t4\tName\ta\\tb\\n\\u0007\tab\ttext\n");
    EXPECT_TRUE(log.empty());
}

TEST_F(ChangesPanelCommands, CopyTakesAValueInFull)
{
    auto list = std::make_shared<CFakeChanges>();
    list->header.type = FileType::Csv;
    list->records = {{.row = 1, .column = 2, .oldText = std::u16string(1000, u'x'), .newText = u""}};
    List(list);
    EXPECT_EQ(Cell(0, 3), QString(256, 'x') + "…");
    ClickRow(0);
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "1\t\t" + QString(1000, 'x') + "\t\t\n");
}

TEST_F(ChangesPanelCommands, CopyOfAFieldsTextStaysTheFieldsOwn)
{
    ClickRow(0);
    Filter().setFocus();
    QTest::keyClicks(&Filter(), "e");
    Press(Qt::Key_A, Qt::ControlModifier);
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "e");
}

TEST_F(ChangesPanelCommands, KeepStoredIsOfferedWhereItApplies)
{
    const bool expected[]{false, true, false, false, true, false};
    for (int row = 0; row < 6; ++row) {
        ClickRow(row);
        EXPECT_EQ(KeepButton().isEnabled(), expected[row]) << row;
    }
    Press(Qt::Key_K, Qt::ControlModifier);
    EXPECT_TRUE(log.empty());
}

TEST_F(ChangesPanelCommands, KeepStoredAsksForTheChosenLinesThatItAppliesTo)
{
    ClickRow(0);
    ClickRow(5, Qt::ShiftModifier);
    ClickOn(*panel, "buttonKeepStored");
    EXPECT_EQ(log, std::vector<std::string>{"keep 2,9 3,1"});
    ClickRow(4);
    Press(Qt::Key_K, Qt::ControlModifier);
    EXPECT_EQ(log.back(), "keep 3,1");
}

TEST_F(ChangesPanelCommands, KeepStoredIsAskedOnlyWhereTheListOffersIt)
{
    panel->SetList(AllKinds(), "Differences", {});
    ClickRow(1);
    Press(Qt::Key_K, Qt::ControlModifier);
    EXPECT_TRUE(log.empty());
}

TEST_F(ChangesPanelCommands, ManyLinesAreKept)
{
    List(std::make_shared<CManyChanges>(100'000));
    std::size_t kept = 0;
    QObject::connect(panel, &CChangesPanel::KeepStored, [&](const auto& cells) { kept = cells.size(); });
    panel->setFocus();
    Press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_TRUE(KeepButton().isEnabled());
    Press(Qt::Key_K, Qt::ControlModifier);
    EXPECT_EQ(kept, 100'000U);
}

TEST_F(ChangesPanelCommands, APatchHoldsAllChangesWhateverTheFilterShows)
{
    TypeInto(*panel, "editFilter", "belt");
    const CModalAnswer answer({ChoosePath(PatchPath())});
    ClickOn(*panel, "buttonSaveAsPatch");
    EXPECT_EQ(answer.titles, std::vector<QString>{"Save as patch"});
    EXPECT_TRUE(reporter.shown.empty());

    std::ifstream input(folder / "oven.jsonl", std::ios::binary);
    CChangeReader reader(input);
    const auto changes = AllKinds();
    EXPECT_EQ(std::get<ChangeHeader>(reader.ReadHeader()), changes->header);
    for (const ChangeRecord& record : changes->records)
        EXPECT_EQ(std::get<ChangeRecord>(reader.Next()), record);
    EXPECT_TRUE(std::holds_alternative<EndOfChanges>(reader.Next()));
}

TEST_F(ChangesPanelCommands, APatchIsProposedBesideTheFile)
{
    const CModalAnswer answer({CModalAnswer::Key(Qt::Key_Return)});
    ClickOn(*panel, "buttonSaveAsPatch");
    EXPECT_TRUE(std::filesystem::exists(folder / "oven.jsonl"));
}

TEST_F(ChangesPanelCommands, ACancelledDialogWritesNoPatch)
{
    const CModalAnswer answer({CancelDialog()});
    ClickOn(*panel, "buttonSaveAsPatch");
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
    EXPECT_TRUE(reporter.shown.empty());
}

TEST_F(ChangesPanelCommands, APatchThatCannotBeWrittenIsToldAndLeavesTheOldOne)
{
    const Bytes old(8, std::byte{7});
    WriteAll(folder / "oven.jsonl", old);
    List(std::make_shared<CManyChanges>(10'000));
    const CModalAnswer answer({ChoosePath(PatchPath()), CModalAnswer::Press(QMessageBox::Yes)});
    {
        const CFileSizeLimit limit(100'000);
        ClickOn(*panel, "buttonSaveAsPatch");
    }
    EXPECT_EQ(
        reporter.shown,
        std::vector{QString("Can't save file %1,please check file or your disk!").arg(PatchPath()).toStdU16String()});
    EXPECT_EQ(ReadAll(folder / "oven.jsonl"), old);
}

TEST_F(ChangesPanelCommands, APatchIsNeverWrittenOverTheFileItself)
{
    const Bytes recipe(8, std::byte{7});
    WriteAll(folder / "oven.rcp", recipe);
    const CModalAnswer answer({ChoosePath(ToQPath(folder / "oven.rcp")), CModalAnswer::Press(QMessageBox::Yes)});
    ClickOn(*panel, "buttonSaveAsPatch");
    EXPECT_EQ(reporter.shown.size(), 1U);
    EXPECT_EQ(ReadAll(folder / "oven.rcp"), recipe);
}

TEST_F(ChangesPanelCommands, AListThatChangesWhileItsPathIsAskedIsNotSaved)
{
    const CModalAnswer answer({[this](QWidget& dialog) {
        panel->ListChanged();
        ChoosePath(PatchPath())(dialog);
    }});
    ClickOn(*panel, "buttonSaveAsPatch");
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
    EXPECT_EQ(reporter.shown,
              std::vector<std::u16string>{u"The changes have become others meanwhile. Please try again."});
}

/// Work on this list takes longer than a second.
TEST_F(ChangesPanelCommands, ALongPatchCanBeCancelled)
{
    List(std::make_shared<CManyChanges>(2'000'000));
    const CModalAnswer answer({ChoosePath(PatchPath()), [](QWidget& dialog) {
                                   QTest::mouseClick(dialog.findChild<QPushButton*>(), Qt::LeftButton);
                               }});
    ClickOn(*panel, "buttonSaveAsPatch");
    EXPECT_EQ(answer.titles.size(), 2U);
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
    EXPECT_TRUE(reporter.shown.empty());
}

TEST_F(ChangesPanelCommands, AListThatChangesWhileItIsSavedIsNotSaved)
{
    const auto many = std::make_shared<CManyChanges>(2'000'000);
    List(many);
    const CModalAnswer answer({ChoosePath(PatchPath()), [&](QWidget&) { panel->ListChanged(); }});
    ClickOn(*panel, "buttonSaveAsPatch");
    EXPECT_LT(many->made, many->count);
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
    EXPECT_EQ(reporter.shown.size(), 1U);
}

TEST_F(ChangesPanelCommands, TheLinesThatAreKeptMayChangeMeanwhile)
{
    const auto many = std::make_shared<CManyChanges>(2'000'000);
    List(many);
    panel->setFocus();
    Press(Qt::Key_A, Qt::ControlModifier);
    const CModalAnswer answer({[&](QWidget&) {
        many->count = 3;
        panel->ListChanged();
    }});
    Press(Qt::Key_K, Qt::ControlModifier);
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(reporter.shown.size(), 1U);
}

TEST_F(ChangesPanelCommands, TheChosenLinesStayByTheirCellsWhenTheListChanges)
{
    const auto list = ListTen();
    ClickRow(3);
    ClickRow(5, Qt::ControlModifier);
    list->records.erase(list->records.begin() + 1);
    list->records.insert(list->records.begin() + 3, ChangeOfRow(77)); // between the two
    panel->ListChanged();
    EXPECT_EQ(Chosen(), "2 5");
    EXPECT_EQ(Current(), 5);
    list->records.erase(list->records.begin() + 5);
    panel->ListChanged();
    EXPECT_EQ(Chosen(), "2");
    EXPECT_EQ(Current(), 5); // what comes next, not chosen
    Press(Qt::Key_K, Qt::ControlModifier);
    EXPECT_EQ(log, std::vector<std::string>{"keep 3,0"});
    list->records.erase(list->records.begin() + 2);
    panel->ListChanged();
    EXPECT_EQ(Chosen(), "");
    Press(Qt::Key_F8);
    EXPECT_EQ(log.back(), "show 6,0"); // no line is left out
}

TEST_F(ChangesPanelCommands, AKeptLineMayGoWhileItIsAskedFor)
{
    const auto list = ListTen();
    QObject::connect(panel, &CChangesPanel::KeepStored, [&] {
        list->records.clear();
        panel->ListChanged();
    });
    ClickRow(9);
    Press(Qt::Key_K, Qt::ControlModifier);
    EXPECT_EQ(log, std::vector<std::string>{"keep 9,0"});
    EXPECT_EQ(Table().model()->rowCount(), 0);
    EXPECT_EQ(Label("labelSummary"), "No value changes.");
    EXPECT_FALSE(KeepButton().isEnabled());
    Press(Qt::Key_F8);
    EXPECT_EQ(log.size(), 1U);
}

TEST_F(ChangesPanelCommands, WhatIsInSightStaysWhenTheListChanges)
{
    const auto many = std::make_shared<CManyChanges>(100'000);
    List(many);
    panel->setFocus();
    ClickRow(0);
    Table().verticalScrollBar()->setValue(40'000);
    many->count = 99'999;
    panel->ListChanged();
    EXPECT_EQ(Table().verticalScrollBar()->value(), 40'000);
    EXPECT_EQ(Current(), 0);
    many->count = 150'000;
    panel->ListGrew();
    EXPECT_EQ(Table().verticalScrollBar()->value(), 40'000);
    EXPECT_EQ(Table().model()->rowCount(), 150'000);
}

TEST_F(ChangesPanelCommands, ACurrentLineThatMovesOutOfSightDoesNotScroll)
{
    auto list = std::make_shared<CFakeChanges>();
    for (int row = 0; row < 1000; ++row)
        list->records.push_back(ChangeOfRow(row));
    List(list);
    panel->setFocus();
    ClickRow(5);
    Table().verticalScrollBar()->setValue(500);
    list->records.erase(list->records.begin());
    panel->ListChanged();
    EXPECT_EQ(Chosen(), "4");
    panel->grab(); // what waits for the next painting is done
    EXPECT_EQ(Table().verticalScrollBar()->value(), 500);
}

TEST_F(ChangesPanelCommands, TheLinesShowWhatTheListHasNow)
{
    const auto list = ListTen();
    panel->grab();
    list->records[2].newText = u"9";
    panel->ListChanged();
    EXPECT_EQ(Line(2), "RW102|3|No.|1|9|decimals");
}

TEST_F(ChangesPanelCommands, TheFilterHoldsForWhatComes)
{
    const auto list = ListTen();
    TypeInto(*panel, "editFilter", "rw10");
    EXPECT_EQ(Label("labelCount"), "10 of 10");
    list->records.push_back(ChangeOfRow(11));  // RW111
    list->records.push_back(ChangeOfRow(905)); // RW1005
    panel->ListGrew();
    EXPECT_TRUE(WaitFor([this] { return Label("labelCount") == "11 of 12"; }));
    EXPECT_EQ(Cell(10, 0), "RW1005");
    list->records.erase(list->records.begin(), list->records.begin() + 5);
    panel->ListChanged();
    EXPECT_TRUE(WaitFor([this] { return Label("labelCount") == "6 of 7"; }));
    EXPECT_EQ(Cell(0, 0), "RW105");
}
