#include "model/CellCheck.h"

#include "text/NumberText.h"

#include <algorithm>
#include <cstddef>
#include <string>

namespace {

constexpr std::size_t kNarrowedLength = 16; ///< an integer is judged by so many of its first characters
constexpr std::int32_t kMostNines = 400;    ///< more digits than any double has before its point
constexpr double kRealTolerance = 0.00001;

/// Lengths are compared in this type: a count from a record may be any number, a negative one too.
std::int64_t LengthOf(std::u16string_view text)
{
    return static_cast<std::int64_t>(text.size());
}

bool IsHexDigit(char16_t c)
{
    return (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'F') || (c >= u'a' && c <= u'f');
}

bool HasDecimalCharacters(std::u16string_view text)
{
    bool hasPoint = false;
    for (const char16_t c : text) {
        if (c == u'.') {
            if (hasPoint)
                return false;
            hasPoint = true;
        } else if ((c < u'0' || c > u'9') && text.front() != u'-') {
            return false; // kept: "-12a" passes, since it is the text's first character that counts
        }
    }
    return true;
}

bool HasHexCharacters(std::u16string_view text)
{
    return std::all_of(text.begin(), text.end(), IsHexDigit);
}

/// kept: the sign takes the place of a digit.
bool HasRoomForDigits(const ColumnCoding& column, std::u16string_view text)
{
    const std::int64_t before = column.integerDigits;
    const std::int64_t after = column.decimalDigits;
    const std::size_t point = text.find(u'.');
    if (point == std::u16string_view::npos)
        return LengthOf(text) <= before + after && LengthOf(text) <= before;
    return static_cast<std::int64_t>(point) <= before && LengthOf(text.substr(point + 1)) <= after;
}

bool IsIntegerInRange(const ColumnCoding& column, std::u16string_view text)
{
    const double value = ReadDecimal(text.substr(0, kNarrowedLength));
    return static_cast<double>(column.minValue) <= value && value <= static_cast<double>(column.maxValue);
}

bool IsHexInRange(const ColumnCoding& column, std::u16string_view text)
{
    const auto value = static_cast<std::int32_t>(ReadHexadecimal(text)); // kept: FFFFFFFF is compared as -1
    return column.minValue <= value && value <= column.maxValue;
}

/// kept: a value equal to the lower bound is refused, one a little above the upper bound is not.
bool IsRealInRange(const ColumnCoding& column, std::u16string_view text)
{
    // The bounds put a "9" or a "-" in the first digit's place.
    const auto digits = [](std::int32_t count) { return static_cast<std::size_t>(std::clamp(count, 1, kMostNines)); };
    std::u16string pattern(digits(column.integerDigits) - 1, u'9');
    if (column.decimalDigits > 0)
        pattern.append(1, u'.').append(digits(column.decimalDigits), u'9');
    const double upper = ReadDecimal(u"9" + pattern);
    const double lower = ReadDecimal(u"-" + pattern);
    const double value = ReadDecimal(text);
    return value - upper <= kRealTolerance && value - lower >= kRealTolerance;
}

bool IsIntegerAccepted(const ColumnCoding& column, std::u16string_view text)
{
    if (!IsIntegerInRange(column, text) || !HasDecimalCharacters(text) || !HasRoomForDigits(column, text))
        return false;
    return column.codeType != CodeType::Bcd || ReadInteger64(text) >= 0;
}

} // namespace

bool ValidateCellValue(const ColumnCoding& column, std::u16string_view text)
{
    switch (column.dataType) {
    case DataType::Signed16:
    case DataType::Signed32:
    case DataType::Unsigned16:
    case DataType::Unsigned32:
        return IsIntegerAccepted(column, text);
    case DataType::Hex16:
    case DataType::Hex32:
        return IsHexInRange(column, text) && HasHexCharacters(text) && LengthOf(text) <= column.integerDigits;
    case DataType::Float:
    case DataType::Double:
        return IsRealInRange(column, text) && HasDecimalCharacters(text) && HasRoomForDigits(column, text);
    case DataType::String:
        return LengthOf(text) <= column.dataLength; // kept: even for two ANSI characters a word
    case DataType::NotChosen:
        break;
    }
    return false;
}
