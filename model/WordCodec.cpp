#include "model/WordCodec.h"

#include "model/LittleEndian.h"
#include "text/AnsiText.h"
#include "text/NumberText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

static_assert(std::numeric_limits<float>::is_iec559 && std::numeric_limits<double>::is_iec559);

/// Digits that a text takes on one side of its point at most, whatever a record asks for: more than any double has.
constexpr std::int32_t kMostDigits = 1100;

/// Room for the longest number: padded to kMostDigits on both sides of the point, or the digits of a 64-bit integer.
constexpr std::size_t kLongestNumber = 2 * kMostDigits + 32;
using NumberBuffer = std::array<char16_t, kLongestNumber>;

std::int32_t ShownDigits(std::int32_t digits)
{
    return std::clamp(digits, 0, kMostDigits);
}

std::size_t ByteLength(const ColumnCoding& coding)
{
    return 2 * static_cast<std::size_t>(std::max(coding.dataLength, 0));
}

/// The part of the `length` bytes at `pos` that lies within `image`.
template <class Byte>
std::span<Byte> BytesAt(std::span<Byte> image, std::size_t pos, std::size_t length)
{
    const auto rest = image.subspan(std::min(pos, image.size()));
    return rest.first(std::min(length, rest.size()));
}

// The Put functions write at `out`, inside a NumberBuffer, and return the end of what they wrote.

char16_t* PutAscii(char16_t* out, std::string_view ascii)
{
    return std::transform(ascii.begin(), ascii.end(), out, [](char c) { return static_cast<char16_t>(c); });
}

constexpr auto kDigitPairs = [] {
    std::array<char16_t, 200> pairs{};
    for (std::size_t i = 0; i < pairs.size(); i += 2) {
        pairs[i] = static_cast<char16_t>(u'0' + i / 20);
        pairs[i + 1] = static_cast<char16_t>(u'0' + i / 2 % 10);
    }
    return pairs;
}();

/// Counted by comparing, not by branching: the lengths of a column's values cannot be foreseen.
std::size_t DigitCount(std::uint32_t value)
{
    constexpr std::uint32_t kPowers[]{10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};
    std::size_t count = 1;
    for (const std::uint32_t power : kPowers)
        count += value >= power ? 1 : 0;
    return count;
}

/// As std::to_chars, but straight into UTF-16 and two digits a step: most cells are such numbers.
char16_t* PutUnsignedDigits(char16_t* out, std::uint32_t value)
{
    char16_t* const end = out + DigitCount(value);
    char16_t* at = end;
    while (value >= 100) {
        at -= 2;
        std::copy_n(&kDigitPairs[value % 100 * 2], 2, at);
        value /= 100;
    }
    const bool isPair = value >= 10;
    *out = kDigitPairs[value * 2 + (isPair ? 0 : 1)];
    if (isPair)
        out[1] = kDigitPairs[value * 2 + 1];
    return end;
}

char16_t* PutInteger(char16_t* out, std::int32_t value)
{
    const std::uint32_t isNegative = value < 0 ? 1U : 0U;
    *out = u'-';
    return PutUnsignedDigits(out + isNegative, (static_cast<std::uint32_t>(value) ^ (0 - isNegative)) + isNegative);
}

/// `digits` after the point, made `count` characters long. kept: the zeros go after the digits, so 5 becomes "50".
char16_t* PutFraction(char16_t* out, std::u16string_view digits, std::size_t count)
{
    *out++ = u'.';
    out = std::copy(digits.begin(), digits.end(), out);
    return std::fill_n(out, count - digits.size(), u'0');
}

/// `value` divided by 10^decimals, truncated.
template <class Integer>
Integer IntegerPart(Integer value, std::int32_t decimals)
{
    for (; decimals > 0 && value != 0; --decimals)
        value /= 10;
    return value;
}

/// A signed word value within its limits: a value above them lost its sign in a single word, one below them is shown
/// as 0.
std::int32_t WithinLimits(const ColumnCoding& coding, std::uint32_t word)
{
    const std::uint32_t excess = static_cast<std::int32_t>(word) > coding.maxValue ? 1U : 0U;
    const auto value = static_cast<std::int32_t>(word - (excess << 16));
    return value < coding.minValue ? 0 : value;
}

char16_t* PutSigned(char16_t* out, std::int32_t value, std::int32_t decimals)
{
    if (decimals == 0)
        return PutInteger(out, value);
    std::array<char16_t, 16> digits;
    const std::u16string_view whole(digits.data(), PutInteger(digits.data(), value));
    const auto count = static_cast<std::size_t>(decimals);
    const std::u16string_view fraction = whole.substr(whole.size() - std::min(whole.size(), count));
    const std::int32_t integerPart = IntegerPart(value, decimals);
    // kept: a sign among the last characters stays there, so -5 with two decimals is "0.-5"
    if (value < 0 && integerPart == 0 && !fraction.starts_with(u'-'))
        *out++ = u'-';
    return PutFraction(PutInteger(out, integerPart), fraction, count);
}

