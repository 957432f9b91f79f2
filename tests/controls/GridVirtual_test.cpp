// The grid in virtual mode: what it asks its source for, and work on more cells than anyone can wait for.

#include "controls/GridModel.h"
#include "controls/SlowWork.h"
#include "tests/controls/GridTestBed.h"
#include "tests/support/GuiTest.h"
#include "tests/support/ModalAnswer.h"

#include <QApplication>
#include <QClipboard>
#include <QProgressDialog>
#include <QPushButton>
#include <QScrollBar>

#include <map>
#include <set>
#include <thread>

namespace {

/// Every cell's text is "row,column" until it is set. Writes down which cells it was asked for.
class CTestSource final : public CGridTextSource {
public:
    QString CellText(int row, int column) const override
    {
        std::this_thread::sleep_for(delay);
        asked.insert({row, column});
        const auto text = texts.find({row, column});
        return text != texts.end() ? text->second : QStringLiteral("%1,%2").arg(row).arg(column);
    }

    bool SetCellText(int row, int column, const QString& text) override
    {
        if (refuses)
            return false;
        texts[{row, column}] = text;
        return true;
    }

    int FirstRow() const { return asked.empty() ? -1 : asked.begin()->first; }
    int LastRow() const { return asked.empty() ? -1 : asked.rbegin()->first; }

    mutable std::set<std::pair<int, int>> asked;
    std::map<std::pair<int, int>, QString> texts;
    std::chrono::milliseconds delay{0};
    bool refuses = false;
};

constexpr int kRows = 1'048'576;
constexpr int kColumns = 16;

struct GridVirtual : CGridTestBed {
    void SetUp() override
    {
        CGridTestBed::SetUp();
        grid->SetTextSource(&source);
        grid->SetRowCount(1 + kRows);
        grid->SetColumnCount(2 + kColumns);
        grid->SetDefaultRowHeight(26);
        grid->SetFixedRowCount(1);
        grid->SetFixedColumnCount(2);
        grid->setFocus();
        ASSERT_TRUE(WaitFor([this] { return source.LastRow() > 0; }));
    }
    void TearDown() override { grid->SetTextSource(nullptr); }

    /// How many rows the window shows, those cut off included.
    int VisibleRows() const { return grid->viewport()->height() / 26 + 2; }

    void Paint()
    {
        source.asked.clear();
        grid->grab();
    }

