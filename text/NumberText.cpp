#include "text/NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

namespace {

constexpr bool IsBlank(char16_t c)
{
    return c == u' ' || (c >= u'\t' && c <= u'\r');
}

constexpr bool IsDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

/// Takes leading blanks and one sign off `text`; true for "-".
bool TakeSign(std::u16string_view& text)
{
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    if (text.empty() || (text.front() != u'-' && text.front() != u'+'))
        return false;
    const bool isNegative = text.front() == u'-';
    text.remove_prefix(1);
    return isNegative;
}

/// Whether `text`, its sign taken off, begins a decimal number. "inf" and "nan" do not, though from_chars reads them.
bool BeginsWithDigits(std::u16string_view text)
{
    if (text.starts_with(u'.'))
        text.remove_prefix(1);
    return !text.empty() && IsDigit(text.front());
}

constexpr char16_t kLastAscii = u'\x7F';

/// The values of the hexadecimal digits; 0 for any other character.
constexpr auto kHexDigits = [] {
    std::array<std::uint8_t, kLastAscii> values{};
    for (std::uint8_t i = 0; i < 16; ++i) {
        values[static_cast<unsigned char>("0123456789ABCDEF"[i])] = i;
        values[static_cast<unsigned char>("0123456789abcdef"[i])] = i;
    }
    return values;
}();

/// Any integer of so many digits is a double without rounding.
constexpr std::size_t kExactDigits = std::numeric_limits<double>::digits10;
constexpr std::size_t kExactPowers = 23; ///< 10^0 to 10^22 are doubles without rounding

constexpr std::array<double, kExactPowers> kPowersOfTen{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                        1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                        1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// A number without a sign, as it was typed: `digits` divided by 10^decimals.
struct ShortDecimal {
    std::int64_t digits = 0;
    std::size_t decimals = 0;
};

/// Reads a text that is nothing but a few digits with at most one point, the usual one.
std::optional<ShortDecimal> ReadShortDecimal(std::u16string_view text)
{
    if (text.empty() || text.size() > kExactDigits || text == u".")
        return std::nullopt;
    std::int64_t digits = 0;
    std::size_t afterPoint = 0; // the point's position from 1; 0 while there is none
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (IsDigit(text[i]))
            digits = digits * 10 + (text[i] - u'0');
        else if (text[i] == u'.' && afterPoint == 0)
            afterPoint = i + 1;
        else
            return std::nullopt;
    }
    return ShortDecimal{digits, afterPoint == 0 ? 0 : text.size() - afterPoint};
}

/// Numerator and denominator are exact, so the one division gives the double that reading all decimals would give.
double ValueOf(const ShortDecimal& number)
{
    const auto value = static_cast<double>(number.digits);
    return number.decimals == 0 ? value : value / kPowersOfTen[number.decimals];
}

/// The exponent with which a decimal number ends, its "e" in front; 0 without one. At most as far from 0 as a text in
/// memory can make up for.
std::int64_t ReadExponent(std::string_view text)
{
    constexpr std::int64_t kFarAway = std::numeric_limits<std::int32_t>::max();
    if (text.empty())
        return {};
    text.remove_prefix(1);
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+'))
        text.remove_prefix(1);
    std::int64_t exponent = kFarAway; // stays where there are too many digits
    std::from_chars(text.data(), std::to_address(text.end()), exponent);
    return isNegative ? -std::min(exponent, kFarAway) : std::min(exponent, kFarAway);
}

/// Whether `number`, a decimal number in full and out of a double's range, is too large and not too small.
bool IsTooLarge(std::string_view number)
{
    const std::size_t exponentAt = std::min(number.find_first_of("eE"), number.size());
    const std::string_view digits(number.data(), exponentAt);
    const auto point = static_cast<std::int64_t>(std::min(digits.find('.'), digits.size()));
    const auto first = static_cast<std::int64_t>(std::min(digits.find_first_of("123456789"), digits.size()));
    return ReadExponent(number.substr(exponentAt)) + point > first;
}

/// The value of the number without a sign that `number` begins with.
double ReadNarrow(std::string_view number)
{
    double value{};
    const auto [end, fault] = std::from_chars(number.data(), std::to_address(number.end()), value);
    if (fault != std::errc::result_out_of_range)
        return value;
    const auto length = static_cast<std::size_t>(end - number.data());
    return IsTooLarge({number.data(), length}) ? std::numeric_limits<double>::infinity() : 0.0;
}

std::int32_t LowBits(std::int64_t value)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}

