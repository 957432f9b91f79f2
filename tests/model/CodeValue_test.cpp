#include "model/WordCodec.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

constexpr std::byte kUntouched{0xEE};

ColumnCoding Coding(DataType type, std::int32_t dataLength, std::int32_t decimals = 0,
                    CodeType codeType = CodeType::Bin)
{
    return {.dataType = type, .dataLength = dataLength, .codeType = codeType, .decimalDigits = decimals};
}

/// The bytes of the value, coded between bytes that must stay as they are.
Bytes Coded(const ColumnCoding& coding, std::u16string_view text, RecipeKind kind = RecipeKind::Flat)
{
    const std::size_t length = 2 * static_cast<std::size_t>(std::max(coding.dataLength, 0));
    Bytes image(length + 2, kUntouched);
    std::size_t pos = 1;
    CodeValue(coding, text, image, pos, kind);
    EXPECT_EQ(pos, 1 + length);
    EXPECT_EQ(image.front(), kUntouched);
    EXPECT_EQ(image.back(), kUntouched);
    return Bytes(image.begin() + 1, image.end() - 1);
}

struct CodeCase {
    const char* name;
    DataType type;
    std::int32_t dataLength;
    std::int32_t decimals;
    std::u16string_view text;
    Bytes bytes;
    friend void PrintTo(const CodeCase& c, std::ostream* out) { *out << c.name; }
};

struct CodeText : testing::TestWithParam<CodeCase> {};

