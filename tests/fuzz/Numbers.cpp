#include "tests/fuzz/Numbers.h"

#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace {

bool IsDigitAt(std::u16string_view text, std::size_t at)
{
    return at < text.size() && text[at] >= u'0' && text[at] <= u'9';
}

bool IsOneOf(std::u16string_view text, std::size_t at, std::u16string_view characters)
{
    return at < text.size() && text[at] != u'\0' && characters.find(text[at]) != std::u16string_view::npos;
}

std::size_t BehindBlanks(std::u16string_view text)
{
    std::size_t at = 0;
    while (IsOneOf(text, at, u" \t\n\v\f\r"))
        ++at;
    return at;
}

std::size_t BehindDigits(std::u16string_view text, std::size_t at)
{
    while (IsDigitAt(text, at))
        ++at;
    return at;
}

/// Where the decimal number ends that begins at `begin`; `begin` when there is none.
std::size_t BehindDecimal(std::u16string_view text, std::size_t begin)
{
    const std::size_t digits = IsOneOf(text, begin, u"+-") ? begin + 1 : begin;
    std::size_t end = BehindDigits(text, digits);
    if (end == digits && !(IsOneOf(text, end, u".") && IsDigitAt(text, end + 1)))
        return begin;
    if (IsOneOf(text, end, u"."))
        end = BehindDigits(text, end + 1);
    if (!IsOneOf(text, end, u"eE"))
        return end;
    const std::size_t exponent = IsOneOf(text, end + 1, u"+-") ? end + 2 : end + 1;
    return IsDigitAt(text, exponent) ? BehindDigits(text, exponent) : end;
}

} // namespace

double PlainDecimal(std::u16string_view text)
{
    const std::size_t begin = BehindBlanks(text);
    const std::u16string_view number = text.substr(begin, BehindDecimal(text, begin) - begin);
    const std::string narrow(number.begin(), number.end());
    return std::strtod(narrow.c_str(), nullptr);
}

std::int64_t PlainInteger64(std::u16string_view text)
{
    const std::size_t begin = BehindBlanks(text);
    const std::size_t digits = IsOneOf(text, begin, u"+-") ? begin + 1 : begin;
    const std::u16string_view number = text.substr(begin, BehindDigits(text, digits) - begin);
    const std::string narrow(number.begin(), number.end());
    return std::strtoll(narrow.c_str(), nullptr, 10);
}

std::uint32_t PlainHexadecimal(std::u16string_view text)
{
    std::uint32_t sum = 0;
    for (std::size_t distance = 0; distance < text.size() && distance < 8; ++distance) {
        const char16_t c = text[text.size() - 1 - distance];
        std::uint32_t digit = 0;
        if (c >= u'0' && c <= u'9')
            digit = static_cast<std::uint32_t>(c - u'0');
        else if (c >= u'A' && c <= u'F')
            digit = static_cast<std::uint32_t>(c - u'A' + 10);
        else if (c >= u'a' && c <= u'f')
            digit = static_cast<std::uint32_t>(c - u'a' + 10);
        sum += digit << (4 * distance);
    }
    return sum;
}

std::uint32_t PlainScaled(std::u16string_view text, std::int32_t decimals)
{
    const std::string power = "1e" + std::to_string(decimals > 0 ? decimals : 0);
    const double value = std::trunc(PlainDecimal(text) * std::strtod(power.c_str(), nullptr));
    if (!(value >= -9223372036854775808.0 && value < 9223372036854775808.0))
        return 0;
    return static_cast<std::uint32_t>(static_cast<std::int64_t>(value));
}

std::u16string Printed(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, arguments);
    va_end(arguments);
    return {text.begin(), text.end() - 1};
}
