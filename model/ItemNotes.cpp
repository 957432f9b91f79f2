#include "model/ItemNotes.h"

#include "text/MessageText.h"

#include <algorithm>
#include <utility>

namespace {

std::u16string_view WithoutBlanks(std::u16string_view text)
{
    constexpr std::u16string_view kBlanks = u" \t";
    const std::size_t first = std::min(text.find_first_not_of(kBlanks), text.size());
    return text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

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

std::u16string_view NameOfBit(const ItemNotes& notes, std::size_t bit)
{
    return bit < notes.bits.size() ? std::u16string_view(notes.bits[bit]) : std::u16string_view();
}
