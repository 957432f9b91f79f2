// Cells shown to the user: which are then selected, where the focus is, and what is in sight.

#include "controls/GridModel.h"
#include "tests/controls/GridTestBed.h"
#include "tests/support/GuiTest.h"

#include <QScrollBar>

#include <utility>
#include <vector>

namespace {

using Cells = std::vector<std::pair<int, int>>;

Cells Block(int top, int left, int rows, int columns)
{
    Cells cells;
    for (int row = top; row < top + rows; ++row)
        for (int column = left; column < left + columns; ++column)
            cells.emplace_back(row, column);
    return cells;
}

struct GridShowCells : CGridTestBed {
    void SetUp() override
    {
        CGridTestBed::SetUp();
        Fill(6, 8);
    }

    qsizetype Ranges() const { return grid->selectionModel()->selection().size(); }

    /// Lays the cells out, so that scrolling knows their places.
    void FillAndPaint(int rows, int columns)
    {
        Fill(rows, columns);
        grid->grab();
    }

    bool IsInSight(int row, int column) const
    {
        return grid->viewport()->rect().contains(grid->visualRect(grid->Model().BodyIndex(row, column)));
    }
};

TEST_F(GridShowCells, TheyAloneAreSelectedAndTheFirstHasTheFocus)
{
    Click(5, 7);
    log.clear();
    grid->ShowCells({{2, 3}, {2, 4}, {4, 2}});
    EXPECT_EQ(Selected(), "2,3 2,4 4,2");
    EXPECT_EQ(Focus(), "2,3");
    EXPECT_EQ(log, Lines{"-100 of 102800 at 2,3"});
}

TEST_F(GridShowCells, AFocusCellThatStaysIsNotToldAgain)
{
    Click(2, 3);
    log.clear();
    grid->ShowCells({{2, 3}, {3, 3}});
    EXPECT_EQ(Selected(), "2,3 3,3");
    EXPECT_EQ(log, Lines{});
}

TEST_F(GridShowCells, ASelectionIsExtendedFromTheFirst)
{
    Click(5, 7);
    grid->ShowCells({{2, 3}, {4, 5}});
    Press(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_EQ(Selected(), "2,3 2,4");
}

TEST_F(GridShowCells, NoCellsChangeNothing)
{
    Click(2, 3);
    Click(3, 4, Qt::ShiftModifier);
    log.clear();
    grid->ShowCells({});
    grid->ShowCells({{-1, 3}, {0, 3}, {2, 1}, {2, 8}, {6, 3}}); // titles, and cells outside
    EXPECT_EQ(Selected(), "2,3 2,4 3,3 3,4");
    EXPECT_EQ(Focus(), "3,4");
    EXPECT_EQ(log, Lines{});
}

TEST_F(GridShowCells, TitlesAndCellsOutsideAreLeftOut)
{
    grid->ShowCells({{0, 3}, {2, 0}, {2, 5}, {2, 8}, {6, 2}});
    EXPECT_EQ(Selected(), "2,5");
    EXPECT_EQ(Focus(), "2,5");
}

TEST_F(GridShowCells, WhoeverIsToldMayEmptyTheGrid)
{
    Click(5, 7);
    QObject::connect(grid, &CGridCtrl::Notify, grid, [this] { grid->DeleteAllItems(); });
    grid->ShowCells({{2, 3}, {2, 4}});
    EXPECT_EQ(grid->RowCount(), 0);
    EXPECT_EQ(Focus(), "none");
}

struct RangesCase {
    const char* name;
    Cells cells;
    int ranges;
    friend void PrintTo(const RangesCase& c, std::ostream* out) { *out << c.name; }
};

struct GridShowCellsRanges : GridShowCells, testing::WithParamInterface<RangesCase> {};

TEST_P(GridShowCellsRanges, AreAsFewAsStretchesOfColumnsRepeat)
{
    grid->ShowCells(GetParam().cells);
    std::string expected;
    for (const auto& [row, column] : GetParam().cells)
        expected += (expected.empty() ? "" : " ") + std::to_string(row) + "," + std::to_string(column);
    EXPECT_EQ(Selected(), expected);
    EXPECT_EQ(Ranges(), GetParam().ranges);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, GridShowCellsRanges, testing::Values(
    RangesCase{"OneCell",         {{2, 3}},                                                      1},
    RangesCase{"ABlock",          {{2, 3}, {2, 4}, {3, 3}, {3, 4}, {4, 3}, {4, 4}},              1},
    RangesCase{"TwoColumns",      {{2, 3}, {2, 5}, {3, 3}, {3, 5}},                              2},
    RangesCase{"ARowBetween",     {{1, 3}, {3, 3}},                                              2},
    RangesCase{"AWiderRow",       {{1, 3}, {2, 3}, {2, 4}, {3, 3}},                              3},
    RangesCase{"ALeftOneEnds",    {{1, 2}, {1, 4}, {2, 4}, {3, 4}},                              2},
    RangesCase{"ALeftOneBegins",  {{1, 4}, {2, 2}, {2, 4}, {3, 2}, {3, 4}},                      2},
    RangesCase{"Steps",           {{1, 2}, {1, 3}, {2, 3}, {2, 4}, {3, 4}, {3, 5}},              3},
    RangesCase{"RowEndAndBegin",  {{1, 7}, {2, 2}},                                              2}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

struct GridShowManyCells : GridShowCells {
    struct CEmptySource final : CGridTextSource {
        QString CellText(int, int) const override { return {}; }
        bool SetCellText(int, int, const QString&) override { return false; }
    };

    void SetUp() override
    {
        GridShowCells::SetUp();
        grid->SetTextSource(&source);
        grid->SetRowCount(10'001);
        grid->SetColumnCount(1'002);
    }
    void TearDown() override { grid->SetTextSource(nullptr); }

    /// One cell in every second row.
    static Cells SeparateCells(int count)
    {
        Cells cells;
        for (int i = 0; i < count; ++i)
            cells.emplace_back(1 + 2 * i, 5 + i % 3);
        return cells;
    }

    CEmptySource source;
};

TEST_F(GridShowManyCells, AMillionCellsOfABlockAreOneRange)
{
    grid->ShowCells(Block(10, 2, 1000, 1000));
    ASSERT_EQ(Ranges(), 1);
    const QItemSelectionRange range = grid->selectionModel()->selection().first();
    EXPECT_EQ(range.topLeft(), grid->Model().BodyIndex(10, 2));
    EXPECT_EQ(range.bottomRight(), grid->Model().BodyIndex(1009, 1001));
    EXPECT_EQ(Focus(), "10,2");
}

TEST_F(GridShowManyCells, AThousandRangesAreStillExact)
{
    grid->ShowCells(SeparateCells(1000));
    EXPECT_EQ(Ranges(), 1000);
    EXPECT_EQ(grid->GetItemState(1, 6) & CGridCellBase::Selected, 0u);
}

TEST_F(GridShowManyCells, MoreAreTheOneRangeAroundThem)
{
    grid->ShowCells(SeparateCells(1001));
    ASSERT_EQ(Ranges(), 1);
    const QItemSelectionRange range = grid->selectionModel()->selection().first();
    EXPECT_EQ(range.topLeft(), grid->Model().BodyIndex(1, 5));
    EXPECT_EQ(range.bottomRight(), grid->Model().BodyIndex(2001, 7));
    EXPECT_EQ(Focus(), "1,5");
}

TEST_F(GridShowCells, CellsAboveAndBelowWhatIsInSightComeIntoIt)
{
    FillAndPaint(200, 8);
    for (const int row : {150, 20, 100}) {
        ASSERT_FALSE(IsInSight(row, 3));
        grid->ShowCells(Block(row, 3, 6, 2));
        EXPECT_TRUE(IsInSight(row, 3)) << row;
        EXPECT_TRUE(IsInSight(row + 5, 4)) << row;
    }
}

TEST_F(GridShowCells, OfMoreThanFitTheFirstIsInSight)
{
    FillAndPaint(200, 60);
    grid->ShowCells(Block(50, 30, 100, 25));
    EXPECT_TRUE(IsInSight(50, 30));
    Cells cells{{60, 40}}; // the first is not the leftmost
    for (const auto& cell : Block(61, 4, 100, 50))
        cells.push_back(cell);
    grid->ShowCells(cells);
    EXPECT_TRUE(IsInSight(60, 40));
}

TEST_F(GridShowCells, CellsBesideWhatIsInSightComeIntoIt)
{
    FillAndPaint(20, 60);
    for (const int column : {40, 5, 30}) {
        ASSERT_FALSE(IsInSight(3, column));
        grid->ShowCells({{3, column + 1}, {4, column}});
        EXPECT_TRUE(IsInSight(3, column + 1)) << column;
        EXPECT_TRUE(IsInSight(4, column)) << column;
    }
}

TEST_F(GridShowCells, TheSameCellsComeIntoSightAgain)
{
    FillAndPaint(200, 8);
    grid->ShowCells({{50, 3}});
    grid->verticalScrollBar()->setValue(150);
    ASSERT_FALSE(IsInSight(50, 3));
    grid->ShowCells({{50, 3}});
    EXPECT_TRUE(IsInSight(50, 3));
}

TEST_F(GridShowCells, ChangedTextsAreToldForAllDataCells)
{
    Cells told;
    QObject::connect(&grid->Model(), &CGridModel::dataChanged, [&](const QModelIndex& first, const QModelIndex& last) {
        told = {{first.row(), first.column()}, {last.row(), last.column()}};
    });
    grid->TextsChanged();
    EXPECT_EQ(told, (Cells{{0, 0}, {4, 5}}));
}

} // namespace
