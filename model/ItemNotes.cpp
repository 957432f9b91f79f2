#include "model/ItemNotes.h"

#include "model/StoredNumber.h"
#include "text/MessageText.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace {

std::u16string WithUnit(std::u16string text, const ItemNotes& notes)
{
    return notes.unit.empty() ? text : std::move(text) + u" " + notes.unit;
}

} // namespace

ItemNotes Tidied(ItemNotes notes)
{
    notes.unit = WithoutBlanks(notes.unit);
    for (auto& name : notes.bits)
        name = WithoutBlanks(name);
    while (!notes.bits.empty() && notes.bits.back().empty())
        notes.bits.pop_back();
    for (auto& [value, text] : notes.texts) {
        value = WithoutBlanks(value);
        text = WithoutBlanks(text);
    }
    std::erase_if(notes.texts, [](const ValueText& named) { return named.value.empty() || named.text.empty(); });
    return notes;
}

bool HasRange(const ItemNotes& notes)
{
    return notes.lowest || notes.highest;
}

bool IsOutsideRange(const ItemNotes& notes, const CDecimal& number)
{
    return (notes.lowest && number < *notes.lowest) || (notes.highest && number > *notes.highest);
}

std::u16string RangeText(const ItemNotes& notes)
{
    if (notes.lowest && notes.highest)
        return FillMessage(u"%s to %s", {notes.lowest->Text(), notes.highest->Text()});
    if (notes.lowest)
        return FillMessage(u"%s or more", {notes.lowest->Text()});
    return notes.highest ? FillMessage(u"%s or less", {notes.highest->Text()}) : std::u16string();
}

std::u16string OutsideRangeText(const ItemNotes& notes)
{
    if (notes.lowest && notes.highest)
        return WithUnit(FillMessage(u"lies outside %s to %s", {notes.lowest->Text(), notes.highest->Text()}), notes);
    if (notes.lowest)
        return WithUnit(FillMessage(u"lies below %s", {notes.lowest->Text()}), notes);
    return notes.highest ? WithUnit(FillMessage(u"lies above %s", {notes.highest->Text()}), notes) : std::u16string();
}

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

std::u16string_view NameOfBit(const ItemNotes& notes, std::size_t bit)
{
    return bit < notes.bits.size() ? std::u16string_view(notes.bits[bit]) : std::u16string_view();
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
