#include "model/TypedValue.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <string>

namespace {

struct Column {
    DataType type;
    std::int32_t words;
    std::int32_t decimals = 0;
    CodeType codeType = CodeType::Bin;
    std::int32_t unicode = 0;

    ColumnCoding Coding() const
    {
        return {.dataType = type,
                .dataLength = words,
                .codeType = codeType,
                .integerDigits = 9,
                .decimalDigits = decimals,
                .minValue = type == DataType::Signed16 ? -32768 : -99999999,
                .maxValue = type == DataType::Signed16 ? 32767 : 999999999,
                .unicode = unicode};
    }
};

constexpr Column kSigned{DataType::Signed16, 1};
constexpr Column kSigned1{DataType::Signed16, 1, 1};
constexpr Column kSigned2{DataType::Signed16, 1, 2};
constexpr Column kUnsigned2{DataType::Unsigned16, 1, 2};
constexpr Column kUnsigned32{DataType::Unsigned32, 2};
constexpr Column kHex{DataType::Hex16, 1};
constexpr Column kHexBcd{DataType::Hex16, 1, 0, CodeType::Bcd};
constexpr Column kBcd2{DataType::Signed16, 1, 2, CodeType::Bcd};
constexpr Column kFloat{DataType::Float, 2};
constexpr Column kFloat1{DataType::Float, 2, 1};
constexpr Column kDouble2{DataType::Double, 4, 2};
constexpr Column kAnsi{DataType::String, 2};
constexpr Column kUnicode{DataType::String, 2, 0, CodeType::Bin, 1};
constexpr Column kUnknown{DataType::NotChosen, 1};
constexpr Column kTooShort{DataType::Signed32, 1};

using enum TypedVerdict;

struct TypedCase {
    const char* name;
    Column column;
    RecipeKind kind;
    const char16_t* text;
    TypedVerdict verdict;
    const char16_t* stored; ///< the number; null for none
    const char16_t* shown;
    friend void PrintTo(const TypedCase& c, std::ostream* out) { *out << c.name; }
};

struct TypedText : testing::TestWithParam<TypedCase> {};

TEST_P(TypedText, IsJudgedByItsWords)
{
    const TypedCase& c = GetParam();
    const TypedValue value = JudgeTyped(c.column.Coding(), c.kind, c.text);
    EXPECT_EQ(value.verdict, c.verdict);
    EXPECT_EQ(value.shown, c.shown);
    EXPECT_EQ(value.words.size(), static_cast<std::size_t>(c.column.words));
    ASSERT_EQ(value.stored.has_value(), c.stored != nullptr);
    if (value.stored) {
        EXPECT_EQ(value.stored->Text(), c.stored);
    }
}

constexpr RecipeKind kFlat = RecipeKind::Flat;
constexpr RecipeKind kPaged = RecipeKind::Paged;

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, TypedText, testing::Values(
    //        name                   column      kind    text             verdict         stored          shown
    TypedCase{"Whole",               kSigned,    kFlat,  u"240",          Fine,           u"240",         u"240"},
    TypedCase{"ShownWithAPoint",     kSigned1,   kFlat,  u"240",          Fine,           u"240",         u"240.0"},
    TypedCase{"LeadingBlank",        kSigned,    kFlat,  u" 5",           Fine,           u"5",           u"5"},
    TypedCase{"LeadingZeros",        kSigned,    kFlat,  u"007",          Fine,           u"7",           u"7"},
    TypedCase{"DoubleFallsShort",    kSigned2,   kFlat,  u"1.15",         AnotherNumber,  u"1.14",        u"1.14"},
    TypedCase{"Cut",                 kSigned2,   kFlat,  u"12.345",       AnotherNumber,  u"12.34",       u"12.34"},
    TypedCase{"OtherLowBits",        kSigned,    kFlat,  u"70000",        AnotherNumber,  u"4464",        u"4464"},
    TypedCase{"ZerosAfterTheDigit",  kSigned2,   kFlat,  u"0.05",         ShownAsAnother, u"0.05",        u"0.50"},
    TypedCase{"SignInTheFraction",   kSigned2,   kFlat,  u"-0.05",        ShownAsAnother, u"-0.05",       u"0.-5"},
    TypedCase{"LostInTheFraction",   kUnsigned2, kFlat,  u"1.05",         ShownAsAnother, u"1.05",        u"1.50"},
    TypedCase{"ShownNegative",       kUnsigned32, kFlat, u"3000000000",   ShownAsAnother, u"3000000000",  u"-1294967296"},
    TypedCase{"SameInPagedFiles",    kSigned2,   kPaged, u"1.15",         AnotherNumber,  u"1.14",        u"1.14"},
    TypedCase{"BcdInFlatFiles",      kBcd2,      kFlat,  u"1.50",         Fine,           u"1.5",         u"1.50"},
    TypedCase{"BcdInPagedFiles",     kBcd2,      kPaged, u"1.50",         AnotherNumber,  u"0.01",        u"0.10"},
    TypedCase{"Hexadecimal",         kHex,       kFlat,  u"ab",           Fine,           u"171",         u"AB"},
    TypedCase{"HexadecimalZeros",    kHex,       kPaged, u"00AB",         Fine,           u"171",         u"AB"},
    TypedCase{"HexadecimalTooLong",  kHex,       kFlat,  u"12345",        AnotherNumber,  u"9029",        u"2345"},
    TypedCase{"HexadecimalLetters",  kHex,       kFlat,  u"1G",           NoNumber,       u"16",          u"10"},
    TypedCase{"HexBcdInPagedFiles",  kHexBcd,    kPaged, u"10",           AnotherNumber,  u"10",          u"A"},
    TypedCase{"NearestFloat",        kFloat1,    kFlat,  u"0.1",          Fine,           u"0.1",         u"0.1"},
    TypedCase{"FloatLosesDigits",    kFloat1,    kFlat,  u"0.123456",     ShownAsAnother, u"0.123456",    u"0.1"},
    TypedCase{"FloatMinusZero",      kFloat1,    kFlat,  u"-0",           Fine,           u"0",           u"-0.0"},
    TypedCase{"LongerThanAFloat",    kFloat,     kFlat,  u"16777217",     ShownAsAnother, u"16777216",    u"16777216"},
    TypedCase{"FloatOutOfLimits",    kFloat,     kFlat,  u"1234567936",   ShownAsAnother, u"1234568000",  u"1.234568e+09"},
    TypedCase{"FloatWithExponent",   kFloat,     kFlat,  u"3000000000",   Fine,           u"3000000000",  u"3.000000e+09"},
    TypedCase{"FloatTooLarge",       kFloat,     kFlat,  u"1e39",         AnotherNumber,  nullptr,        u"inf"},
    TypedCase{"FloatRoundedTwice",   kFloat,     kFlat,  u"1.000000059604644775390626", AnotherNumber, u"1",  u"1"},
    TypedCase{"DoublePadded",        kDouble2,   kFlat,  u"1.05",         Fine,           u"1.05",        u"        1.05"},
    TypedCase{"DoubleLosesDigits",   kDouble2,   kPaged, u"1.055",        ShownAsAnother, u"1.055",       u"1.05"},
    TypedCase{"Empty",               kSigned2,   kFlat,  u"",             StoredAsZero,   u"0",           u"0.00"},
    TypedCase{"EmptyHexadecimal",    kHex,       kFlat,  u"",             StoredAsZero,   u"0",           u"0"},
    TypedCase{"EmptyFloat",          kFloat1,    kPaged, u"",             StoredAsZero,   u"0",           u"0.0"},
    TypedCase{"SignOnly",            kSigned,    kFlat,  u"-",            NoNumber,       u"0",           u"0"},
    TypedCase{"LettersAfterAMinus",  kSigned,    kFlat,  u"-12a",         NoNumber,       u"-12",         u"-12"},
    TypedCase{"ExponentOutOfBounds", kFloat,     kFlat,  u"-1e-99999",    NoNumber,       u"0",           u"0"},
    TypedCase{"Ansi",                kAnsi,      kFlat,  u"abcd",         Fine,           nullptr,        u"abcd"},
    TypedCase{"AnsiCut",             kAnsi,      kFlat,  u"abcde",        AnotherText,    nullptr,        u"abcd"},
    TypedCase{"AnsiWithoutTheSign",  kAnsi,      kPaged, u"a\u4E2D",      AnotherText,    nullptr,        u"a?"},
    TypedCase{"Unicode",             kUnicode,   kFlat,  u"\u4E2D",       Fine,           nullptr,        u"\u4E2D"},
    TypedCase{"UnicodeCut",          kUnicode,   kFlat,  u"abc",          AnotherText,    nullptr,        u"ab"},
    TypedCase{"EmptyString",         kUnicode,   kFlat,  u"",             Fine,           nullptr,        u""},
    TypedCase{"UnknownType",         kUnknown,   kFlat,  u"5",            AnotherText,    nullptr,        u""},
    TypedCase{"TypeWithoutRoom",     kTooShort,  kFlat,  u"5",            Fine,           nullptr,        u"5"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(TypedValue, OffersTheExactWordsOnlyWhereThereAreAny)
{
    EXPECT_EQ(JudgeTyped(kSigned2.Coding(), kFlat, u"1.15").exactWords, std::u16string{115});
    EXPECT_EQ(JudgeTyped(kBcd2.Coding(), kPaged, u"1.50").exactWords, std::u16string{150});
    EXPECT_FALSE(JudgeTyped(kSigned2.Coding(), kFlat, u"12.345").exactWords); // no third decimal
    EXPECT_FALSE(JudgeTyped(kSigned.Coding(), kFlat, u"70000").exactWords);
    EXPECT_FALSE(JudgeTyped(kSigned2.Coding(), kFlat, u"0.05").exactWords); // they are stored
    EXPECT_FALSE(JudgeTyped(kSigned.Coding(), kFlat, u"-12a").exactWords);
}

TEST(TypedValue, TellsTheNumberThatWasTyped)
{
    EXPECT_EQ(JudgeTyped(kSigned2.Coding(), kFlat, u"1.155").typed, CDecimal(1155).Scaled(-3));
    EXPECT_EQ(JudgeTyped(kHex.Coding(), kFlat, u"ff").typed, CDecimal(255));
    EXPECT_FALSE(JudgeTyped(kSigned.Coding(), kFlat, u"").typed);
    EXPECT_FALSE(JudgeTyped(kAnsi.Coding(), kFlat, u"5").typed);
}

} // namespace
