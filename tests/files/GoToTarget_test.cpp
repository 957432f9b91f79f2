#include "files/GoToTarget.h"
#include "tests/files/TestColumns.h"

#include <gtest/gtest.h>

namespace {

ColumnCoding Titled(const char16_t* title, std::int32_t words = 1)
{
    ColumnCoding column = words == 1 ? Signed16Column() : Unsigned32Column();
    column.title = title;
    return column;
}

/// 12 rows of 6 words from RW100 on: No. (1), Zone(1) (1), Zone(2) (1), Belt m/min (2), 5 (1).
CRecipeRows OvenRows()
{
    CRecipeRows rows;
    rows.LayOut({Titled(u"No."), Titled(u"Zone(1)"), Titled(u"Zone(2)"), Titled(u"Belt m/min", 2), Titled(u"500")}, 100,
                12);
    return rows;
}

using Kind = GoToTarget::Kind;

struct TargetCase {
    const char* name;
    const char16_t* text;
    Kind kind;
    CellPlace place;
    const char16_t* message;
    friend void PrintTo(const TargetCase& c, std::ostream* out) { *out << c.name; }
};

struct Target : testing::TestWithParam<TargetCase> {};

TEST_P(Target, IsWhatTheTextMeans)
{
    const CRecipeRows rows = OvenRows();
    const GoToTarget target = FindTarget(GetParam().text, rows, RowAddresses::OfWords, {4, 2});
    EXPECT_EQ(target.kind, GetParam().kind);
    EXPECT_EQ(target.place, GetParam().place);
    EXPECT_EQ(target.message, GetParam().message);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, Target, testing::Values(
    TargetCase{"FirstRow",        u"1",               Kind::Cell,    {0, 2},  u""},
    TargetCase{"LastRow",         u" 012 ",           Kind::Cell,    {11, 2}, u""},
    TargetCase{"RowZero",         u"0",               Kind::Nowhere, {},      u"There is no row 0: the table has 12 rows."},
    TargetCase{"RowTooFar",       u"812",             Kind::Nowhere, {},      u"There is no row 812: the table has 12 rows."},
    TargetCase{"RowMuchTooFar",   u"99999999999999999999", Kind::Nowhere, {}, u"There is no row 99999999999999999999: the table has 12 rows."},
    TargetCase{"ItemOfDigits",    u"500",             Kind::Cell,    {4, 4},  u""},
    TargetCase{"FirstWord",       u"RW100",           Kind::Cell,    {0, 0},  u""},
    TargetCase{"SmallLetters",    u"rw 106",          Kind::Cell,    {1, 0},  u""},
    TargetCase{"WithinAValue",    u"RW110",           Kind::Cell,    {1, 3},  u""},
    TargetCase{"LastWord",        u"RW171",           Kind::Cell,    {11, 4}, u""},
    TargetCase{"WordBefore",      u"RW99",            Kind::Nearest, {0, 0},  u"RW99 lies in no row. The nearest value is RW100, row 1, No.."},
    TargetCase{"WordAfter",       u"RW4711",          Kind::Nearest, {11, 4}, u"RW4711 lies in no row. The nearest value is RW171, row 12, 500."},
    TargetCase{"WordOfManyDigits",u"RW99999999999999999999", Kind::Nearest, {11, 4}, u"RW9223372036854775807 lies in no row. The nearest value is RW171, row 12, 500."},
    TargetCase{"Item",            u"belt M/MIN",      Kind::Cell,    {4, 3},  u""},
    TargetCase{"ArrayElement",    u"Zone(2)",         Kind::Cell,    {4, 2},  u""},
    TargetCase{"Beginning",       u"be",              Kind::Cell,    {4, 3},  u""},
    TargetCase{"TwoBeginnings",   u"zone",            Kind::Nowhere, {},      u"Several items begin with zone: Zone(1), Zone(2)."},
    TargetCase{"NoItem",          u"Oven",            Kind::Nowhere, {},      u"Oven is no row, no address and no item."},
    TargetCase{"RowAndItem",      u"3 Belt m/min",    Kind::Cell,    {2, 3},  u""},
    TargetCase{"RowAndBeginning", u"3  no",           Kind::Cell,    {2, 0},  u""},
    TargetCase{"NoSuchRow",       u"30 no",           Kind::Nowhere, {},      u"There is no row 30: the table has 12 rows."},
    TargetCase{"RowAndNoItem",    u"3 Oven",          Kind::Nowhere, {},      u"Oven is no row, no address and no item."},
    TargetCase{"NoNumber",        u"-5",              Kind::Nowhere, {},      u"-5 is no row, no address and no item."},
    TargetCase{"Nothing",         u"  ",              Kind::Nowhere, {},      u"Type a row (812), an address (RW4711) or the name of an item."}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(Target, OfATitleThatStandsTwiceIsTheNextOne)
{
    CRecipeRows rows;
    rows.LayOut({Titled(u"A"), Titled(u"B"), Titled(u"a")}, 0, 2);
    EXPECT_EQ(FindTarget(u"a", rows, RowAddresses::OfWords, {1, 0}).place, (CellPlace{1, 2}));
    EXPECT_EQ(FindTarget(u"a", rows, RowAddresses::OfWords, {1, 2}).place, (CellPlace{1, 0}));
}

TEST(Target, OfATableOfTextsHasNoAddress)
{
    const GoToTarget target = FindTarget(u"RW100", OvenRows(), RowAddresses::None, {0, 0});
    EXPECT_EQ(target.kind, Kind::Nowhere);
    EXPECT_EQ(target.message, u"A table of texts has no addresses. Type a row or an item.");
}

TEST(Target, OfAnEmptyTableIsNone)
{
    EXPECT_EQ(FindTarget(u"1", CRecipeRows(), RowAddresses::OfWords, {-1, 0}).message, u"The table is empty.");
}

TEST(Target, IsSeenFromTheFirstRowWhereNoCellHasTheFocus)
{
    EXPECT_EQ(FindTarget(u"belt", OvenRows(), RowAddresses::OfWords, {-1, 0}).place, (CellPlace{0, 3}));
}

TEST(ValueAt, IsTheOneThatHoldsTheWord)
{
    const CRecipeRows rows = OvenRows();
    for (std::int64_t word = 100; word < 172; ++word) {
        const auto place = ValueAt(rows, WordAddress(word));
        ASSERT_TRUE(place);
        const std::int64_t begin = rows.RowAddress(place->row).number + rows.WordOffset(place->column);
        EXPECT_LE(begin, word);
        EXPECT_GT(begin + rows.Columns()[place->column].dataLength, word);
    }
    EXPECT_EQ(ValueAt(rows, WordAddress(99)), std::nullopt);
    EXPECT_EQ(ValueAt(rows, WordAddress(172)), std::nullopt);
}

} // namespace
