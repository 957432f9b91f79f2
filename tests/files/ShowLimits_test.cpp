#include "files/ShowLimits.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

namespace {

constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();

struct Item {
    std::int32_t dataLength;
    std::int32_t isArray = 0;
    std::int32_t arrayLength = -1;
};

struct LimitCase {
    const char* name;
    std::vector<Item> items;
    std::int32_t rowCount;
    const char16_t* fault; ///< empty: can be shown
    friend void PrintTo(const LimitCase& c, std::ostream* out) { *out << c.name; }
};

DataFormat FormatOf(const std::vector<Item>& items)
{
    DataFormat format(u"Any");
    for (const Item& fields : items) {
        auto item = std::make_unique<DataItem>();
        SetText(item->description, u"Temp");
        item->dataType = DataType::String;
        item->dataLength = fields.dataLength;
        item->isArray = fields.isArray;
        item->arrayLength = fields.arrayLength;
        format.insertItem(format.items.size(), std::move(item));
    }
    return format;
}

struct ShowLimit : testing::TestWithParam<LimitCase> {};

TEST_P(ShowLimit, IsNamed)
{
    const auto fault = ShowFault(FormatOf(GetParam().items), GetParam().rowCount);
    EXPECT_EQ(fault.value_or(u""), GetParam().fault);
}

constexpr const char16_t* kNegative = u"The format can't be shown! The length of the item Temp is less than 0!";
constexpr const char16_t* kTooLong = u"The format can't be shown! The data length of the item Temp exceeds 512k!";
constexpr const char16_t* kColumns = u"The format can't be shown! It has more than 32768 columns!";
constexpr const char16_t* kRows = u"The data can't be shown! It has more than 16777216 rows!";
constexpr const char16_t* kRowWords = u"The format can't be shown! A row has more than 2147483647 words!";
constexpr const char16_t* kWords = u"The data can't be shown! It has more than 2147483648 words!";

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, ShowLimit, testing::Values(
    //         name                       items: length, array, elements      rows       fault
    LimitCase{"NoItems",                  {},                                 10,        u""},
    LimitCase{"OneWord",                  {{1}},                              10,        u""},
    LimitCase{"NoLength",                 {{0}},                              10,        u""},
    LimitCase{"NegativeLength",           {{1}, {-1}},                        10,        kNegative},
    LimitCase{"SmallestLength",           {{kSmallest}},                      10,        kNegative},
    LimitCase{"NegativeLengthOfNoElement",{{-1, 1, 0}},                       10,        kNegative},
    LimitCase{"NegativeArray",            {{1, 1, -1}},                       10,        kNegative},
    LimitCase{"SmallestArray",            {{1, -7, kSmallest}},               10,        kNegative},
    LimitCase{"StaleArrayOfASingleItem",  {{1, 0, kSmallest}},                10,        u""},
    LimitCase{"EmptyArray",               {{1, 1, 0}},                        10,        u""},
    LimitCase{"LongestElement",           {{262144}},                         10,        u""},
    LimitCase{"ElementTooLong",           {{262145}},                         10,        kTooLong},
    LimitCase{"LargestElement",           {{kLargest}},                       10,        kTooLong},
    LimitCase{"LargestElementAndArray",   {{kLargest, 1, kLargest}},          kLargest,  kTooLong},
    LimitCase{"MostColumns",              {{1}, {1, 1, 32767}},               10,        u""},
    LimitCase{"OneColumnTooMany",         {{1}, {1, 1, 32768}},               10,        kColumns},
    LimitCase{"LargestArray",             {{1, 1, kLargest}},                 10,        kColumns},
    LimitCase{"LargestArrays",            {{1, 1, kLargest}, {1, 1, kLargest}, {1, 1, kLargest}}, 10, kColumns},
    LimitCase{"LargestArrayOfNoLength",   {{0, 1, kLargest}},                 10,        kColumns},
    LimitCase{"MostRows",                 {{1}},                              16777216,  u""},
    LimitCase{"OneRowTooMany",            {{1}},                              16777217,  kRows},
    LimitCase{"LargestRowCount",          {{262144}},                         kLargest,  kRows},
    LimitCase{"NegativeRowCount",         {{1}},                              kSmallest, u""},
    LimitCase{"MostWords",                {{128}},                            16777216,  u""},
    LimitCase{"TooManyWords",             {{129}},                            16777216,  kWords},
    LimitCase{"LongestRow",               {{262144, 1, 8191}, {262143}},      1,         u""},
    LimitCase{"LongestRowTwice",          {{262144, 1, 8191}, {262143}},      2,         kWords},
    LimitCase{"RowTooLong",               {{262144, 1, 8192}},                0,         kRowWords},
    LimitCase{"RowFarTooLong",            {{262144, 1, 32768}},               16777216,  kRowWords}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

} // namespace
