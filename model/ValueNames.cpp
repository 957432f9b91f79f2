#include "model/ValueNames.h"

#include "model/StoredNumber.h"

#include <algorithm>
#include <cstdint>

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

std::vector<std::u16string_view> NamesOfSetBits(const ItemNotes& notes, const ColumnCoding& coding,
                                                const CDecimal& number)
{
    std::vector<std::u16string_view> names;
    const auto word = number.Scaled(DecimalsOf(coding)).ToInt64();
    const std::size_t count = word ? std::min(BitsToName(coding), notes.bits.size()) : 0;
    for (std::size_t bit = 0; bit < count; ++bit)
        if (((static_cast<std::uint64_t>(*word) >> bit) & 1U) != 0 && !notes.bits[bit].empty())
            names.emplace_back(notes.bits[bit]);
    return names;
}

std::size_t BitsToName(const ColumnCoding& coding)
{
    constexpr std::size_t kBitsOfWord = 16;
    const bool hasBits = IsDecimalInteger(coding.dataType) || IsHexadecimal(coding.dataType);
    return hasBits ? kBitsOfWord * WordsOfType(coding.dataType) : 0;
}
