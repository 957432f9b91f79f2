#include "model/DataItemCheck.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr std::u16string_view kShortArray = u"The length of array can't be less than 2!";
constexpr std::u16string_view kLargeArray =
    u"The value that data length multiply by the length of  the array is too large,it exceed 512k!";
constexpr std::u16string_view kShortString = u"The data length can't be less than 1!";
constexpr std::u16string_view kLongString = u"The Data Length is too large ,it can't exceed 512k!";

struct LengthCase {
    const char* name;
    bool isArray;
    std::int32_t arrayLength;
    DataType dataType;
    std::int32_t dataLength;
    std::u16string_view message; ///< empty for lengths that may stand
    friend void PrintTo(const LengthCase& c, std::ostream* out) { *out << c.name; }
};

struct ItemLength : testing::TestWithParam<LengthCase> {};

struct DigitCase {
    const char* name;
    DataType type;
    DigitCounts chosen, fitted;
    friend void PrintTo(const DigitCase& c, std::ostream* out) { *out << c.name; }
};

struct DecimalDigits : testing::TestWithParam<DigitCase> {};
struct IntegerDigits : testing::TestWithParam<DigitCase> {};

} // namespace

void PrintTo(const DigitCounts& digits, std::ostream* out)
{
    *out << digits.integerDigits << '.' << digits.decimalDigits;
}

