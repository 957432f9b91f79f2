// Counts, cells, sizes: what the operations leave.

#include "controls/GridDefaultCell.h"
#include "controls/GridTreeCell.h"
#include "tests/controls/GridTestBed.h"
#include "tests/support/GuiTest.h"

#include <QHeaderView>

#include <limits>

namespace {

struct GridContent : CGridTestBed {};

TEST_F(GridContent, StartsEmpty)
{
    EXPECT_EQ(grid->RowCount(), 0);
    EXPECT_EQ(grid->ColumnCount(), 0);
    EXPECT_EQ(grid->FixedRowCount(), 0);
    EXPECT_EQ(grid->FixedColumnCount(), 0);
    EXPECT_EQ(Focus(), "none");
}

TEST_F(GridContent, HoldsTheTextOfEachCell)
{
    Fill(4, 5);
    for (int row = 0; row < 4; ++row)
        for (int column = 0; column < 5; ++column)
            EXPECT_EQ(TextAt(row, column), std::to_string(row) + "," + std::to_string(column));
}

struct Outside {
    const char* name;
    int row;
    int column;
    friend void PrintTo(const Outside& c, std::ostream* out) { *out << c.name; }
};

struct GridCellOutside : CGridTestBed, testing::WithParamInterface<Outside> {};

TEST_P(GridCellOutside, IsRefusedAndChangesNothing)
{
    Fill(4, 5);
    const auto [name, row, column] = GetParam();
    EXPECT_FALSE(grid->SetItemText(row, column, "x"));
    EXPECT_FALSE(grid->SetItem({.row = row, .column = column, .mask = GridItem::Text, .text = "x"}));
    EXPECT_FALSE(grid->SetCellData(row, column, 7));
    EXPECT_FALSE(grid->SetCell(row, column, std::make_unique<CGridTreeCell>()));
    EXPECT_FALSE(grid->SetFocusCell(row, column));
    EXPECT_EQ(grid->GetCell(row, column), nullptr);
    EXPECT_EQ(grid->GetCellData(row, column), 0u);
    EXPECT_EQ(grid->GetItemState(row, column), 0u);
    EXPECT_EQ(grid->ChangeText(row, column, "x"), CGridCtrl::Change::ReadOnly);
    EXPECT_EQ(TextAt(row, column), "");
    grid->RedrawCell(row, column);
    EXPECT_EQ(TextAt(3, 4), "3,4");
    EXPECT_EQ(log, Lines{});
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, GridCellOutside, testing::Values(
    Outside{"RowBelow0",     -1,  0},
    Outside{"RowAtCount",     4,  0},
    Outside{"ColumnBelow0",   1, -1},
    Outside{"ColumnAtCount",  1,  5},
    Outside{"FarAway", std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST_F(GridContent, SizesOfRowsAndColumnsOutsideAreRefused)
{
    Fill(4, 5);
    EXPECT_FALSE(grid->SetRowHeight(4, 10));
    EXPECT_FALSE(grid->SetRowHeight(-1, 10));
    EXPECT_FALSE(grid->SetRowHeight(1, -1));
    EXPECT_FALSE(grid->SetColumnWidth(5, 10));
    EXPECT_FALSE(grid->SetColumnWidth(-1, 10));
    EXPECT_EQ(grid->RowHeight(4), 0);
    EXPECT_EQ(grid->ColumnWidth(-1), 0);
}

TEST_F(GridContent, CountsThatCannotBeAreRefused)
{
    Fill(4, 5);
    EXPECT_FALSE(grid->SetRowCount(-1));
    EXPECT_FALSE(grid->SetColumnCount(-1));
    EXPECT_FALSE(grid->SetFixedRowCount(5));
    EXPECT_FALSE(grid->SetFixedColumnCount(-1));
    EXPECT_EQ(grid->RowCount(), 4);
    EXPECT_EQ(grid->ColumnCount(), 5);
    EXPECT_EQ(grid->FixedRowCount(), 1);
    EXPECT_EQ(grid->FixedColumnCount(), 2);
}

TEST_F(GridContent, DeleteAllItemsLeavesNothing)
{
    Fill(4, 5);
    Click(2, 3);
    grid->DeleteAllItems();
    EXPECT_EQ(grid->RowCount(), 0);
    EXPECT_EQ(grid->ColumnCount(), 0);
    EXPECT_EQ(grid->FixedRowCount(), 0);
    EXPECT_EQ(grid->FixedColumnCount(), 0);
    EXPECT_EQ(Focus(), "none");
    EXPECT_FALSE(grid->selectionModel()->hasSelection());
    grid->SetRowCount(4);
    grid->SetColumnCount(5);
    EXPECT_EQ(TextAt(2, 3), "");
}

TEST_F(GridContent, SmallerCountsDropCellsAndLargerOnesBringEmptyOnes)
{
    Fill(4, 5);
    grid->SetRowCount(2);
    grid->SetColumnCount(3);
    EXPECT_EQ(TextAt(1, 2), "1,2");
    grid->SetRowCount(4);
    grid->SetColumnCount(5);
    EXPECT_EQ(TextAt(1, 2), "1,2");
    EXPECT_EQ(TextAt(3, 2), "");
    EXPECT_EQ(TextAt(1, 4), "");
}

TEST_F(GridContent, FixedCountsShrinkWithTheCounts)
{
    Fill(4, 5);
    grid->SetRowCount(0);
    grid->SetColumnCount(1);
    EXPECT_EQ(grid->FixedRowCount(), 0);
    EXPECT_EQ(grid->FixedColumnCount(), 1);
}

TEST_F(GridContent, SizesStayWithTheirRowsAndColumns)
{
    grid->SetColumnCount(5);
    grid->SetColumnWidth(0, 64);
    grid->SetColumnWidth(3, 77);
    grid->SetRowCount(4);
    grid->SetDefaultRowHeight(26);
    grid->SetRowHeight(0, 24);
    grid->SetRowHeight(2, 40);
    grid->SetFixedRowCount(1);
    grid->SetFixedColumnCount(2);
    const auto expectSizes = [this] {
        EXPECT_EQ(grid->RowHeight(0), 24);
        EXPECT_EQ(grid->RowHeight(1), 26);
        EXPECT_EQ(grid->RowHeight(2), 40);
        EXPECT_EQ(grid->ColumnWidth(0), 64);
        EXPECT_EQ(grid->ColumnWidth(3), 77);
    };
    expectSizes();
    ASSERT_TRUE(WaitFor([this] { return grid->verticalHeader()->width() == 64 + grid->ColumnWidth(1); }));
    EXPECT_EQ(grid->horizontalHeader()->height(), 24);
    grid->SetFixedRowCount(0);
    grid->SetFixedColumnCount(0);
    expectSizes();
}

TEST_F(GridContent, SetItemSetsTheFieldsOfItsMask)
{
    Fill(4, 5);
    EXPECT_TRUE(grid->SetItem({.row = 1, .column = 2, .mask = 65, .state = 4, .format = 1, .text = "new", .data = 9}));
    const CGridCellBase* cell = grid->GetCell(1, 2);
    EXPECT_EQ(TextAt(1, 2), "new");
    EXPECT_EQ(cell->TextFormat(), 1u);
    EXPECT_EQ(cell->StateFlags(), 0u);
    EXPECT_EQ(cell->Data(), 0u);
    EXPECT_TRUE(grid->SetItem({.row = 1, .column = 2, .mask = 2 | 4 | 8, .state = 4, .image = 3, .data = 9}));
    EXPECT_EQ(TextAt(1, 2), "new");
    EXPECT_EQ(cell->StateFlags(), CGridCellBase::ReadOnly);
    EXPECT_EQ(cell->Image(), 3);
    EXPECT_EQ(grid->GetCellData(1, 2), 9u);
}

TEST_F(GridContent, CellDataIsKept)
{
    Fill(4, 5);
    EXPECT_TRUE(grid->SetCellData(3, 4, 0xFFFFFFFF));
    EXPECT_EQ(grid->GetCellData(3, 4), 0xFFFFFFFFu);
    EXPECT_EQ(grid->GetCellData(3, 3), 0u);
}

TEST_F(GridContent, StatesFollowTheGrid)
{
    Fill(4, 5);
    Click(2, 3);
    EXPECT_EQ(grid->GetItemState(2, 3), CGridCellBase::Focused | CGridCellBase::Selected);
    EXPECT_EQ(grid->GetItemState(2, 4), 0u);
    const std::uint32_t fixed = CGridCellBase::Fixed | CGridCellBase::ReadOnly;
    EXPECT_EQ(grid->GetItemState(0, 3), fixed | CGridCellBase::FixedRow);
    EXPECT_EQ(grid->GetItemState(2, 0), fixed | CGridCellBase::FixedColumn);
    EXPECT_EQ(grid->GetItemState(0, 1), fixed | CGridCellBase::FixedRow | CGridCellBase::FixedColumn);
}

TEST_F(GridContent, DefaultFormatsCentreAndWrapTitles)
{
    EXPECT_EQ(grid->DefaultCell(false, false).TextFormat(), 1u);
    EXPECT_EQ(grid->DefaultCell(false, true).TextFormat(), 1u);
    EXPECT_EQ(grid->DefaultCell(true, false).TextFormat(), 17u);
    EXPECT_EQ(grid->DefaultCell(true, true).TextFormat(), 17u);
}

TEST_F(GridContent, AttributesOfACellAreItsOwn)
{
    CGridCell cell;
    EXPECT_FALSE(cell.BackColor() || cell.TextColor() || cell.Font() || cell.Margin());
    EXPECT_EQ(cell.Image(), CGridCellBase::kNoImage);
    EXPECT_EQ(cell.TextFormat(), CGridCellBase::kNoFormat);
    cell.SetFont(QFont("Arial"));
    cell.SetMargin(9);
    cell.SetImage(2);
    cell.SetData(5);
    const CGridCell moved = std::move(cell);
    EXPECT_EQ(moved.Font()->family(), QString("Arial"));
    EXPECT_EQ(moved.Margin(), 9);
    EXPECT_EQ(moved.Image(), 2);
    EXPECT_EQ(moved.Data(), 5u);
}

TEST_F(GridContent, CellsAreCompact)
{
    EXPECT_LE(sizeof(CGridCell), 72u);
}

} // namespace
