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
std::u16string SetBits(const ColumnCoding& coding, std::uint32_t bits)
{
    std::u16string names;
    for (const auto name : NamesOfSetBits(coding, bits))
        Join(names, u", ", name);
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
    const auto number = NumberIn(place, words);
    value.meaning = EscapedText(Meaning(place, words, number));
    value.warning = EscapedText(Warning(place, m_now.IsThere(place, words), number));
    value.isEdited = m_rows.IsEdited(place.row, place.column);
    return value;
}

/// That of an edited cell is what was typed, that of any other what it stores.
std::optional<CDecimal> CSheetValues::NumberIn(CellPlace place, std::span<const std::byte> words) const
{
    if (!m_now.IsThere(place, words))
        return std::nullopt;
    const bool isTyped = m_rows.State(place).IsText() && m_rows.IsEdited(place.row, place.column);
    return isTyped ? NumberOfText(m_rows.Columns()[place.column], m_text) : m_now.NumberOf(place, words, m_text);
}

/// A table of texts has no words: the bits are those of its numbers.
std::u16string CSheetValues::Meaning(CellPlace place, std::span<const std::byte> words,
                                     const std::optional<CDecimal>& number) const
{
    const ColumnCoding& coding = m_rows.Columns()[place.column];
    if (coding.notes.IsEmpty())
        return {};
    std::u16string meaning(TextOfValue(*coding.notes, coding, m_text));
    const std::uint32_t bitsOfNumber = number ? BitsOfNumber(coding, *number) : 0;
    Join(meaning, u", ", SetBits(coding, m_now.IsTable() ? bitsOfNumber : BitsOfWords(words)));
    return meaning;
}

std::u16string CSheetValues::Warning(CellPlace place, bool isThere, const std::optional<CDecimal>& number) const
{
    const ColumnCoding& coding = m_rows.Columns()[place.column];
    if (!isThere)
        return u"not in the file";
    std::u16string warning;
    if (IsDecimalInteger(coding.dataType) && number && number != NumberOfText(coding, m_text))
        warning = u"holds " + NumberText(coding, *number);
    if (m_rows.OutsideLimits(place.row, place.column))
        Join(warning, u"; ", u"lies outside its limits " + LimitsText(coding));
    if (number && IsOutsideRange(coding, *number))
        Join(warning, u"; ", OutsideRangeText(*coding.notes));
    return warning;
}
