#include "model/BitText.h"

#include "text/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace {

constexpr int kSignTurn = 65536; ///< between a 16-bit pattern as an unsigned and as a signed number

std::size_t BitCountOf(DataType type)
{
    switch (type) {
    case DataType::Signed16:
    case DataType::Unsigned16:
    case DataType::Hex16:
        return kBitsPerRow;
    case DataType::Signed32:
    case DataType::Unsigned32:
    case DataType::Hex32:
        return 2 * kBitsPerRow;
    default:
        return 0;
    }
}

std::uint32_t DecimalBits(std::u16string_view text, std::int32_t decimalDigits)
{
    const std::int64_t value = ReadInteger64(text);
    if (decimalDigits <= 0)
        return static_cast<std::uint32_t>(value);
    return static_cast<std::uint32_t>(TruncateTo32(static_cast<double>(value) * PowerOfTen(decimalDigits)));
}

int HexDigitOf(char16_t c)
{
    const auto low = static_cast<char16_t>(c & 0xFF); // kept: U+0141 counts as the "A" in its low byte
    return static_cast<int>(ReadHexadecimal({&low, 1}));
}

std::uint32_t HexadecimalBits(std::u16string_view text)
{
    double sum = 0;
    int shift = 0;
    for (auto c = text.rbegin(); c != text.rend(); ++c, shift += 4)
        sum += std::ldexp(HexDigitOf(*c), shift);
    return static_cast<std::uint32_t>(TruncateTo32(sum));
}

std::uint32_t ValueOf(std::u16string_view bits)
{
    std::uint32_t value = 0;
    for (const char16_t bit : bits)
        value = value << 1 | (bit == u'0' ? 0U : 1U);
    return value;
}

std::u16string SignedText(std::uint32_t value, std::int64_t maxValue)
{
    if (static_cast<std::int32_t>(value) > maxValue)
        value -= kSignTurn;
    return DecimalText(static_cast<std::int32_t>(value));
}

std::u16string HexadecimalText(std::uint32_t value)
{
    std::array<char, 8> digits;
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value, 16);
    return {digits.data(), written.ptr};
}

} // namespace

std::u16string BitsOfText(const DataItem& item, std::u16string_view text)
{
    std::uint32_t value = IsHexadecimal(item.dataType) ? HexadecimalBits(text) : DecimalBits(text, item.decimalDigits);
    std::u16string bits(BitCountOf(item.dataType), u'0');
    for (auto bit = bits.rbegin(); bit != bits.rend(); ++bit, value >>= 1)
        if ((value & 1U) != 0)
            *bit = u'1';
    return bits;
}

std::optional<std::u16string> TextOfBits(const DataItem& item, std::u16string_view bits)
{
    const std::uint32_t value = ValueOf(bits);
    switch (item.dataType) {
    case DataType::Signed16:
    case DataType::Signed32:
        return SignedText(value, item.maxValue);
    case DataType::Unsigned16:
    case DataType::Unsigned32:
        return DecimalText(static_cast<std::int32_t>(value));
    case DataType::Hex16:
    case DataType::Hex32:
        return HexadecimalText(value);
    default:
        return std::nullopt;
    }
}
