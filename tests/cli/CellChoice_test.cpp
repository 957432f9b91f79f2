#include "cli/CellChoice.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace {

using Ranges = std::vector<std::pair<std::int64_t, std::int64_t>>;

Ranges RangesOf(const RowChoice& choice)
{
    Ranges ranges;
    for (const RowRange& range : choice.ranges)
        ranges.emplace_back(range.first, range.last);
    return ranges;
}

struct ChoiceCase {
    const char* name;
    const char* text;
    Ranges ranges;
    friend void PrintTo(const ChoiceCase& c, std::ostream* out) { *out << c.name; }
};

struct RowChoiceText : testing::TestWithParam<ChoiceCase> {};

TEST_P(RowChoiceText, NamesRowsOnce)
{
    const auto choice = ReadRowChoice(GetParam().text);
    ASSERT_TRUE(choice);
    EXPECT_FALSE(choice->isAll);
    EXPECT_EQ(RangesOf(*choice), GetParam().ranges);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, RowChoiceText, testing::Values(
    ChoiceCase{"OneRow",       "4",             {{4, 4}}},
    ChoiceCase{"Range",        "5-20",          {{5, 20}}},
    ChoiceCase{"RangeOfOne",   "5-5",           {{5, 5}}},
    ChoiceCase{"List",         "1,3,7-9",       {{1, 1}, {3, 3}, {7, 9}}},
    ChoiceCase{"AnyOrder",     "9,1",           {{1, 1}, {9, 9}}},
    ChoiceCase{"Twice",        "3,3",           {{3, 3}}},
    ChoiceCase{"OneInAnother", "1-9,3-4",       {{1, 9}}},
    ChoiceCase{"Overlapping",  "5-7,1-6",       {{1, 7}}},
    ChoiceCase{"Decimal",      "010",           {{10, 10}}},
    ChoiceCase{"TitleRow",     "0",             {{0, 0}}},          // refused by the table
    ChoiceCase{"HugeRange",    "1-4294967296",  {{1, 4294967296}}}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

struct NoRowChoice : testing::TestWithParam<const char*> {};

TEST_P(NoRowChoice, IsNoText)
{
    EXPECT_FALSE(ReadRowChoice(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Table, NoRowChoice,
                         testing::Values("", ",", "1,", ",1", "1,,2", "a", "-1", "+1", "5-", "-", "9-5", "1-2-3", " 1",
                                         "1 ", "1;2", "**", "*,1", "1,*", "1.5", "99999999999999999999"));

TEST(RowChoice, AStarIsAllRows)
{
    const auto choice = ReadRowChoice("*");
    ASSERT_TRUE(choice);
    EXPECT_TRUE(choice->isAll);
    EXPECT_TRUE(choice->ranges.empty());
}

} // namespace
