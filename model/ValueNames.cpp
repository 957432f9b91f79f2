#include "model/ValueNames.h"

#include "model/StoredNumber.h"

#include <algorithm>
#include <optional>

std::u16string_view TextOfValue(const ItemNotes& notes, const ColumnCoding& coding, std::u16string_view text)
{
    if (notes.texts.empty())
        return {};
    const auto number = NumberOfText(coding, text);
    const auto isNamed = [&](const ValueText& named) {
        return number ? NumberOfText(coding, named.value) == number : WithoutBlanks(text) == named.value;
    };
    const auto found = std::find_if(notes.texts.begin(), notes.texts.end(), isNamed);
    return found != notes.texts.end() ? std::u16string_view(found->text) : std::u16string_view();
}

bool IsOutsideRange(const ColumnCoding& coding, const CDecimal& number)
{
    const ItemNotes& notes = *coding.notes;
    const bool isOutside = (notes.lowest && number < *notes.lowest) || (notes.highest && number > *notes.highest);
    return isOutside && std::none_of(notes.texts.begin(), notes.texts.end(), [&](const ValueText& named) {
               return NumberOfText(coding, named.value) == number;
           });
}

std::vector<std::u16string_view> NamesOfSetBits(const ColumnCoding& coding, std::uint32_t bits)
{
    std::vector<std::u16string_view> names;
    const std::size_t count = std::min(BitsToName(coding), coding.notes->bits.size());
    for (std::size_t bit = 0; bit < count; ++bit)
        if ((bits >> bit & 1U) != 0 && !coding.notes->bits[bit].empty())
            names.emplace_back(coding.notes->bits[bit]);
    return names;
}

std::uint32_t BitsOfNumber(const ColumnCoding& coding, const CDecimal& number)
{
    const auto word = BitsToName(coding) > 0 ? number.Scaled(DecimalsOf(coding)).ToInt64() : std::nullopt;
    return static_cast<std::uint32_t>(word.value_or(0));
}

std::uint32_t BitsOfWords(std::span<const std::byte> words)
{
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < words.size() && i < sizeof bits; ++i)
        bits |= std::to_integer<std::uint32_t>(words[i]) << (8 * i);
    return bits;
}

std::size_t BitsToName(const ColumnCoding& coding)
{
    constexpr std::size_t kBitsOfWord = 16;
    const bool hasBits = IsDecimalInteger(coding.dataType) || IsHexadecimal(coding.dataType);
    return hasBits ? kBitsOfWord * WordsOfType(coding.dataType) : 0;
}
