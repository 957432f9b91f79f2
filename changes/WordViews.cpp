#include "changes/WordViews.h"

#include "changes/WordsText.h"
#include "model/LittleEndian.h"
#include "model/StoredNumber.h"
#include "text/AnsiText.h"
#include "text/EscapedText.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace {

using Bytes = std::vector<std::byte>;
using Kind = WordView::Kind;

constexpr std::size_t kBytesOfWord = 2;
constexpr std::size_t kBitsOfWord = 16;
constexpr std::size_t kBitsOfGroup = 4;

constexpr std::array<WordView, 14> kViews{{
    {Kind::Words},
    {Kind::Bits},
    {Kind::Ansi},
    {Kind::Utf16},
    {Kind::Number, DataType::Signed16},
    {Kind::Number, DataType::Unsigned16},
    {Kind::Number, DataType::Signed32},
    {Kind::Number, DataType::Unsigned32},
    {Kind::Number, DataType::Float},
    {Kind::Number, DataType::Double},
    {Kind::Number, DataType::Signed32, true},
    {Kind::Number, DataType::Unsigned32, true},
    {Kind::Number, DataType::Float, true},
    {Kind::Number, DataType::Double, true},
}};

std::u16string_view NameOf(DataType type)
{
    switch (type) {
    case DataType::Signed16:
        return u"signed 16-bit";
    case DataType::Unsigned16:
        return u"unsigned 16-bit";
    case DataType::Signed32:
        return u"signed 32-bit";
    case DataType::Unsigned32:
        return u"unsigned 32-bit";
    case DataType::Float:
        return u"float";
    case DataType::Double:
        return u"double";
    default:
        return {};
    }
}

/// Of whole numbers, as the views show them.
ColumnCoding CodingOf(DataType type)
{
    ColumnCoding coding;
    coding.dataType = type;
    coding.dataLength = static_cast<std::int32_t>(WordsOfType(type));
    coding.integerDigits = 10;
    return coding;
}

/// The words in the other order.
Bytes Turned(std::span<const std::byte> bytes)
{
    Bytes turned;
    turned.reserve(bytes.size());
    for (std::size_t end = bytes.size(); end >= kBytesOfWord; end -= kBytesOfWord)
        turned.insert(turned.end(), &bytes[end - kBytesOfWord], &bytes[end - kBytesOfWord] + kBytesOfWord);
    return turned;
}

std::u16string BitsOf(std::span<const std::byte> bytes)
{
    std::u16string text;
    for (std::size_t at = 0; at + kBytesOfWord <= bytes.size(); at += kBytesOfWord) {
        const auto word = LoadLittleEndian<std::uint16_t>(bytes.subspan(at, kBytesOfWord));
        for (std::size_t bit = 0; bit < kBitsOfWord; ++bit) {
            if (bit % kBitsOfGroup == 0 && !text.empty())
                text += u' ';
            text += (word >> (kBitsOfWord - 1 - bit) & 1U) != 0 ? u'1' : u'0';
        }
    }
    return text;
}

/// The bytes of bits in which blanks count for nothing.
std::optional<Bytes> BytesOfBits(std::u16string_view text)
{
    std::u16string bits(text);
    std::erase(bits, u' ');
    if (bits.size() % kBitsOfWord != 0 || bits.find_first_not_of(u"01") != std::u16string::npos)
        return std::nullopt;
    Bytes bytes(bits.size() / kBitsOfWord * kBytesOfWord);
    for (std::size_t at = 0; at < bits.size(); at += kBitsOfWord) {
        unsigned word = 0;
        for (std::size_t bit = 0; bit < kBitsOfWord; ++bit)
            word = word << 1U | (bits[at + bit] == u'1' ? 1U : 0U);
        StoreLittleEndian(std::span(bytes).subspan(at / kBitsOfWord * kBytesOfWord, kBytesOfWord), word);
    }
    return bytes;
}

std::u16string AnsiOf(std::span<const std::byte> bytes)
{
    std::string text;
    for (const std::byte byte : bytes) {
        if (byte == std::byte{0})
            break;
        text += static_cast<char>(byte);
    }
    return FromAnsi(text);
}

std::u16string Utf16Of(std::span<const std::byte> bytes)
{
    std::u16string text;
    for (std::size_t at = 0; at + kBytesOfWord <= bytes.size(); at += kBytesOfWord) {
        const auto unit = LoadLittleEndian<std::uint16_t>(bytes.subspan(at, kBytesOfWord));
        if (unit == 0)
            break;
        text += static_cast<char16_t>(unit);
    }
    return text;
}

