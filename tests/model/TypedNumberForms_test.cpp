#include "model/CellCheck.h"
#include "model/TypedNumberForms.h"
#include "tests/support/Formats.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {

ColumnCoding Column(DataType type, std::int32_t decimals)
{
    ColumnCoding coding;
    coding.dataType = type;
    coding.codeType = CodeType::Bin;
    coding.integerDigits = type == DataType::Float ? 6 : 4;
    coding.decimalDigits = decimals;
    coding.dataLength = type == DataType::String ? 16 : static_cast<std::int32_t>(WordsOfType(type));
    coding.minValue = type == DataType::Float ? -999999 : -9999;
    coding.maxValue = type == DataType::Float ? 999999 : 9999;
    return coding;
}

/// What a field gives in a column of its own. "?": it is to be asked for; "-": it is refused.
std::u16string Given(const ColumnCoding& coding, std::u16string_view field, std::optional<NumberSign> chosen = {})
{
    CColumnForms forms(coding);
    forms.Take(field);
    const NumberSign sign = chosen.value_or(forms.Sign());
    if (sign == NumberSign::Undecided)
        return u"?";
    if (field.empty())
        return {}; // which leaves the cell as it is
    const auto text = TextOfField(coding, field, sign);
    return text && ValidateCellValue(coding, *text) ? *text : u"-";
}

struct FieldCase {
    const char* name;
    const char16_t* field;
    const char16_t* integer;
    const char16_t* hundredths;
    const char16_t* real;  ///< a float of one decimal
    const char16_t* comma; ///< of hundredths, when the user says that it is a decimal comma
    const char16_t* point; ///< likewise
    friend void PrintTo(const FieldCase& c, std::ostream* out) { *out << c.name; }
};

struct TypedNumber : testing::TestWithParam<FieldCase> {};

} // namespace

