#include "model/WordCodec.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <ostream>
#include <string>

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

ColumnCoding Coding(DataType type, std::int32_t dataLength, std::int32_t decimals = 0)
{
    return {.dataType = type, .dataLength = dataLength, .codeType = CodeType::Bin, .decimalDigits = decimals};
}

Bytes BytesOf32(std::uint32_t value)
{
    return WordBytes({static_cast<std::uint16_t>(value & 0xFFFF), static_cast<std::uint16_t>(value >> 16)});
}

Bytes BytesOf64(std::uint64_t value)
{
    Bytes bytes = BytesOf32(static_cast<std::uint32_t>(value & 0xFFFFFFFF));
    const Bytes high = BytesOf32(static_cast<std::uint32_t>(value >> 32));
    bytes.insert(bytes.end(), high.begin(), high.end());
    return bytes;
}

std::u16string TextOf(const ColumnCoding& coding, const Bytes& image, RecipeKind kind = RecipeKind::Flat)
{
    std::size_t pos = 0;
    return FormatValue(coding, image, pos, kind);
}

struct SignedCase {
    const char* name;
    std::int32_t dataLength;
    std::int64_t minValue;
    std::int64_t maxValue;
    std::int32_t decimals;
    std::int32_t raw;
    std::u16string_view text;
    friend void PrintTo(const SignedCase& c, std::ostream* out) { *out << c.name; }
};

struct FormatSigned : testing::TestWithParam<SignedCase> {};

