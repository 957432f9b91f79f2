#include "sheet/SheetValues.h"

#include "model/ItemNotes.h"
#include "model/StoredNumber.h"
#include "model/ValueLimits.h"
#include "model/ValueNames.h"
#include "text/EscapedText.h"

#include <cstddef>
#include <string_view>

namespace {

/// Adds the text, if there is any, after the separator, if there is one before.
void Join(std::u16string& all, std::u16string_view separator, std::u16string_view text)
{
    if (!all.empty() && !text.empty())
        all += separator;
    all += text;
}

/// "Door open, Light on"
std::u16string SetBits(const ColumnCoding& coding, std::span<const std::byte> words)
{
    std::u16string names;
    for (const auto name : NamesOfSetBits(coding, BitsOfWords(words)))
        Join(names, u", ", std::u16string(name));
    return names;
}

} // namespace

SheetValue CSheetValues::Make(CellPlace place)
{
    m_text.clear();
    m_rows.AppendText(place.row, place.column, m_text);
    const auto words = m_now.Words(place);
    SheetValue value;
    value.text = EscapedText(m_text);
    value.meaning = EscapedText(Meaning(place, words));
    value.warning = EscapedText(Warning(place, words));
    value.isEdited = m_rows.IsEdited(place.row, place.column);
    return value;
}

std::u16string CSheetValues::Meaning(CellPlace place, std::span<const std::byte> words) const
{
    const ColumnCoding& coding = m_rows.Columns()[place.column];
    if (coding.notes.IsEmpty())
        return {};
    std::u16string meaning(TextOfValue(*coding.notes, coding, m_text));
    Join(meaning, u", ", SetBits(coding, words));
    return meaning;
}

/// An edited cell is judged by what was typed, any other by what it stores.
std::u16string CSheetValues::Warning(CellPlace place, std::span<const std::byte> words) const
{
    const ColumnCoding& coding = m_rows.Columns()[place.column];
    if (!m_now.IsThere(place, words))
        return u"not in the file";
    const bool isTyped = m_rows.State(place).IsText() && m_rows.IsEdited(place.row, place.column);
    const auto number = isTyped ? NumberOfText(coding, m_text) : m_now.NumberOf(place, words, m_text);
    std::u16string warning;
    if (IsDecimalInteger(coding.dataType) && number && number != NumberOfText(coding, m_text))
        warning = u"holds " + NumberText(coding, *number);
    if (m_rows.OutsideLimits(place.row, place.column))
        Join(warning, u"; ", u"lies outside its limits " + LimitsText(coding));
    if (coding.notes.IsEmpty())
        return warning;
    if (number && IsOutsideRange(coding, *number))
        Join(warning, u"; ", OutsideRangeText(*coding.notes));
    return warning;
}
