#include "model/ValueLimits.h"

#include "model/LittleEndian.h"
#include "text/NumberText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace {

constexpr std::int32_t kMostDecimals = 18; ///< a 64-bit integer has no more digits after its first one

std::u16string FromAscii(std::string_view ascii)
{
    return {ascii.begin(), ascii.end()};
}

template <class... Format>
std::u16string Converted(Format... format)
{
    std::array<char, 64> buffer;
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), format...);
    return FromAscii({buffer.data(), written.ptr});
}

/// `value` divided by 10^decimals, exactly.
std::u16string WithPoint(std::int64_t value, std::int32_t decimals)
{
    std::u16string text = DecimalText(value);
    const auto count = static_cast<std::size_t>(std::clamp(decimals, 0, kMostDecimals));
    if (count == 0)
        return text;
    const std::size_t sign = text.starts_with(u'-') ? 1 : 0;
    if (text.size() - sign <= count)
        text.insert(sign, count + 1 - (text.size() - sign), u'0');
    text.insert(text.size() - count, 1, u'.');
    return text;
}

/// The raw value of an integer column as the user would write it.
std::u16string IntegerText(const ColumnCoding& coding, std::int64_t value)
{
    return IsHexadecimal(coding.dataType) ? HexadecimalText(value) : WithPoint(value, coding.decimalDigits);
}

std::u16string LimitText(const ColumnCoding& coding, std::int64_t limit)
{
    return IsReal(coding.dataType) ? DecimalText(limit) : IntegerText(coding, limit);
}

bool IsSigned(DataType type)
{
    return type == DataType::Signed16 || type == DataType::Signed32;
}

/// One word or, of a longer value, the first two: those that are shown.
std::int64_t LoadInteger(const ColumnCoding& coding, std::span<const std::byte> bytes)
{
    const bool isWord = bytes.size() < 4;
    const std::int64_t value = isWord ? LoadLittleEndian<std::uint16_t>(bytes) : LoadLittleEndian<std::uint32_t>(bytes);
    if (!IsSigned(coding.dataType) || (isWord && value <= coding.maxValue))
        return value; // a signed word within an upper limit of more than 32767 is shown without a sign
    return isWord ? static_cast<std::int16_t>(value) : static_cast<std::int32_t>(value);
}

bool IsOutside(const ColumnCoding& coding, std::int64_t value)
{
    return value < coding.minValue || value > coding.maxValue;
}

bool IsOutside(const ColumnCoding& coding, double value)
{
    return std::isnan(value) || IsBelow(value, coding.minValue) || IsAbove(value, coding.maxValue);
}

template <class Real>
std::optional<std::u16string> RealOutside(const ColumnCoding& coding, Real value)
{
    if (!IsOutside(coding, static_cast<double>(value)))
        return std::nullopt;
    return Converted(value);
}

/// The raw value that `text` codes in an integer column, before it is cut to the words that take it.
double RawValue(const ColumnCoding& coding, std::u16string_view text)
{
    const double value = std::trunc(ReadDecimal(text) * PowerOfTen(coding.decimalDigits));
    const bool shownWithSign = coding.dataType == DataType::Unsigned32 && value < 0;
    return shownWithSign ? value + 0x1p32 : value; // 0xFFFFFFFF is shown as "-1"
}

bool IsTextOutside(const ColumnCoding& coding, std::u16string_view text)
{
    if (IsHexadecimal(coding.dataType))
        return IsOutside(coding, std::int64_t{ReadHexadecimal(text)});
    if (IsDecimalInteger(coding.dataType))
        return IsOutside(coding, RawValue(coding, text));
    return IsReal(coding.dataType) && IsOutside(coding, ReadDecimal(text));
}

} // namespace

std::optional<std::u16string> ValueOutsideLimits(const ColumnCoding& coding, std::span<const std::byte> image,
                                                 std::size_t pos)
{
    const std::size_t length = 2 * static_cast<std::size_t>(std::max(coding.dataLength, 0));
    if (pos > image.size() || image.size() - pos < length)
        return std::nullopt;
    const auto bytes = image.subspan(pos, length);
    if (coding.dataType == DataType::Float && length >= 4)
        return RealOutside(coding, std::bit_cast<float>(LoadLittleEndian<std::uint32_t>(bytes)));
    if (coding.dataType == DataType::Double && length >= 8)
        return RealOutside(coding, std::bit_cast<double>(LoadLittleEndian<std::uint64_t>(bytes)));
    const bool isInteger = IsDecimalInteger(coding.dataType) || IsHexadecimal(coding.dataType);
    if (!isInteger || length < 2)
        return std::nullopt;
    const std::int64_t value = LoadInteger(coding, bytes);
    if (!IsOutside(coding, value))
        return std::nullopt;
    return IntegerText(coding, value);
}

std::optional<std::u16string> ValueOutsideLimits(const ColumnCoding& coding, std::u16string_view text)
{
    if (!IsTextOutside(coding, text))
        return std::nullopt;
    return std::u16string(text);
}

std::u16string LimitsText(const ColumnCoding& coding)
{
    if (coding.dataType == DataType::String)
        return u"up to " + DecimalText(coding.dataLength) + u" characters";
    if (TypeName(coding.dataType).empty())
        return {};
    return LimitText(coding, coding.minValue) + u" to " + LimitText(coding, coding.maxValue);
}