    CTestSource source;
};

TEST_F(GridVirtual, OnlyVisibleCellsAreAsked)
{
    Paint();
    EXPECT_EQ(source.FirstRow(), 1); // a fixed row is never asked
    EXPECT_LE(source.LastRow(), VisibleRows());
    EXPECT_TRUE(source.asked.contains({1, 0})); // a fixed column is
    EXPECT_TRUE(source.asked.contains({1, 2}));
}

TEST_F(GridVirtual, AJumpToTheEndAsksForTheEndOnly)
{
    grid->SetFocusCell(1, 2);
    Paint();
    Press(Qt::Key_End, Qt::ControlModifier);
    EXPECT_EQ(Focus(), std::to_string(kRows) + "," + std::to_string(kColumns + 1));
    Paint();
    EXPECT_GT(source.FirstRow(), kRows - VisibleRows());
    EXPECT_EQ(source.LastRow(), kRows);
}

TEST_F(GridVirtual, SelectAllAsksForNoTextButTheVisibleOnes)
{
    source.asked.clear();
    Press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_LE(source.LastRow(), VisibleRows());
    const QItemSelection selection = grid->selectionModel()->selection();
    ASSERT_EQ(selection.size(), 1);
    EXPECT_EQ(selection.first().height(), kRows);
    EXPECT_EQ(selection.first().width(), kColumns);
    EXPECT_NE(grid->GetItemState(kRows, kColumns + 1) & CGridCellBase::Selected, 0u);
}

TEST_F(GridVirtual, ChosenStretchesAreOneRangeAndAskForNoTextButTheVisibleOnes)
{
    grid->SetFocusCell(2, 5);
    source.asked.clear();
    const auto chosen = [this] {
        const QItemSelection selection = grid->selectionModel()->selection();
        return selection.size() == 1 ? QSize(selection.first().width(), selection.first().height()) : QSize();
    };
    Press(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(chosen(), QSize(1, kRows));
    Press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(chosen(), QSize(2, kRows));
    Press(Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_EQ(chosen(), QSize(kColumns, 1));
    EXPECT_LE(source.LastRow(), VisibleRows());
    Press(Qt::Key_Home, Qt::ControlModifier);
    Press(Qt::Key_Down, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(chosen(), QSize(1, kRows));
    EXPECT_EQ(Focus(), std::to_string(kRows) + ",2");
}

TEST_F(GridVirtual, TextsComeFromTheSourceAndEditsGoToIt)
{
    EXPECT_EQ(TextAt(777, 5), "777,5");
    Edit(777, 5, "88");
    Press(Qt::Key_Return);
    EXPECT_EQ((source.texts[{777, 5}]), QString("88"));
    EXPECT_EQ(TextAt(777, 5), "88");
    EXPECT_EQ(log, (Lines{"edited 777,5", "-176 of 8 at 777,5"}));
    EXPECT_EQ(source.texts.size(), 1u);
}

TEST_F(GridVirtual, AnUnchangedTextIsNotSet)
{
    Edit(3, 5, "3,5");
    Press(Qt::Key_Return);
    EXPECT_TRUE(source.texts.empty());
}

TEST_F(GridVirtual, ARefusedTextIsNotSet)
{
    Edit(5, 3, "bad");
    Press(Qt::Key_Return);
    EXPECT_TRUE(source.texts.empty());
    EXPECT_EQ(log.front(), "reported Col 5,Row 3 data error !"); // kept: the row comes first
}

TEST_F(GridVirtual, WhatTheSourceRefusesFails)
{
    source.refuses = true;
    EXPECT_FALSE(grid->SetItemText(3, 5, "x"));
    EXPECT_FALSE(grid->SetItem({.row = 3, .column = 5, .mask = GridItem::Text, .text = "x"}));
    EXPECT_EQ(TextAt(3, 5), "3,5");
}

TEST_F(GridVirtual, DataCellsAreNotKeptAndFixedRowsAre)
{
    EXPECT_FALSE(grid->SetCellData(3, 5, 7));
    EXPECT_EQ(grid->GetCellData(3, 5), 0u);
    EXPECT_EQ(grid->GetCell(3, 5), nullptr);
    EXPECT_EQ(grid->GetCell(3, 0), nullptr);
    EXPECT_FALSE(grid->SetCellData(0, 5, 7)); // in virtual mode no cell has data
    EXPECT_TRUE(grid->SetItemText(0, 5, "title"));
    EXPECT_EQ(TextAt(0, 5), "title");
    EXPECT_TRUE(source.texts.empty());
}

TEST_F(GridVirtual, WithoutTheSourceTheCellsAreEmptyAndKept)
{
    grid->SetRowCount(10);
    grid->SetTextSource(nullptr);
    EXPECT_EQ(TextAt(3, 5), "");
    EXPECT_TRUE(grid->SetCellData(3, 5, 7));
    EXPECT_EQ(grid->GetCellData(3, 5), 7u);
}

TEST_F(GridVirtual, DeleteAllItemsEndsVirtualMode)
{
    grid->DeleteAllItems();
    grid->SetRowCount(3);
    grid->SetColumnCount(3);
    source.asked.clear();
    EXPECT_EQ(TextAt(1, 1), "");
    EXPECT_TRUE(source.asked.empty());
}

CModalAnswer::Action PressCancel()
{
    return [](QWidget& dialog) {
        auto* button = dialog.findChild<QPushButton*>();
        ASSERT_NE(button, nullptr);
        EXPECT_EQ(button->text(), QString("Cancel"));
        button->click();
    };
}

TEST_F(GridVirtual, ACopyOfAllCellsCanBeCancelledAndLeavesTheClipboard)
{
    QApplication::clipboard()->setText("before");
    Press(Qt::Key_A, Qt::ControlModifier);
    CModalAnswer answer(std::vector{PressCancel()});
    source.delay = std::chrono::milliseconds(1); // hours for all cells
    source.asked.clear();
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QString("before"));
    EXPECT_LT(source.LastRow(), kRows / 2);
    EXPECT_EQ(answer.texts.size(), 1u);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(GridVirtual, AnEmptyingOfAllCellsThatIsCancelledChangesAndTellsNothing)
{
    Press(Qt::Key_A, Qt::ControlModifier);
    CModalAnswer answer(std::vector{PressCancel()});
    source.delay = std::chrono::milliseconds(1);
    source.asked.clear();
    Press(Qt::Key_Delete);
    EXPECT_EQ(answer.texts.size(), 1u);
    EXPECT_FALSE(source.asked.empty());
    EXPECT_LT(source.LastRow(), kRows / 2);
    EXPECT_TRUE(source.texts.empty());
    EXPECT_EQ(log, Lines{});
}

TEST_F(GridVirtual, AWideCopyTakesTheSelectedCellsOnly)
{
    grid->SetFocusCell(500'000, 3);
    Press(Qt::Key_Down, Qt::ShiftModifier);
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), QString("500000,3\n500001,3\n"));
}

TEST(SlowWork, ShowsNothingWhileItIsQuick)
{
    CSlowWork work(nullptr, "Working", 10, std::chrono::hours(1));
    for (int done = 1; done <= 10; ++done)
        EXPECT_TRUE(work.Step(done));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST(SlowWork, ShowsItselfWhenHardlyAnythingIsDone)
{
    CModalAnswer answer(std::vector{PressCancel()});
    CSlowWork work(nullptr, "Working", 1'000'000'000, std::chrono::milliseconds(0));
    EXPECT_TRUE(WaitFor([&work] { return !work.Step(1); }));
}

TEST(SlowWork, ShowsHowFarItIsUntilItIsCancelled)
{
    int value = -1;
    CModalAnswer answer(std::vector<CModalAnswer::Action>{[&value](QWidget& dialog) {
        auto& progress = static_cast<QProgressDialog&>(dialog);
        EXPECT_EQ(progress.labelText(), QString("Working"));
        value = progress.value();
        PressCancel()(dialog);
    }});
    {
        CSlowWork work(nullptr, "Working", 10, std::chrono::milliseconds(0));
        ASSERT_TRUE(WaitFor([&work] { return !work.Step(5); }));
        EXPECT_EQ(value, 500);
    }
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

} // namespace
