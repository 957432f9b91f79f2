#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Numbers in texts, as a reader of their description would work them out with the C library: slowly, by plain steps,
// and sharing nothing with the code that they judge. For the "C" locale.

/// The decimal number that `text` begins with; 0 when there is none.
double PlainDecimal(std::u16string_view text);

/// The decimal integer that `text` begins with, held at the limits of the type; 0 when there is none.
std::int64_t PlainInteger64(std::u16string_view text);

/// Each character's digit times 16 to the power of its distance from the end, in 32 bits.
std::uint32_t PlainHexadecimal(std::u16string_view text);

/// The decimal number times 10 to the power `decimals`, truncated, its low 32 bits.
std::uint32_t PlainScaled(std::u16string_view text, std::int32_t decimals);

/// printf, in UTF-16.
std::u16string Printed(const char* format, ...) __attribute__((format(printf, 1, 2)));
