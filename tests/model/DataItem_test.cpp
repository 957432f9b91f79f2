#include "model/DataItem.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

TEST(DataItem, BeginsWithNothingChosen)
{
    const DataItem item;
    EXPECT_EQ(item.reserved0, 0);
    EXPECT_EQ(item.dataLength, 0);
    EXPECT_EQ(item.dataType, DataType::NotChosen);
    EXPECT_EQ(item.integerDigits, 4);
    EXPECT_EQ(item.decimalDigits, 0);
    EXPECT_EQ(item.codeType, CodeType::NotChosen);
    EXPECT_EQ(item.description, FixedText<128>{});
    EXPECT_EQ(item.isArray, 0);
    EXPECT_EQ(item.reserved1, -1);
    EXPECT_EQ(item.reserved2, 0);
    EXPECT_EQ(item.arrayLength, 0);
    EXPECT_EQ(item.minValue, 0);
    EXPECT_EQ(item.maxValue, 0);
    EXPECT_EQ(item.unicode, 0);
}

TEST(DefaultItem, IsASigned16BitValueOfFourDigits)
{
    DataItem expected;
    expected.dataLength = 1;
    expected.dataType = DataType::Signed16;
    expected.codeType = CodeType::Bin;
    SetText(expected.description, u"Desc1");
    expected.reserved1 = -1;
    expected.arrayLength = -1;
    expected.minValue = -999;
    expected.maxValue = 9999;
    EXPECT_EQ(DefaultItem(), expected);
}

TEST(CreateItem, KnowsTheTwoStoredForms)
{
    ASSERT_NE(CreateItem(20), nullptr);
    EXPECT_EQ(*CreateItem(20), DataItem{});
    EXPECT_NE(CreateItem(0), nullptr);
    EXPECT_EQ(StoredItemSize(20), 320U);
    EXPECT_EQ(StoredItemSize(0), 312U);
}

TEST(CreateItem, MakesNoneForAnotherVersion)
{
    for (const std::int32_t version : {-1, 1, 19, 21, 25, kLowest, kHighest}) {
        EXPECT_EQ(CreateItem(version), nullptr) << version;
        EXPECT_EQ(StoredItemSize(version), std::nullopt) << version;
    }
}

struct BoundsCase {
    const char* name;
    DataType type;
    std::int32_t integerDigits;
    std::int32_t decimalDigits;
    std::int64_t minValue;
    std::int64_t maxValue;
    friend void PrintTo(const BoundsCase& c, std::ostream* out) { *out << c.name; }
};

struct DeriveBounds : testing::TestWithParam<BoundsCase> {};

TEST_P(DeriveBounds, FollowTypeAndDigits)
{
    DataItem item;
    item.dataType = GetParam().type;
    item.integerDigits = GetParam().integerDigits;
    item.decimalDigits = GetParam().decimalDigits;
    item.minValue = 77;
    item.maxValue = 77;
    deriveBounds(item);
    EXPECT_EQ(item.minValue, GetParam().minValue);
    EXPECT_EQ(item.maxValue, GetParam().maxValue);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, DeriveBounds, testing::Values(
    BoundsCase{"Signed16Three",      DataType::Signed16,   2, 1, -99, 999},                   // kept: one digit fewer
    BoundsCase{"Signed16Four",       DataType::Signed16,   4, 0, -999, 9999},
    BoundsCase{"Signed16Full",       DataType::Signed16,   3, 2, -32768, 32767},
    BoundsCase{"Signed16One",        DataType::Signed16,   1, 0, 0, 9},                       // kept: "-" reads as 0
    BoundsCase{"Signed16None",       DataType::Signed16,   0, 0, 0, 0},
    BoundsCase{"Signed32Nine",       DataType::Signed32,   9, 0, -99999999, 999999999},
    BoundsCase{"Signed32Full",       DataType::Signed32,   5, 5, -2147483648, 2147483647},
    BoundsCase{"Unsigned16Four",     DataType::Unsigned16, 2, 2, 0, 9999},
    BoundsCase{"Unsigned16Full",     DataType::Unsigned16, 5, 0, 0, 65535},
    BoundsCase{"Unsigned32Nine",     DataType::Unsigned32, 9, 0, 0, 999999999},
    BoundsCase{"Unsigned32Full",     DataType::Unsigned32, 10, 0, 0, 4294967295},
    BoundsCase{"Hex16One",           DataType::Hex16,      1, 0, 0, 15},
    BoundsCase{"Hex16Three",         DataType::Hex16,      3, 0, 0, 4095},
    BoundsCase{"Hex16Four",          DataType::Hex16,      4, 5, 0, 65535},
    BoundsCase{"Hex32Seven",         DataType::Hex32,      7, 0, 0, 268435455},
    BoundsCase{"Hex32Eight",         DataType::Hex32,      8, 0, 0, 4294967295},
    BoundsCase{"Hex32Nine",          DataType::Hex32,      9, 0, 0, -1},                      // kept: 32 bits
    BoundsCase{"HexNone",            DataType::Hex32,      0, 0, 0, 0},
    BoundsCase{"HexHostile",         DataType::Hex32, kHighest, 0, 0, 0},
    BoundsCase{"HexNegative",        DataType::Hex32, kLowest,  0, 0, 0},
    BoundsCase{"FloatFractionLost",  DataType::Float,      2, 3, -9, 99},                     // kept
    BoundsCase{"FloatOneDigit",      DataType::Float,      1, 2, 0, 9},
    BoundsCase{"FloatNoDigits",      DataType::Float,      0, 2, 0, 9},
    BoundsCase{"DoubleOneDigit",     DataType::Double,     1, 0, 0, 9},                       // kept: "-" reads as 0
    BoundsCase{"DoubleEleven",       DataType::Double,     11, 11, -9999999999, 99999999999},
    BoundsCase{"DoubleEighteen",     DataType::Double,     18, 0, -99999999999999999, 999999999999999999},
    BoundsCase{"DoubleNineteen",     DataType::Double,     19, 0, -999999999999999999, INT64_MAX},
    BoundsCase{"DoubleTwenty",       DataType::Double,     20, 0, INT64_MIN, INT64_MAX},
    BoundsCase{"DoubleHostile",      DataType::Double, kHighest, kHighest, INT64_MIN, INT64_MAX},
    BoundsCase{"DoubleNegative",     DataType::Double, kLowest, kLowest, 0, 9},
    BoundsCase{"SignedHostile",      DataType::Signed16, kHighest, kHighest, -32768, 32767},
    BoundsCase{"SignedNegative",     DataType::Signed16, kLowest, kLowest, 0, 0},
    BoundsCase{"String",             DataType::String,     4, 0, 0, 0},
    BoundsCase{"UnknownType",        static_cast<DataType>(99), 4, 0, 0, 0},
    BoundsCase{"NotChosen",          DataType::NotChosen,  4, 0, 0, 0}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

} // namespace