char16_t* PutUnsigned(char16_t* out, std::uint32_t value, std::int32_t decimals)
{
    if (decimals == 0)
        return PutInteger(out, static_cast<std::int32_t>(value)); // kept: 0xFFFFFFFF is "-1"
    const std::uint32_t integerPart = IntegerPart(value, decimals);
    std::uint32_t fraction = value;
    if (integerPart != 0)
        fraction -= integerPart * static_cast<std::uint32_t>(PowerOfTen(decimals));
    std::array<char16_t, 16> digits;
    const char16_t* const end = PutUnsignedDigits(digits.data(), fraction);
    return PutFraction(PutUnsignedDigits(out, integerPart), {digits.data(), end}, static_cast<std::size_t>(decimals));
}

char16_t* PutHexadecimal(char16_t* out, std::uint32_t value)
{
    const int digits = std::max((35 - std::countl_zero(value)) / 4, 1);
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        *out++ = u"0123456789ABCDEF"[value >> shift & 0xF];
    return out;
}

/// What std::to_chars makes of `value`.
template <class... Format>
char16_t* PutConverted(char16_t* out, Format... format)
{
    std::array<char, kLongestNumber> buffer;
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), format...);
    return PutAscii(out, {buffer.data(), written.ptr});
}

/// The value with its decimals, blanks in front up to `width` characters.
char16_t* PutFixed(char16_t* out, double value, std::int32_t decimals, std::size_t width)
{
    char16_t* const end = PutConverted(out, value, std::chars_format::fixed, decimals);
    const auto length = static_cast<std::size_t>(end - out);
    const std::size_t blanks = std::max(width, length) - length;
    std::copy_backward(out, end, end + blanks);
    std::fill_n(out, blanks, u' ');
    return end + blanks;
}

/// A float or double. Only one with decimals takes a width.
char16_t* PutReal(char16_t* out, const ColumnCoding& coding, double value, std::size_t width)
{
    const std::int32_t decimals = ShownDigits(coding.decimalDigits);
    if (IsAbove(value, coding.maxValue) || IsBelow(value, coding.minValue))
        return PutConverted(out, value, std::chars_format::scientific, 6);
    if (decimals > 0)
        return PutFixed(out, value, decimals, width);
    return PutConverted(out, std::isnan(value) ? 0 : static_cast<std::int64_t>(value));
}

/// kept: only the flat file pads a double.
std::size_t DoubleWidth(const ColumnCoding& coding, RecipeKind kind)
{
    if (kind == RecipeKind::Paged)
        return 0;
    return static_cast<std::size_t>(ShownDigits(coding.integerDigits)) +
           static_cast<std::size_t>(ShownDigits(coding.decimalDigits)) + 1;
}

