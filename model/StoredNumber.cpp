#include "model/StoredNumber.h"

#include "model/LittleEndian.h"
#include "text/NumberText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>

namespace {

constexpr std::int32_t kMostDecimals = 1100; ///< that a text shows, whatever a record asks for
constexpr std::size_t kReadableLength = 24;  ///< longer real numbers are written with an exponent

bool IsInteger(DataType type)
{
    return IsDecimalInteger(type) || IsHexadecimal(type);
}

bool IsSigned(DataType type)
{
    return type == DataType::Signed16 || type == DataType::Signed32;
}

/// The words that the value takes, or 0 where those of its type do not fit into them: such a value is no number.
std::size_t LengthInWords(const ColumnCoding& coding)
{
    const std::size_t least = WordsOfType(coding.dataType);
    const auto length = static_cast<std::size_t>(std::max(coding.dataLength, 0));
    return least == 0 || length < least ? 0 : length;
}

/// The bytes of the value that its type takes; none when not all of its words are there.
std::span<const std::byte> BytesOfType(const ColumnCoding& coding, std::span<const std::byte> words)
{
    const std::size_t length = LengthInWords(coding);
    if (length == 0 || words.size() / 2 < length)
        return {};
    return words.first(2 * WordsOfType(coding.dataType));
}

std::int64_t LoadInteger(DataType type, std::span<const std::byte> bytes)
{
    const auto value = LoadLittleEndian<std::uint32_t>(bytes);
    if (!IsSigned(type))
        return value;
    return bytes.size() == 2 ? static_cast<std::int16_t>(value) : static_cast<std::int32_t>(value);
}

double LoadReal(DataType type, std::span<const std::byte> bytes)
{
    if (type == DataType::Float)
        return std::bit_cast<float>(LoadLittleEndian<std::uint32_t>(bytes));
    return std::bit_cast<double>(LoadLittleEndian<std::uint64_t>(bytes));
}

/// What std::to_chars makes of it, which is the shortest text that gives it back.
template <class... Format>
std::u16string Converted(Format... format)
{
    std::array<char, 64> buffer;
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), format...);
    return {buffer.data(), written.ptr};
}

std::u16string ShortestText(DataType type, double value)
{
    if (type == DataType::Float)
        return Converted(static_cast<float>(value), std::chars_format::scientific);
    return Converted(value, std::chars_format::scientific);
}

/// The range of the integers of a type.
struct IntegerRange {
    std::int64_t lowest;
    std::int64_t highest;
};

IntegerRange RangeOf(DataType type)
{
    const std::int64_t count = std::int64_t{1} << (16 * WordsOfType(type));
    return IsSigned(type) ? IntegerRange{-count / 2, count / 2 - 1} : IntegerRange{0, count - 1};
}

/// The bits that store `number` in the type's own words.
std::optional<std::uint64_t> BitsOf(const ColumnCoding& coding, const CDecimal& number)
{
    if (coding.dataType == DataType::Float) {
        const auto value = number.ToFloat();
        return value ? std::optional<std::uint64_t>(std::bit_cast<std::uint32_t>(*value)) : std::nullopt;
    }
    if (coding.dataType == DataType::Double) {
        const auto value = number.ToDouble();
        return value ? std::optional(std::bit_cast<std::uint64_t>(*value)) : std::nullopt;
    }
    const auto value = number.Scaled(DecimalsOf(coding)).ToInt64();
    const IntegerRange range = RangeOf(coding.dataType);
    if (!value || *value < range.lowest || *value > range.highest)
        return std::nullopt;
    return static_cast<std::uint64_t>(*value);
}

std::u16string RealText(const CDecimal& number)
{
    std::u16string text = number.Text();
    return text.size() <= kReadableLength ? text : number.TextWithExponent();
}

/// The value of a hexadecimal digit; nothing for any other character.
std::optional<std::int64_t> DigitValue(char16_t c)
{
    if (c >= u'0' && c <= u'9')
        return c - u'0';
    if (c >= u'A' && c <= u'F')
        return c - u'A' + 10;
    if (c >= u'a' && c <= u'f')
        return c - u'a' + 10;
    return std::nullopt;
}

