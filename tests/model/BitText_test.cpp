#include "model/BitText.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <ostream>
#include <string>

namespace {

constexpr std::int64_t kMax16 = 32767;
constexpr std::int64_t kMax32 = 2147483647;

DataItem ItemOf(DataType type, std::int32_t decimals, std::int64_t maxValue)
{
    DataItem item;
    item.dataType = type;
    item.decimalDigits = decimals;
    item.maxValue = maxValue;
    return item;
}

struct TextCase {
    const char* name;
    DataType type;
    std::int32_t decimals;
    const char16_t* text;
    const char16_t* bits;
    friend void PrintTo(const TextCase& c, std::ostream* out) { *out << c.name; }
};

struct BitsOfCellText : testing::TestWithParam<TextCase> {};

struct BitsCase {
    const char* name;
    DataType type;
    std::int64_t maxValue;
    const char16_t* bits;
    const char16_t* text;
    friend void PrintTo(const BitsCase& c, std::ostream* out) { *out << c.name; }
};

struct TextOfCellBits : testing::TestWithParam<BitsCase> {};

} // namespace

TEST_P(BitsOfCellText, StartWithTheMostSignificantOne)
{
    EXPECT_EQ(BitsOfText(ItemOf(GetParam().type, GetParam().decimals, kMax32), GetParam().text), GetParam().bits);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Decimal, BitsOfCellText, testing::Values(
    //       name                     type                 decimals  text            bits
    TextCase{"MinusOneIsAllOnes",     DataType::Signed16,   0, u"-1",          u"1111111111111111"},
    TextCase{"OneHundred",            DataType::Signed16,   0, u"100",         u"0000000001100100"},
    TextCase{"Lowest16",              DataType::Signed16,   0, u"-32768",      u"1000000000000000"},
    TextCase{"OnlyTheLow16Bits",      DataType::Signed16,   0, u"65537",       u"0000000000000001"},
    TextCase{"LeadingBlanksAndPlus",  DataType::Signed16,   0, u" \t+5",       u"0000000000000101"},
    TextCase{"StopsAtTheFirstLetter", DataType::Unsigned16, 0, u"7e3",         u"0000000000000111"},
    TextCase{"NoNumber",              DataType::Unsigned16, 0, u"abc",         u"0000000000000000"},
    TextCase{"NoText",                DataType::Signed16,   0, u"",            u"0000000000000000"},
    TextCase{"FractionIsDropped",     DataType::Signed16,   0, u"12.99",       u"0000000000001100"},
    TextCase{"FractionIsNotCarried",  DataType::Signed16,   2, u"12.34",       u"0000010010110000"}, // kept: 1200
    TextCase{"NegativeWithDecimals",  DataType::Signed16,   1, u"-1.5",        u"1111111111110110"}, // kept: -10
    TextCase{"SignInTheFraction",     DataType::Signed16,   2, u"0.-5",        u"0000000000000000"},
    TextCase{"Signed32",              DataType::Signed32,   0, u"-2",          u"11111111111111111111111111111110"},
    TextCase{"Bit16IsInTheUpperHalf", DataType::Signed32,   0, u"65536",       u"00000000000000010000000000000000"},
    TextCase{"HighestUnsigned32",     DataType::Unsigned32, 0, u"4294967295",  u"11111111111111111111111111111111"},
    TextCase{"Unsigned32AsShown",     DataType::Unsigned32, 0, u"-1",          u"11111111111111111111111111111111"},
    TextCase{"ProductAbove32Bits",    DataType::Unsigned32, 2, u"42949673",    u"00000000000000000000000000000100"},
    TextCase{"LongerThanADouble",     DataType::Unsigned32, 0, u"9007199254740993", u"00000000000000000000000000000001"},
    TextCase{"ProductBeyondAll",      DataType::Unsigned32, 400, u"1",         u"00000000000000000000000000000000"},
    TextCase{"ZeroTimesBeyondAll",    DataType::Signed16, 400, u"0",           u"0000000000000000"},
    TextCase{"NegativeDecimalDigits", DataType::Signed16,  -3, u"9",           u"0000000000001001"}),
    [](const auto& c) { return std::string(c.param.name); });

