#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Numbers out of typed text and into text, without the user's locale: "1.5" is one and a half everywhere.

/// The decimal number that `text` begins with: leading blanks, a sign, digits with one point, an exponent. Reading
/// stops at the first character that cannot go on; 0 when there is no number. Never "inf", "nan" or a hexadecimal form;
/// a number too large for a double is the infinity of its sign.
double ReadDecimal(std::u16string_view text);

/// The decimal integer that `text` begins with (leading blanks, a sign, digits); 0 when there is none. What does not
/// fit is the nearest limit of the type.
std::int32_t ReadInteger(std::u16string_view text);
std::int64_t ReadInteger64(std::u16string_view text);

/// The hexadecimal sum of `text` in 32 bits, read from its last character to its first: any character that is no
/// hexadecimal digit counts 0 but keeps its place ("1G" is 0x10). What stands above 32 bits is lost.
std::uint32_t ReadHexadecimal(std::u16string_view text);

/// `value` truncated toward zero, its low 32 bits; 0 for a value that does not fit 64 bits or is not a number.
std::int32_t TruncateTo32(double value);

/// 10 to the power `digits`; 1 for 0 or fewer, infinity beyond a double's range.
double PowerOfTen(std::int32_t digits);

/// The decimal number that `text` begins with, times 10 to the power `decimals`, truncated and taken to 32 bits.
/// kept: nothing is rounded, so "1.15" with two decimals gives 114.
std::int32_t ReadScaledInteger(std::u16string_view text, std::int32_t decimals);

/// `value` in decimal digits ("%d").
std::u16string DecimalText(std::int64_t value);

/// Appends the same to `text`.
void AppendDecimal(std::int64_t value, std::string& text);

/// `value` in hexadecimal digits, capitals, after a "-" where it is negative.
std::u16string HexadecimalText(std::int64_t value);

/// Whether `value` lies above or below `limit`. Compared exactly: a limit near 2^63 is not rounded to the next double.
/// Neither for what is not a number.
bool IsAbove(double value, std::int64_t limit);
bool IsBelow(double value, std::int64_t limit);
