#include "model/ValueLimits.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <ostream>
#include <string>

namespace {

ColumnCoding Column(DataType type, std::int32_t words, std::int64_t minValue, std::int64_t maxValue,
                    std::int32_t decimals = 0)
{
    return {.dataType = type,
            .dataLength = words,
            .codeType = CodeType::Bin,
            .integerDigits = 5,
            .decimalDigits = decimals,
            .minValue = minValue,
            .maxValue = maxValue};
}

const ColumnCoding kSigned = Column(DataType::Signed16, 1, -999, 9999);
const ColumnCoding kFullSigned = Column(DataType::Signed16, 1, -32768, 32767);
const ColumnCoding kWideSigned = Column(DataType::Signed16, 1, 0, 65535);
const ColumnCoding kDecimals = Column(DataType::Signed16, 1, -999, 9999, 2);
const ColumnCoding kSigned32 = Column(DataType::Signed32, 2, -999, 9999);
const ColumnCoding kUnsigned = Column(DataType::Unsigned16, 1, 0, 999);
const ColumnCoding kUnsigned32 = Column(DataType::Unsigned32, 2, 0, 4294967295);
const ColumnCoding kHex = Column(DataType::Hex16, 1, 0, 4095);
const ColumnCoding kHex32 = Column(DataType::Hex32, 2, 0, 4294967295);
const ColumnCoding kFloat = Column(DataType::Float, 2, -9, 99, 2);
const ColumnCoding kDouble = Column(DataType::Double, 4, -9, 99);
const ColumnCoding kString = Column(DataType::String, 2, 0, 0);
const ColumnCoding kUnknown = Column(DataType::NotChosen, 1, 5, 6);

// Fewer words than the value has, and limits that exclude what is there.
const ColumnCoding kHalfFloat = Column(DataType::Float, 1, 5, 6);
const ColumnCoding kHalfDouble = Column(DataType::Double, 2, 5, 6);
const ColumnCoding kNoWord = Column(DataType::Signed16, 0, 5, 6);

constexpr const char16_t* kWithin = nullptr;

Bytes FloatBytes(float value)
{
    const auto bits = std::bit_cast<std::uint32_t>(value);
    return WordBytes({static_cast<std::uint16_t>(bits), static_cast<std::uint16_t>(bits >> 16)});
}

Bytes DoubleBytes(double value)
{
    const auto bits = std::bit_cast<std::uint64_t>(value);
    return WordBytes({static_cast<std::uint16_t>(bits), static_cast<std::uint16_t>(bits >> 16),
                      static_cast<std::uint16_t>(bits >> 32), static_cast<std::uint16_t>(bits >> 48)});
}

struct WordsCase {
    const char* name;
    const ColumnCoding* column;
    Bytes words;
    const char16_t* outside;
    friend void PrintTo(const WordsCase& c, std::ostream* out) { *out << c.name; }
};

struct WordsOutsideLimits : testing::TestWithParam<WordsCase> {};

TEST_P(WordsOutsideLimits, AreToldWithTheirValue)
{
    const auto value = ValueOutsideLimits(*GetParam().column, GetParam().words, 0);
    ASSERT_EQ(value.has_value(), GetParam().outside != kWithin);
    if (value) {
        EXPECT_EQ(*value, GetParam().outside);
    }
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, WordsOutsideLimits, testing::Values(
    WordsCase{"UpperLimit",           &kSigned,     WordBytes({9999}),           kWithin},
    WordsCase{"AboveUpperLimit",      &kSigned,     WordBytes({12000}),          u"12000"}, // shown as "0"
    WordsCase{"LowerLimit",           &kSigned,     WordBytes({0xFC19}),         kWithin},
    WordsCase{"BelowLowerLimit",      &kSigned,     WordBytes({0xFC18}),         u"-1000"},
    WordsCase{"EverySignedWord",      &kFullSigned, WordBytes({0x8000}),         kWithin},
    WordsCase{"WideLimits",           &kWideSigned, WordBytes({0xFFFF}),         kWithin},
    WordsCase{"WithDecimals",         &kDecimals,   WordBytes({12005}),          u"120.05"},
    WordsCase{"SmallWithDecimals",    &kDecimals,   WordBytes({0xFC18}),         u"-10.00"},
    WordsCase{"LongWithin",           &kSigned32,   WordBytes({9999, 0}),        kWithin},
    WordsCase{"LongAbove",            &kSigned32,   WordBytes({4464, 1}),        u"70000"}, // shown as "4464"
    WordsCase{"LongBelow",            &kSigned32,   WordBytes({0, 0xFFFF}),      u"-65536"},
    WordsCase{"UnsignedWithin",       &kUnsigned,   WordBytes({999}),            kWithin},
    WordsCase{"UnsignedAbove",        &kUnsigned,   WordBytes({0xFFFF}),         u"65535"},
    WordsCase{"EveryUnsignedLong",    &kUnsigned32, WordBytes({0xFFFF, 0xFFFF}), kWithin},
    WordsCase{"HexWithin",            &kHex,        WordBytes({0xFFF}),          kWithin},
    WordsCase{"HexAbove",             &kHex,        WordBytes({0xABCD}),         u"ABCD"},
    WordsCase{"EveryHexLong",         &kHex32,      WordBytes({0xFFFF, 0xFFFF}), kWithin},
    WordsCase{"FloatWithin",          &kFloat,      FloatBytes(99.0F),           kWithin},
    WordsCase{"FloatAbove",           &kFloat,      FloatBytes(99.5F),           u"99.5"},
    WordsCase{"FloatNotANumber",      &kFloat,      FloatBytes(std::numeric_limits<float>::quiet_NaN()), u"nan"},
    WordsCase{"DoubleWithin",         &kDouble,     DoubleBytes(-9),             kWithin},
    WordsCase{"DoubleBelow",          &kDouble,     DoubleBytes(-9.25),          u"-9.25"},
    WordsCase{"String",               &kString,     WordBytes({0xFFFF, 0xFFFF}), kWithin},
    WordsCase{"UnknownType",          &kUnknown,    WordBytes({7}),              kWithin},
    WordsCase{"HalfAFloat",           &kHalfFloat,  WordBytes({12000}),          kWithin},
    WordsCase{"HalfADouble",          &kHalfDouble, WordBytes({12000, 12000}),   kWithin},
    WordsCase{"NoWord",               &kNoWord,     WordBytes({12000}),          kWithin},
    WordsCase{"NotAllThere",          &kSigned32,   WordBytes({12000}),          kWithin}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(ValueLimits, ItIsTheWordsAtThePositionThatCount)
{
    const Bytes words = WordBytes({1, 12000});
    EXPECT_FALSE(ValueOutsideLimits(kSigned, words, 0));
    EXPECT_TRUE(ValueOutsideLimits(kSigned, words, 2));
    EXPECT_FALSE(ValueOutsideLimits(kSigned, words, 4));
    EXPECT_FALSE(ValueOutsideLimits(kSigned, words, 400));
}

struct TextCase {
    const char* name;
    const ColumnCoding* column;
    const char16_t* text;
    bool outside;
    friend void PrintTo(const TextCase& c, std::ostream* out) { *out << c.name; }
};

struct TextOutsideLimits : testing::TestWithParam<TextCase> {};

TEST_P(TextOutsideLimits, IsToldAsItStands)
{
    const auto value = ValueOutsideLimits(*GetParam().column, GetParam().text);
    ASSERT_EQ(value.has_value(), GetParam().outside);
    if (value) {
        EXPECT_EQ(*value, GetParam().text);
    }
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, TextOutsideLimits, testing::Values(
    TextCase{"UpperLimit",         &kSigned,     u"9999",    false},
    TextCase{"AboveUpperLimit",    &kSigned,     u"10000",   true},
    TextCase{"BelowLowerLimit",    &kSigned,     u"-1000",   true},
    TextCase{"NoNumberIsZero",     &kSigned,     u"abc",     false},
    TextCase{"Empty",              &kSigned,     u"",        false},
    TextCase{"Decimals",           &kDecimals,   u"99.99",   false},
    TextCase{"DecimalsAbove",      &kDecimals,   u"100.00",  true},
    TextCase{"NegativeUnsigned",   &kUnsigned,   u"-1",      true},
    TextCase{"AsAnUnsignedIsShown",&kUnsigned32, u"-1",      false},
    TextCase{"UnsignedZero",       &kUnsigned32, u"0",       false},
    TextCase{"LargestUnsigned",    &kUnsigned32, u"4294967295", false},
    TextCase{"AboveTheUnsigned",   &kUnsigned32, u"4294967296", true},
    TextCase{"HexWithin",          &kHex,        u"FFF",     false},
    TextCase{"HexAbove",           &kHex,        u"1000",    true},
    TextCase{"FloatWithin",        &kFloat,      u"99.00",   false},
    TextCase{"FloatAbove",         &kFloat,      u"9.95e+01", true},
    TextCase{"String",             &kString,     u"999999",  false},
    TextCase{"UnknownType",        &kUnknown,    u"7",       false}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(ValueLimits, LimitsAreToldAsTheUserTypesThem)
{
    EXPECT_EQ(LimitsText(kSigned), u"-999 to 9999");
    EXPECT_EQ(LimitsText(kDecimals), u"-9.99 to 99.99");
    EXPECT_EQ(LimitsText(Column(DataType::Signed16, 1, 0, 9, 3)), u"0.000 to 0.009");
    EXPECT_EQ(LimitsText(Column(DataType::Signed16, 1, -12, 12, 2)), u"-0.12 to 0.12");
    EXPECT_EQ(LimitsText(Column(DataType::Signed16, 1, -123, 123, 2)), u"-1.23 to 1.23");
    EXPECT_EQ(LimitsText(kHex), u"0 to FFF");
    EXPECT_EQ(LimitsText(kUnsigned32), u"0 to 4294967295");
    EXPECT_EQ(LimitsText(kFloat), u"-9 to 99");
    EXPECT_EQ(LimitsText(kString), u"up to 2 characters");
    EXPECT_EQ(LimitsText(kUnknown), u"");
}

TEST(ValueLimits, AnyNumberOfDecimalsOfARecordIsTaken)
{
    const auto most = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(LimitsText(Column(DataType::Signed16, 1, 0, 9, most)), u"0.000000000000000000 to 0.000000000000000009");
    EXPECT_EQ(LimitsText(Column(DataType::Signed16, 1, 0, 9, -5)), u"0 to 9");
}

} // namespace
