#include "text/NumberText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <ostream>
#include <string>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct DecimalCase {
    const char* name;
    std::u16string text;
    double value;
    friend void PrintTo(const DecimalCase& c, std::ostream* out) { *out << c.name; }
};

struct ReadDecimalText : testing::TestWithParam<DecimalCase> {};

TEST_P(ReadDecimalText, GivesTheNearestDouble)
{
    const double value = ReadDecimal(GetParam().text);
    EXPECT_EQ(value, GetParam().value);
    EXPECT_EQ(std::signbit(value), std::signbit(GetParam().value));
}

std::u16string Digits(std::size_t count, char16_t digit)
{
    return std::u16string(count, digit);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, ReadDecimalText, testing::Values(
    DecimalCase{"Integer",              u"12",            12},
    DecimalCase{"Negative",             u"-12",           -12},
    DecimalCase{"Plus",                 u"+12",           12},
    DecimalCase{"Fraction",             u"12.345",        12.345},
    DecimalCase{"OneTenth",             u"0.1",           0.1},
    DecimalCase{"FifteenDigits",        u"1.2345678901234", 1.2345678901234},
    DecimalCase{"SixteenDigits",        u"9007199254740993", 9007199254740992},
    DecimalCase{"SeventeenDigits",      u"0.30000000000000004", 0.30000000000000004},
    DecimalCase{"LeadingBlanks",        u" \t\r\n\v\f1.5", 1.5},
    DecimalCase{"TrailingBlanks",       u"1.5  ",         1.5},
    DecimalCase{"LeadingZeros",         u"0001.50",       1.5},
    DecimalCase{"PointFirst",           u".5",            0.5},
    DecimalCase{"NegativePointFirst",   u"-.5",           -0.5},
    DecimalCase{"PointFirstExponent",   u".5e1",          5},
    DecimalCase{"ColonEnds",            u"5:3",           5},
    DecimalCase{"SlashEnds",            u"1/5",           1},
    DecimalCase{"SlashFirst",           u"/5",            0},
    DecimalCase{"SlashFirstExponent",   u"/5e1",          0},
    DecimalCase{"PointLast",            u"5.",            5},
    DecimalCase{"SecondPointEnds",      u"1.5.7",         1.5},
    DecimalCase{"CommaEnds",            u"1,5",           1},
    DecimalCase{"LetterEnds",           u"12a4",          12},
    DecimalCase{"SignInsideEnds",       u"1-2",           1},
    DecimalCase{"Exponent",             u"1.5e3",         1500},
    DecimalCase{"CapitalExponent",      u"2E-2",          0.02},
    DecimalCase{"PlusExponent",         u"2e+2",          200},
    DecimalCase{"PlusExponentTooLarge", u"1e+400",        kInfinity},
    DecimalCase{"ControlIsNoBlank",     u"\u0001" u"5",  0},
    DecimalCase{"ShiftOutIsNoBlank",    u"\u000E" u"5",  0},
    DecimalCase{"BareExponent",         u"7e",            7},
    DecimalCase{"SignedBareExponent",   u"7e-",           7},
    DecimalCase{"MinusZero",            u"-0",            -0.0},
    DecimalCase{"Empty",                u"",              0},
    DecimalCase{"BlanksOnly",           u"   ",           0},
    DecimalCase{"SignOnly",             u"-",             0},
    DecimalCase{"PointOnly",            u".",             0},
    DecimalCase{"SignAndPoint",         u"-.",            0},
    DecimalCase{"BlankAfterSign",       u"- 5",           0},
    DecimalCase{"TwoSigns",             u"+-5",           0},
    DecimalCase{"Letters",              u"abc",           0},
    DecimalCase{"NegativeLetters",      u"-abc",          0},
    DecimalCase{"PointExponent",        u".e5",           0},
    DecimalCase{"NeverInf",             u"inf",           0},
    DecimalCase{"NeverInfinity",        u"-Infinity",     0},
    DecimalCase{"NeverNan",             u"nan",           0},
    DecimalCase{"NeverHexadecimal",     u"0x10",          0},
    DecimalCase{"WideDigitsAreNone",    u"１２",           0},
    DecimalCase{"NonAsciiEnds",         u"1.5€",          1.5},
    DecimalCase{"UnitsAboveAByteEnd",   u"1\u0132",       1},               // low byte "2"
    DecimalCase{"ZeroUnitEnds",         std::u16string(u"1\0" u"2", 3), 1},
    DecimalCase{"LargestDouble",        u"1.7976931348623157e308", 1.7976931348623157e308},
    DecimalCase{"TooLarge",             u"1e309",         kInfinity},
    DecimalCase{"TooLargeNegative",     u"-1e309",        -kInfinity},
    DecimalCase{"FarTooLarge",          u"1e99999999999999999999", kInfinity},
    DecimalCase{"ManyDigitsTooLarge",   Digits(400, u'9'), kInfinity},
    DecimalCase{"SmallestDouble",       u"4.9e-324",      4.9406564584124654e-324},
    DecimalCase{"TooSmall",             u"1e-400",        0},
    DecimalCase{"TooSmallNegative",     u"-1e-400",       -0.0},
    DecimalCase{"FarTooSmall",          u"1e-99999999999999999999", 0},
    DecimalCase{"ZeroWithHugeExponent", u"0e99999999999", 0},
    DecimalCase{"ManyZerosBefore",      Digits(300, u'0') + u"25", 25},
    DecimalCase{"ManyZerosAfterPoint", u"0." + Digits(400, u'0') + u"25e402", 25},
    DecimalCase{"StillTooSmall",        u"0." + Digits(500, u'0') + u"1e+100", 0},
    DecimalCase{"StillTooLarge",        u"1" + Digits(500, u'0') + u"e-100", kInfinity},
    DecimalCase{"SmallInManyDigits",    u"0." + Digits(400, u'0') + u"1", 0},
    DecimalCase{"HundredDigits",        u"1" + Digits(99, u'0'), 1e99},
    DecimalCase{"ManyDecimals",         u"0." + Digits(200, u'3'), 1.0 / 3}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(ReadDecimal, ReadsAMillionDigits)
{
    EXPECT_EQ(ReadDecimal(u"1." + Digits(1'000'000, u'0') + u"1"), 1);
    EXPECT_EQ(ReadDecimal(Digits(1'000'000, u'1')), kInfinity);
}

struct IntegerCase {
    const char* name;
    std::u16string_view text;
    std::int64_t wide;
    std::int32_t narrow;
    friend void PrintTo(const IntegerCase& c, std::ostream* out) { *out << c.name; }
};

struct ReadIntegerText : testing::TestWithParam<IntegerCase> {};

TEST_P(ReadIntegerText, GivesTheLeadingIntegerWithinItsLimits)
{
    EXPECT_EQ(ReadInteger64(GetParam().text), GetParam().wide);
    EXPECT_EQ(ReadInteger(GetParam().text), GetParam().narrow);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, ReadIntegerText, testing::Values(
    IntegerCase{"Plain",           u"42",                     42,  42},
    IntegerCase{"Negative",        u"-42",                    -42, -42},
    IntegerCase{"PlusAndBlanks",   u" \t+42 ",                42,  42},
    IntegerCase{"StopsAtPoint",    u"42.9",                   42,  42},
    IntegerCase{"StopsAtLetter",   u"4e2",                    4,   4},
    IntegerCase{"None",            u"x4",                     0,   0},
    IntegerCase{"Empty",           u"",                       0,   0},
    IntegerCase{"SignOnly",        u"-",                      0,   0},
    IntegerCase{"Highest32",       u"2147483647",             2147483647,  INT32_MAX},
    IntegerCase{"Above32",         u"2147483648",             2147483648,  INT32_MAX},
    IntegerCase{"Lowest32",        u"-2147483648",            -2147483648, INT32_MIN},
    IntegerCase{"Below32",         u"-2147483649",            -2147483649, INT32_MIN},
    IntegerCase{"Highest64",       u"9223372036854775807",    INT64_MAX, INT32_MAX},
    IntegerCase{"Above64",         u"9223372036854775808",    INT64_MAX, INT32_MAX},
    IntegerCase{"Lowest64",        u"-9223372036854775808",   INT64_MIN, INT32_MIN},
    IntegerCase{"AboveLowest64",   u"-9223372036854775807",   INT64_MIN + 1, INT32_MIN},
    IntegerCase{"NearLowest64",    u"-9000000000000000000",   -9000000000000000000, INT32_MIN},
    IntegerCase{"StopsAtColon",    u"4:2",                    4,   4},
    IntegerCase{"Below64",         u"-9223372036854775809",   INT64_MIN, INT32_MIN},
    IntegerCase{"FarAbove64",      u"99999999999999999999999", INT64_MAX, INT32_MAX},
    IntegerCase{"ZerosInFront",    u"000000000000000000000000000007", 7, 7}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(ReadHexadecimal, SumsTheDigitsByPlace)
{
    EXPECT_EQ(ReadHexadecimal(u"AB"), 0xABU);
    EXPECT_EQ(ReadHexadecimal(u"ab"), 0xABU);
    EXPECT_EQ(ReadHexadecimal(u"0123456789"), 0x23456789U);
    EXPECT_EQ(ReadHexadecimal(u"ABCDEF"), 0xABCDEFU);
    EXPECT_EQ(ReadHexadecimal(u"abcdef"), 0xABCDEFU);
    EXPECT_EQ(ReadHexadecimal(u"FFFFFFFF"), 0xFFFFFFFFU);
    EXPECT_EQ(ReadHexadecimal(u""), 0U);
}

TEST(ReadHexadecimal, CountsOtherCharactersAsZeroInTheirPlace)
{
    EXPECT_EQ(ReadHexadecimal(u"1G"), 0x10U); // kept
    EXPECT_EQ(ReadHexadecimal(u"xyz"), 0U);
    EXPECT_EQ(ReadHexadecimal(u"-1 "), 0x10U);
    EXPECT_EQ(ReadHexadecimal(u"F/:@G`g1"), 0xF0000001U); // the neighbours of the digits
    EXPECT_EQ(ReadHexadecimal(std::u16string_view(u"2\0", 2)), 0x20U);
    EXPECT_EQ(ReadHexadecimal(u"1\u007F\u0080\uFFFF"), 0x1000U);
    EXPECT_EQ(ReadHexadecimal(u"1\u0131"), 0x10U); // low byte "1"
}

TEST(ReadHexadecimal, LosesWhatStandsAbove32Bits)
{
    EXPECT_EQ(ReadHexadecimal(u"123456789AB"), 0x456789ABU);
}

TEST(TruncateTo32, TakesTheLowBitsOfTheTruncatedValue)
{
    EXPECT_EQ(TruncateTo32(1.99), 1);
    EXPECT_EQ(TruncateTo32(-1.99), -1);
    EXPECT_EQ(TruncateTo32(4294967295.0), -1);
    EXPECT_EQ(TruncateTo32(4294967296.0 + 5), 5);
    EXPECT_EQ(TruncateTo32(-4294967297.0), -1);
    EXPECT_EQ(TruncateTo32(-0x1p63), 0);
}

TEST(TruncateTo32, IsZeroForWhatDoesNotFit64Bits)
{
    EXPECT_EQ(TruncateTo32(0x1p63 + 4096), 0);
    EXPECT_EQ(TruncateTo32(-0x1p63 - 4096), 0);
    EXPECT_EQ(TruncateTo32(kInfinity), 0);
    EXPECT_EQ(TruncateTo32(-kInfinity), 0);
    EXPECT_EQ(TruncateTo32(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(PowerOfTen, IsTheNearestDoubleForAnyDigitCount)
{
    EXPECT_EQ(PowerOfTen(0), 1);
    EXPECT_EQ(PowerOfTen(-3), 1);
    EXPECT_EQ(PowerOfTen(std::numeric_limits<std::int32_t>::min()), 1);
    EXPECT_EQ(PowerOfTen(2), 100);
    EXPECT_EQ(PowerOfTen(22), 1e22);
    EXPECT_EQ(PowerOfTen(23), 1e23);
    EXPECT_EQ(PowerOfTen(308), 1e308);
    EXPECT_EQ(PowerOfTen(309), kInfinity);
    EXPECT_EQ(PowerOfTen(std::numeric_limits<std::int32_t>::max()), kInfinity);
}

struct ScaledCase {
    const char* name;
    std::u16string_view text;
    std::int32_t decimals;
    std::int32_t value;
    friend void PrintTo(const ScaledCase& c, std::ostream* out) { *out << c.name; }
};

struct ReadScaledText : testing::TestWithParam<ScaledCase> {};

TEST_P(ReadScaledText, IsTruncatedAndTakenTo32Bits)
{
    EXPECT_EQ(ReadScaledInteger(GetParam().text, GetParam().decimals), GetParam().value);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, ReadScaledText, testing::Values(
    ScaledCase{"Plain",               u"70000",      0,  70000},
    ScaledCase{"FractionIsCut",       u"-7.9",       0,  -7},
    ScaledCase{"OneDecimal",          u"12",         1,  120},
    ScaledCase{"TwoDecimals",         u"12.345",     2,  1234},
    ScaledCase{"BelowInBinary",       u"1.15",       2,  114},          // kept: nothing is rounded
    ScaledCase{"ExactInBinary",       u"1.25",       2,  125},
    ScaledCase{"MoreDigitsSameValue", u"1.1500000000000000000", 2, 114},
    ScaledCase{"Wraps",               u"4294967296", 0,  0},
    ScaledCase{"WrapsNegative",       u"-4294967295", 0, 1},
    ScaledCase{"FifteenDigits",       u"999999999999999", 0, -1530494977},
    ScaledCase{"SixteenDigits",       u"9999999999999999", 0, 1874919424},  // the nearest double ends in 0
    ScaledCase{"NegativeDigitsAreNone", u"5",        -4, 5},
    ScaledCase{"ManyDecimals",        u"5",          400, 0},
    ScaledCase{"ZeroTimesInfinity",   u"0",          400, 0},
    ScaledCase{"HostileDecimals",     u"1",          INT32_MAX, 0},
    ScaledCase{"NoNumber",            u"abc",        2,  0}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

struct LimitCase {
    const char* name;
    double value;
    std::int64_t limit;
    bool isBelow;
    bool isAbove;
    friend void PrintTo(const LimitCase& c, std::ostream* out) { *out << c.name; }
};

struct ValueAtALimit : testing::TestWithParam<LimitCase> {};

TEST_P(ValueAtALimit, IsComparedExactly)
{
    EXPECT_EQ(IsBelow(GetParam().value, GetParam().limit), GetParam().isBelow);
    EXPECT_EQ(IsAbove(GetParam().value, GetParam().limit), GetParam().isAbove);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, ValueAtALimit, testing::Values(
    LimitCase{"Equal",                  5,          5,           false, false},
    LimitCase{"ALittleLess",            4.5,        5,           true,  false},
    LimitCase{"ALittleMore",            5.5,        5,           false, true},
    LimitCase{"LimitIsJustAboveADouble", 0x1p53,    (INT64_C(1) << 53) + 1, true,  false},
    LimitCase{"LimitIsJustBelowADouble", 0x1p53 + 4, (INT64_C(1) << 53) + 3, false, true},
    LimitCase{"HighestLimit",           0x1p63,     INT64_MAX,   false, true},
    LimitCase{"BelowTheHighestLimit",   0x1p63 - 1024, INT64_MAX, true, false},
    LimitCase{"LowestLimit",            -0x1p63,    INT64_MIN,   false, false},
    LimitCase{"NotANumber",             std::numeric_limits<double>::quiet_NaN(), 0, false, false}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(DecimalText, WritesAnyInteger)
{
    EXPECT_EQ(DecimalText(0), u"0");
    EXPECT_EQ(DecimalText(-12), u"-12");
    EXPECT_EQ(DecimalText(INT64_MIN), u"-9223372036854775808");
    EXPECT_EQ(DecimalText(INT64_MAX), u"9223372036854775807");
}

TEST(HexadecimalText, IsInCapitals)
{
    EXPECT_EQ(HexadecimalText(0), u"0");
    EXPECT_EQ(HexadecimalText(0xAB), u"AB");
    EXPECT_EQ(HexadecimalText(4294967295), u"FFFFFFFF");
    EXPECT_EQ(HexadecimalText(-0xAB), u"-AB");
    EXPECT_EQ(HexadecimalText(std::numeric_limits<std::int64_t>::min()), u"-8000000000000000");
}

} // namespace
