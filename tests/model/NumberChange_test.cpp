#include "model/NumberChange.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <ostream>
#include <string>

namespace {

struct ReadCase {
    const char* name;
    const char16_t* text;
    bool isChange;
    friend void PrintTo(const ReadCase& c, std::ostream* out) { *out << c.name; }
};

struct ReadChange : testing::TestWithParam<ReadCase> {};

TEST_P(ReadChange, TakesASignAndANumber)
{
    EXPECT_EQ(ReadNumberChange(GetParam().text).has_value(), GetParam().isChange);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, ReadChange, testing::Values(
    ReadCase{"Add",               u"+5",    true},
    ReadCase{"Subtract",          u"-0.05", true},
    ReadCase{"Multiply",          u"*1.1",  true},
    ReadCase{"Divide",            u"/3",    true},
    ReadCase{"ByZero",            u"/0",    true}, // refused when it is made
    ReadCase{"Exponent",          u"*1e-3", true},
    ReadCase{"NegativeFactor",    u"*-1",   true},
    ReadCase{"Empty",             u"",      false},
    ReadCase{"NumberAlone",       u"5",     false},
    ReadCase{"SignAlone",         u"+",     false},
    ReadCase{"TwoSigns",          u"--5",   false},
    ReadCase{"OtherTwoSigns",     u"+-5",   false},
    ReadCase{"Comma",             u"+1,5",  false},
    ReadCase{"Blank",             u"+ 5",   false},
    ReadCase{"LetterAfter",       u"+5%",   false},
    ReadCase{"HostileExponent",   u"*1e99999999999", false}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

ColumnCoding Signed2()
{
    return {.dataType = DataType::Signed16,
            .dataLength = 1,
            .codeType = CodeType::Bin,
            .integerDigits = 2,
            .decimalDigits = 2,
            .minValue = -999,
            .maxValue = 9999};
}

ColumnCoding Float1()
{
    return {.dataType = DataType::Float,
            .dataLength = 2,
            .codeType = CodeType::Bin,
            .integerDigits = 3,
            .decimalDigits = 1,
            .minValue = -99,
            .maxValue = 999};
}

ColumnCoding Hex()
{
    return {
        .dataType = DataType::Hex16, .dataLength = 1, .codeType = CodeType::Bin, .integerDigits = 4, .maxValue = 65535};
}

ColumnCoding Bcd()
{
    ColumnCoding coding = Signed2();
    coding.codeType = CodeType::Bcd;
    return coding;
}

ColumnCoding DoubleWithoutLimits()
{
    return {.dataType = DataType::Double,
            .dataLength = 4,
            .codeType = CodeType::Bin,
            .decimalDigits = 3,
            .minValue = std::numeric_limits<std::int64_t>::min(),
            .maxValue = std::numeric_limits<std::int64_t>::max()};
}

/// More digits than a float has.
ColumnCoding LongFloat()
{
    ColumnCoding coding = Float1();
    coding.maxValue = 99999999;
    return coding;
}

/// Limits beyond the words, as a damaged library may have them.
ColumnCoding WideLimits()
{
    ColumnCoding coding = Signed2();
    coding.maxValue = 99999;
    return coding;
}

struct ChangeCase {
    const char* name;
    ColumnCoding coding;
    const char16_t* stored;
    const char16_t* change;
    ChangeFault fault;
    std::u16string number;
    std::u16string words;
    friend void PrintTo(const ChangeCase& c, std::ostream* out) { *out << c.name; }
};

struct ChangedStoredNumber : testing::TestWithParam<ChangeCase> {};

TEST_P(ChangedStoredNumber, IsRoundedOnceAndWithinItsLimits)
{
    const ChangeCase& c = GetParam();
    const ChangedNumber changed = Changed(c.coding, *CDecimal::Parse(c.stored), *ReadNumberChange(c.change));
    EXPECT_EQ(changed.fault, c.fault);
    EXPECT_EQ(changed.number.Text(), c.number);
    EXPECT_EQ(changed.words, c.words);
}

std::u16string Words(std::initializer_list<std::uint16_t> words)
{
    return {words.begin(), words.end()};
}

constexpr ChangeFault kNone = ChangeFault::None;
constexpr ChangeFault kOutside = ChangeFault::OutsideLimits;

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, ChangedStoredNumber, testing::Values(
    ChangeCase{"Sum",                Signed2(),  u"1.05",  u"+0.1",   kNone,    u"1.15",   Words({115})},
    ChangeCase{"Difference",         Signed2(),  u"1.05",  u"-1.1",   kNone,    u"-0.05",  Words({0xFFFB})},
    ChangeCase{"Product",            Signed2(),  u"1.15",  u"*1.1",   kNone,    u"1.27",   Words({127})},   // 1.265
    ChangeCase{"NegativeProduct",    Signed2(),  u"-1.15", u"*1.1",   kNone,    u"-1.27",  Words({0xFF81})},
    ChangeCase{"Quotient",           Signed2(),  u"1.00",  u"/3",     kNone,    u"0.33",   Words({33})},
    ChangeCase{"QuotientOfAHalf",    Signed2(),  u"1.01",  u"/2",     kNone,    u"0.51",   Words({51})},    // 0.505
    ChangeCase{"FinerThanTheItem",   Signed2(),  u"1.00",  u"+0.004", kNone,    u"1",      Words({100})},
    ChangeCase{"UpToTheLimit",       Signed2(),  u"99.98", u"+0.01",  kNone,    u"99.99",  Words({9999})},
    ChangeCase{"AboveTheLimit",      Signed2(),  u"99.99", u"+0.01",  kOutside, u"100",    u""},
    ChangeCase{"RoundedToTheLimit",  Signed2(),  u"99.99", u"+0.004", kNone,    u"99.99",  Words({9999})},
    ChangeCase{"RoundedAboveIt",     Signed2(),  u"99.99", u"+0.005", kOutside, u"100",    u""},
    ChangeCase{"BelowTheLimit",      Signed2(),  u"-9.99", u"-0.01",  kOutside, u"-10",    u""},
    ChangeCase{"BackWithinThem",     Signed2(),  u"120",   u"-100",   kNone,    u"20",     Words({2000})},
    ChangeCase{"FarOutside",         Signed2(),  u"1",     u"*1e1000", kOutside, u"1" + std::u16string(1000, u'0'), u""},
    ChangeCase{"ByZero",             Signed2(),  u"1",     u"/0",     ChangeFault::DividesByZero, u"0", u""},
    ChangeCase{"BeyondItsWord",      WideLimits(), u"327.67", u"+0.01", ChangeFault::DoesNotFit, u"327.68", u""},
    ChangeCase{"Hexadecimal",        Hex(),      u"171",   u"/2",     kNone,    u"86",     Words({86})},
    ChangeCase{"HexadecimalBelow0",  Hex(),      u"1",     u"-2",     kOutside, u"-1",     u""},
    ChangeCase{"HexadecimalAbove",   Hex(),      u"65535", u"+1",     kOutside, u"65536",  u""},
    ChangeCase{"BcdBelow0",          Bcd(),      u"1",     u"-1.01",  kOutside, u"-0.01",  u""},
    ChangeCase{"BcdDownTo0",         Bcd(),      u"1",     u"-1",     kNone,    u"0",      Words({0})},
    ChangeCase{"Float",              Float1(),   u"0.1",   u"+0.05",  kNone,    u"0.2",    Words({0xCCCD, 0x3E4C})},
    ChangeCase{"FloatLimitIsItsOwn", Float1(),   u"998.9", u"+0.2",   kOutside, u"999.1",  u""},
    ChangeCase{"FloatUpToIt",        Float1(),   u"998.9", u"+0.1",   kNone,    u"999",    Words({0xC000, 0x4479})},
    ChangeCase{"NearestFloatOutside", LongFloat(), u"99999998", u"+1", kOutside, u"99999999", u""},
    ChangeCase{"Double",             DoubleWithoutLimits(), u"0.1", u"/3", kNone, u"0.033", Words({0x374C, 0x4189, 0xE560, 0x3FA0})},
    ChangeCase{"DoubleAboveAll",     DoubleWithoutLimits(), u"1e300", u"*1e10", kOutside, u"1" + std::u16string(310, u'0'), u""}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

} // namespace