/// The hexadecimal number that all of `text` is.
std::optional<CDecimal> ReadHexadecimalNumber(std::u16string_view text)
{
    constexpr std::size_t kMostDigits = 15; // far more than a value has
    const std::size_t zeros = std::min(text.find_first_not_of(u'0'), text.size());
    if (text.empty() || text.size() - zeros > kMostDigits)
        return std::nullopt;
    std::int64_t value = 0;
    for (const char16_t c : text.substr(zeros)) {
        const auto digit = DigitValue(c);
        if (!digit)
            return std::nullopt;
        value = 16 * value + *digit;
    }
    return CDecimal(value);
}

} // namespace

std::int32_t DecimalsOf(const ColumnCoding& coding)
{
    return IsHexadecimal(coding.dataType) ? 0 : std::clamp(coding.decimalDigits, 0, kMostDecimals);
}

NumberKind KindOfNumber(const ColumnCoding& coding, std::span<const std::byte> words)
{
    const auto bytes = BytesOfType(coding, words);
    if (bytes.empty())
        return NumberKind::None;
    if (IsInteger(coding.dataType))
        return NumberKind::Finite;
    const double value = LoadReal(coding.dataType, bytes);
    if (std::isnan(value))
        return NumberKind::NotANumber;
    if (std::isinf(value))
        return value < 0 ? NumberKind::MinusInfinity : NumberKind::Infinity;
    return NumberKind::Finite;
}

std::optional<CDecimal> StoredNumber(const ColumnCoding& coding, std::span<const std::byte> words)
{
    if (KindOfNumber(coding, words) != NumberKind::Finite)
        return std::nullopt;
    const auto bytes = BytesOfType(coding, words);
    if (IsInteger(coding.dataType))
        return CDecimal(LoadInteger(coding.dataType, bytes)).Scaled(-DecimalsOf(coding));
    return CDecimal::Parse(ShortestText(coding.dataType, LoadReal(coding.dataType, bytes)));
}

std::u16string StoredNumberText(const ColumnCoding& coding, std::span<const std::byte> words)
{
    switch (KindOfNumber(coding, words)) {
    case NumberKind::Finite:
        return NumberText(coding, StoredNumber(coding, words).value_or(CDecimal()));
    case NumberKind::Infinity:
        return u"inf";
    case NumberKind::MinusInfinity:
        return u"-inf";
    case NumberKind::NotANumber:
        return u"nan";
    case NumberKind::None:
        break;
    }
    return {};
}

std::u16string NumberText(const ColumnCoding& coding, const CDecimal& number)
{
    if (IsReal(coding.dataType))
        return RealText(number);
    if (IsHexadecimal(coding.dataType))
        if (const auto value = number.ToInt64(); value && *value >= 0)
            return HexadecimalText(*value);
    return number.Text(DecimalsOf(coding));
}

std::optional<std::u16string> WordsOfNumber(const ColumnCoding& coding, const CDecimal& number)
{
    const std::size_t length = LengthInWords(coding);
    if (length == 0)
        return std::nullopt;
    const auto bits = BitsOf(coding, number);
    if (!bits)
        return std::nullopt;
    std::u16string words(length, u'\0');
    for (std::size_t i = 0; i < WordsOfType(coding.dataType); ++i)
        words[i] = static_cast<char16_t>(*bits >> (16 * i));
    return words;
}

std::u16string_view WithoutBlanks(std::u16string_view text)
{
    constexpr std::u16string_view kBlanks = u" \t\n\v\f\r";
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::u16string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

std::optional<CDecimal> NumberOfText(const ColumnCoding& coding, std::u16string_view text)
{
    const std::u16string_view number = WithoutBlanks(text);
    if (IsHexadecimal(coding.dataType))
        return ReadHexadecimalNumber(number);
    return WordsOfType(coding.dataType) == 0 ? std::nullopt : CDecimal::Parse(number);
}
