#include "text/Decimal.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <limits>
#include <memory>
#include <system_error>
#include <utility>
#include <vector>

namespace {

// Numbers without sign and point are strings of their digits, the first digit first. They are short, most of all: a
// string of up to 15 digits needs no memory of its own.

std::string WithoutLeadingZeros(std::string digits)
{
    digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
    return digits;
}

/// Below, equal or above 0, as `a` is to `b`. Neither begins with a zero.
int Compared(std::string_view a, std::string_view b)
{
    if (a.size() != b.size())
        return a.size() < b.size() ? -1 : 1;
    return a.compare(b);
}

std::string Sum(std::string a, std::string_view b)
{
    a.insert(0, std::max(a.size(), b.size()) + 1 - a.size(), '0');
    int carry = 0;
    for (std::size_t fromEnd = 1; fromEnd <= a.size(); ++fromEnd) {
        char& digit = a[a.size() - fromEnd];
        const int sum = digit - '0' + carry + (fromEnd <= b.size() ? b[b.size() - fromEnd] - '0' : 0);
        digit = static_cast<char>('0' + sum % 10);
        carry = sum / 10;
    }
    return WithoutLeadingZeros(std::move(a));
}

/// `a` is not below `b`.
std::string Difference(std::string a, std::string_view b)
{
    int borrowed = 0;
    for (std::size_t fromEnd = 1; fromEnd <= a.size(); ++fromEnd) {
        char& digit = a[a.size() - fromEnd];
        const int rest = digit - '0' - borrowed - (fromEnd <= b.size() ? b[b.size() - fromEnd] - '0' : 0);
        borrowed = rest < 0 ? 1 : 0;
        digit = static_cast<char>('0' + rest + 10 * borrowed);
    }
    return WithoutLeadingZeros(std::move(a));
}

std::string Product(std::string_view a, std::string_view b)
{
    std::vector<std::uint32_t> places(a.size() + b.size(), 0); // the units first; no sum of so few digits overflows
    for (std::size_t i = 0; i < a.size(); ++i)
        for (std::size_t j = 0; j < b.size(); ++j)
            places[i + j] += static_cast<std::uint32_t>((a[a.size() - 1 - i] - '0') * (b[b.size() - 1 - j] - '0'));
    std::uint32_t carry = 0;
    for (std::uint32_t& place : places) {
        place += carry;
        carry = place / 10;
        place %= 10;
    }
    std::string digits(places.size(), '0');
    std::transform(places.rbegin(), places.rend(), digits.begin(),
                   [](std::uint32_t place) { return static_cast<char>('0' + place); });
    return WithoutLeadingZeros(std::move(digits));
}

/// `a` divided by `b`, which is not 0, half rounded up.
std::string Quotient(std::string_view a, const std::string& b)
{
    std::string digits;
    std::string rest;
    for (const char digit : a) {
        rest = WithoutLeadingZeros(std::move(rest) + digit);
        char times = '0';
        for (; Compared(rest, b) >= 0; ++times)
            rest = Difference(std::move(rest), b);
        digits += times;
    }
    const bool isHalf = Compared(Sum(rest, rest), b) >= 0;
    return Sum(std::move(digits), isHalf ? "1" : "");
}

std::string Shifted(std::string digits, std::int32_t zeros)
{
    digits.append(static_cast<std::size_t>(std::max(zeros, 0)), '0');
    return digits;
}

constexpr bool IsDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}

/// Takes a sign off `text`; true for "-".
bool TakeSign(std::u16string_view& text)
{
    const bool isNegative = text.starts_with(u'-');
    if (isNegative || text.starts_with(u'+'))
        text.remove_prefix(1);
    return isNegative;
}

/// Takes the digits that `text` begins with off it.
std::u16string_view TakeDigits(std::u16string_view& text)
{
    const auto end = std::find_if_not(text.begin(), text.end(), IsDigit);
    const std::u16string_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(digits.size());
    return digits;
}

/// The exponent that all of `text` is, its "e" taken off; nothing for anything else. One that no text in memory can
/// make up for stands for all that are further from 0.
std::optional<std::int64_t> ReadExponent(std::u16string_view text)
{
    constexpr std::int64_t kFarAway = 100'000'000'000'000'000;
    const bool isNegative = TakeSign(text);
    const std::u16string_view digits = TakeDigits(text);
    if (digits.empty() || !text.empty())
        return std::nullopt;
    std::int64_t exponent = 0;
    for (const char16_t digit : digits)
        exponent = std::min(exponent * 10 + (digit - u'0'), kFarAway);
    return isNegative ? -exponent : exponent;
}