TEST_P(TypedNumber, InEachKindOfColumn)
{
    const FieldCase& c = GetParam();
    const ColumnCoding hundredths = Column(DataType::Signed16, 2);
    EXPECT_EQ(Given(Column(DataType::Signed16, 0), c.field), c.integer);
    EXPECT_EQ(Given(hundredths, c.field), c.hundredths);
    EXPECT_EQ(Given(Column(DataType::Float, 1), c.field), c.real);
    EXPECT_EQ(Given(Column(DataType::String, 0), c.field), c.field);
    EXPECT_EQ(Given(hundredths, c.field, NumberSign::Comma), c.comma);
    EXPECT_EQ(Given(hundredths, c.field, NumberSign::Point), c.point);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, TypedNumber, testing::Values(
    //        name                field              integer   hundredths   float      comma        point
    FieldCase{"DecimalComma",     u"1,5",            u"-",     u"1.50",     u"1.5",    u"1.50",     u"-"},
    FieldCase{"DecimalPoint",     u"1.5",            u"-",     u"1.50",     u"1.5",    u"-",        u"1.50"},
    FieldCase{"CommaOrThousands", u"1,234",          u"?",     u"?",        u"?",      u"-",        u"1234.00"},
    FieldCase{"PointOrThousands", u"1.234",          u"?",     u"?",        u"?",      u"1234.00",  u"-"},
    FieldCase{"Both",             u"1.234,5",        u"-",     u"1234.50",  u"1234.5", u"1234.50",  u"-"},
    FieldCase{"Blank",            u"1 234",          u"1234",  u"1234.00",  u"1234.0", u"1234.00",  u"1234.00"},
    FieldCase{"NoBreak",          u"1\u00A0234",     u"1234",  u"1234.00",  u"1234.0", u"1234.00",  u"1234.00"},
    FieldCase{"NarrowNoBreak",    u"1\u202F234",     u"1234",  u"1234.00",  u"1234.0", u"1234.00",  u"1234.00"},
    FieldCase{"Exponent",         u"1E3",            u"1000",  u"1000.00",  u"1000.0", u"1000.00",  u"1000.00"},
    FieldCase{"Slash",            u"05/06",          u"?",     u"?",        u"?",      u"-",        u"-"},
    FieldCase{"Zeros",            u"007",            u"7",     u"7.00",     u"7.0",    u"7.00",     u"7.00"},
    FieldCase{"Plus",             u"+5",             u"5",     u"5.00",     u"5.0",    u"5.00",     u"5.00"},
    FieldCase{"MinusZero",        u"-0",             u"0",     u"0.00",     u"0.0",    u"0.00",     u"0.00"},
    FieldCase{"Empty",            u"",               u"",      u"",         u"",       u"",         u""},
    FieldCase{"TooLarge",         u"999999999999",   u"-",     u"-",        u"-",      u"-",        u"-"},
    FieldCase{"TypographicMinus", u"\u22125",        u"-5",    u"-5.00",    u"-5.0",   u"-5.00",    u"-5.00"},
    FieldCase{"NoThousands",      u"0,125",          u"-",     u"-",        u"-",      u"-",        u"-"},
    FieldCase{"Million",          u"1.234.567",      u"-",     u"-",        u"-",      u"-",        u"-"},
    FieldCase{"Word",             u"abc",            u"-",     u"-",        u"-",      u"-",        u"-"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

namespace {

NumberSign SignOf(std::initializer_list<const char16_t*> fields)
{
    CColumnForms forms(Column(DataType::Float, 3));
    for (const char16_t* field : fields)
        forms.Take(field);
    return forms.Sign();
}

} // namespace

TEST(TypedNumberColumn, IsSettledByAFieldThatIsNoOtherNumber)
{
    EXPECT_EQ(SignOf({u"1,234", u"2,5"}), NumberSign::Comma);
    EXPECT_EQ(SignOf({u"1,234", u"2.5"}), NumberSign::Point);
    EXPECT_EQ(SignOf({u"1,234", u"0,125"}), NumberSign::Comma);
    EXPECT_EQ(SignOf({u"1,234", u"1,234,567"}), NumberSign::Point);
    EXPECT_EQ(SignOf({u"7", u"abc", u""}), NumberSign::Point);
    EXPECT_EQ(SignOf({u"1,234", u"12"}), NumberSign::Undecided);
    EXPECT_EQ(SignOf({u"1,5", u"1.5"}), NumberSign::Undecided);
    EXPECT_EQ(SignOf({u"1,5", u"05/06"}), NumberSign::Undecided);
    CColumnForms forms(Column(DataType::Float, 3));
    for (const char16_t* field : {u"12", u"1,234", u"2,345"})
        forms.Take(field);
    EXPECT_EQ(forms.Doubtful(), u"1,234");
}

TEST(TypedNumberColumn, OfHexadecimalValuesIsTakenAsItStands)
{
    const ColumnCoding hex = Column(DataType::Hex16, 0);
    CColumnForms forms(hex);
    forms.Take(u"1,234");
    EXPECT_EQ(forms.Sign(), NumberSign::AsText);
    EXPECT_EQ(TextOfField(hex, u" 1E3 ", forms.Sign()), u"1E3");
}

TEST(TypedNumberForms, AreReadBackHoweverTheyAreWritten)
{
    std::mt19937 random(11);
    for (int round = 0; round < 20000; ++round) {
        const auto whole = static_cast<std::uint32_t>(random() % 10000000);
        const auto part = static_cast<std::uint32_t>(random() % 100);
        const bool isComma = round % 2 == 0;
        std::u16string digits;
        for (const char c : std::to_string(whole))
            digits += static_cast<char16_t>(c);
        std::u16string grouped = digits;
        for (int i = static_cast<int>(digits.size()) - 3; i > 0; i -= 3)
            grouped.insert(static_cast<std::size_t>(i), 1, isComma ? u'.' : u',');
        const std::u16string tail{static_cast<char16_t>(u'0' + part / 10), static_cast<char16_t>(u'1' + part % 9)};
        const auto read =
            PlainNumber(grouped + (isComma ? u',' : u'.') + tail, isComma ? NumberSign::Comma : NumberSign::Point);
        ASSERT_EQ(read, digits + u"." + tail) << round;
    }
}