TEST_P(ItemLength, IsCheckedInOrder)
{
    const LengthCase& c = GetParam();
    const auto fault = ItemLengthFault({c.isArray, c.arrayLength, c.dataType, c.dataLength});
    EXPECT_EQ(fault.value_or(u""), c.message);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, ItemLength, testing::Values(
    //         name                          array  elements      type                words       message
    LengthCase{"SingleNumber",               false, 0,            DataType::Signed16, 1,          u""},
    LengthCase{"SingleNumberOfAnyLength",    false, -5,           DataType::Float,    -5,         u""},
    LengthCase{"NoTypeChosen",               false, 0,            DataType::NotChosen, 0,         u""},
    LengthCase{"ShortestArray",              true,  2,            DataType::Signed16, 1,          u""},
    LengthCase{"LongNumberArray",            true,  2147483647,   DataType::Double,   4,          u""},
    LengthCase{"ArrayOfOne",                 true,  1,            DataType::Signed16, 1,          kShortArray},
    LengthCase{"ArrayOfNone",                true,  0,            DataType::Signed16, 1,          kShortArray},
    LengthCase{"NegativeArray",              true,  -2147483647,  DataType::String,   4,          kShortArray},
    LengthCase{"ArrayLengthComesFirst",      true,  1,            DataType::String,   300000,     kShortArray},
    LengthCase{"StringArrayOf363Words",      true,  2,            DataType::String,   363,        u""},
    LengthCase{"StringArrayOf512Words",      true,  2,            DataType::String,   512,        u""},
    LengthCase{"StringArrayOf513Words",      true,  2,            DataType::String,   513,        kLargeArray},     // kept: squared
    LengthCase{"LongArrayOfShortStrings",    true,  1000000,      DataType::String,   4,          u""},             // kept
    LengthCase{"LongArrayOf513Words",        true,  100000,       DataType::String,   513,        kLargeArray},
    LengthCase{"SquareModulo32Bits",         true,  2,            DataType::String,   65536,      u""},             // kept
    LengthCase{"ArrayOfEmptyStrings",        true,  2,            DataType::String,   0,          kShortString},
    LengthCase{"ArrayOfNegativeStrings",     true,  2,            DataType::String,   -1,         kShortString},
    LengthCase{"ShortestString",             false, 0,            DataType::String,   1,          u""},
    LengthCase{"EmptyString",                false, 0,            DataType::String,   0,          kShortString},
    LengthCase{"NegativeString",             false, 0,            DataType::String,   -7,         kShortString},
    LengthCase{"LongestString",              false, 0,            DataType::String,   262144,     u""},
    LengthCase{"OneWordMore",                false, 0,            DataType::String,   262145,     kLongString},
    LengthCase{"LargestNumber",              false, 0,            DataType::String,   2147483647, kLongString}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(ProposedLength, GoesWithTheType)
{
    const std::int32_t words[] = {1, 2, 1, 2, 1, 2, 2, 4, 4};
    for (int code = 0; code < 9; ++code)
        EXPECT_EQ(ProposedLength(static_cast<DataType>(code)), words[code]) << code;
    EXPECT_EQ(ProposedLength(DataType::NotChosen), std::nullopt);
    EXPECT_EQ(ProposedLength(static_cast<DataType>(9)), std::nullopt);
}

TEST_P(DecimalDigits, AreFittedToTheType)
{
    EXPECT_EQ(FitDecimalDigits(GetParam().type, GetParam().chosen), GetParam().fitted);
}

TEST_P(IntegerDigits, AreFittedToTheType)
{
    EXPECT_EQ(FitIntegerDigits(GetParam().type, GetParam().chosen), GetParam().fitted);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, DecimalDigits, testing::Values(
    //        name                    type                  chosen    fitted
    DigitCase{"Signed16Fits",         DataType::Signed16,   {2, 4},   {2, 4}},
    DigitCase{"HexadecimalHasNone",   DataType::Hex16,      {0, 1},   {0, 0}},
    DigitCase{"Signed16TooMany",      DataType::Signed16,   {2, 5},   {2, 4}},
    DigitCase{"Signed16All",          DataType::Signed16,   {1, 6},   {1, 5}},
    DigitCase{"Signed16BeyondAll",    DataType::Signed16,   {1, 7},   {1, 0}},
    DigitCase{"Signed16NoRoom",       DataType::Signed16,   {6, 1},   {6, 0}},
    DigitCase{"Signed16LessThanNone", DataType::Signed16,   {9, 3},   {9, 0}},
    DigitCase{"Unsigned16All",        DataType::Unsigned16, {1, 5},   {1, 4}},
    DigitCase{"Unsigned16BeyondAll",  DataType::Unsigned16, {1, 6},   {1, 0}},
    DigitCase{"Signed32All",          DataType::Signed32,   {1, 11},  {1, 10}},
    DigitCase{"Signed32Fits",         DataType::Signed32,   {5, 6},   {5, 6}},
    DigitCase{"Unsigned32TooMany",    DataType::Unsigned32, {10, 2},  {10, 1}},
    DigitCase{"FloatTooMany",         DataType::Float,      {4, 8},   {4, 7}},
    DigitCase{"DoubleTooMany",        DataType::Double,     {11, 1},  {11, 0}},
    DigitCase{"Hex16HasNone",         DataType::Hex16,      {2, 1},   {2, 0}},
    DigitCase{"Hex32HasNone",         DataType::Hex32,      {8, 11},  {8, 0}},
    DigitCase{"StringHasNone",        DataType::String,     {1, 3},   {1, 0}},
    DigitCase{"NoTypeHasNone",        DataType::NotChosen,  {1, 3},   {1, 0}},
    DigitCase{"NoneStaysNone",        DataType::Hex16,      {4, 0},   {4, 0}},
    DigitCase{"HostileIntegers",      DataType::Double,     {-2147483647 - 1, 3}, {-2147483647 - 1, 3}}),
    [](const auto& c) { return std::string(c.param.name); });

INSTANTIATE_TEST_SUITE_P(Table, IntegerDigits, testing::Values(
    //        name                          type                  chosen    fitted
    DigitCase{"Signed16OneBecomesTwo",      DataType::Signed16,   {1, 0},   {2, 0}},
    DigitCase{"Signed32OneBecomesTwo",      DataType::Signed32,   {1, 0},   {2, 0}},
    DigitCase{"Signed16OneWithDecimals",    DataType::Signed16,   {1, 1},   {1, 1}},
    DigitCase{"Signed32OneWithDecimals",    DataType::Signed32,   {1, 4},   {1, 4}},
    DigitCase{"DoubleOneBecomesTwo",        DataType::Double,     {1, 0},   {2, 0}},
    DigitCase{"DoubleOneWithDecimals",      DataType::Double,     {1, 5},   {2, 5}},
    DigitCase{"DoubleOneWithoutRoom",       DataType::Double,     {1, 10},  {1, 10}},
    DigitCase{"Unsigned16MayHaveOne",       DataType::Unsigned16, {1, 0},   {1, 0}},
    DigitCase{"Unsigned32MayHaveOne",       DataType::Unsigned32, {1, 0},   {1, 0}},
    DigitCase{"FloatMayHaveOne",            DataType::Float,      {1, 0},   {1, 0}}, // kept
    DigitCase{"Hex16MayHaveOne",            DataType::Hex16,      {1, 0},   {1, 0}},
    DigitCase{"Signed16Most",               DataType::Signed16,   {7, 0},   {6, 0}},
    DigitCase{"Signed16WithDecimals",       DataType::Signed16,   {6, 2},   {4, 2}},
    DigitCase{"Signed16WithoutRoom",        DataType::Signed16,   {3, 6},   {1, 6}},
    DigitCase{"Signed16BeyondRoom",         DataType::Signed16,   {3, 11},  {1, 11}},
    DigitCase{"Unsigned16Most",             DataType::Unsigned16, {6, 0},   {5, 0}},
    DigitCase{"Signed32Most",               DataType::Signed32,   {11, 0},  {11, 0}},
    DigitCase{"Unsigned32WithDecimals",     DataType::Unsigned32, {11, 3},  {8, 3}},
    DigitCase{"FloatWithDecimals",          DataType::Float,      {9, 3},   {8, 3}},
    DigitCase{"DoubleWithDecimals",         DataType::Double,     {11, 1},  {10, 1}},
    DigitCase{"Hex16Most",                  DataType::Hex16,      {5, 0},   {4, 0}},
    DigitCase{"Hex32Most",                  DataType::Hex32,      {9, 0},   {8, 0}},
    DigitCase{"StringHasRoomForNone",       DataType::String,     {5, 0},   {1, 0}},
    DigitCase{"NoTypeHasRoomForNone",       DataType::NotChosen,  {5, 0},   {1, 0}},
    DigitCase{"HostileDecimals",            DataType::Double,     {5, -2147483647 - 1}, {5, -2147483647 - 1}}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on
