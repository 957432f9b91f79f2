#include "text/Utf8Text.h"

#include "text/Surrogates.h"

#include <cstddef>

namespace {

constexpr char32_t kReplacement = 0xFFFD;

/// Whether `character` is one, and needs all of the `length` bytes that it was written in.
bool IsWellFormed(char32_t character, std::size_t length)
{
    constexpr char32_t kFirstOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
    return character >= kFirstOfLength[length] && character <= 0x10FFFF && !IsHighSurrogate(character) &&
           !IsLowSurrogate(character);
}

/// The number of bytes of the character that begins with `lead`; 0 when none does.
std::size_t LengthByLead(unsigned char lead)
{
    if (lead < 0x80)
        return 1;
    if (lead < 0xC2 || lead > 0xF4)
        return 0;
    return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

/// Takes one character, or one byte of what is not a character, off the front of `bytes`.
char32_t TakeUtf8(std::string_view& bytes)
{
    const auto lead = static_cast<unsigned char>(bytes.front());
    const std::size_t length = LengthByLead(lead);
    char32_t character = length <= 1 ? lead : lead & (0x7Fu >> length);
    bool valid = length >= 1 && length <= bytes.size();
    for (std::size_t i = 1; valid && i < length; ++i) {
        const auto next = static_cast<unsigned char>(bytes[i]);
        valid = (next & 0xC0) == 0x80;
        character = (character << 6) | (next & 0x3Fu);
    }
    valid = valid && (length == 1 || IsWellFormed(character, length));
    bytes.remove_prefix(valid ? length : 1);
    return valid ? character : kReplacement;
}

void AppendUtf16(char32_t character, std::u16string& text)
{
    if (character < 0x10000) {
        text += static_cast<char16_t>(character);
        return;
    }
    text += static_cast<char16_t>(0xD800 + ((character - 0x10000) >> 10));
    text += static_cast<char16_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
}

} // namespace

std::u16string FromUtf8(std::string_view bytes)
{
    std::u16string text;
    text.reserve(bytes.size());
    while (!bytes.empty())
        AppendUtf16(TakeUtf8(bytes), text);
    return text;
}

std::string ToUtf8(std::u16string_view text)
{
    std::string bytes;
    bytes.reserve(text.size());
    while (!text.empty())
        AppendUtf8(TakeCharacter(text), bytes);
    return bytes;
}

char32_t TakeCharacter(std::u16string_view& text)
{
    const char32_t first = text.front();
    text.remove_prefix(1);
    if (IsHighSurrogate(first) && !text.empty() && IsLowSurrogate(text.front())) {
        const char32_t second = text.front();
        text.remove_prefix(1);
        return 0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00);
    }
    return IsHighSurrogate(first) || IsLowSurrogate(first) ? kReplacement : first;
}

void AppendUtf8(char32_t character, std::string& bytes)
{
    const auto continuation = [character](int shift) {
        return static_cast<char>(0x80 | ((character >> shift) & 0x3F));
    };
    if (character < 0x80) {
        bytes += static_cast<char>(character);
    } else if (character < 0x800) {
        bytes += static_cast<char>(0xC0 | (character >> 6));
        bytes += continuation(0);
    } else if (character < 0x10000) {
        bytes += static_cast<char>(0xE0 | (character >> 12));
        bytes += continuation(6);
        bytes += continuation(0);
    } else {
        bytes += static_cast<char>(0xF0 | (character >> 18));
        bytes += continuation(12);
        bytes += continuation(6);
        bytes += continuation(0);
    }
}