TEST_P(CodeText, FillsTheBytesOfTheValue)
{
    const CodeCase& c = GetParam();
    EXPECT_EQ(Coded(Coding(c.type, c.dataLength, c.decimals), c.text), c.bytes);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, CodeText, testing::Values(
    //       name                 type                 words decimals text      bytes
    CodeCase{"Signed",            DataType::Signed16,   1, 0, u"-2",            WordBytes({0xFFFE})},
    CodeCase{"LowBitsOnly",       DataType::Signed16,   1, 0, u"70000",         WordBytes({4464})},            // kept
    CodeCase{"Truncated",         DataType::Signed16,   1, 2, u"12.345",        WordBytes({1234})},
    CodeCase{"NotRounded",        DataType::Signed16,   1, 2, u"1.15",          WordBytes({114})},             // kept
    CodeCase{"NegativeFraction",  DataType::Signed16,   1, 2, u"-0.50",         WordBytes({0xFFCE})},
    CodeCase{"SignInTheFraction", DataType::Signed16,   1, 2, u"0.-5",          WordBytes({0})},
    CodeCase{"Blank",             DataType::Signed16,   1, 0, u"",              WordBytes({0})},
    CodeCase{"NoNumber",          DataType::Signed16,   1, 0, u"abc",           WordBytes({0})},
    CodeCase{"StopsAtLetter",     DataType::Unsigned16, 1, 0, u"12abc",         WordBytes({12})},
    CodeCase{"TypedExponent",     DataType::Unsigned16, 1, 0, u"1.5e2",         WordBytes({150})},
    CodeCase{"Signed32",          DataType::Signed32,   2, 0, u"-2147483648",   WordBytes({0x0000, 0x8000})},
    CodeCase{"Unsigned32",        DataType::Unsigned32, 2, 0, u"4294967295",    WordBytes({0xFFFF, 0xFFFF})},
    CodeCase{"LowHalfFirst",      DataType::Unsigned32, 2, 0, u"65538",         WordBytes({2, 1})},
    CodeCase{"Below64Bits",       DataType::Unsigned32, 2, 0, u"-4294967296",   WordBytes({0, 0})},
    CodeCase{"TooLargeIsZero",    DataType::Unsigned32, 2, 0, u"1e30",          WordBytes({0, 0})},
    CodeCase{"InfinityIsZero",    DataType::Unsigned32, 2, 0, u"1e999",         WordBytes({0, 0})},
    CodeCase{"HostileDecimals",   DataType::Signed16,   1, kHighest, u"1",      WordBytes({0})},
    CodeCase{"NegativeDecimals",  DataType::Signed16,   1, kLowest,  u"7",      WordBytes({7})},
    CodeCase{"IntegerIn4Words",   DataType::Signed32,   4, 0, u"-1",            WordBytes({0xFFFF, 0xFFFF, 0, 0})},
    CodeCase{"Hex",               DataType::Hex16,      1, 0, u"ab",            WordBytes({0x00AB})},
    CodeCase{"HexNoDigits",       DataType::Hex16,      1, 0, u"xyz",           WordBytes({0})},
    CodeCase{"HexKeepsPlaces",    DataType::Hex16,      1, 0, u"1G",            WordBytes({0x0010})},          // kept
    CodeCase{"HexLowWord",        DataType::Hex16,      1, 0, u"12345",         WordBytes({0x2345})},
    CodeCase{"HexNine",           DataType::Hex32,      2, 0, u"123456789",     WordBytes({0x6789, 0x2345})},
    CodeCase{"Float",             DataType::Float,      2, 1, u"1.0",           WordBytes({0x0000, 0x3F80})},
    CodeCase{"FloatNoNumber",     DataType::Float,      2, 1, u"-abc",          WordBytes({0, 0})},
    CodeCase{"FloatTooLarge",     DataType::Float,      2, 1, u"1e39",          WordBytes({0x0000, 0x7F80})},
    CodeCase{"FloatTooSmall",     DataType::Float,      2, 1, u"-1e-60",        WordBytes({0x0000, 0x8000})},
    CodeCase{"FloatExponentText", DataType::Float,      2, 1, u"9.999500e+03",  WordBytes({0x3E00, 0x461C})},
    CodeCase{"FloatInOneWord",    DataType::Float,      1, 1, u"1.5000001",     WordBytes({0x0001})},
    CodeCase{"FloatInThreeWords", DataType::Float,      3, 1, u"1.0",           WordBytes({0, 0x3F80, 0})},
    CodeCase{"Double",            DataType::Double,     4, 1, u"   1.5",        WordBytes({0, 0, 0, 0x3FF8})},
    CodeCase{"DoubleTooLarge",    DataType::Double,     4, 1, u"-1e999",        WordBytes({0, 0, 0, 0xFFF0})},
    CodeCase{"DoubleNeverNan",    DataType::Double,     4, 1, u"nan",           WordBytes({0, 0, 0, 0})},
    CodeCase{"DoubleInFive",      DataType::Double,     5, 1, u"1.5",           WordBytes({0, 0, 0, 0x3FF8, 0})},
    CodeCase{"DoubleDenormal",    DataType::Double,     4, 1, u"4.9e-324",      WordBytes({1, 0, 0, 0})},
    CodeCase{"DoubleMinusZero",   DataType::Double,     4, 1, u"-0",            WordBytes({0, 0, 0, 0x8000})},
    CodeCase{"DoublePointAlone",  DataType::Double,     4, 1, u".",             WordBytes({0, 0, 0, 0})},
    CodeCase{"DoubleBareExponent", DataType::Double,    4, 1, u"1e",            WordBytes({0, 0, 0, 0x3FF0})},
    CodeCase{"FloatDenormal",     DataType::Float,      2, 1, u"1e-45",         WordBytes({1, 0})},
    CodeCase{"FloatNeverInf",     DataType::Float,      2, 1, u"inf",           WordBytes({0, 0})},
    CodeCase{"FloatHexForm",      DataType::Float,      2, 1, u"0x1p3",         WordBytes({0, 0})},
    CodeCase{"IntegerHexForm",    DataType::Signed16,   1, 0, u"0x1p3",         WordBytes({0})},
    CodeCase{"AnsiCut",           DataType::String,     2, 0, u"ABCDE",         BytesOf({0x41, 0x42, 0x43, 0x44})},
    CodeCase{"AnsiFilled",        DataType::String,     2, 0, u"AB",            BytesOf({0x41, 0x42, 0, 0})},
    CodeCase{"AnsiNothing",       DataType::String,     2, 0, u"",              BytesOf({0, 0, 0, 0})},
    CodeCase{"UnknownType",       static_cast<DataType>(9), 2, 0, u"12",        BytesOf({0, 0, 0, 0})},
    CodeCase{"TypeNotChosen",     DataType::NotChosen,  1, 0, u"12",            BytesOf({0, 0})},
    CodeCase{"NegativeLength",    DataType::Signed16,  -1, 0, u"12",            {}},
    CodeCase{"NegativeString",    DataType::String, kLowest, 0, u"12",          {}}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(CodeString, EndsAtItsFirstZero)
{
    const std::u16string_view text(u"A\0B", 3);
    ColumnCoding coding = Coding(DataType::String, 3);
    EXPECT_EQ(Coded(coding, text), BytesOf({0x41, 0, 0, 0, 0, 0}));
    coding.unicode = 1;
    EXPECT_EQ(Coded(coding, text), WordBytes({0x0041, 0, 0}));
}

TEST(CodeUnicodeString, TakesOneUnitAWordWithoutATerminator)
{
    ColumnCoding coding = Coding(DataType::String, 3);
    coding.unicode = 1;
    EXPECT_EQ(Coded(coding, u"中A"), WordBytes({0x4E2D, 0x0041, 0}));
    EXPECT_EQ(Coded(coding, u"中AB"), WordBytes({0x4E2D, 0x0041, 0x0042}));
    EXPECT_EQ(Coded(coding, u"中ABC"), WordBytes({0x4E2D, 0x0041, 0x0042}));
    EXPECT_EQ(Coded(coding, u""), WordBytes({0, 0, 0}));
}

TEST(CodeValue, IgnoresTheCodeTypeInAFlatFile)
{
    EXPECT_EQ(Coded(Coding(DataType::Signed16, 1, 2, CodeType::Bcd), u"12.34"), WordBytes({1234}));
    EXPECT_EQ(Coded(Coding(DataType::Hex16, 1, 0, CodeType::Bcd), u"12"), WordBytes({0x0012}));
}

TEST(CodeValue, WritesOneValueAfterTheOther)
{
    Bytes image(6);
    std::size_t pos = 0;
    CodeValue(Coding(DataType::Signed16, 1), u"1", image, pos);
    CodeValue(Coding(DataType::Hex32, 2), u"2", image, pos);
    EXPECT_EQ(image, WordBytes({1, 2, 0}));
    EXPECT_EQ(pos, 6U);
}

struct PagedCase {
    const char* name;
    DataType type;
    CodeType codeType;
    std::int32_t decimals;
    std::u16string_view typed;
    std::u16string_view normalised;
    std::uint16_t lowWord;
    std::uint16_t highWord;
    friend void PrintTo(const PagedCase& c, std::ostream* out) { *out << c.name; }
};

struct NormaliseForPaged : testing::TestWithParam<PagedCase> {};

TEST_P(NormaliseForPaged, MakesTheTextThatIsCoded)
{
    const PagedCase& c = GetParam();
    const ColumnCoding coding = Coding(c.type, 2, c.decimals, c.codeType);
    const std::u16string text = NormaliseForPagedFile(coding, c.typed);
    EXPECT_EQ(text, c.normalised);
    EXPECT_EQ(Coded(coding, text, RecipeKind::Paged), WordBytes({c.lowWord, c.highWord}));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, NormaliseForPaged, testing::Values(
    PagedCase{"Scaled",           DataType::Signed32,   CodeType::Bin, 2, u"12.345",     u"1234",       1234, 0},
    PagedCase{"NotRounded",       DataType::Signed32,   CodeType::Bin, 2, u"1.15",       u"114",        114, 0},    // kept
    PagedCase{"Negative",         DataType::Signed32,   CodeType::Bin, 0, u"-1",         u"-1",         0xFFFF, 0xFFFF},
    PagedCase{"Unsigned",         DataType::Unsigned32, CodeType::Bin, 0, u"4294967295", u"-1",         0xFFFF, 0xFFFF},
    PagedCase{"NoNumber",         DataType::Signed32,   CodeType::Bin, 0, u"x",          u"0",          0, 0},
    PagedCase{"Hex",              DataType::Hex32,      CodeType::Bin, 0, u"1AB",        u"427",        427, 0},
    PagedCase{"HexTopBit",        DataType::Hex32,      CodeType::Bin, 0, u"FFFFFFFE",   u"-2",         0xFFFE, 0xFFFF},
    PagedCase{"BcdUnscaled",      DataType::Signed32,   CodeType::Bcd, 2, u"12.34",      u"12.34",      12, 0},     // kept
    PagedCase{"BcdHexAsDecimal",  DataType::Hex32,      CodeType::Bcd, 0, u"12",         u"12",         12, 0},     // kept
    PagedCase{"BcdHexLetters",    DataType::Hex32,      CodeType::Bcd, 0, u"AB",         u"AB",         0, 0},      // kept
    PagedCase{"BcdUnsigned",      DataType::Unsigned32, CodeType::Bcd, 0, u"4294967295", u"4294967295", 0xFFFF, 0xFFFF},
    PagedCase{"NoCodeType",       DataType::Signed32, CodeType::NotChosen, 2, u"12.34",  u"12.34",      12, 0},
    PagedCase{"Float",            DataType::Float,      CodeType::Bin, 2, u"1.00",       u"1.00",       0, 0x3F80},
    PagedCase{"String",           DataType::String,     CodeType::Bin, 2, u"1.0",        u"1.0",        0x2E31, 0x0030},
    PagedCase{"EmptyString",      DataType::String,     CodeType::Bin, 0, u"",           u"",           0, 0}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(WordCodec, EveryWordComesBackFromItsText)
{
    ColumnCoding signed16 = Coding(DataType::Signed16, 1);
    signed16.minValue = -32768;
    signed16.maxValue = 32767;
    for (const ColumnCoding& coding : {signed16, Coding(DataType::Unsigned16, 1), Coding(DataType::Hex16, 1)}) {
        for (unsigned word = 0; word <= 0xFFFF; ++word) {
            const Bytes image = WordBytes({static_cast<std::uint16_t>(word)});
            Bytes back(2);
            std::size_t pos = 0;
            const std::u16string text = FormatValue(coding, image, pos);
            pos = 0;
            CodeValue(coding, text, back, pos);
            ASSERT_EQ(back, image) << word;
        }
    }
}

} // namespace
