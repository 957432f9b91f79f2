#include "files/CellComparison.h"

#include "files/CsvCutter.h"
#include "files/CsvRules.h"
#include "files/SameBytes.h"
#include "model/LittleEndian.h"
#include "text/Utf16Bytes.h"

#include <algorithm>
#include <string>
#include <utility>

namespace {

bool HoldsMark(std::u16string_view text)
{
    return text.find_first_of(u"\t\n") != std::u16string_view::npos;
}

} // namespace

std::size_t BytesOfCell(const CRecipeRows& rows, CellPlace place)
{
    return 2 * static_cast<std::size_t>(std::max(rows.Columns()[place.column].dataLength, 0));
}

WordAddress AddressOfCell(const CRecipeRows& rows, CellPlace place)
{
    return rows.RowAddress(place.row) + rows.WordOffset(place.column);
}

CCellComparison::CCellComparison(const CRecipeRows& rows, const CStoredCells& stored, bool isOfOtherType, SaveForm form)
    : m_rows(rows),
      m_stored(stored),
      m_isOfOtherType(isOfOtherType),
      m_form(form),
      m_coder(rows, stored.Kind())
{
}

std::span<const std::byte> CCellComparison::NewWords(CellPlace place)
{
    m_new.resize(BytesOfCell(m_rows, place));
    m_coder.CodeCell(place, m_new);
    return m_new;
}

std::span<const std::byte> CCellComparison::OldWords(CellPlace place)
{
    m_old.resize(BytesOfCell(m_rows, place));
    return std::span(m_old).first(m_stored.LoadWords(place, m_old));
}

std::optional<ChangeReason> CCellComparison::Compare(CellPlace place)
{
    if (IsTable())
        return CompareField(place, m_rows.Text(place.row, place.column), CutLineOf(place));
    return CompareWords(place, OldWords(place), NewWords(place));
}

/// Rows that a save leaves as they are, which are most, are compared as a whole.
void CCellComparison::Compare(std::int32_t first, std::int32_t count, std::vector<PlannedChange>& changes)
{
    if (IsTable())
        return CompareFields(first, count, changes);
    const auto rowBytes = static_cast<std::size_t>(m_rows.BytesBefore({1, 0}));
    m_coded.resize(rowBytes * static_cast<std::size_t>(count));
    m_coder.CodeRows(first, count, m_coded);
    const auto stored = m_stored.WordsOfRows(first, count);
    if (stored && AreEqual(*stored, m_coded))
        return;
    std::size_t pos = 0;
    for (std::int32_t row = first; row < first + count; ++row, pos += rowBytes)
        CompareRow(row, stored ? std::optional(stored->subspan(pos, rowBytes)) : m_stored.WordsOfRows(row, 1),
                   std::span(m_coded).subspan(pos, rowBytes), changes);
}

/// `stored` is nothing where the words of the row do not lie in one piece.
void CCellComparison::CompareRow(std::int32_t row, std::optional<std::span<const std::byte>> stored,
                                 std::span<const std::byte> coded, std::vector<PlannedChange>& changes)
{
    if (stored && AreEqual(*stored, coded))
        return;
    std::size_t pos = 0;
    for (std::uint32_t column = 0; column < m_rows.Columns().size(); ++column) {
        const CellPlace place{row, column};
        const std::size_t bytes = BytesOfCell(m_rows, place);
        const auto old = stored ? stored->subspan(pos, bytes) : OldWords(place);
        if (const auto why = CompareWords(place, old, coded.subspan(pos, bytes)))
            changes.push_back({place, *why});
        pos += bytes;
    }
}

void CCellComparison::CompareFields(std::int32_t first, std::int32_t count, std::vector<PlannedChange>& changes) const
{
    for (std::int32_t row = first; row < first + count; ++row) {
        std::optional<CFieldTable> cutLine;
        for (std::uint32_t column = 0; column < m_rows.Columns().size(); ++column) {
            std::u16string text = m_rows.Text(row, column);
            if (!cutLine && HoldsMark(text) && m_form == SaveForm::AllCells)
                cutLine = SavedLine(row);
            if (const auto why = CompareField({row, column}, std::move(text), cutLine))
                changes.push_back({{row, column}, *why});
        }
    }
}

std::optional<ChangeReason> CCellComparison::CompareWords(CellPlace place, std::span<const std::byte> stored,
                                                          std::span<const std::byte> coded) const
{
    if (AreEqual(stored, coded))
        return std::nullopt;
    if (const auto given = GivenReason(place))
        return given;
    return stored.size() < coded.size() ? ChangeReason::End : ReasonOf(m_rows.Columns()[place.column], stored);
}