void AppendDecimalInteger(const ColumnCoding& coding, std::span<const std::byte> bytes, std::u16string& text)
{
    if (bytes.size() < ByteLength(coding)) {
        text.push_back(u'0');
        return;
    }
    NumberBuffer buffer;
    const auto word = LoadLittleEndian<std::uint32_t>(bytes);
    const std::int32_t decimals = ShownDigits(coding.decimalDigits);
    const bool isSigned = coding.dataType == DataType::Signed16 || coding.dataType == DataType::Signed32;
    char16_t* const end = isSigned ? PutSigned(buffer.data(), WithinLimits(coding, word), decimals)
                                   : PutUnsigned(buffer.data(), word, decimals);
    text.append(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
}

void AppendHexadecimal(std::span<const std::byte> bytes, std::u16string& text)
{
    std::array<char16_t, 8> buffer;
    char16_t* const end = PutHexadecimal(buffer.data(), LoadLittleEndian<std::uint32_t>(bytes));
    text.append(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
}

void AppendReal(const ColumnCoding& coding, double value, std::size_t width, std::u16string& text)
{
    NumberBuffer buffer;
    char16_t* const end = PutReal(buffer.data(), coding, value, width);
    text.append(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
}

void AppendUnicode(std::span<const std::byte> bytes, std::u16string& text)
{
    for (std::size_t at = 0; at < bytes.size(); at += 2) {
        const auto unit = static_cast<char16_t>(LoadLittleEndian<std::uint16_t>(bytes.subspan(at)));
        if (unit == u'\0')
            return;
        text.push_back(unit);
    }
}

void AppendAnsi(std::span<const std::byte> bytes, std::u16string& text)
{
    const auto end = std::find(bytes.begin(), bytes.end(), std::byte{0});
    const auto length = static_cast<std::size_t>(end - bytes.begin());
    AppendFromAnsi({reinterpret_cast<const char*>(bytes.data()), length}, text);
}

std::uint32_t ScaledInteger(const ColumnCoding& coding, std::u16string_view text)
{
    return static_cast<std::uint32_t>(ReadScaledInteger(text, coding.decimalDigits));
}

/// The plain integer of a normalised text, its low 32 bits.
std::uint32_t PlainInteger(std::u16string_view text)
{
    return static_cast<std::uint32_t>(ReadInteger64(text));
}

/// A string's text ends at its first zero unit, in a cell as in the words.
std::u16string_view UpToZero(std::u16string_view text)
{
    return text.substr(0, text.find(u'\0'));
}

void StoreUnicode(std::u16string_view text, std::span<std::byte> bytes)
{
    for (std::size_t i = 0; 2 * i < bytes.size(); ++i)
        StoreLittleEndian(bytes.subspan(2 * i, 2), static_cast<std::uint16_t>(i < text.size() ? text[i] : u'\0'));
}

void StoreAnsi(std::u16string_view text, std::span<std::byte> bytes)
{
    thread_local std::string ansi; // reused: no allocation a value
    ansi.clear();
    AppendToAnsi(text, ansi);
    ansi.resize(bytes.size());
    std::transform(ansi.begin(), ansi.end(), bytes.begin(), [](char c) { return static_cast<std::byte>(c); });
}

} // namespace

std::u16string FormatValue(const ColumnCoding& coding, std::span<const std::byte> image, std::size_t& pos,
                           RecipeKind kind)
{
    std::u16string text;
    AppendValue(coding, image, pos, kind, text);
    return text;
}

void AppendValue(const ColumnCoding& coding, std::span<const std::byte> image, std::size_t& pos, RecipeKind kind,
                 std::u16string& text)
{
    const auto bytes = BytesAt(image, pos, ByteLength(coding));
    switch (coding.dataType) {
    case DataType::Signed16:
    case DataType::Signed32:
    case DataType::Unsigned16:
    case DataType::Unsigned32:
        AppendDecimalInteger(coding, bytes, text);
        break;
    case DataType::Hex16:
    case DataType::Hex32:
        AppendHexadecimal(bytes, text);
        break;
    case DataType::Float:
        AppendReal(coding, std::bit_cast<float>(LoadLittleEndian<std::uint32_t>(bytes)), 0, text);
        break;
    case DataType::Double: { // eight bytes, whatever length the item states
        const auto all = BytesAt(image, pos, sizeof(double));
        AppendReal(coding, std::bit_cast<double>(LoadLittleEndian<std::uint64_t>(all)), DoubleWidth(coding, kind),
                   text);
        break;
    }
    case DataType::String:
        if (coding.unicode != 0)
            AppendUnicode(bytes, text);
        else
            AppendAnsi(bytes, text);
        break;
    case DataType::NotChosen:
        break;
    }
    pos += ByteLength(coding);
}

void CodeValue(const ColumnCoding& coding, std::u16string_view text, std::span<std::byte> image, std::size_t& pos,
               RecipeKind kind)
{
    const auto bytes = BytesAt(image, pos, ByteLength(coding));
    const bool isNormalised = kind == RecipeKind::Paged;
    switch (coding.dataType) {
    case DataType::Signed16:
    case DataType::Signed32:
    case DataType::Unsigned16:
    case DataType::Unsigned32:
        StoreLittleEndian(bytes, isNormalised ? PlainInteger(text) : ScaledInteger(coding, text));
        break;
    case DataType::Hex16:
    case DataType::Hex32:
        StoreLittleEndian(bytes, isNormalised ? PlainInteger(text) : ReadHexadecimal(text));
        break;
    case DataType::Float:
        StoreLittleEndian(bytes, std::bit_cast<std::uint32_t>(static_cast<float>(ReadDecimal(text))));
        break;
    case DataType::Double:
        StoreLittleEndian(bytes, std::bit_cast<std::uint64_t>(ReadDecimal(text)));
        break;
    case DataType::String:
        if (coding.unicode != 0)
            StoreUnicode(UpToZero(text), bytes);
        else
            StoreAnsi(UpToZero(text), bytes);
        break;
    default:
        std::fill(bytes.begin(), bytes.end(), std::byte{0});
        break;
    }
    pos += ByteLength(coding);
}

std::u16string NormaliseForPagedFile(const ColumnCoding& coding, std::u16string_view text)
{
    if (coding.codeType == CodeType::Bin && IsDecimalInteger(coding.dataType))
        return DecimalText(ReadScaledInteger(text, coding.decimalDigits));
    if (coding.codeType == CodeType::Bin && IsHexadecimal(coding.dataType))
        return DecimalText(static_cast<std::int32_t>(ReadHexadecimal(text)));
    return std::u16string(text);
}
