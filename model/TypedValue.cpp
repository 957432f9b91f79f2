#include "model/TypedValue.h"

#include "model/LittleEndian.h"
#include "model/StoredNumber.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace {

using ByteList = std::vector<std::byte>;

/// The bytes that a save stores, as the coding of a stretch makes them.
ByteList BytesOf(const ColumnCoding& coding, RecipeKind kind, std::u16string_view text)
{
    ByteList bytes(2 * static_cast<std::size_t>(std::max(coding.dataLength, 0)));
    std::size_t pos = 0;
    if (kind == RecipeKind::Paged)
        CodeValue(coding, NormaliseForPagedFile(coding, text), bytes, pos, kind);
    else
        CodeValue(coding, text, bytes, pos, kind);
    return bytes;
}

std::u16string WordsOf(const ByteList& bytes)
{
    std::u16string words;
    for (std::size_t at = 0; at < bytes.size(); at += 2)
        words += static_cast<char16_t>(LoadLittleEndian<std::uint16_t>(std::span(bytes).subspan(at, 2)));
    return words;
}

/// Whether the stored number is the typed one, or what comes nearest to it.
bool IsStoredRight(const ColumnCoding& coding, const TypedValue& value)
{
    if (value.stored == value.typed)
        return true;
    return IsReal(coding.dataType) && WordsOfNumber(coding, *value.typed) == value.words;
}

TypedVerdict VerdictOnNumber(const ColumnCoding& coding, std::u16string_view text, const TypedValue& value)
{
    if (text.empty())
        return TypedVerdict::StoredAsZero;
    if (!value.typed)
        return TypedVerdict::NoNumber;
    const bool isShownRight = NumberOfText(coding, value.shown) == value.typed;
    if (isShownRight && (!value.stored || IsStoredRight(coding, value)))
        return TypedVerdict::Fine;
    return IsStoredRight(coding, value) ? TypedVerdict::ShownAsAnother : TypedVerdict::AnotherNumber;
}

} // namespace

TypedValue JudgeTyped(const ColumnCoding& coding, RecipeKind kind, std::u16string_view text)
{
    TypedValue value;
    const ByteList bytes = BytesOf(coding, kind, text);
    std::size_t pos = 0;
    value.words = WordsOf(bytes);
    value.shown = FormatValue(coding, bytes, pos, kind);
    if (coding.dataType == DataType::String || TypeName(coding.dataType).empty()) {
        value.verdict = value.shown == text ? TypedVerdict::Fine : TypedVerdict::AnotherText;
        return value;
    }
    value.stored = StoredNumber(coding, bytes);
    value.typed = NumberOfText(coding, text);
    value.verdict = VerdictOnNumber(coding, text, value);
    if (value.verdict == TypedVerdict::AnotherNumber)
        value.exactWords = WordsOfNumber(coding, *value.typed);
    return value;
}
