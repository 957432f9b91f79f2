#include "document/OutsideRange.h"

#include "document/CellJudge.h"
#include "model/StoredNumber.h"
#include "model/ValueNames.h"

#include <string_view>

namespace {

const ColumnCoding& CodingOf(const CRecipeDocument& document, CellPlace place)
{
    return document.Rows().Columns()[place.column];
}

} // namespace

std::optional<CDecimal> NumberOutsideRange(const CRecipeDocument& document, CellPlace place)
{
    const CRecipeRows& rows = document.Rows();
    if (!rows.HasCell(place) || !HasRange(*rows.Columns()[place.column].notes))
        return std::nullopt;
    const auto number = CCellJudge(rows, document.Stored(), document.Type()).NumberIn(place);
    return number && IsOutsideRange(CodingOf(document, place), *number) ? number : std::nullopt;
}

std::u16string OutsideRangeRemark(const CRecipeDocument& document, CellPlace place)
{
    const auto number = NumberOutsideRange(document, place);
    if (!number)
        return {};
    const ColumnCoding& coding = CodingOf(document, place);
    return NumberText(coding, *number) + u" " + OutsideRangeText(*coding.notes);
}

/// The rows may be others by now, and are not painted as they were for long.
ChangeRecord COutsideRange::At(std::size_t index) const
{
    const CellPlace place = m_places[index];
    const CRecipeRows& rows = m_document.Rows();
    if (!rows.HasCell(place))
        return {};
    ChangeRecord record = PlaceRecord(rows, m_document.Type(), place);
    record.newText = rows.Text(place.row, place.column);
    const ItemNotes& notes = *CodingOf(m_document, place).notes;
    record.note = NumberOutsideRange(m_document, place) ? OutsideRangeText(notes) : u"no longer outside its range";
    return record;
}

ChangeHeader COutsideRange::Header() const
{
    return HeaderOf({m_document.Path(), std::u16string(TextOf(m_document.Format().name))}, m_document.Rows(),
                    m_document.Type());
}
