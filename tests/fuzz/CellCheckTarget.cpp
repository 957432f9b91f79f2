#include "model/CellCheck.h"
#include "tests/fuzz/ColumnInput.h"
#include "tests/fuzz/Numbers.h"
#include "tests/fuzz/Property.h"
#include "tests/fuzz/Targets.h"

#include <algorithm>

namespace {

using Text = std::u16string;

std::int64_t LengthOf(const Text& text)
{
    return static_cast<std::int64_t>(text.size());
}

bool PassesCharacters(const Text& text)
{
    const auto isDigit = [](char16_t c) { return c >= u'0' && c <= u'9'; };
    const bool hasOther = std::any_of(text.begin(), text.end(), [&](char16_t c) { return !isDigit(c) && c != u'.'; });
    return std::count(text.begin(), text.end(), u'.') <= 1 && (!hasOther || text.front() == u'-');
}

bool PassesDigitCount(const ColumnCoding& column, const Text& text)
{
    const std::int64_t digits = std::int64_t{column.integerDigits} + column.decimalDigits;
    const std::size_t point = text.find(u'.');
    if (point == Text::npos)
        return LengthOf(text) <= digits && LengthOf(text) <= column.integerDigits;
    const auto before = static_cast<std::int64_t>(point);
    return LengthOf(text) <= digits + 1 && before <= column.integerDigits &&
           LengthOf(text) - before - 1 <= column.decimalDigits;
}

bool PassesIntegerRange(const ColumnCoding& column, const Text& text)
{
    const double value = PlainDecimal(text.substr(0, 16));
    return value >= static_cast<double>(column.minValue) && value <= static_cast<double>(column.maxValue);
}

bool PassesHexRange(const ColumnCoding& column, const Text& text)
{
    std::int64_t value = PlainHexadecimal(text);
    if (value >= 0x80000000)
        value -= 0x100000000;
    return value >= column.minValue && value <= column.maxValue;
}

/// Digits beyond 400 make no other double, and a text of 2^31 of them is not worth building.
Text Nines(std::int32_t count)
{
    return Text(static_cast<std::size_t>(std::clamp(count, 0, 400)), u'9');
}

bool PassesRealRange(const ColumnCoding& column, const Text& text)
{
    const std::int32_t before = std::max(column.integerDigits, 1);
    const Text pattern = Nines(before - 1) + (column.decimalDigits > 0 ? u"." + Nines(column.decimalDigits) : Text());
    const double value = PlainDecimal(text);
    return value - PlainDecimal(u"9" + pattern) <= 0.00001 && value - PlainDecimal(u"-" + pattern) >= 0.00001;
}

bool IsHexadecimalText(const Text& text)
{
    return text.find_first_not_of(u"0123456789ABCDEFabcdef") == Text::npos;
}

/// The rules, one after the other, as they are told to a user.
bool ShouldPass(const ColumnCoding& column, const Text& text)
{
    switch (static_cast<std::int32_t>(column.dataType)) {
    case 0:
    case 1:
    case 2:
    case 3:
        return PassesIntegerRange(column, text) && PassesCharacters(text) && PassesDigitCount(column, text) &&
               !(column.codeType == CodeType::Bcd && PlainInteger64(text) < 0);
    case 4:
    case 5:
        return PassesHexRange(column, text) && IsHexadecimalText(text) && LengthOf(text) <= column.integerDigits;
    case 6:
    case 7:
        return PassesRealRange(column, text) && PassesCharacters(text) && PassesDigitCount(column, text);
    case 8:
        return LengthOf(text) <= column.dataLength;
    default:
        return false;
    }
}

} // namespace

void FuzzCellCheck(FuzzBytes bytes)
{
    CFuzzInput input(bytes);
    const ColumnCoding column = TakeColumn(input);
    const Text text = input.TakeText(255);
    Require(ValidateCellValue(column, text) == ShouldPass(column, text), "the check answers by its rules");
}
