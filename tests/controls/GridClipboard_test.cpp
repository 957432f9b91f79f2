// The clipboard commands by their keys, on the selected cells and on an open editor.

#include "controls/GridClipboard.h"
#include "controls/GridModel.h"
#include "tests/controls/GridTestBed.h"
#include "tests/support/GuiTest.h"

#include <QApplication>
#include <QClipboard>
#include <QMimeData>
#include <QTest>

#include <algorithm>

namespace {

struct GridClipboard : CGridTestBed {
    void SetUp() override
    {
        CGridTestBed::SetUp();
        Fill(6, 6);
        SetClipboard("before");
    }

    static void SetClipboard(const QString& text) { QApplication::clipboard()->setText(text); }
    static QString ClipboardText() { return QApplication::clipboard()->text(); }

    /// Chooses the cells from one corner to the other and forgets what was told of it.
    void Choose(int row, int column, int toRow, int toColumn)
    {
        Click(row, column);
        Click(toRow, toColumn, Qt::ShiftModifier);
        log.clear();
    }

    void PressCopy() { Press(Qt::Key_C, Qt::ControlModifier); }
    void PressCut() { Press(Qt::Key_X, Qt::ControlModifier); }
    void PressPaste() { Press(Qt::Key_V, Qt::ControlModifier); }
    void PressSelectAll() { Press(Qt::Key_A, Qt::ControlModifier); }

