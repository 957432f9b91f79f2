#include "changes/WordsText.h"

#include <algorithm>
#include <array>

namespace {

/// Puts the two digits of `byte` at `digits`.
void PutHex(std::byte byte, char* digits)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    digits[0] = kDigits[std::to_integer<unsigned>(byte >> 4)];
    digits[1] = kDigits[std::to_integer<unsigned>(byte & std::byte{0xF})];
}

std::optional<unsigned> DigitOf(char16_t c)
{
    if (c >= u'0' && c <= u'9')
        return c - u'0';
    if (c >= u'A' && c <= u'F')
        return c - u'A' + 10U;
    if (c >= u'a' && c <= u'f')
        return c - u'a' + 10U;
    return std::nullopt;
}

/// The byte of two digits.
std::optional<std::byte> ByteOf(std::u16string_view digits)
{
    const auto high = DigitOf(digits[0]);
    const auto low = DigitOf(digits[1]);
    if (!high || !low)
        return std::nullopt;
    return static_cast<std::byte>(*high << 4 | *low);
}

constexpr std::size_t kWordDigits = 4;

/// Appends the bytes of one word of four digits, or of a byte of two, to `bytes`; false when it is neither.
bool TakeWord(std::u16string_view word, std::vector<std::byte>& bytes)
{
    if (word.size() != kWordDigits && word.size() != 2)
        return false;
    for (std::size_t end = word.size(); end > 0; end -= 2) {
        const auto byte = ByteOf(word.substr(end - 2, 2));
        if (!byte)
            return false;
        bytes.push_back(*byte);
    }
    return true;
}

} // namespace

void AppendWordsText(std::span<const std::byte> bytes, std::string& text)
{
    std::array<char, kWordDigits + 1> word{' '};
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
        char* end = &word[1];
        if (i + 1 < bytes.size()) {
            PutHex(bytes[i + 1], end);
            end += 2;
        }
        PutHex(bytes[i], end);
        text.append(i == 0 ? &word[1] : word.data(), end + 2);
    }
}

std::optional<std::vector<std::byte>> WordsFromText(std::u16string_view text)
{
    std::vector<std::byte> bytes;
    bytes.reserve((text.size() + 1) / (kWordDigits + 1) * 2 + 1);
    while (!text.empty()) {
        const std::size_t length = std::min(text.find(u' '), text.size());
        const bool isLast = length == text.size();
        if (!TakeWord(text.substr(0, length), bytes) || (!isLast && length != kWordDigits))
            return std::nullopt;
        text.remove_prefix(isLast ? length : length + 1);
        if (!isLast && text.empty())
            return std::nullopt; // a blank at the end
    }
    return bytes;
}