char Narrow(char16_t c)
{
    return static_cast<char>(std::min(c, kLastAscii)); // which ends a number just as well
}

double ReadLongDecimal(std::u16string_view text)
{
    std::array<char, std::numeric_limits<double>::max_exponent10> few; // enough for most, without memory of their own
    if (text.size() <= few.size()) {
        std::transform(text.begin(), text.end(), few.begin(), Narrow);
        return ReadNarrow({few.data(), text.size()});
    }
    std::string many(text.size(), char{});
    std::transform(text.begin(), text.end(), many.begin(), Narrow);
    return ReadNarrow(many);
}

} // namespace

double ReadDecimal(std::u16string_view text)
{
    const bool isNegative = TakeSign(text);
    const std::optional<ShortDecimal> number = ReadShortDecimal(text);
    if (!number && !BeginsWithDigits(text))
        return 0; // not -0
    const double value = number ? ValueOf(*number) : ReadLongDecimal(text);
    return isNegative ? -value : value;
}

std::int64_t ReadInteger64(std::u16string_view text)
{
    using Limits = std::numeric_limits<std::int64_t>;
    const bool isNegative = TakeSign(text);
    std::int64_t value = 0; // kept at or below 0: the negative range is the larger one
    for (const char16_t c : text) {
        if (!IsDigit(c))
            break;
        const std::int64_t digit = c - u'0';
        if (value < (Limits::min() + digit) / 10)
            return isNegative ? Limits::min() : Limits::max();
        value = value * 10 - digit;
    }
    if (isNegative)
        return value;
    return value == Limits::min() ? Limits::max() : -value;
}

std::int32_t ReadInteger(std::u16string_view text)
{
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<std::int64_t>(ReadInteger64(text), Limits::min(), Limits::max()));
}

std::uint32_t ReadHexadecimal(std::u16string_view text)
{
    std::uint32_t value = 0;
    for (const char16_t c : text)
        value = value << 4 | (c < kHexDigits.size() ? kHexDigits[c] : 0U);
    return value;
}

std::int32_t TruncateTo32(double value)
{
    return std::abs(value) < 0x1p63 ? LowBits(static_cast<std::int64_t>(value)) : 0; // as the low bits of -2^63 are
}

std::int32_t ReadScaledInteger(std::u16string_view text, std::int32_t decimals)
{
    if (decimals <= 0) {
        std::u16string_view digits = text;
        const bool isNegative = TakeSign(digits);
        if (const auto number = ReadShortDecimal(digits); number && number->decimals == 0)
            return LowBits(isNegative ? -number->digits : number->digits);
    }
    return TruncateTo32(ReadDecimal(text) * PowerOfTen(decimals));
}

double PowerOfTen(std::int32_t digits)
{
    const auto power = static_cast<std::size_t>(std::max(digits, 0));
    if (power < kPowersOfTen.size())
        return kPowersOfTen[power];
    return ReadNarrow("1e" + std::to_string(digits)); // std::pow does not promise the nearest double
}

std::u16string DecimalText(std::int64_t value)
{
    const std::string digits = std::to_string(value);
    return {digits.begin(), digits.end()};
}

void AppendDecimal(std::int64_t value, std::string& text)
{
    std::array<char, 20> buffer;
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    text.append(buffer.data(), written.ptr);
}

std::u16string HexadecimalText(std::int64_t value)
{
    std::array<char, 20> buffer;
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, 16);
    std::u16string text(buffer.data(), written.ptr);
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char16_t c) { return c >= u'a' ? static_cast<char16_t>(c - u'a' + u'A') : c; });
    return text;
}

bool IsAbove(double value, std::int64_t limit)
{
    const auto nearest = static_cast<double>(limit);
    return value > nearest || (value == nearest && (nearest >= 0x1p63 || static_cast<std::int64_t>(nearest) > limit));
}

bool IsBelow(double value, std::int64_t limit)
{
    const auto nearest = static_cast<double>(limit);
    return value < nearest || (value == nearest && nearest < 0x1p63 && static_cast<std::int64_t>(nearest) < limit);
}
