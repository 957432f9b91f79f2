#include "sheet/SheetMaking.h"

#include "changes/ChangeLines.h"
#include "changes/ValueLines.h"
#include "files/TableTitles.h"
#include "model/ItemNotes.h"
#include "sheet/SheetValues.h"
#include "text/EscapedText.h"
#include "text/MessageText.h"
#include "text/NumberText.h"
#include "text/PathText.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <utility>

namespace {

constexpr std::size_t kShortShaDigits = 12;
constexpr std::size_t kMostListedChanges = 10'000;

std::u16string Counted(std::uint64_t count, std::u16string_view one, std::u16string_view many)
{
    return DecimalText(static_cast<std::int64_t>(count)) + u' ' + std::u16string(count == 1 ? one : many);
}

/// "1-3, 5" for the rows 0, 1, 2 and 4.
std::u16string RowsText(const std::vector<std::int32_t>& rows)
{
    std::u16string text;
    for (std::size_t i = 0; i < rows.size();) {
        std::size_t end = i + 1;
        while (end < rows.size() && rows[end] == rows[end - 1] + 1)
            ++end;
        text += text.empty() ? u"" : u", ";
        text += IdText(rows[i]);
        if (end - i > 1)
            text += u'-' + IdText(rows[end - 1]);
        i = end;
    }
    return text;
}

SheetItem ItemOf(const ColumnCoding& column)
{
    SheetItem item{.title = EscapedText(column.title)};
    if (!column.notes.IsEmpty()) {
        item.unit = EscapedText(column.notes->unit);
        item.range = EscapedText(RangeText(*column.notes));
    }
    return item;
}

} // namespace

std::u16string TooManyValuesText(std::uint64_t rows, std::uint64_t columns)
{
    return FillMessage(
        u"%d rows of %d values are too many for a sheet, which has %d values at most. Choose fewer rows!",
        {static_cast<std::int64_t>(rows), static_cast<std::int64_t>(columns),
         static_cast<std::int64_t>(kMostSheetValues)});
}

std::uint64_t CSheetMaker::RowCount() const
{
    return m_wishes.rows ? m_wishes.rows->size() : static_cast<std::uint64_t>(m_subject.rows.RowCount());
}

Outcome CSheetMaker::Make(RecipeSheet& sheet, std::string& records, CProgress& progress) const
{
    const CRecipeRows& rows = m_subject.rows;
    sheet = {};
    records.clear();
    MakeHead(sheet);
    for (const ColumnCoding& column : rows.Columns())
        sheet.items.push_back(ItemOf(column));
    CSheetValues values(rows, m_subject.stored);
    const std::u16string file = PathText(m_subject.path);
    CValueLines lines(file, 0, {.rows = rows, .stored = m_subject.stored, .wholeLayout = rows});
    const std::uint64_t count = RowCount();
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::int32_t row = m_wishes.rows ? (*m_wishes.rows)[i] : static_cast<std::int32_t>(i);
        SheetBlock& block = sheet.blocks.emplace_back();
        block.title = FillMessage(u"Row %s (%s)", {IdText(row), AddressText(rows, row)});
        for (std::uint32_t column = 0; column < rows.Columns().size(); ++column)
            block.values.push_back(values.Make({row, column}));
        lines.Append(row, records);
        if (!progress.Advance(i + 1, count))
            return Outcome::GivenUp;
    }
    return Outcome::Done;
}

void CSheetMaker::MakeHead(RecipeSheet& sheet) const
{
    const CRecipeRows& rows = m_subject.rows;
    const auto add = [&sheet](std::u16string_view label, std::u16string_view text) {
        sheet.facts.push_back({std::u16string(label), EscapedText(text)});
    };
    sheet.title = EscapedText(m_wishes.title.empty() ? UsualSheetTitle(m_subject.path) : m_wishes.title);
    sheet.file = EscapedText(PathText(m_subject.path.filename()));
    const std::u16string sha = FromUtf8(m_subject.content.sha256);
    sheet.shortSha = sha.substr(0, kShortShaDigits);
    add(u"File", sheet.file.empty() ? u"not saved yet" : sheet.file);
    add(u"SHA-256", ShaText());
    if (!sha.empty())
        add(u"Size", Counted(m_subject.content.bytes, u"byte", u"bytes"));
    add(u"Table format", m_subject.format);
    add(u"Start address", u"RW" + DecimalText(rows.StartAddress()));
    add(u"Rows", m_wishes.rows ? FillMessage(u"%s of %d", {RowsText(*m_wishes.rows), rows.RowCount()})
                               : FillMessage(u"all %d", {rows.RowCount()}));
    add(u"Date", FromUtf8(LocalText(m_wishes.time)));
    add(u"User", m_wishes.user.empty() ? u"not known" : m_wishes.user);
}

/// What the file holds may be something else than what is shown.
std::u16string CSheetMaker::ShaText() const
{
    std::u16string text = m_subject.content.sha256.empty() ? u"none" : FromUtf8(m_subject.content.sha256);
    if (const std::size_t edits = m_subject.rows.EditedCount(); edits > 0)
        text += FillMessage(edits == 1 ? u", with %d edit that is not saved" : u", with %d edits that are not saved",
                            {static_cast<std::int64_t>(edits)});
    if (m_subject.isOtherNow)
        text += u", changed by another program since these values were read";
    return text;
}

CSheetChanges::CSheetChanges(std::u16string_view since, const std::optional<std::vector<std::int32_t>>& rows)
    : m_rows(rows)
{
    m_changes.since = EscapedText(since);
}

void CSheetChanges::TakeHeader(const ChangeHeader& header)
{
    AppendLine(header, m_records);
}

bool CSheetChanges::Take(const ChangeRecord& record)
{
    AppendLine(record, m_records);
    if (!record.row || !record.item || record.table != 0) {
        ++m_outside;
    } else if (!IsListed(record)) {
        ++m_inOtherRows;
    } else if (m_changes.changes.size() == kMostListedChanges) {
        ++m_notListed;
    } else {
        const auto textOf = [](const std::optional<std::u16string>& text) {
            return text ? EscapedText(*text) : std::u16string(u"not in the file");
        };
        m_changes.changes.push_back(
            {DecimalText(*record.row), EscapedText(*record.item), textOf(record.oldText), textOf(record.newText)});
    }
    return true;
}

/// Whether it is of a row that the sheet has.
bool CSheetChanges::IsListed(const ChangeRecord& record) const
{
    return !m_rows || std::binary_search(m_rows->begin(), m_rows->end(), *record.row - kTitleRows);
}

SheetChanges CSheetChanges::Changes() const
{
    SheetChanges changes = m_changes;
    const auto add = [&changes](std::uint64_t count, std::u16string_view one, std::u16string_view many) {
        if (count == 0)
            return;
        changes.further += changes.further.empty() ? u"Further: " : u", ";
        changes.further += Counted(count, one, many);
    };
    add(m_notListed, u"change that is not listed", u"changes that are not listed");
    add(m_inOtherRows, u"change in other rows", u"changes in other rows");
    add(m_outside, u"change outside the table", u"changes outside the table");
    if (!changes.further.empty())
        changes.further += u'.';
    return changes;
}

std::u16string UserName()
{
    for (const char* name : {"USER", "USERNAME"})
        if (const char* const value = std::getenv(name); value != nullptr && *value != '\0')
            return FromUtf8(value);
    return {};
}

std::u16string UsualSheetTitle(const std::filesystem::path& path)
{
    return path.empty() ? u"Recipe sheet" : u"Recipe sheet of " + PathText(path.filename());
}