std::u16string CharactersIn(Kind kind, std::span<const std::byte> bytes)
{
    return kind == Kind::Ansi ? AnsiOf(bytes) : Utf16Of(bytes);
}

Bytes BytesOfCharacters(Kind kind, std::u16string_view text)
{
    Bytes bytes;
    if (kind == Kind::Ansi) {
        for (const char c : ToAnsi(text))
            bytes.push_back(static_cast<std::byte>(c));
        return bytes;
    }
    for (const char16_t unit : text) {
        bytes.push_back(static_cast<std::byte>(unit));
        bytes.push_back(static_cast<std::byte>(unit >> 8U));
    }
    return bytes;
}

/// Those of `text` with zeros after it; nothing where it does not fit, or would be read as another text.
std::optional<Bytes> BytesOfText(Kind kind, std::u16string_view text, std::size_t size)
{
    Bytes bytes = BytesOfCharacters(kind, text);
    if (bytes.size() > size)
        return std::nullopt;
    bytes.resize(size);
    return CharactersIn(kind, bytes) == text ? std::optional(std::move(bytes)) : std::nullopt;
}

std::optional<Bytes> BytesOfNumber(const WordView& view, std::u16string_view text)
{
    const ColumnCoding coding = CodingOf(view.type);
    const auto number = NumberOfText(coding, text);
    const auto words = number ? WordsOfNumber(coding, *number) : std::nullopt;
    if (!words)
        return std::nullopt;
    Bytes bytes = BytesOfCharacters(Kind::Utf16, *words);
    return view.isHighFirst ? Turned(bytes) : bytes;
}

std::u16string NumberIn(const WordView& view, std::span<const std::byte> bytes)
{
    if (bytes.size() < BytesTaken(view))
        return {};
    const auto own = bytes.first(BytesTaken(view));
    return StoredNumberText(CodingOf(view.type), view.isHighFirst ? Turned(own) : Bytes(own.begin(), own.end()));
}

std::u16string HexadecimalWords(std::span<const std::byte> bytes)
{
    std::string text;
    AppendWordsText(bytes, text);
    return {text.begin(), text.end()};
}

} // namespace

std::span<const WordView> WordViews()
{
    return kViews;
}

std::u16string NameOf(const WordView& view)
{
    switch (view.kind) {
    case Kind::Words:
        return u"hexadecimal";
    case Kind::Bits:
        return u"bits";
    case Kind::Ansi:
        return u"text, 2 characters a word";
    case Kind::Utf16:
        return u"text, 1 character a word";
    case Kind::Number:
        break;
    }
    return std::u16string(NameOf(view.type)) + (view.isHighFirst ? u", high word first" : u"");
}

std::size_t BytesTaken(const WordView& view)
{
    return view.kind == Kind::Number ? WordsOfType(view.type) * kBytesOfWord : 0;
}

std::u16string TextIn(const WordView& view, std::span<const std::byte> bytes)
{
    switch (view.kind) {
    case Kind::Words:
        return HexadecimalWords(bytes);
    case Kind::Bits:
        return BitsOf(bytes);
    case Kind::Ansi:
    case Kind::Utf16:
        return EscapedText(CharactersIn(view.kind, bytes));
    case Kind::Number:
        break;
    }
    return NumberIn(view, bytes);
}

std::optional<Bytes> BytesWith(const WordView& view, std::u16string_view text, std::span<const std::byte> bytes)
{
    std::optional<Bytes> fresh;
    switch (view.kind) {
    case Kind::Words:
        fresh = WordsFromText(text);
        break;
    case Kind::Bits:
        fresh = BytesOfBits(text);
        break;
    case Kind::Ansi:
    case Kind::Utf16:
        fresh = BytesOfText(view.kind, text, bytes.size());
        break;
    case Kind::Number:
        fresh = BytesOfNumber(view, text);
        break;
    }
    if (!fresh || fresh->size() > bytes.size() || (view.kind != Kind::Number && fresh->size() != bytes.size()))
        return std::nullopt;
    fresh->insert(fresh->end(), bytes.begin() + static_cast<std::ptrdiff_t>(fresh->size()), bytes.end());
    return fresh;
}