TEST_P(FormatSigned, ShowsTheWordsAndMovesOn)
{
    const SignedCase& c = GetParam();
    ColumnCoding coding = Coding(c.dataLength == 1 ? DataType::Signed16 : DataType::Signed32, c.dataLength, c.decimals);
    coding.minValue = c.minValue;
    coding.maxValue = c.maxValue;
    std::size_t pos = 0;
    EXPECT_EQ(FormatValue(coding, BytesOf32(static_cast<std::uint32_t>(c.raw)), pos), c.text);
    EXPECT_EQ(pos, 2 * static_cast<std::size_t>(c.dataLength));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, FormatSigned, testing::Values(
    //         name                  words  limits                  decimals  raw      text
    SignedCase{"AllOnesIsMinusOne",      1, -32768, 32767,               0,   0xFFFF,  u"-1"},
    SignedCase{"LowestWord",             1, -32768, 32767,               0,   0x8000,  u"-32768"},
    SignedCase{"HighestWord",            1, -32768, 32767,               0,   0x7FFF,  u"32767"},
    SignedCase{"BeyondFewDigitsIsZero",  1, -999, 9999,                  2,   12000,   u"0.00"},
    SignedCase{"NoDecimalsBeyondIsZero", 1, -999, 9999,                  0,   12000,   u"0"},
    SignedCase{"JustWithin",             1, -999, 9999,                  0,   9999,    u"9999"},
    SignedCase{"LowerLimit",             1, -999, 9999,                  0,   0xFC19,  u"-999"},
    SignedCase{"BelowLowerLimitIsZero",  1, -999, 9999,                  0,   0xFC18,  u"0"},
    SignedCase{"TwoDecimals",            1, -999, 9999,                  2,   1234,    u"12.34"},
    SignedCase{"ZeroDecimals",           1, -999, 9999,                  2,   0,       u"0.00"},
    SignedCase{"PaddedAfter",            1, -999, 9999,                  2,   5,       u"0.50"},    // kept: not 0.05
    SignedCase{"SignInTheFraction",      1, -999, 9999,                  2,   0xFFFB,  u"0.-5"},    // kept
    SignedCase{"SignInFront",            1, -999, 9999,                  2,   0xFFCE,  u"-0.50"},
    SignedCase{"SignOfTheIntegerPart",   1, -999, 9999,                  2,   0xFF6A,  u"-1.50"},
    SignedCase{"SignThenZeros",          1, -999, 9999,                  3,   0xFFFB,  u"0.-50"},   // kept
    SignedCase{"AllDigitsAfter",         1, -999, 9999,                  4,   1234,    u"0.1234"},
    SignedCase{"OneDecimal",             1, -999, 9999,                  1,   0xFFFB,  u"-0.5"},
    SignedCase{"LowestDoubleWord",       2, -2147483648, 2147483647,     0,   kLowest, u"-2147483648"},
    SignedCase{"LowestWithDecimals",     2, -2147483648, 2147483647,     2,   kLowest, u"-21474836.48"},
    SignedCase{"LowestAllAfter",         2, -2147483648, 2147483647,     10,  kLowest, u"-0.2147483648"},
    SignedCase{"LowestOneMoreAfter",     2, -2147483648, 2147483647,     11,  kLowest, u"0.-2147483648"},  // kept
    SignedCase{"HighestDoubleWord",      2, -2147483648, 2147483647,     0,   kHighest, u"2147483647"},
    SignedCase{"DoubleWordBeyondDigits", 2, -9, 99,                      0,   65636,   u"100"},
    SignedCase{"DoubleWordLess65536",    2, -9, 99,                      0,   65537,   u"1"},       // kept: 65536 less
    SignedCase{"SubtractionWraps",       2, INT64_MIN, -4294967296,      0,   kLowest, u"2147418112"},
    SignedCase{"NegativeDigitsAreNone",  1, -999, 9999,            kLowest,   5,       u"5"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(FormatSignedDigits, AHostileCountIsCutToAConstant)
{
    ColumnCoding coding = Coding(DataType::Signed16, 1, kHighest);
    coding.maxValue = 9999;
    const std::u16string text = TextOf(coding, WordBytes({7}));
    EXPECT_EQ(text.size(), 1102U);
    EXPECT_TRUE(text.starts_with(u"0.70000"));
}

struct UnsignedCase {
    const char* name;
    std::int32_t dataLength;
    std::int32_t decimals;
    std::uint32_t raw;
    std::u16string_view text;
    friend void PrintTo(const UnsignedCase& c, std::ostream* out) { *out << c.name; }
};

struct FormatUnsigned : testing::TestWithParam<UnsignedCase> {};

TEST_P(FormatUnsigned, ShowsTheWordsWithoutALimitTest)
{
    const UnsignedCase& c = GetParam();
    const DataType type = c.dataLength == 1 ? DataType::Unsigned16 : DataType::Unsigned32;
    EXPECT_EQ(TextOf(Coding(type, c.dataLength, c.decimals), BytesOf32(c.raw)), c.text);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, FormatUnsigned, testing::Values(
    UnsignedCase{"HighestWord",        1, 0,  0xFFFF,     u"65535"},
    UnsignedCase{"HighestDoubleWord",  2, 0,  0xFFFFFFFF, u"-1"},              // kept
    UnsignedCase{"TopBit",             2, 0,  0x80000000, u"-2147483648"},     // kept
    UnsignedCase{"TopBitWithDecimals", 2, 2,  0x80000000, u"21474836.48"},
    UnsignedCase{"AllWithDecimals",    2, 2,  0xFFFFFFFF, u"42949672.95"},
    UnsignedCase{"PaddedAfter",        1, 2,  5,          u"0.50"},            // kept: not 0.05
    UnsignedCase{"LosesAZero",         1, 2,  105,        u"1.50"},            // kept: not 1.05
    UnsignedCase{"TwoDecimals",        1, 2,  1234,       u"12.34"},
    UnsignedCase{"Zero",               1, 2,  0,          u"0.00"},
    UnsignedCase{"NineDecimals",       2, 9,  0xFFFFFFFF, u"4.294967295"},
    UnsignedCase{"AllDigitsAfter",     2, 10, 0xFFFFFFFF, u"0.4294967295"},
    UnsignedCase{"MoreThanAllAfter",   2, 12, 0xFFFFFFFF, u"0.429496729500"},
    UnsignedCase{"NegativeDigits",     1, kLowest, 5,     u"5"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(FormatHexadecimal, IsUpperCaseWithoutZeros)
{
    EXPECT_EQ(TextOf(Coding(DataType::Hex16, 1), WordBytes({0x00AB})), u"AB");
    EXPECT_EQ(TextOf(Coding(DataType::Hex16, 1), WordBytes({0})), u"0");
    EXPECT_EQ(TextOf(Coding(DataType::Hex16, 1), WordBytes({0xFFFF})), u"FFFF");
    EXPECT_EQ(TextOf(Coding(DataType::Hex32, 2), WordBytes({0xCDEF, 0x89AB})), u"89ABCDEF");
    EXPECT_EQ(TextOf(Coding(DataType::Hex32, 2), WordBytes({0, 0x0100})), u"1000000");
}

TEST(FormatInteger, IsAsLongAsItsItemSays)
{
    ColumnCoding coding = Coding(DataType::Signed16, 2);
    coding.minValue = -100000;
    coding.maxValue = 100000;
    EXPECT_EQ(TextOf(coding, WordBytes({0x0001, 0x0001})), u"65537");
    EXPECT_EQ(TextOf(Coding(DataType::Hex32, 1), WordBytes({0x1234, 0x5678})), u"1234");
    EXPECT_EQ(TextOf(Coding(DataType::Unsigned16, 3), WordBytes({7, 0, 9})), u"7");
}

struct RealCase {
    const char* name;
    std::int32_t integerDigits;
    std::int32_t decimals;
    double value;
    std::u16string_view asFloat;
    std::u16string_view inFlatFile;
    std::u16string_view inPagedFile;
    friend void PrintTo(const RealCase& c, std::ostream* out) { *out << c.name; }
};

struct FormatReal : testing::TestWithParam<RealCase> {};

TEST_P(FormatReal, ShowsFixedOrExponentForm)
{
    const RealCase& c = GetParam();
    ColumnCoding coding = Coding(DataType::Float, 2, c.decimals);
    coding.integerDigits = c.integerDigits;
    coding.minValue = -999;
    coding.maxValue = 9999;
    EXPECT_EQ(TextOf(coding, BytesOf32(std::bit_cast<std::uint32_t>(static_cast<float>(c.value)))), c.asFloat);
    coding.dataType = DataType::Double;
    coding.dataLength = 4;
    const Bytes image = BytesOf64(std::bit_cast<std::uint64_t>(c.value));
    EXPECT_EQ(TextOf(coding, image), c.inFlatFile);
    EXPECT_EQ(TextOf(coding, image, RecipeKind::Paged), c.inPagedFile);
}

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, FormatReal, testing::Values(
    //       name               digits     value       float             flat double       paged double
    RealCase{"OneDecimal",       4,  1,    1.0,        u"1.0",           u"   1.0",        u"1.0"},
    RealCase{"Rounded",          4,  2,    1.239,      u"1.24",          u"   1.24",       u"1.24"},
    RealCase{"Negative",         4,  2,    -12.5,      u"-12.50",        u" -12.50",       u"-12.50"},
    RealCase{"WiderThanItsPlace", 1, 1,    1234.5,     u"1234.5",        u"1234.5",        u"1234.5"},
    RealCase{"NoDecimalsIsCut",  4,  0,    12.9,       u"12",            u"12",            u"12"},
    RealCase{"NegativeIsCut",    4,  0,    -0.9,       u"0",             u"0",             u"0"},
    RealCase{"NegativeZero",     4,  1,    -0.0,       u"-0.0",          u"  -0.0",        u"-0.0"},
    RealCase{"AtUpperLimit",     4,  1,    9999,       u"9999.0",        u"9999.0",        u"9999.0"},
    RealCase{"AboveUpperLimit",  4,  1,    9999.5,     u"9.999500e+03",  u"9.999500e+03",  u"9.999500e+03"},
    RealCase{"AtLowerLimit",     4,  1,    -999,       u"-999.0",        u"-999.0",        u"-999.0"},
    RealCase{"BelowLowerLimit",  4,  1,    -999.5,     u"-9.995000e+02", u"-9.995000e+02", u"-9.995000e+02"},
    RealCase{"BeyondUncut",      4,  0,    10000,      u"1.000000e+04",  u"1.000000e+04",  u"1.000000e+04"},
    RealCase{"BeyondUnpadded",   20, 3,    10000,      u"1.000000e+04",  u"1.000000e+04",  u"1.000000e+04"},
    RealCase{"Infinity",         4,  1,    kInfinity,  u"inf",           u"inf",           u"inf"},
    RealCase{"MinusInfinity",    4,  1,    -kInfinity, u"-inf",          u"-inf",          u"-inf"},
    RealCase{"Nan",              4,  1,    kNan,       u"nan",           u"   nan",        u"nan"},
    RealCase{"NegativeNan",      4,  1,    -kNan,      u"-nan",          u"  -nan",        u"-nan"},
    RealCase{"NanUndecimal",     4,  0,    kNan,       u"0",             u"0",             u"0"},
    RealCase{"Denormal",         4,  1,    1.4e-45,    u"0.0",           u"   0.0",        u"0.0"},
    RealCase{"DenormalBelow",    4,  1,    -1.4e-45,   u"-0.0",          u"  -0.0",        u"-0.0"},
    RealCase{"DenormalUncut",    4,  0,    1.4e-45,    u"0",             u"0",             u"0"},
    RealCase{"NegativeDigits",  -5, -5,    12.9,       u"12",            u"12",            u"12"},
    RealCase{"NegativePlace",   kLowest, 1, 12.5,      u"12.5",          u"12.5",          u"12.5"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(FormatFloat, TakesTheLowWordFirst)
{
    ColumnCoding coding = Coding(DataType::Float, 2, 1);
    coding.maxValue = 9;
    EXPECT_EQ(TextOf(coding, WordBytes({0x0000, 0x3F80})), u"1.0");
}

TEST(FormatDouble, ShowsThreeDigitExponents)
{
    EXPECT_EQ(TextOf(Coding(DataType::Double, 4), BytesOf64(std::bit_cast<std::uint64_t>(1.5e300))), u"1.500000e+300");
    EXPECT_EQ(TextOf(Coding(DataType::Double, 4), BytesOf64(std::bit_cast<std::uint64_t>(2.5e-5))), u"2.500000e-05");
}

struct LimitCase {
    const char* name;
    std::int64_t minValue;
    std::int64_t maxValue;
    double value;
    std::u16string_view text;
    friend void PrintTo(const LimitCase& c, std::ostream* out) { *out << c.name; }
};

struct DoubleLimit : testing::TestWithParam<LimitCase> {};

TEST_P(DoubleLimit, IsComparedExactly)
{
    ColumnCoding coding = Coding(DataType::Double, 4);
    coding.minValue = GetParam().minValue;
    coding.maxValue = GetParam().maxValue;
    EXPECT_EQ(TextOf(coding, BytesOf64(std::bit_cast<std::uint64_t>(GetParam().value))), GetParam().text);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, DoubleLimit, testing::Values(
    LimitCase{"TwoTo63IsAboveTheHighest", 0, INT64_MAX, 0x1p63,          u"9.223372e+18"},
    LimitCase{"BelowTwoTo63",             0, INT64_MAX, 0x1p63 - 1024,   u"9223372036854774784"},
    LimitCase{"LowestIsWithin",           INT64_MIN, 0, -0x1p63,         u"-9223372036854775808"},
    LimitCase{"BelowTheLowest",           INT64_MIN, 0, -0x1p63 - 2048,  u"-9.223372e+18"},
    LimitCase{"OneAboveTheLimit",         0, 9007199254740993, 9007199254740994.0, u"9.007199e+15"},
    LimitCase{"OneBelowTheLimit",         0, 9007199254740993, 9007199254740992.0, u"9007199254740992"},
    LimitCase{"OneBelowTheLowerLimit",    9007199254740993, INT64_MAX, 9007199254740992.0, u"9.007199e+15"},
    LimitCase{"RoundedLimitIsNone",       0, 9007199254740995, 9007199254740996.0, u"9.007199e+15"},
    LimitCase{"HighestAsLowerLimit",      INT64_MAX, INT64_MAX, 0x1p63,  u"9.223372e+18"},
    LimitCase{"LimitsCrossed",            5, -5, 0,                      u"0.000000e+00"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(FormatRealDigits, HostileCountsAreCutToAConstant)
{
    ColumnCoding coding = Coding(DataType::Double, 4, kHighest);
    coding.integerDigits = kHighest;
    coding.maxValue = 9;
    const Bytes image = BytesOf64(std::bit_cast<std::uint64_t>(1.5));
    const std::u16string flat = TextOf(coding, image);
    EXPECT_EQ(flat.size(), 2201U);
    EXPECT_EQ(flat.find_first_not_of(u' '), 1099U);
    EXPECT_EQ(TextOf(coding, image, RecipeKind::Paged).size(), 1102U);
}

TEST(FormatRealDigits, ShowEveryDigitOfTheSmallestDouble)
{
    ColumnCoding coding = Coding(DataType::Double, 4, 1074);
    coding.maxValue = 1;
    const std::u16string text = TextOf(coding, BytesOf64(1), RecipeKind::Paged);
    EXPECT_EQ(text.size(), 1076U);
    EXPECT_TRUE(text.ends_with(u"3447265625"));
}

TEST(FormatAnsiString, EndsAtTheFirstZeroByte)
{
    EXPECT_EQ(TextOf(Coding(DataType::String, 2), BytesOf({0x41, 0x42, 0x43, 0x00})), u"ABC");
    EXPECT_EQ(TextOf(Coding(DataType::String, 2), BytesOf({0x41, 0x00, 0x43, 0x44})), u"A");
    EXPECT_EQ(TextOf(Coding(DataType::String, 2), BytesOf({0x41, 0x42, 0x43, 0x44, 0x45, 0x46})), u"ABCD");
    EXPECT_EQ(TextOf(Coding(DataType::String, 1), BytesOf({0x00, 0x41})), u"");
}

TEST(FormatUnicodeString, HoldsOneUnitAWord)
{
    ColumnCoding coding = Coding(DataType::String, 3);
    coding.unicode = 1;
    EXPECT_EQ(TextOf(coding, WordBytes({0x4E2D, 0x0041, 0x0042, 0x0043})), u"中AB");
    EXPECT_EQ(TextOf(coding, WordBytes({0x4E2D, 0x0000, 0x0042})), u"中");
    EXPECT_EQ(TextOf(coding, WordBytes({0xD800, 0x0041, 0x0000})), std::u16string({0xD800, u'A'}));
}

TEST(FormatUnknownType, IsEmptyAndMovesOn)
{
    for (const std::int32_t code : {-1, 9, kLowest, kHighest}) {
        std::size_t pos = 2;
        EXPECT_EQ(FormatValue(Coding(static_cast<DataType>(code), 2), WordBytes({1, 2, 3}), pos), u"");
        EXPECT_EQ(pos, 6U);
    }
}

struct ShortCase {
    const char* name;
    DataType type;
    std::int32_t dataLength;
    Bytes image;
    std::u16string_view text;
    std::int32_t unicode = 0;
    friend void PrintTo(const ShortCase& c, std::ostream* out) { *out << c.name; }
};

struct FormatShortRead : testing::TestWithParam<ShortCase> {};

TEST_P(FormatShortRead, ShowsWhatArrivedAndMovesOn)
{
    const ShortCase& c = GetParam();
    ColumnCoding coding = Coding(c.type, c.dataLength, IsDecimalInteger(c.type) || IsReal(c.type) ? 2 : 0);
    coding.maxValue = 99999;
    coding.unicode = c.unicode;
    std::size_t pos = 0;
    EXPECT_EQ(FormatValue(coding, c.image, pos, RecipeKind::Paged), c.text);
    EXPECT_EQ(pos, 2 * static_cast<std::size_t>(c.dataLength));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, FormatShortRead, testing::Values(
    ShortCase{"SignedNothing",   DataType::Signed16,   1, {},                                u"0"},
    ShortCase{"SignedHalf",      DataType::Signed16,   1, BytesOf({7}),                      u"0"},
    ShortCase{"Signed32OneWord", DataType::Signed32,   2, WordBytes({7}),                    u"0"},
    ShortCase{"UnsignedThree",   DataType::Unsigned32, 2, BytesOf({7, 0, 0}),                u"0"},
    ShortCase{"LongerItem",      DataType::Unsigned16, 4, WordBytes({7, 0, 0}),              u"0"},
    ShortCase{"HexNothing",      DataType::Hex16,      1, {},                                u"0"},
    ShortCase{"HexOneByte",      DataType::Hex16,      1, BytesOf({0xAB}),                   u"AB"},
    ShortCase{"HexOneWord",      DataType::Hex32,      2, WordBytes({0xABCD}),               u"ABCD"},
    ShortCase{"HexThreeBytes",   DataType::Hex32,      2, BytesOf({1, 2, 3}),                u"30201"},
    ShortCase{"FloatOneWord",    DataType::Float,      2, WordBytes({0x0000}),               u"0.00"},
    ShortCase{"FloatThreeBytes", DataType::Float,      2, BytesOf({0, 0, 0x80}),             u"0.00"},
    ShortCase{"DoubleSeven",     DataType::Double,     4, BytesOf({0, 0, 0, 0, 0, 0, 0xF0}), u"0.00"},
    ShortCase{"DoubleNothing",   DataType::Double,     4, {},                                u"0.00"},
    ShortCase{"AnsiCut",         DataType::String,     4, BytesOf({0x41, 0x42, 0x43}),       u"ABC"},
    ShortCase{"UnicodeCut",      DataType::String,     4, BytesOf({0x41, 0, 0x42}),          u"AB", 1},
    ShortCase{"StringNothing",   DataType::String,     4, {},                                u""}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(FormatValuePosition, MayLieBeyondTheImage)
{
    std::size_t pos = 10;
    EXPECT_EQ(FormatValue(Coding(DataType::Signed16, 1), WordBytes({1}), pos), u"0");
    EXPECT_EQ(FormatValue(Coding(DataType::Hex16, 1), WordBytes({1}), pos), u"0");
    EXPECT_EQ(FormatValue(Coding(DataType::String, 1), WordBytes({1}), pos), u"");
    EXPECT_EQ(pos, 16U);
}

TEST(FormatValueLength, NegativeCountsAsNone)
{
    for (const std::int32_t type : {0, 1, 2, 3, 4, 5, 6, 8}) {
        std::size_t pos = 1;
        const std::u16string text = FormatValue(Coding(static_cast<DataType>(type), kLowest), WordBytes({9, 9}), pos);
        EXPECT_EQ(text, type == 8 ? u"" : u"0");
        EXPECT_EQ(pos, 1U);
    }
}

TEST(FormatValueLength, MayBeLargerThanAnyFile)
{
    std::size_t pos = 0;
    EXPECT_EQ(FormatValue(Coding(DataType::String, kHighest), BytesOf({0x41, 0x42}), pos), u"AB");
    EXPECT_EQ(pos, 4294967294U);
}

TEST(FormatDouble, ReadsEightBytesWhateverItsLength)
{
    ColumnCoding coding = Coding(DataType::Double, 1, 1);
    coding.maxValue = 9;
    std::size_t pos = 0;
    const Bytes image = BytesOf64(std::bit_cast<std::uint64_t>(2.5));
    EXPECT_EQ(FormatValue(coding, image, pos, RecipeKind::Paged), u"2.5");
    EXPECT_EQ(pos, 2U);
}

TEST(AppendValue, AddsToWhatIsThere)
{
    const Bytes image = WordBytes({12, 0xAB});
    std::u16string text = u"x";
    std::size_t pos = 0;
    AppendValue(Coding(DataType::Unsigned16, 1), image, pos, RecipeKind::Flat, text);
    AppendValue(Coding(DataType::Hex16, 1), image, pos, RecipeKind::Flat, text);
    EXPECT_EQ(text, u"x12AB");
    EXPECT_EQ(pos, 4U);
}

TEST(FormatUnsigned16, WritesEveryWordLikeTheStandardLibrary)
{
    for (unsigned word = 0; word <= 0xFFFF; ++word) {
        const std::string expected = std::to_string(word);
        ASSERT_EQ(TextOf(Coding(DataType::Unsigned16, 1), BytesOf32(word)),
                  std::u16string(expected.begin(), expected.end()));
    }
}

TEST(FormatUnsigned32, WritesEveryLengthLikeTheStandardLibrary)
{
    for (std::int64_t power = 1; power <= 1'000'000'000; power *= 10) {
        for (const std::int64_t value : {power - 1, power, power + 1}) {
            const std::string expected = std::to_string(value);
            EXPECT_EQ(TextOf(Coding(DataType::Unsigned32, 2), BytesOf32(static_cast<std::uint32_t>(value))),
                      std::u16string(expected.begin(), expected.end()));
        }
    }
}

} // namespace
