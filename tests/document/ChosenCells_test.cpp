#include "document/ChosenCells.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

namespace {

std::vector<CellPlace> Walked(const CChosenCells& cells)
{
    std::vector<CellPlace> places;
    cells.ForEach([&](CellPlace place) {
        places.push_back(place);
        return true;
    });
    return places;
}

std::set<CellPlace> Model(const std::vector<CellRange>& ranges)
{
    std::set<CellPlace> places;
    for (const CellRange& range : ranges)
        for (std::int32_t row = range.firstRow; row <= range.lastRow; ++row)
            for (std::uint32_t column = range.firstColumn; column <= range.lastColumn; ++column)
                places.insert({row, column});
    return places;
}

} // namespace

TEST(ChosenCells, AreThoseOfAnyBlocksInOrder)
{
    std::mt19937 random(7);
    const auto upTo = [&random](std::uint32_t most) { return static_cast<std::uint32_t>(random() % (most + 1)); };
    for (int round = 0; round < 2000; ++round) {
        std::vector<CellRange> ranges(upTo(5));
        for (CellRange& range : ranges) {
            range.firstRow = static_cast<std::int32_t>(upTo(12));
            range.lastRow = range.firstRow + static_cast<std::int32_t>(upTo(6)) - 1;
            range.firstColumn = upTo(6);
            range.lastColumn = range.firstColumn + upTo(4);
        }
        const CChosenCells cells(ranges);
        const std::set<CellPlace> model = Model(ranges);
        ASSERT_EQ(cells.Count(), model.size()) << "round " << round;
        ASSERT_EQ(Walked(cells), std::vector<CellPlace>(model.begin(), model.end())) << "round " << round;
        std::set<std::int32_t> rows;
        std::set<std::uint32_t> columns;
        for (const CellPlace place : model) {
            rows.insert(place.row);
            columns.insert(place.column);
        }
        for (const CellPlace place : model) {
            ASSERT_EQ(cells.RowOrdinal(place.row), std::distance(rows.begin(), rows.find(place.row)));
            ASSERT_EQ(cells.ColumnOrdinal(place.column), std::distance(columns.begin(), columns.find(place.column)));
        }
    }
}

TEST(ChosenCells, StopsWhereItIsAskedTo)
{
    const CChosenCells cells({{0, 999999, 0, 15}});
    EXPECT_EQ(cells.Count(), 16000000U);
    int taken = 0;
    EXPECT_FALSE(cells.ForEach([&](CellPlace) { return ++taken < 5; }));
    EXPECT_EQ(taken, 5);
}
