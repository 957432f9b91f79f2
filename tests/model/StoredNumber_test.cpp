#include "model/LittleEndian.h"
#include "model/StoredNumber.h"
#include "model/WordCodec.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>
#include <ostream>
#include <random>
#include <string>

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

ColumnCoding Coding(DataType type, std::int32_t words, std::int32_t decimals = 0, CodeType codeType = CodeType::Bin)
{
    return {.dataType = type, .dataLength = words, .codeType = codeType, .integerDigits = 4, .decimalDigits = decimals};
}

struct NumberCase {
    const char* name;
    DataType type;
    std::int32_t words;
    std::int32_t decimals;
    Bytes bytes;
    const char16_t* number; ///< null for none
    const char16_t* text;
    friend void PrintTo(const NumberCase& c, std::ostream* out) { *out << c.name; }
};

struct NumberInWords : testing::TestWithParam<NumberCase> {};

TEST_P(NumberInWords, IsThatOfTheType)
{
    const NumberCase& c = GetParam();
    const ColumnCoding coding = Coding(c.type, c.words, c.decimals);
    const auto number = StoredNumber(coding, c.bytes);
    ASSERT_EQ(number.has_value(), c.number != nullptr);
    EXPECT_EQ(StoredNumberText(coding, c.bytes), c.text);
    if (number) {
        EXPECT_EQ(number->Text(), c.number);
        EXPECT_EQ(KindOfNumber(coding, c.bytes), NumberKind::Finite);
    }
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, NumberInWords, testing::Values(
    //         name                    type              words decimals bytes                                number           text
    NumberCase{"WholeNumber",          DataType::Signed16,   1, 0, WordBytes({105}),                         u"105",          u"105"},
    NumberCase{"TwoDecimals",          DataType::Signed16,   1, 2, WordBytes({105}),                         u"1.05",         u"1.05"},
    NumberCase{"BelowATenth",          DataType::Unsigned16, 1, 2, WordBytes({5}),                           u"0.05",         u"0.05"},
    NumberCase{"ZerosAtTheEnd",        DataType::Signed16,   1, 2, WordBytes({150}),                         u"1.5",          u"1.50"},
    NumberCase{"Negative",             DataType::Signed16,   1, 2, WordBytes({0xFFFB}),                      u"-0.05",        u"-0.05"},
    NumberCase{"LowestWord",           DataType::Signed16,   1, 0, WordBytes({0x8000}),                      u"-32768",       u"-32768"},
    NumberCase{"Unsigned",             DataType::Unsigned16, 1, 0, WordBytes({0xFFFF}),                      u"65535",        u"65535"},
    NumberCase{"Signed32",             DataType::Signed32,   2, 1, WordBytes({0xFFFF, 0xFFFF}),              u"-0.1",         u"-0.1"},
    NumberCase{"Signed32OfOneWord",    DataType::Signed32,   2, 0, WordBytes({0xFFFF, 0}),                   u"65535",        u"65535"},
    NumberCase{"Unsigned32",           DataType::Unsigned32, 2, 0, WordBytes({0xFFFF, 0xFFFF}),              u"4294967295",   u"4294967295"},
    NumberCase{"Hexadecimal",          DataType::Hex16,      1, 2, WordBytes({0x00AB}),                      u"171",          u"AB"},
    NumberCase{"Hexadecimal32",        DataType::Hex32,      2, 0, WordBytes({0xFFFF, 0x8000}),              u"2147549183",   u"8000FFFF"},
    NumberCase{"Float",                DataType::Float,      2, 1, WordBytes({0xCCCD, 0x3DCC}),              u"0.1",          u"0.1"},
    NumberCase{"FloatInFull",          DataType::Float,      2, 1, WordBytes({0xD680, 0x3DFC}),              u"0.123456",     u"0.123456"},
    NumberCase{"FloatWithoutDecimals", DataType::Float,      2, 0, WordBytes({0, 0xBFC0}),                   u"-1.5",         u"-1.5"},
    NumberCase{"FloatMinusZero",       DataType::Float,      2, 0, WordBytes({0, 0x8000}),                   u"0",            u"0"},
    NumberCase{"Double",               DataType::Double,     4, 2, WordBytes({0x999A, 0x9999, 0x9999, 0x3FB9}), u"0.1",       u"0.1"},
    NumberCase{"NaN",                  DataType::Float,      2, 0, WordBytes({1, 0x7FC0}),                   nullptr,         u"nan"},
    NumberCase{"Infinity",             DataType::Float,      2, 0, WordBytes({0, 0x7F80}),                   nullptr,         u"inf"},
    NumberCase{"MinusInfinity",        DataType::Double,     4, 0, WordBytes({0, 0, 0, 0xFFF0}),             nullptr,         u"-inf"},
    NumberCase{"String",               DataType::String,     1, 0, WordBytes({u'5'}),                        nullptr,         u""},
    NumberCase{"UnknownType",          DataType::NotChosen,  1, 0, WordBytes({5}),                           nullptr,         u""},
    NumberCase{"OtherUnknownType",     DataType{99},         1, 0, WordBytes({5}),                           nullptr,         u""},
    NumberCase{"NoWords",              DataType::Signed16,   1, 0, Bytes(),                                  nullptr,         u""},
    NumberCase{"HalfAWord",            DataType::Signed16,   1, 0, Bytes(1),                                 nullptr,         u""},
    NumberCase{"CutByTheEnd",          DataType::Signed32,   2, 0, WordBytes({5}),                           nullptr,         u""},
    NumberCase{"CutDouble",            DataType::Double,     4, 0, WordBytes({0, 0, 0}),                     nullptr,         u""},
    NumberCase{"LongElementCut",       DataType::Signed16,   2, 0, WordBytes({5}),                           nullptr,         u""},
    NumberCase{"ShorterThanItsType",   DataType::Signed32,   1, 0, WordBytes({5, 0}),                        nullptr,         u""},
    NumberCase{"NegativeLength",       DataType::Signed16,  -1, 0, WordBytes({5}),                           nullptr,         u""},
    NumberCase{"LongerThanItsType",    DataType::Signed16,   2, 0, WordBytes({0xFFFB, 0}),                   u"-5",           u"-5"},
    NumberCase{"WordsAfterIt",         DataType::Signed16,   1, 0, WordBytes({5, 77}),                       u"5",            u"5"},
    NumberCase{"NegativeDecimals",     DataType::Signed16,   1, kLowest, WordBytes({5}),                     u"5",            u"5"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(StoredNumber, HostileDecimalsAreBounded)
{
    const ColumnCoding coding = Coding(DataType::Signed16, 1, kHighest);
    EXPECT_EQ(StoredNumber(coding, WordBytes({5})), CDecimal(5).Scaled(-1100));
    EXPECT_EQ(StoredNumberText(coding, WordBytes({5})).size(), 1102u);
    EXPECT_EQ(WordsOfNumber(coding, CDecimal(5).Scaled(-1100)), u"\x0005");
    EXPECT_EQ(WordsOfNumber(coding, CDecimal(5)), std::nullopt);
}

TEST(StoredNumber, LimitsDoNotChangeIt)
{
    ColumnCoding coding = Coding(DataType::Signed16, 1, 2);
    coding.minValue = -999;
    coding.maxValue = 9999;
    EXPECT_EQ(StoredNumberText(coding, WordBytes({12000})), u"120.00");
    coding.maxValue = 65535;
    EXPECT_EQ(StoredNumberText(coding, WordBytes({0xFFFF})), u"-0.01");
}

TEST(StoredNumber, OfManyDigitsIsReadable)
{
    const Bytes large = WordBytes({0, 0, 0, 0x7FE0}); // 2^1023
    EXPECT_EQ(StoredNumberText(Coding(DataType::Double, 4, 2), large), u"8.98846567431158e+307");
    EXPECT_EQ(StoredNumber(Coding(DataType::Double, 4, 2), large)->Text().size(), 308u);
    EXPECT_EQ(StoredNumberText(Coding(DataType::Double, 4, 2), WordBytes({1, 0, 0, 0x8000})), u"-5e-324");
    EXPECT_EQ(StoredNumberText(Coding(DataType::Float, 2, 0), WordBytes({0xBC20, 0x4CBE})), u"100000000");
}

struct WordsCase {
    const char* name;
    DataType type;
    std::int32_t words;
    std::int32_t decimals;
    const char16_t* number;
    std::optional<std::u16string> stored;
    friend void PrintTo(const WordsCase& c, std::ostream* out) { *out << c.name; }
};

struct WordsOfANumber : testing::TestWithParam<WordsCase> {};

TEST_P(WordsOfANumber, StoreItExactlyOrNotAtAll)
{
    const WordsCase& c = GetParam();
    EXPECT_EQ(WordsOfNumber(Coding(c.type, c.words, c.decimals), *CDecimal::Parse(c.number)), c.stored);
    EXPECT_EQ(WordsOfNumber(Coding(c.type, c.words, c.decimals, CodeType::Bcd), *CDecimal::Parse(c.number)), c.stored);
}

std::u16string Words(std::initializer_list<std::uint16_t> words)
{
    return {words.begin(), words.end()};
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, WordsOfANumber, testing::Values(
    WordsCase{"TwoDecimals",        DataType::Signed16,   1, 2, u"1.15",        Words({115})},
    WordsCase{"Negative",           DataType::Signed16,   1, 2, u"-0.05",       Words({0xFFFB})},
    WordsCase{"TooManyDecimals",    DataType::Signed16,   1, 2, u"1.155",       std::nullopt},
    WordsCase{"Highest",            DataType::Signed16,   1, 2, u"327.67",      Words({0x7FFF})},
    WordsCase{"AboveHighest",       DataType::Signed16,   1, 2, u"327.68",      std::nullopt},
    WordsCase{"Lowest",             DataType::Signed16,   1, 0, u"-32768",      Words({0x8000})},
    WordsCase{"BelowLowest",        DataType::Signed16,   1, 0, u"-32769",      std::nullopt},
    WordsCase{"UnsignedHighest",    DataType::Unsigned16, 1, 0, u"65535",       Words({0xFFFF})},
    WordsCase{"UnsignedNegative",   DataType::Unsigned16, 1, 0, u"-1",          std::nullopt},
    WordsCase{"Signed32",           DataType::Signed32,   2, 0, u"-2",          Words({0xFFFE, 0xFFFF})},
    WordsCase{"Unsigned32",         DataType::Unsigned32, 2, 0, u"4294967295",  Words({0xFFFF, 0xFFFF})},
    WordsCase{"Unsigned32Above",    DataType::Unsigned32, 2, 0, u"4294967296",  std::nullopt},
    WordsCase{"FarTooLarge",        DataType::Unsigned32, 2, 0, u"1e1199",      std::nullopt},
    WordsCase{"Hexadecimal",        DataType::Hex16,      1, 2, u"171",         Words({0x00AB})},
    WordsCase{"HexWithDecimals",    DataType::Hex16,      1, 2, u"1.5",         std::nullopt},
    WordsCase{"NearestFloat",       DataType::Float,      2, 1, u"0.1",         Words({0xCCCD, 0x3DCC})},
    WordsCase{"FloatTooLarge",      DataType::Float,      2, 1, u"1e39",        std::nullopt},
    WordsCase{"Double",             DataType::Double,     4, 1, u"0.1",         Words({0x999A, 0x9999, 0x9999, 0x3FB9})},
    WordsCase{"DoubleTooLarge",     DataType::Double,     4, 1, u"-1e309",      std::nullopt},
    WordsCase{"LongerThanItsType",  DataType::Signed16,   3, 0, u"-5",          Words({0xFFFB, 0, 0})},
    WordsCase{"ShorterThanItsType", DataType::Double,     2, 0, u"1",           std::nullopt},
    WordsCase{"String",             DataType::String,     1, 0, u"5",           std::nullopt},
    WordsCase{"UnknownType",        DataType::NotChosen,  1, 0, u"5",           std::nullopt}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(StoredNumber, AnyIntegerWordsComeBack)
{
    std::mt19937 random(5);
    for (const DataType type : {DataType::Signed16, DataType::Unsigned16, DataType::Hex16, DataType::Signed32,
                                DataType::Unsigned32, DataType::Hex32}) {
        const bool isLong = type == DataType::Signed32 || type == DataType::Unsigned32 || type == DataType::Hex32;
        for (int i = 0; i < 3000; ++i) {
            std::u16string words(isLong ? 2 : 1, u'\0');
            for (char16_t& word : words)
                word = static_cast<char16_t>(random());
            const ColumnCoding coding =
                Coding(type, static_cast<std::int32_t>(words.size()), static_cast<std::int32_t>(random() % 11));
            const auto number = StoredNumber(coding, BytesOfWords(words));
            ASSERT_TRUE(number);
            ASSERT_EQ(WordsOfNumber(coding, *number), words);
        }
    }
}

TEST(StoredNumber, AnyRealWordsComeBack)
{
    std::mt19937 random(6);
    for (const DataType type : {DataType::Float, DataType::Double}) {
        for (int i = 0; i < 5000; ++i) {
            std::u16string words(type == DataType::Float ? 2 : 4, u'\0');
            for (char16_t& word : words)
                word = static_cast<char16_t>(random());
            const ColumnCoding coding = Coding(type, static_cast<std::int32_t>(words.size()), 2);
            const auto number = StoredNumber(coding, BytesOfWords(words));
            ASSERT_EQ(number.has_value(), KindOfNumber(coding, BytesOfWords(words)) == NumberKind::Finite);
            if (number) {
                ASSERT_EQ(WordsOfNumber(coding, *number), words);
            }
        }
    }
}

/// Where nothing is lost, the stored number is the one that is shown.
TEST(StoredNumber, WithoutDecimalsIsTheOneShownWithinItsLimits)
{
    ColumnCoding coding = Coding(DataType::Signed16, 1);
    coding.minValue = -32768;
    coding.maxValue = 32767;
    for (std::uint32_t word = 0; word <= 0xFFFF; ++word) {
        const Bytes bytes = BytesOfWords(std::u16string(1, static_cast<char16_t>(word)));
        std::size_t pos = 0;
        ASSERT_EQ(StoredNumberText(coding, bytes), FormatValue(coding, bytes, pos));
    }
}

} // namespace