/// An unsigned number as it was read, with no bound yet.
struct ReadNumber {
    std::u16string_view whole;
    std::u16string_view fraction;
    std::int64_t exponent = 0;
};

/// The number that all of `text` is, its sign taken off.
std::optional<ReadNumber> ReadUnsigned(std::u16string_view text)
{
    ReadNumber number;
    number.whole = TakeDigits(text);
    if (text.starts_with(u'.')) {
        text.remove_prefix(1);
        number.fraction = TakeDigits(text);
    }
    if (number.whole.empty() && number.fraction.empty())
        return std::nullopt;
    if (text.empty())
        return number;
    if (text.front() != u'e' && text.front() != u'E')
        return std::nullopt;
    const auto exponent = ReadExponent(text.substr(1));
    if (!exponent)
        return std::nullopt;
    number.exponent = *exponent;
    return number;
}

void AppendDigits(std::u16string_view digits, std::string& text)
{
    std::transform(digits.begin(), digits.end(), std::back_inserter(text),
                   [](char16_t c) { return static_cast<char>(c); });
}

} // namespace

CDecimal::CDecimal(std::int64_t value) : CDecimal(value < 0, std::to_string(value).substr(value < 0 ? 1 : 0), 0) {}

CDecimal::CDecimal(bool isNegative, std::string digits, std::int32_t exponent)
    : m_digits(WithoutLeadingZeros(std::move(digits)))
{
    if (m_digits.empty())
        return;
    const std::size_t length = m_digits.find_last_not_of('0') + 1;
    m_exponent = exponent + static_cast<std::int32_t>(m_digits.size() - length);
    m_digits.resize(length);
    m_isNegative = isNegative;
}

std::optional<CDecimal> CDecimal::Parse(std::u16string_view text)
{
    const bool isNegative = TakeSign(text);
    const auto number = ReadUnsigned(text);
    if (!number)
        return std::nullopt;
    std::string digits;
    AppendDigits(number->whole, digits);
    AppendDigits(number->fraction, digits);
    const std::size_t first = digits.find_first_not_of('0');
    if (first == std::string::npos)
        return CDecimal();
    const std::size_t end = digits.find_last_not_of('0') + 1;

    // Where the digits that count begin and end, seen from the point.
    const std::int64_t point = static_cast<std::int64_t>(number->whole.size()) + number->exponent;
    const std::int64_t before = point - static_cast<std::int64_t>(first);
    const std::int64_t after = static_cast<std::int64_t>(end) - point;
    if (before > kMostPlaces || after > kMostPlaces)
        return std::nullopt;
    return CDecimal(isNegative, digits.substr(first, end - first), static_cast<std::int32_t>(-after));
}

std::optional<std::int64_t> CDecimal::ToInt64() const
{
    using Limits = std::numeric_limits<std::int64_t>;
    if (!IsWhole() || *this < CDecimal(Limits::min()) || *this > CDecimal(Limits::max()))
        return std::nullopt;
    const std::string text = (m_isNegative ? "-" : "") + DigitsDownTo(0);
    std::int64_t value = 0;
    std::from_chars(text.data(), std::to_address(text.end()), value);
    return value;
}

template <class Real>
std::optional<Real> CDecimal::To() const
{
    const std::string text = (m_isNegative ? "-" : "") + m_digits + "e" + std::to_string(m_exponent);
    Real value{};
    if (IsZero())
        return value;
    const auto [end, fault] = std::from_chars(text.data(), std::to_address(text.end()), value);
    const bool isOutOfRange = fault == std::errc::result_out_of_range;
    if (std::isinf(value) || (isOutOfRange && static_cast<std::int64_t>(m_digits.size()) + m_exponent > 0))
        return std::nullopt;
    return isOutOfRange ? Real{} : value; // too small for any other
}

std::optional<float> CDecimal::ToFloat() const
{
    return To<float>();
}

std::optional<double> CDecimal::ToDouble() const
{
    return To<double>();
}