/// What holds whatever stands in the cell.
std::optional<ChangeReason> CCellComparison::GivenReason(CellPlace place) const
{
    if (m_rows.IsEdited(place.row, place.column))
        return ChangeReason::Edited;
    return m_isOfOtherType ? std::optional(ChangeReason::Type) : std::nullopt;
}

/// Why a text of the words that are `stored` codes to others.
ChangeReason CCellComparison::ReasonOf(const ColumnCoding& coding, std::span<const std::byte> stored) const
{
    if (IsDecimalInteger(coding.dataType)) {
        if (!IsShownAsItIs(coding, LoadLittleEndian<std::uint32_t>(stored)))
            return ChangeReason::Limits;
        return coding.decimalDigits > 0 ? ChangeReason::Decimals : ChangeReason::Coding;
    }
    if (IsReal(coding.dataType))
        return ChangeReason::Digits;
    return coding.dataType == DataType::String ? ChangeReason::Text : ChangeReason::Coding;
}

std::optional<ChangeReason> CCellComparison::CompareField(CellPlace place, std::u16string text,
                                                          const std::optional<CFieldTable>& cutLine) const
{
    const bool isThere = m_stored.HasField(place);
    const bool mayBeMissing = m_form == SaveForm::EditedAlone; // it shows "0" then, and is not written to show that
    if ((isThere || mayBeMissing) &&
        FieldReadAgain(place, std::move(text), cutLine) == m_stored.Cells().Text(place.row, place.column))
        return std::nullopt;
    if (const auto given = GivenReason(place))
        return given;
    if (!isThere)
        return ChangeReason::End;
    return cutLine ? ChangeReason::Text : ChangeReason::Quotes;
}

/// kept: in the saved table the last field of a line reads with its quotes, the others lose theirs.
std::u16string CCellComparison::FieldReadAgain(CellPlace place, std::u16string text,
                                               const std::optional<CFieldTable>& cutLine) const
{
    if (m_form == SaveForm::EditedAlone)
        return text;
    if (cutLine)
        return std::u16string(cutLine->Field(0, place.column));
    if (place.column + 1 == m_rows.Columns().size())
        return u'"' + text + u'"';
    return std::u16string(WithoutQuotes(text));
}

/// The row as reading shows it again, where a text up to the cell is cut then and moves those after it.
std::optional<CFieldTable> CCellComparison::CutLineOf(CellPlace place) const
{
    for (std::uint32_t column = 0; column <= place.column && m_form == SaveForm::AllCells; ++column)
        if (HoldsMark(m_rows.Text(place.row, column)))
            return SavedLine(place.row);
    return std::nullopt;
}

/// The row as a save writes it and reading shows it again.
CFieldTable CCellComparison::SavedLine(std::int32_t row) const
{
    const std::size_t columns = m_rows.Columns().size();
    std::u16string line;
    for (std::size_t column = 0; column < columns; ++column)
        line.append(column > 0 ? u"\t\"" : u"\"").append(m_rows.Text(row, column)).append(u"\"");
    line += u"\r\n";
    SwapUnlessLowByteFirst(line);
    CFieldTable fields;
    CCsvShownFields shown(kUtf16Csv, 1, columns, fields);
    CCsvCutter cutter(kUtf16Csv);
    cutter.Append(std::as_bytes(std::span(line)), shown);
    cutter.Finish(shown);
    return fields;
}

std::u16string CCellComparison::TextOfWords(CellPlace place, std::span<const std::byte> words) const
{
    std::size_t pos = 0;
    return FormatValue(m_rows.Columns()[place.column], words, pos, m_stored.Kind());
}

std::u16string CCellComparison::ReadAgain(CellPlace place)
{
    if (IsTable())
        return FieldReadAgain(place, m_rows.Text(place.row, place.column), CutLineOf(place));
    return TextOfWords(place, NewWords(place));
}

std::optional<std::u16string> CCellComparison::OldText(CellPlace place)
{
    if (IsTable())
        return m_stored.HasField(place) ? std::optional(m_stored.Cells().Text(place.row, place.column)) : std::nullopt;
    const auto words = OldWords(place);
    return words.size() == BytesOfCell(m_rows, place) ? std::optional(TextOfWords(place, words)) : std::nullopt;
}
