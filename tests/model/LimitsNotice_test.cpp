#include "model/CellCheck.h"
#include "model/DataItem.h"
#include "model/LimitsNotice.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <string>
#include <vector>

namespace {

std::u16string NonePasses(std::u16string_view limits)
{
    return u"These digits give the limits " + std::u16string(limits) + u": no number will be accepted.";
}

std::u16string NotHeld(std::u16string_view range)
{
    return u"The type holds " + std::u16string(range) +
           u". With these digits larger numbers are accepted, too, and stored as others.";
}

struct NoticeCase {
    const char* name;
    DataType type;
    DigitCounts digits;
    std::u16string notice; ///< empty for none
    friend void PrintTo(const NoticeCase& c, std::ostream* out) { *out << c.name; }
};

struct LimitsOfDigits : testing::TestWithParam<NoticeCase> {};

TEST_P(LimitsOfDigits, AreToldWhenNoNumberPassesOrTheTypeCannotHoldOne)
{
    EXPECT_EQ(LimitsNotice(GetParam().type, GetParam().digits).value_or(u""), GetParam().notice);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, LimitsOfDigits, testing::Values(
    //         name                    type                  digits    notice
    NoticeCase{"NewItem",              DataType::Signed16,   {1, 0},   u""},
    NoticeCase{"Signed16Full",         DataType::Signed16,   {5, 0},   u""},
    NoticeCase{"Signed16Most",         DataType::Signed16,   {6, 0},   u""},
    NoticeCase{"Signed16Four",         DataType::Signed16,   {2, 2},   u""},
    NoticeCase{"Signed16FiveInAll",    DataType::Signed16,   {3, 2},   NotHeld(u"-327.68 to 327.67")},
    NoticeCase{"Signed16OneDecimal",   DataType::Signed16,   {5, 1},   NotHeld(u"-3276.8 to 3276.7")},
    NoticeCase{"Unsigned16Full",       DataType::Unsigned16, {5, 0},   u""},
    NoticeCase{"Unsigned16FiveInAll",  DataType::Unsigned16, {4, 1},   NotHeld(u"0.0 to 6553.5")},
    NoticeCase{"Signed32Full",         DataType::Signed32,   {11, 0},  u""},
    NoticeCase{"Signed32NineInAll",    DataType::Signed32,   {7, 2},   u""},
    NoticeCase{"Signed32TenInAll",     DataType::Signed32,   {8, 2},   NotHeld(u"-21474836.48 to 21474836.47")},
    NoticeCase{"Unsigned32Full",       DataType::Unsigned32, {10, 0},  u""},
    NoticeCase{"Unsigned32TenInAll",   DataType::Unsigned32, {9, 1},   NotHeld(u"0.0 to 429496729.5")},
    NoticeCase{"Hex16Full",            DataType::Hex16,      {4, 0},   u""},
    NoticeCase{"Hex16Five",            DataType::Hex16,      {5, 0},   NotHeld(u"0 to FFFF")},
    NoticeCase{"Hex16Eight",           DataType::Hex16,      {8, 0},   NotHeld(u"0 to FFFF")},
    NoticeCase{"Hex16Nine",            DataType::Hex16,      {9, 0},   NonePasses(u"0 to -1")},
    NoticeCase{"Hex32Full",            DataType::Hex32,      {8, 0},   u""},
    NoticeCase{"Hex32Nine",            DataType::Hex32,      {9, 0},   NonePasses(u"0 to -1")},
    NoticeCase{"Hex32Eleven",          DataType::Hex32,      {11, 0},  NonePasses(u"0 to -1")},
    NoticeCase{"Hex32Hostile",         DataType::Hex32,      {2147483647, 0}, NonePasses(u"0 to 0")},
    NoticeCase{"FloatMost",            DataType::Float,      {11, 0},  u""},
    NoticeCase{"FloatDecimals",        DataType::Float,      {1, 10},  u""},
    NoticeCase{"DoubleMost",           DataType::Double,     {11, 0},  u""},
    NoticeCase{"NoDigits",             DataType::Signed16,   {0, 0},   NonePasses(u"0 to 0")},
    NoticeCase{"OnlyDecimals",         DataType::Signed16,   {0, 2},   u""},
    NoticeCase{"HostileInteger",       DataType::Signed32,   {-2147483647 - 1, 3}, NonePasses(u"-0.099 to 0.999")},
    NoticeCase{"HostileDecimals",      DataType::Double,     {2, -2147483647 - 1}, NonePasses(u"-9 to 99")},
    NoticeCase{"String",               DataType::String,     {11, 11}, u""},
    NoticeCase{"NotChosen",            DataType::NotChosen,  {11, 11}, u""},
    NoticeCase{"UnknownType",          static_cast<DataType>(9), {11, 11}, u""}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

ColumnCoding DialogColumn(DataType type, DigitCounts digits)
{
    DataItem item;
    item.dataType = type;
    item.dataLength = ProposedLength(type).value();
    item.codeType = CodeType::Bin;
    item.integerDigits = digits.integerDigits;
    item.decimalDigits = digits.decimalDigits;
    deriveBounds(item);
    return {.dataType = type,
            .dataLength = item.dataLength,
            .codeType = item.codeType,
            .integerDigits = item.integerDigits,
            .decimalDigits = item.decimalDigits,
            .minValue = item.minValue,
            .maxValue = item.maxValue};
}

/// The largest texts of every number of digits, and small ones.
std::vector<std::u16string> NumbersFor(DataType type)
{
    std::vector<std::u16string> numbers{u"1", u"-1", u"12", u".1"};
    const char16_t digit = IsHexadecimal(type) ? u'F' : u'9';
    for (std::size_t before = 0; before <= 12; ++before) {
        numbers.push_back(u"1" + std::u16string(before, u'0'));
        numbers.push_back(u"7" + std::u16string(before, digit));
        for (std::size_t after = 1; after <= 11 && !IsHexadecimal(type); ++after)
            numbers.push_back(std::u16string(before, digit) + u"." + std::u16string(after, digit));
    }
    return numbers;
}

/// Whether the words of `text` are another number: one whose text reads as another integer than was typed.
bool IsStoredAsAnother(const ColumnCoding& column, const std::u16string& text)
{
    const double typed = IsHexadecimal(column.dataType)
                             ? static_cast<double>(std::stoull(std::string(text.begin(), text.end()), nullptr, 16))
                             : std::stod(std::string(text.begin(), text.end())) * std::pow(10.0, column.decimalDigits);
    const bool isSigned = column.dataType == DataType::Signed16 || column.dataType == DataType::Signed32;
    const int bits = 16 * column.dataLength;
    const double most = std::ldexp(1.0, isSigned ? bits - 1 : bits);
    return typed >= most || typed < (isSigned ? -most : 0);
}

/// For all digits that the lists offer: what the check and the words do with typed numbers.
TEST(LimitsNoticeOfAllDigits, IsTrue)
{
    for (int code = 0; code < 6; ++code) {
        const auto type = static_cast<DataType>(code);
        const std::vector<std::u16string> numbers = NumbersFor(type);
        for (std::int32_t before = 1; before <= 11; ++before) {
            for (std::int32_t after = 0; after <= (IsHexadecimal(type) ? 0 : 11); ++after) {
                const ColumnCoding column = DialogColumn(type, {before, after});
                bool anyPasses = false;
                bool anyIsAnother = false;
                for (const std::u16string& number : numbers) {
                    const bool passes = ValidateCellValue(column, number);
                    anyPasses = anyPasses || passes;
                    anyIsAnother = anyIsAnother || (passes && IsStoredAsAnother(column, number));
                }
                const std::u16string notice = LimitsNotice(type, {before, after}).value_or(u"");
                SCOPED_TRACE(testing::Message() << code << ": " << before << "." << after);
                EXPECT_EQ(notice.starts_with(u"These digits"), !anyPasses);
                EXPECT_EQ(notice.starts_with(u"The type"), anyIsAnother);
            }
        }
    }
}

} // namespace