CDecimal CDecimal::Rounded(std::int32_t decimals) const
{
    if (m_exponent >= -decimals)
        return *this;
    const std::size_t dropped = static_cast<std::size_t>(-decimals - m_exponent);
    if (dropped > m_digits.size())
        return {};
    const std::size_t kept = m_digits.size() - dropped;
    return {m_isNegative, Sum(m_digits.substr(0, kept), m_digits[kept] >= '5' ? "1" : ""), -decimals};
}

CDecimal CDecimal::Scaled(std::int32_t places) const
{
    CDecimal scaled = *this;
    if (!IsZero())
        scaled.m_exponent += places;
    return scaled;
}

std::optional<CDecimal> CDecimal::DividedBy(const CDecimal& divisor, std::int32_t decimals) const
{
    if (divisor.IsZero())
        return std::nullopt;
    const std::int32_t shift = m_exponent - divisor.m_exponent + decimals;
    std::string quotient = Quotient(Shifted(m_digits, shift), Shifted(divisor.m_digits, -shift));
    return CDecimal(m_isNegative != divisor.m_isNegative, std::move(quotient), -decimals);
}

std::u16string CDecimal::Text(std::int32_t decimals) const
{
    const std::int32_t shown = std::max(IsZero() ? 0 : -m_exponent, std::max(decimals, 0));
    const auto count = static_cast<std::size_t>(shown);
    std::string digits = DigitsDownTo(-shown);
    if (digits.size() <= count)
        digits.insert(0, count + 1 - digits.size(), '0');
    if (count > 0)
        digits.insert(digits.size() - count, 1, '.');
    std::u16string text(m_isNegative ? u"-" : u"");
    text.append(digits.begin(), digits.end());
    return text;
}

std::u16string CDecimal::TextWithExponent() const
{
    if (IsZero())
        return u"0e+0";
    std::string text = m_digits;
    if (text.size() > 1)
        text.insert(1, 1, '.');
    const std::int64_t exponent = m_exponent + static_cast<std::int64_t>(m_digits.size()) - 1;
    text += (exponent < 0 ? "e" : "e+") + std::to_string(exponent);
    return (m_isNegative ? u"-" : u"") + std::u16string(text.begin(), text.end());
}

std::string CDecimal::DigitsDownTo(std::int32_t exponent) const
{
    return IsZero() ? std::string() : Shifted(m_digits, m_exponent - exponent);
}

CDecimal CDecimal::operator-() const
{
    CDecimal negated = *this;
    negated.m_isNegative = !m_isNegative && !IsZero();
    return negated;
}

CDecimal operator+(const CDecimal& a, const CDecimal& b)
{
    if (a.IsZero() || b.IsZero())
        return a.IsZero() ? b : a;
    const std::int32_t exponent = std::min(a.m_exponent, b.m_exponent);
    std::string ofA = a.DigitsDownTo(exponent);
    std::string ofB = b.DigitsDownTo(exponent);
    if (a.m_isNegative == b.m_isNegative)
        return {a.m_isNegative, Sum(std::move(ofA), ofB), exponent};
    if (Compared(ofA, ofB) >= 0)
        return {a.m_isNegative, Difference(std::move(ofA), ofB), exponent};
    return {b.m_isNegative, Difference(std::move(ofB), ofA), exponent};
}

CDecimal operator*(const CDecimal& a, const CDecimal& b)
{
    return {a.m_isNegative != b.m_isNegative, Product(a.m_digits, b.m_digits), a.m_exponent + b.m_exponent};
}

std::strong_ordering operator<=>(const CDecimal& a, const CDecimal& b)
{
    if (a.IsZero() || b.IsZero() || a.m_isNegative != b.m_isNegative) {
        const auto sign = [](const CDecimal& n) { return n.IsZero() ? 0 : (n.m_isNegative ? -1 : 1); };
        return sign(a) <=> sign(b);
    }
    if (a.m_isNegative)
        return -b <=> -a;
    // The first digits stand at the same place, or the number whose first one stands higher is the larger one.
    const auto firstPlace = [](const CDecimal& n) {
        return static_cast<std::int64_t>(n.m_digits.size()) + n.m_exponent;
    };
    if (firstPlace(a) != firstPlace(b))
        return firstPlace(a) <=> firstPlace(b);
    return a.m_digits.compare(b.m_digits) <=> 0;
}
