#include "document/TableExport.h"

#include "disk/Replacement.h"
#include "files/TableTitles.h"
#include "model/ItemNotes.h"
#include "model/SpreadsheetNumber.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>

namespace {

constexpr std::size_t kPieceUnits = std::size_t{1} << 18; // written at once, and between two looks at the progress
constexpr std::u16string_view kByteOrderMark = u"\uFEFF";

bool IsBlank(char16_t unit)
{
    return unit == u' ' || unit == u'\t';
}

std::u16string TitleWithUnit(const ColumnCoding& column)
{
    return column.notes->unit.empty() ? column.title : column.title + u" [" + column.notes->unit + u"]";
}

bool Append(CReplacement& file, std::u16string_view text)
{
    const std::string bytes = ToUtf8(text);
    return file.Append(std::as_bytes(std::span(bytes)));
}

} // namespace

CTableExport::CTableExport(const CRecipeRows& rows, const TableExportForm& form,
                           std::optional<std::vector<std::int32_t>> chosen)
    : m_rows(rows),
      m_form(form),
      m_chosen(std::move(chosen))
{
}

std::size_t CTableExport::RowCount() const
{
    return m_chosen ? m_chosen->size() : static_cast<std::size_t>(m_rows.RowCount());
}

Outcome CTableExport::Write(const std::filesystem::path& path, CProgress& progress) const
{
    return WithinMemory([&] {
        CReplacement file(path);
        if (!file.IsOpen())
            return Outcome::Failed;
        std::u16string text{kByteOrderMark};
        text += Heads();
        for (std::size_t i = 0; i < RowCount(); ++i) {
            AppendRow(i, text);
            if (text.size() < kPieceUnits)
                continue;
            if (!progress.Advance(i, RowCount()))
                return Outcome::GivenUp;
            if (!Append(file, text))
                return Outcome::Failed;
            text.clear();
        }
        if (Append(file, text) && file.Finish())
            return Outcome::Done;
        return file.MayHoldOldAndNew() ? Outcome::FailedMixed : Outcome::Failed;
    });
}

std::u16string CTableExport::FirstLines(std::size_t rows) const
{
    std::u16string lines = Heads();
    for (std::size_t i = 0; i < std::min(rows, RowCount()); ++i)
        AppendRow(i, lines);
    return lines;
}

/// The lines before those of the rows.
std::u16string CTableExport::Heads() const
{
    std::u16string heads;
    if (m_form.hasTitles) {
        if (m_form.hasPlaces) {
            AppendField(kIdTitle, heads);
            AppendField(kAddressTitle, heads);
        }
        const bool areUnitsIn = m_form.units == TableExportForm::Units::InTitles;
        for (const ColumnCoding& column : m_rows.Columns())
            AppendField(areUnitsIn ? TitleWithUnit(column) : column.title, heads);
        EndLine(heads);
    }
    if (m_form.units != TableExportForm::Units::OwnLine)
        return heads;
    std::u16string units;
    for (int place = 0; m_form.hasPlaces && place < kTitleColumns; ++place)
        AppendField(u"", units);
    for (const ColumnCoding& column : m_rows.Columns())
        AppendField(column.notes->unit, units);
    EndLine(units);
    return heads + units;
}

/// That of the rows which stands at `index` among those written.
void CTableExport::AppendRow(std::size_t index, std::u16string& text) const
{
    const std::int32_t row = m_chosen ? (*m_chosen)[index] : static_cast<std::int32_t>(index);
    if (m_form.hasPlaces) {
        AppendField(IdText(row), text);
        AppendField(AddressText(m_rows, row), text);
    }
    for (std::size_t column = 0; column < m_rows.Columns().size(); ++column)
        AppendField(SpreadsheetNumber(m_rows.Columns()[column], m_rows.Text(row, column), m_form.point), text);
    EndLine(text);
}

/// With the separator after it.
void CTableExport::AppendField(std::u16string_view field, std::u16string& line) const
{
    constexpr std::u16string_view kSpecial = u"\"\r\n";
    const bool isQuoted = field.find_first_of(kSpecial) != field.npos || field.find(m_form.separator) != field.npos ||
                          (!field.empty() && (IsBlank(field.front()) || IsBlank(field.back())));
    if (isQuoted) {
        line += u'"';
        for (const char16_t unit : field)
            line.append(unit == u'"' ? 2 : 1, unit);
        line += u'"';
    } else {
        line += field;
    }
    line += m_form.separator;
}

/// In place of the last separator.
void CTableExport::EndLine(std::u16string& line) const
{
    if (!line.empty() && line.back() == m_form.separator)
        line.pop_back();
    line += u"\r\n";
}