    /// The texts of a row's data cells, bars between.
    std::string Row(int row) const
    {
        std::string all;
        for (int column = grid->FixedColumnCount(); column < grid->ColumnCount(); ++column)
            all += (all.empty() ? "" : "|") + TextAt(row, column);
        return all;
    }
};

TEST_F(GridClipboard, OneCellIsCopiedAsItsText)
{
    Click(2, 3);
    PressCopy();
    EXPECT_EQ(ClipboardText(), QString("2,3"));
    EXPECT_EQ(TextAt(2, 3), "2,3");
}

TEST_F(GridClipboard, ARowIsCopiedWithTabsBetween)
{
    Choose(2, 3, 2, 5);
    PressCopy();
    EXPECT_EQ(ClipboardText(), QString("2,3\t2,4\t2,5"));
}

TEST_F(GridClipboard, SeveralRowsAreCopiedWithALineEndEach)
{
    Choose(2, 3, 3, 4);
    PressCopy();
    EXPECT_EQ(ClipboardText(), QString("2,3\t2,4\n3,3\t3,4\n"));
    EXPECT_EQ(log, Lines{});
}

TEST_F(GridClipboard, SeparateCellsAreCopiedWithEmptyFieldsBetween)
{
    Click(4, 5);
    Click(2, 3, Qt::ControlModifier);
    PressCopy();
    EXPECT_EQ(ClipboardText(), QString("2,3\t\n\t4,5\n"));
}

TEST_F(GridClipboard, NothingSelectedLeavesTheClipboard)
{
    PressCopy();
    PressCut();
    EXPECT_EQ(ClipboardText(), QString("before"));
}

TEST_F(GridClipboard, TheInsertKeysWorkAsWell)
{
    Click(2, 3);
    Press(Qt::Key_Insert, Qt::ControlModifier);
    EXPECT_EQ(ClipboardText(), QString("2,3"));
    Click(4, 4);
    Press(Qt::Key_Insert, Qt::ShiftModifier);
    EXPECT_EQ(TextAt(4, 4), "2,3");
}

struct QuotingCase {
    const char* name;
    const char* text;
    const char* copied; ///< as it stands on the clipboard
    friend void PrintTo(const QuotingCase& c, std::ostream* out) { *out << c.name; }
};

struct GridClipboardQuoting : GridClipboard, testing::WithParamInterface<QuotingCase> {};

TEST_P(GridClipboardQuoting, CopiesQuotedAndPastesTheTextAgain)
{
    grid->SetItemText(2, 3, GetParam().text);
    Click(2, 3);
    PressCopy();
    EXPECT_EQ(ClipboardText(), QString(GetParam().copied));
    Choose(4, 4, 4, 4);
    PressPaste();
    EXPECT_EQ(TextAt(4, 4), GetParam().text);
    EXPECT_EQ(log, Lines{"edited 4,4"});
    EXPECT_EQ(TextAt(4, 5), "4,5");
    EXPECT_EQ(TextAt(5, 4), "5,4");
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, GridClipboardQuoting, testing::Values(
    QuotingCase{"Plain",     "12.5",    "12.5"          },
    QuotingCase{"Tab",       "a\tb",    "\"a\tb\""      },
    QuotingCase{"LineEnd",   "a\nb",    "\"a\nb\""      },
    QuotingCase{"Quote",     "5\" x",   "\"5\"\" x\""   },
    QuotingCase{"OnlyQuote", "\"",      "\"\"\"\""      },
    QuotingCase{"Blanks",    " a ",     " a "           }),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(GridClipboard, CutCopiesAndEmptiesTheCells)
{
    Choose(2, 3, 2, 4);
    PressCut();
    EXPECT_EQ(ClipboardText(), QString("2,3\t2,4"));
    EXPECT_EQ(Row(2), "2,2|||2,5");
    EXPECT_EQ(log, (Lines{"edited 2,3", "edited 2,4"}));
}

TEST_F(GridClipboard, DeleteEmptiesTheCellsAndLeavesTheClipboard)
{
    Choose(2, 3, 2, 4);
    Press(Qt::Key_Delete);
    EXPECT_EQ(ClipboardText(), QString("before"));
    EXPECT_EQ(Row(2), "2,2|||2,5");
    EXPECT_EQ(log, (Lines{"edited 2,3", "edited 2,4"}));
}

TEST_F(GridClipboard, CellsThatMustNotBeEmptyKeepTheirTextAndTheFirstIsReported)
{
    grid->SetCellCheck([](int column, const QString& text) { return column == 3 || !text.isEmpty(); });
    Choose(2, 3, 3, 4);
    PressCut();
    EXPECT_EQ(ClipboardText(), QString("2,3\t2,4\n3,3\t3,4\n"));
    EXPECT_EQ(Row(2), "2,2||2,4|2,5");
    EXPECT_EQ(Row(3), "3,2||3,4|3,5");
    EXPECT_EQ(log, (Lines{"edited 2,3", "edited 3,3", "reported Col 2,Row 4 data error !"}));
}

TEST_F(GridClipboard, ABlockGoesToTheTopLeftSelectedCell)
{
    SetClipboard("a\tb\r\nc\td\r\n");
    Click(3, 4);
    Click(2, 3, Qt::ControlModifier); // the focus is here, and so is the corner
    log.clear();
    PressPaste();
    EXPECT_EQ(Row(2), "2,2|a|b|2,5");
    EXPECT_EQ(Row(3), "3,2|c|d|3,5");
    EXPECT_EQ(log, (Lines{"edited 2,3", "edited 2,4", "edited 3,3", "edited 3,4"}));
}

TEST_F(GridClipboard, WithoutASelectionABlockGoesToTheFocusCell)
{
    SetClipboard("a");
    Click(2, 3);
    Click(2, 3, Qt::ControlModifier); // no longer selected, but it has the focus
    ASSERT_EQ(Selected(), "");
    PressPaste();
    EXPECT_EQ(Row(2), "2,2|a|2,4|2,5");
}

TEST_F(GridClipboard, ABlockEndsAtTheEdgeOfTheGrid)
{
    SetClipboard("a\tb\tc\nd\te\tf\ng\th\ti\n");
    Choose(4, 4, 4, 4);
    PressPaste();
    EXPECT_EQ(Row(4), "4,2|4,3|a|b");
    EXPECT_EQ(Row(5), "5,2|5,3|d|e");
    EXPECT_EQ(Row(3), "3,2|3,3|3,4|3,5");
    EXPECT_EQ(grid->RowCount(), 6);
    EXPECT_EQ(grid->ColumnCount(), 6);
    EXPECT_EQ(log.size(), 4u);
}

TEST_F(GridClipboard, ShortRowsLeaveTheCellsAfterThem)
{
    SetClipboard("a\tb\n\nc");
    Choose(2, 3, 2, 3);
    PressPaste();
    EXPECT_EQ(Row(2), "2,2|a|b|2,5");
    EXPECT_EQ(Row(3), "3,2||3,4|3,5");
    EXPECT_EQ(Row(4), "4,2|c|4,4|4,5");
}

TEST_F(GridClipboard, OneValueFillsTheSelection)
{
    SetClipboard("7");
    Click(2, 3);
    Click(3, 4, Qt::ShiftModifier);
    Click(5, 5, Qt::ControlModifier);
    log.clear();
    PressPaste();
    EXPECT_EQ(Row(2), "2,2|7|7|2,5");
    EXPECT_EQ(Row(3), "3,2|7|7|3,5");
    EXPECT_EQ(Row(5), "5,2|5,3|5,4|7");
    EXPECT_EQ(log.size(), 5u);
}

TEST_F(GridClipboard, RefusedCellsKeepTheirTextAndTheFirstIsReportedOnce)
{
    SetClipboard("a\tbad\nbad\td\n");
    Choose(2, 3, 2, 3);
    PressPaste();
    EXPECT_EQ(Row(2), "2,2|a|2,4|2,5");
    EXPECT_EQ(Row(3), "3,2|3,3|d|3,5");
    EXPECT_EQ(log, (Lines{"edited 2,3", "edited 3,4", "reported Col 2,Row 4 data error !",
                          "further 2 of 4 values were refused."}));
}

TEST_F(GridClipboard, AValueRefusedInEveryCellIsReportedOnce)
{
    SetClipboard("bad");
    Choose(2, 3, 4, 5);
    PressPaste();
    EXPECT_EQ(Row(3), "3,2|3,3|3,4|3,5");
    EXPECT_EQ(log, (Lines{"reported Col 2,Row 3 data error !", "further 9 of 9 values were refused."}));
}

TEST_F(GridClipboard, ReadOnlyCellsAreLeftSilently)
{
    grid->SetItem({.row = 2, .column = 4, .mask = GridItem::State, .state = CGridCellBase::ReadOnly});
    SetClipboard("a\tb\tbad\n");
    Choose(2, 3, 2, 3);
    PressPaste();
    EXPECT_EQ(Row(2), "2,2|a|2,4|2,5");
    EXPECT_EQ(log, (Lines{"edited 2,3", "reported Col 2,Row 5 data error !"}));
}

TEST_F(GridClipboard, TheSameTextIsNoEditAndIsNotChecked)
{
    grid->SetCellCheck([](int, const QString&) { return false; });
    SetClipboard("2,3\t2,4\n");
    Choose(2, 3, 2, 3);
    PressPaste();
    EXPECT_EQ(log, Lines{});
}

TEST_F(GridClipboard, AGridThatIsNotEditableCopiesOnly)
{
    grid->SetEditable(false);
    Choose(2, 3, 2, 4);
    PressCut();
    EXPECT_EQ(ClipboardText(), QString("before"));
    PressPaste();
    Press(Qt::Key_Delete);
    EXPECT_EQ(Row(2), "2,2|2,3|2,4|2,5");
    EXPECT_EQ(log, Lines{});
    PressCopy();
    EXPECT_EQ(ClipboardText(), QString("2,3\t2,4"));
}

TEST_F(GridClipboard, NothingIsPastedFromAnEmptyClipboard)
{
    QApplication::clipboard()->clear();
    Choose(2, 3, 2, 4);
    PressPaste();
    EXPECT_EQ(Row(2), "2,2|2,3|2,4|2,5");
    EXPECT_EQ(log, Lines{});
}

TEST_F(GridClipboard, SelectAllTakesEveryDataCell)
{
    Fill(3, 4);
    PressSelectAll();
    EXPECT_EQ(Selected(), "1,2 1,3 2,2 2,3");
    PressCopy();
    EXPECT_EQ(ClipboardText(), QString("1,2\t1,3\n2,2\t2,3\n"));
}

TEST_F(GridClipboard, AnOpenEditorTakesTheKeys)
{
    Edit(2, 3, "abc");
    PressSelectAll();
    EXPECT_EQ(Editor()->selectedText(), QString("abc"));
    PressCopy();
    EXPECT_EQ(ClipboardText(), QString("abc"));
    PressCut();
    EXPECT_EQ(Editor()->text(), QString());
    SetClipboard("xyz");
    PressPaste();
    EXPECT_EQ(Editor()->text(), QString("xyz"));
    EXPECT_EQ(Row(2), "2,2|2,3|2,4|2,5");
    EXPECT_EQ(log, Lines{});
}

TEST_F(GridClipboard, AnOpenEditorTakesTheCommandsOfAMenu)
{
    Edit(2, 3, "abc");
    grid->SelectAll();
    EXPECT_EQ(Editor()->selectedText(), QString("abc"));
    grid->Copy();
    EXPECT_EQ(ClipboardText(), QString("abc"));
    grid->Cut();
    EXPECT_EQ(Editor()->text(), QString());
    grid->Paste();
    EXPECT_EQ(Editor()->text(), QString("abc"));
    EXPECT_EQ(Selected(), "2,3");
    EXPECT_EQ(log, Lines{});
}

struct CommandState {
    const char* name;
    void (*prepare)(CGridCtrl& grid);
    bool copy, cut, paste, selectAll;
    friend void PrintTo(const CommandState& c, std::ostream* out) { *out << c.name; }
};

struct GridCommands : GridClipboard, testing::WithParamInterface<CommandState> {};

TEST_P(GridCommands, AreEnabledWhereTheyCanAct)
{
    GetParam().prepare(*grid);
    EXPECT_EQ(grid->CanCopy(), GetParam().copy);
    EXPECT_EQ(grid->CanCut(), GetParam().cut);
    EXPECT_EQ(grid->CanPaste(), GetParam().paste);
    EXPECT_EQ(grid->CanSelectAll(), GetParam().selectAll);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, GridCommands, testing::Values(
    //           name                                                           copy   cut    paste  select all
    CommandState{"NoCells",     [](CGridCtrl& grid) { grid.DeleteAllItems(); }, false, false, false, false},
    CommandState{"TitlesOnly",  [](CGridCtrl& grid) { grid.SetRowCount(1); },   false, false, false, false},
    CommandState{"NoSelection", [](CGridCtrl&) {},                              false, false, false, true },
    CommandState{"Selection",   [](CGridCtrl& grid) { grid.SetFocusCell(2, 3); }, true, true, true,  true },
    CommandState{"FocusOnly",   [](CGridCtrl& grid) {
        grid.SetFocusCell(2, 3);
        grid.clearSelection(); },                                               true,  true,  true,  true },
    CommandState{"EmptyClipboard", [](CGridCtrl& grid) {
        grid.SetFocusCell(2, 3);
        QApplication::clipboard()->clear(); },                                  true,  true,  false, true },
    CommandState{"NoTextOnTheClipboard", [](CGridCtrl& grid) {
        grid.SetFocusCell(2, 3);
        auto* content = new QMimeData;
        content->setData("application/x-other", "1");
        QApplication::clipboard()->setMimeData(content); },                     true,  true,  false, true },
    CommandState{"NotEditable", [](CGridCtrl& grid) {
        grid.SetEditable(false);
        grid.SetFocusCell(2, 3); },                                             true,  false, false, true },
    CommandState{"EditorWithSelectedText", [](CGridCtrl& grid) {
        grid.SetFocusCell(2, 3);
        grid.StartEdit(); },                                                    true,  true,  true,  true },
    CommandState{"EditorWithoutSelectedText", [](CGridCtrl& grid) {
        grid.SetFocusCell(2, 3);
        grid.StartEdit();
        grid.findChild<CInPlaceEdit*>()->deselect(); },                         false, false, true,  true },
    CommandState{"EmptyEditor", [](CGridCtrl& grid) {
        grid.SetFocusCell(2, 3);
        grid.StartEdit();
        grid.findChild<CInPlaceEdit*>()->clear(); },                            false, false, true,  false}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(GridClipboard, ARefusedValueAmongOthersIsToldAsBefore)
{
    SetClipboard("a\tbad\nc\td\n");
    Click(1, 2);
    log.clear();
    PressPaste();
    EXPECT_EQ(log.back(), "reported Col 1,Row 3 data error !");
    EXPECT_EQ(Row(2), "c|d|2,4|2,5");
}

TEST_F(GridClipboard, SeveralRefusedValuesAreCountedInTheOneMessage)
{
    SetClipboard("a\tbad\nbad\td\n");
    Click(1, 2);
    PressPaste();
    const auto first = std::find(log.begin(), log.end(), "reported Col 1,Row 3 data error !");
    ASSERT_EQ(log.end() - first, 2);
    EXPECT_EQ(first[1], "further 2 of 4 values were refused.");
}

TEST_F(GridClipboard, WhatDidNotFitIsToldWithTheRefusedValue)
{
    SetClipboard("a\tbad\tc\nd\te\nf\ng\n");
    Click(4, 4);
    PressPaste();
    EXPECT_EQ(log.back(), "further 1 of 4 values was refused. 2 rows and 1 column did not fit.");
    EXPECT_EQ(log[log.size() - 2], "reported Col 4,Row 5 data error !");
}

TEST_F(GridClipboard, WhatDidNotFitIsToldWithoutAMessageWhereAllElseWasPasted)
{
    std::vector<QString> told;
    QObject::connect(grid, &CGridCtrl::PasteDidNotFit, grid,
                     [&](const GridPasteRest& rest) { told.push_back(NotFittingText(rest)); });
    SetClipboard("a\tb\tc\tlost\tlost\nd\te\nf\tg\n");
    Click(5, 3);
    log.clear();
    PressPaste();
    EXPECT_EQ(told, std::vector<QString>{"2 rows and 2 columns did not fit."});
    EXPECT_EQ(std::count_if(log.begin(), log.end(), [](const auto& line) { return line.starts_with("reported"); }), 0);
    EXPECT_EQ(Row(5), "5,2|a|b|c");
    SetClipboard("a\tb\n");
    Click(5, 3);
    PressPaste();
    EXPECT_EQ(told.size(), 1u);
    SetClipboard("1\n2\n");
    Click(5, 3);
    PressPaste();
    EXPECT_EQ(told.back(), "1 row did not fit.");
}

TEST_F(GridClipboard, RefusedClearedCellsAreToldAsBefore)
{
    grid->SetCellCheck([](int, const QString& text) { return !text.isEmpty(); });
    Choose(1, 2, 3, 4);
    Press(Qt::Key_Delete);
    EXPECT_EQ(log, Lines{"reported Col 1,Row 2 data error !"});
}

TEST_F(GridClipboard, TitlesAreTheFirstLineWhereTheyAreAskedFor)
{
    Choose(2, 3, 3, 4);
    EXPECT_TRUE(grid->CopyAs({.hasTitles = true}));
    EXPECT_EQ(ClipboardText(), QString("0,3\t0,4\n2,3\t2,4\n3,3\t3,4\n"));
    Click(2, 3);
    grid->SetItemText(0, 3, "two\nlines");
    EXPECT_TRUE(grid->CopyAs({.hasTitles = true}));
    EXPECT_EQ(ClipboardText(), QString("\"two\nlines\"\n2,3\n"));
}

TEST_F(GridClipboard, CellsAreCopiedInAFormThatIsAskedFor)
{
    Choose(2, 3, 3, 4);
    EXPECT_TRUE(grid->CopyAs({.edit = [](int column, QString& text) {
        if (column == 4)
            text.replace(u',', u';');
    }}));
    EXPECT_EQ(ClipboardText(), QString("2,3\t2;4\n3,3\t3;4\n"));
}

TEST_F(GridClipboard, NothingIsCopiedInAnyFormWhereNothingIsChosen)
{
    EXPECT_FALSE(grid->CopyAs({.hasTitles = true}));
    EXPECT_EQ(ClipboardText(), QString("before"));
}

} // namespace
