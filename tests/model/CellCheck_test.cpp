#include "model/CellCheck.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>

namespace {

constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kHighest = std::numeric_limits<std::int32_t>::max();

ColumnCoding Column(DataType type, std::int32_t integerDigits, std::int32_t decimalDigits, std::int64_t minValue,
                    std::int64_t maxValue, CodeType codeType = CodeType::Bin)
{
    return {.dataType = type,
            .dataLength = 4,
            .codeType = codeType,
            .integerDigits = integerDigits,
            .decimalDigits = decimalDigits,
            .minValue = minValue,
            .maxValue = maxValue};
}

const ColumnCoding kSigned = Column(DataType::Signed16, 4, 0, -999, 9999);
const ColumnCoding kSignedDecimals = Column(DataType::Signed16, 3, 2, -32768, 32767);
const ColumnCoding kThreeDigits = Column(DataType::Signed16, 3, 0, -999, 999);
const ColumnCoding kPositive = Column(DataType::Signed16, 4, 0, 1, 9999);
const ColumnCoding kUnsigned = Column(DataType::Unsigned16, 5, 0, 0, 65535);
const ColumnCoding kLongInteger = Column(DataType::Unsigned32, 30, 0, 0, 4294967295);
const ColumnCoding kBcd = Column(DataType::Signed16, 4, 0, -999, 9999, CodeType::Bcd);
const ColumnCoding kHex16 = Column(DataType::Hex16, 4, 0, 0, 65535);
const ColumnCoding kHex32 = Column(DataType::Hex32, 8, 0, 0, 4294967295);
const ColumnCoding kHexLimited = Column(DataType::Hex32, 8, 0, 0, 65535);
const ColumnCoding kHexSigned = Column(DataType::Hex32, 8, 0, -1, 4294967295);
const ColumnCoding kFloat = Column(DataType::Float, 3, 2, -99, 999);
const ColumnCoding kFloatWhole = Column(DataType::Float, 1, 0, 0, 9);
const ColumnCoding kFloatOneDecimal = Column(DataType::Float, 3, 1, -99, 999);
const ColumnCoding kDoubleFine = Column(DataType::Double, 3, 5, -99, 999);
const ColumnCoding kFloatLong = Column(DataType::Double, 11, 11, 0, 0);
const ColumnCoding kFloatHostile = Column(DataType::Double, kHighest, kHighest, 0, 0);
const ColumnCoding kFloatNegative = Column(DataType::Double, kLowest, kLowest, 0, 0);
const ColumnCoding kString = Column(DataType::String, 4, 0, 0, 0);

struct CheckCase {
    const char* name;
    const ColumnCoding& column;
    std::u16string text;
    bool isAccepted;
    friend void PrintTo(const CheckCase& c, std::ostream* out) { *out << c.name; }
};

struct CellValue : testing::TestWithParam<CheckCase> {};

TEST_P(CellValue, IsAcceptedOrRefused)
{
    EXPECT_EQ(ValidateCellValue(GetParam().column, GetParam().text), GetParam().isAccepted);
}

std::string NameOf(const testing::TestParamInfo<CheckCase>& info)
{
    return info.param.name;
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Integers, CellValue, testing::Values(
    CheckCase{"LowerLimit",             kSigned,  u"-999",   true},
    CheckCase{"UpperLimit",             kSigned,  u"9999",   true},
    CheckCase{"FiveCharacters",         kSigned,  u"-1000",  false},
    CheckCase{"FiveDigits",             kSigned,  u"00001",  false},
    CheckCase{"NoRoomAfterThePoint",    kSigned,  u"12.5",   false},
    CheckCase{"PointAlone",             kSigned,  u".",      true},
    CheckCase{"PointLast",              kSigned,  u"12.",    true},
    CheckCase{"Empty",                  kSigned,  u"",       true},
    CheckCase{"EmptyWithoutZero",       kPositive, u"",      false},
    CheckCase{"SignTakesADigit",        kThreeDigits, u"-999", false},      // kept
    CheckCase{"SignAndTwoDigits",       kThreeDigits, u"-99", true},
    CheckCase{"LetterAfterMinus",       kSigned,  u"-12a",   true},         // kept
    CheckCase{"MinusInside",            kSigned,  u"1-2",    false},
    CheckCase{"Letter",                 kSigned,  u"12a",    false},
    CheckCase{"CharacterBelowZero",     kSigned,  u"12/",    false},
    CheckCase{"CharacterAboveNine",     kSigned,  u"12:",    false},
    CheckCase{"Plus",                   kSigned,  u"+12",    false},
    CheckCase{"Blank",                  kSigned,  u" 12",    false},
    CheckCase{"SecondPoint",            kSignedDecimals, u"1.2.", false},
    CheckCase{"SecondPointAfterMinus",  kSignedDecimals, u"-1..", false},
    CheckCase{"WithDecimals",           kSignedDecimals, u"123.45", true},
    CheckCase{"TooManyBefore",          kSignedDecimals, u"1234.5", false},
    CheckCase{"TooManyAfter",           kSignedDecimals, u"1.234", false},
    CheckCase{"TooManyOnBothSides",     kSignedDecimals, u"1234.567", false},
    CheckCase{"FourWithoutPoint",       kSignedDecimals, u"1234", false},
    CheckCase{"SignAndDecimals",        kSignedDecimals, u"-12.34", true},
    CheckCase{"AboveLimit",             kUnsigned, u"65536", false},
    CheckCase{"AtLimit",                kUnsigned, u"65535", true},
    CheckCase{"NegativeUnsigned",       kUnsigned, u"-5",    false},
    CheckCase{"NegativeZeroUnsigned",   kUnsigned, u"-0",    true},
    CheckCase{"BcdMinusZero",           kBcd,      u"-0",    true},
    CheckCase{"BcdNegative",            kBcd,      u"-1",    false},
    CheckCase{"BcdNegativeFraction",    kBcd,      u"-.",    true},
    CheckCase{"BcdPositive",            kBcd,      u"12",    true},
    CheckCase{"OnlySixteenCount",       kLongInteger, u"00000000000000009999999999", true},   // kept: the rest is cut
    CheckCase{"SeventeenthIsCut",       kLongInteger, u"00000042949672950", true},            // kept
    CheckCase{"SixteenDigits",          kLongInteger, u"0000009999999999", false},
    CheckCase{"WideDigits",             kSigned,   u"１",    false}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(Hexadecimals, CellValue, testing::Values(
    CheckCase{"Highest",                kHex32,   u"7FFFFFFF", true},
    CheckCase{"TopBitIsNegative",       kHex32,   u"80000000", false},      // kept
    CheckCase{"AllOnesIsMinusOne",      kHexSigned, u"FFFFFFFF", true},     // kept
    CheckCase{"BelowMinusOne",          kHexSigned, u"FFFFFFFE", false},
    CheckCase{"OtherCharacter",         kHex32,   u"1G",       false},
    CheckCase{"LowerCase",              kHex32,   u"1abcdef",  true},
    CheckCase{"FirstAndLastHexDigits",  kHex32,   u"109AFaf",  true},
    CheckCase{"BelowHexZero",           kHex32,   u"1/",       false},
    CheckCase{"AboveHexNine",           kHex32,   u"1:",       false},
    CheckCase{"BelowHexUpperCase",      kHex32,   u"1@",       false},
    CheckCase{"BelowHexLowerCase",      kHex32,   u"1`",       false},
    CheckCase{"AboveHexLowerCase",      kHex32,   u"1g",       false},
    CheckCase{"AtTheHexLimit",          kHexLimited, u"FFFF",  true},
    CheckCase{"AboveTheHexLimit",       kHexLimited, u"10000", false},
    CheckCase{"HexPoint",               kHex32,   u"1.0",      false},
    CheckCase{"HexMinus",               kHex32,   u"-1",       false},
    CheckCase{"HexEmpty",               kHex32,   u"",         true},
    CheckCase{"TooLong",                kHex16,   u"00001",    false},
    CheckCase{"FourDigits",             kHex16,   u"FFFF",     true},
    CheckCase{"Wraps",                  kHex32,   u"100000000", false}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(Reals, CellValue, testing::Values(
    CheckCase{"UpperBound",             kFloat,   u"999.99",  true},
    CheckCase{"ThreeDecimals",          kFloat,   u"999.995", false},
    CheckCase{"LowerBound",             kFloat,   u"-99.99",  false},       // kept: the lower bound itself is refused
    CheckCase{"AboveLowerBound",        kFloat,   u"-99.98",  true},
    CheckCase{"OneDecimalUpper",        kFloatOneDecimal, u"999.9", true},
    CheckCase{"JustAboveLowerBound",    kDoubleFine, u"-99.99998", true},    // by the tolerance and hardly more
    CheckCase{"RealZero",               kFloat,   u"0",       true},
    CheckCase{"RealEmpty",              kFloat,   u"",        true},
    CheckCase{"RealTooLarge",           kFloat,   u"1000",    false},
    CheckCase{"FourBeforePoint",        kFloat,   u"0999.9",  false},
    CheckCase{"RealLetter",             kFloat,   u"1e1",     false},
    CheckCase{"RealLetterAfterMinus",   kFloat,   u"-1e",     true},        // kept
    CheckCase{"OneDigitUpper",          kFloatWhole, u"9",    true},
    CheckCase{"OneDigitZero",           kFloatWhole, u"0",    false},       // kept: the lower bound "-" reads as 0
    CheckCase{"OneDigitOne",            kFloatWhole, u"1",    true},
    CheckCase{"LongUpperBound",         kFloatLong, u"99999999999.99999999999", true},
    CheckCase{"LongLowerBound",         kFloatLong, u"-9999999999.99999999999", false},
    CheckCase{"HostileDigits",          kFloatHostile, u"-12.5", true},
    CheckCase{"NegativeDigits",         kFloatNegative, u"5",  false},
    CheckCase{"InfiniteText",           kFloatHostile, std::u16string(400, u'9'), false}),
    NameOf);

INSTANTIATE_TEST_SUITE_P(Strings, CellValue, testing::Values(
    CheckCase{"FourCharacters",         kString,  u"abcd",  true},
    CheckCase{"FiveCharactersToo",      kString,  u"abcde", false},         // kept: though eight bytes are there
    CheckCase{"NoCharacters",           kString,  u"",      true}),
    NameOf);
// clang-format on

TEST(CellValueOfAString, IsJudgedAlikeWithTheUnicodeFlag)
{
    ColumnCoding column = kString;
    column.unicode = 1;
    EXPECT_TRUE(ValidateCellValue(column, u"abcd"));
    EXPECT_FALSE(ValidateCellValue(column, u"abcde"));
    column.dataLength = kLowest;
    EXPECT_FALSE(ValidateCellValue(column, u"a"));
}

TEST(CellValueWithoutAType, IsAlwaysRefused)
{
    for (const std::int32_t code : {-1, 9, kLowest, kHighest}) {
        const ColumnCoding column = Column(static_cast<DataType>(code), 9, 9, INT64_MIN, INT64_MAX);
        EXPECT_FALSE(ValidateCellValue(column, u"1")) << code;
        EXPECT_FALSE(ValidateCellValue(column, u"")) << code;
    }
}

TEST(CellValueOfAnInteger, HostileDigitsCountAsNoneOrMany)
{
    EXPECT_FALSE(ValidateCellValue(Column(DataType::Signed16, kLowest, kLowest, -9, 9), u"1"));
    EXPECT_TRUE(ValidateCellValue(Column(DataType::Signed16, kHighest, kHighest, -9, 9), u"-1.25"));
    EXPECT_FALSE(ValidateCellValue(Column(DataType::Hex16, kLowest, 0, 0, 15), u"1"));
}

} // namespace