INSTANTIATE_TEST_SUITE_P(Hexadecimal, BitsOfCellText, testing::Values(
    TextCase{"OneA",                  DataType::Hex16,      0, u"1A",          u"0000000000011010"},
    TextCase{"LowerCase",             DataType::Hex16,      0, u"fe",          u"0000000011111110"},
    TextCase{"DecimalDigitsAreNoMatter", DataType::Hex16,   2, u"10",          u"0000000000010000"},
    TextCase{"StrayKeepsItsPlace",    DataType::Hex16,      0, u"1G",          u"0000000000010000"}, // kept
    TextCase{"StrayLowerCase",        DataType::Hex16,      0, u"1z",          u"0000000000010000"}, // kept
    TextCase{"StrayInFront",          DataType::Hex16,      0, u"-1",          u"0000000000000001"}, // kept
    TextCase{"FirstDigits",           DataType::Hex32,      0, u"01239aAbB",   u"00010010001110011010101010111011"},
    TextCase{"LastDigits",            DataType::Hex32,      0, u"89eEfF",      u"00000000100010011110111011111111"},
    TextCase{"StraysBesideTheDigits", DataType::Hex32,      0, u"F/:@G`g1",    u"11110000000000000000000000000001"}, // kept
    TextCase{"LowByteOfACharacter",   DataType::Hex16,      0, u"\u0141",      u"0000000000001010"}, // kept: as "A"
    TextCase{"OnlyTheLow16OfFive",    DataType::Hex16,      0, u"FFFF1",       u"1111111111110001"},
    TextCase{"All32",                 DataType::Hex32,      0, u"FFFFFFFF",    u"11111111111111111111111111111111"},
    TextCase{"UpperHalf",             DataType::Hex32,      0, u"80010000",    u"10000000000000010000000000000000"},
    TextCase{"NoHexText",             DataType::Hex32,      0, u"",            u"00000000000000000000000000000000"},
    TextCase{"BeyondAnyInteger",      DataType::Hex32,      0, u"F0000000000000000", u"00000000000000000000000000000000"},
    TextCase{"LeadingZeros",          DataType::Hex16,      0, u"00000000000000000000000000000003", u"0000000000000011"}),
    [](const auto& c) { return std::string(c.param.name); });

INSTANTIATE_TEST_SUITE_P(NoInteger, BitsOfCellText, testing::Values(
    TextCase{"Float",     DataType::Float,        0, u"1", u""},
    TextCase{"Double",    DataType::Double,       0, u"1", u""},
    TextCase{"String",    DataType::String,       0, u"1", u""},
    TextCase{"NotChosen", DataType::NotChosen,    0, u"1", u""},
    TextCase{"Unknown",   static_cast<DataType>(77), 0, u"1", u""}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(BitsOfCellText, ATextOfManyDigitsIsReadAll)
{
    const std::u16string zeros(100'000, u'0');
    EXPECT_EQ(BitsOfText(ItemOf(DataType::Hex16, 0, kMax16), zeros + u"5"), u"0000000000000101");
}

TEST_P(TextOfCellBits, ShowTheWholeNumber)
{
    EXPECT_EQ(TextOfBits(ItemOf(GetParam().type, 2, GetParam().maxValue), GetParam().bits), GetParam().text);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, TextOfCellBits, testing::Values(
    //       name                        type                  upper limit  bits                                 text
    BitsCase{"AboveTheLimitTurnsNegative", DataType::Signed16,   kMax16, u"1111111111111110",                 u"-2"},
    BitsCase{"AtTheLimitStays",          DataType::Signed16,   kMax16, u"0111111111111111",                 u"32767"},
    BitsCase{"ASmallLimitTurnsToo",      DataType::Signed16,      999, u"0000010010110000",                 u"-64336"}, // kept
    BitsCase{"NotDividedByDecimals",     DataType::Signed16,   kMax16, u"0000010010110001",                 u"1201"},  // kept
    BitsCase{"Signed32IsNegativeItself", DataType::Signed32,   kMax32, u"11111111111111111111111111111110", u"-2"},
    BitsCase{"Signed32AboveItsLimit",    DataType::Signed32,       10, u"00000000000000000000000000001011", u"-65525"}, // kept
    BitsCase{"LimitBelowEveryValue",     DataType::Signed32, std::numeric_limits<std::int64_t>::min(),
                                         u"10000000000000000000000000000000", u"2147418112"},
    BitsCase{"Unsigned16",               DataType::Unsigned16,     10, u"1111111111111111",                 u"65535"}, // kept: no limit
    BitsCase{"Unsigned32IsNegative",     DataType::Unsigned32, 4294967295, u"11111111111111111111111111111111", u"-1"}, // kept
    BitsCase{"HexIsLowerCase",           DataType::Hex16,        0xFF, u"0000000000011011",                 u"1b"},    // kept
    BitsCase{"HexWithoutLeadingZeros",   DataType::Hex32,        0xFF, u"00000000000000001010000000000000", u"a000"},
    BitsCase{"HexAllSet",                DataType::Hex32,        0xFF, u"11111111111111111111111111111111", u"ffffffff"},
    BitsCase{"HexZero",                  DataType::Hex16,        0xFF, u"0000000000000000",                 u"0"},
    BitsCase{"NoBits",                   DataType::Signed16,   kMax16, u"",                                 u"0"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(TextOfCellBits, NoneWhereTheTypeIsNoInteger)
{
    for (const DataType type : {DataType::Float, DataType::Double, DataType::String, DataType::NotChosen})
        EXPECT_EQ(TextOfBits(ItemOf(type, 0, kMax16), u"1"), std::nullopt);
}
