#include "document/RowChoice.h"

#include "model/StoredNumber.h"
#include "model/ValueNames.h"
#include "text/LowerCase.h"

#include <algorithm>

namespace {

constexpr std::int32_t kRowsInAPiece = 256;

bool IsOrdered(CellCondition condition)
{
    return condition == CellCondition::GreaterThan || condition == CellCondition::LessThan;
}

/// Trims blanks, which typed numbers may have around them.
bool IsNumberIn(const ColumnCoding& coding, std::u16string_view value)
{
    return NumberOfText(coding, value).has_value();
}

} // namespace

bool TakesValue(CellCondition condition)
{
    return condition <= CellCondition::LessThan;
}

std::optional<std::u16string> FaultOf(const RowCondition& condition, const CRecipeRows& rows)
{
    const auto& columns = rows.Columns();
    if (!IsOrdered(condition.condition) || (condition.column && *condition.column >= columns.size()))
        return std::nullopt;
    const auto isNumber = [&](const ColumnCoding& coding) { return IsNumberIn(coding, condition.value); };
    const bool isOne =
        condition.column ? isNumber(columns[*condition.column]) : std::any_of(columns.begin(), columns.end(), isNumber);
    if (isOne)
        return std::nullopt;
    if (condition.value.find(u',') != std::u16string::npos)
        return u"Type a number with a point, not a comma.";
    const bool isText = condition.column && columns[*condition.column].dataType == DataType::String;
    return isText ? u"This item is a text: it is neither greater nor less than a number." : u"Type a number.";
}

CRowChoice::CRowChoice(CRecipeDocument& document, RowCondition condition)
    : m_document(document),
      m_condition(std::move(condition)),
      m_isDenied(m_condition.condition == CellCondition::IsNot || m_condition.condition == CellCondition::ContainsNot),
      m_lowerCase(LowerCase(m_condition.value)),
      m_texts(document.Rows())
{
    if (!TakesValue(m_condition.condition))
        return;
    for (const ColumnCoding& coding : document.Rows().Columns())
        m_number.push_back(NumberOfText(coding, m_condition.value));
}

std::optional<std::vector<std::int32_t>> CRowChoice::Find(CProgress& progress)
{
    std::vector<std::int32_t> found;
    const std::int32_t count = m_document.Rows().RowCount();
    for (std::int32_t row = 0; row < count; ++row) {
        if (row % kRowsInAPiece == 0 &&
            !progress.Advance(static_cast<std::uint64_t>(row), static_cast<std::uint64_t>(count)))
            return std::nullopt;
        if (Fulfils(row))
            found.push_back(row);
    }
    return found;
}

bool CRowChoice::Fulfils(std::int32_t row)
{
    const std::size_t first = m_condition.column.value_or(0);
    const std::size_t end = m_condition.column ? first + 1 : m_document.Rows().Columns().size();
    for (std::size_t column = first; column < end; ++column)
        if (IsSo({row, static_cast<std::uint32_t>(column)}))
            return !m_isDenied;
    return m_isDenied;
}

/// Whether the condition holds for the cell, or, of a denied one, whether it does not.
bool CRowChoice::IsSo(CellPlace place)
{
    const CRecipeRows& rows = m_document.Rows();
    switch (m_condition.condition) {
    case CellCondition::IsEdited:
        return rows.IsEdited(place.row, place.column);
    case CellCondition::IsRewritten:
        return !rows.IsEdited(place.row, place.column) && m_document.WhyChanged(place).has_value();
    case CellCondition::IsOutsideLimits:
        return rows.OutsideLimits(place.row, place.column).has_value();
    case CellCondition::IsOutsideRange:
        return IsOutsideRange(place);
    case CellCondition::Differs:
        return m_document.Comparison() && m_document.Comparison()->Differs(place);
    default:
        return HasValue(place);
    }
}

bool CRowChoice::IsOutsideRange(CellPlace place)
{
    const ColumnCoding& coding = m_document.Rows().Columns()[place.column];
    const auto number = HasRange(*coding.notes) ? NumberOf(place) : std::nullopt;
    return number && ::IsOutsideRange(coding, *number);
}

bool CRowChoice::HasValue(CellPlace place)
{
    const bool isContained =
        m_condition.condition == CellCondition::Contains || m_condition.condition == CellCondition::ContainsNot;
    const auto& value = m_number[place.column];
    const auto number = !isContained && value ? NumberOf(place) : std::nullopt;
    if (number && m_condition.condition == CellCondition::GreaterThan)
        return *number > *value;
    if (number && m_condition.condition == CellCondition::LessThan)
        return *number < *value;
    if (IsOrdered(m_condition.condition))
        return false;
    if (number)
        return *number == *value;
    m_texts.MoveTo(place.row, place.column);
    const std::u16string_view text = m_texts.Text();
    return isContained ? LowerCase(text).find(m_lowerCase) != std::u16string::npos : text == m_condition.value;
}

/// The number that was typed, else the one that is stored; of a table of texts the one that is read.
std::optional<CDecimal> CRowChoice::NumberOf(CellPlace place)
{
    const CRecipeRows& rows = m_document.Rows();
    const ColumnCoding& coding = rows.Columns()[place.column];
    m_texts.MoveTo(place.row, place.column);
    const auto words = m_texts.UntouchedWords();
    if (!words.empty()) {
        const auto length = static_cast<std::size_t>(coding.dataLength) * 2;
        return words.size() < length ? std::nullopt : StoredNumber(coding, words.first(length));
    }
    if (rows.State(place).IsExact()) {
        m_words.resize(static_cast<std::size_t>(coding.dataLength) * 2);
        rows.LoadWords(place, m_words);
        return StoredNumber(coding, m_words);
    }
    return NumberOfText(coding, m_texts.Text());
}
