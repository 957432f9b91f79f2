#include "print/SheetContent.h"

#include <utility>

namespace {

QString ToQt(std::u16string_view text)
{
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

std::size_t IndexOf(CSheetContent::Kind kind)
{
    return static_cast<std::size_t>(kind);
}

} // namespace

CSheetContent::CSheetContent(const RecipeSheet& sheet) : m_sheet(sheet)
{
    AddColumn(Kind::Head, Part::Label, {});
    AddColumn(Kind::Head, Part::Text, {});
    const SheetColumns columns = ::ColumnsOf(sheet);
    AddColumn(Kind::Values, Part::Item, kSheetItemTitle);
    AddColumn(Kind::Values, Part::Value, kSheetValueTitle);
    if (columns.hasUnits)
        AddColumn(Kind::Values, Part::Unit, kSheetUnitTitle);
    if (columns.hasRanges)
        AddColumn(Kind::Values, Part::Range, kSheetRangeTitle);
    if (columns.hasRemarks)
        AddColumn(Kind::Values, Part::Remark, kSheetRemarkTitle);
    AddColumn(Kind::Changes, Part::Row, kSheetRowTitle);
    AddColumn(Kind::Changes, Part::ChangedItem, kSheetItemTitle);
    AddColumn(Kind::Changes, Part::Old, kSheetOldTitle);
    AddColumn(Kind::Changes, Part::New, kSheetNewTitle);

    m_tables.push_back({Kind::Head});
    for (std::size_t block = 0; block < sheet.blocks.size(); ++block)
        m_tables.push_back({Kind::Values, block});
    if (sheet.blocks.empty())
        m_tables.push_back({Kind::Text, 0, std::u16string(kSheetNoRows)});
    if (!sheet.changes)
        return;
    m_tables.push_back({Kind::Changes});
    if (sheet.changes->changes.empty())
        m_tables.push_back({Kind::Text, 0, std::u16string(kSheetNoChanges)});
    if (!sheet.changes->further.empty())
        m_tables.push_back({Kind::Text, 0, sheet.changes->further});
}

void CSheetContent::AddColumn(Kind kind, Part part, std::u16string_view title)
{
    m_columns[IndexOf(kind)].push_back(ToQt(title));
    m_parts[IndexOf(kind)].push_back(part);
}

CSheetContent::Part CSheetContent::PartOf(std::size_t table, std::size_t column) const
{
    return m_parts[IndexOf(m_tables[table].kind)][column];
}

QString CSheetContent::TitleOf(std::size_t table) const
{
    switch (m_tables[table].kind) {
    case Kind::Values:
        return ToQt(m_sheet.blocks[m_tables[table].block].title);
    case Kind::Changes:
        return ToQt(ChangesTitle(*m_sheet.changes));
    case Kind::Head:
    case Kind::Text:
        break;
    }
    return ToQt(m_tables[table].title);
}

const std::vector<QString>& CSheetContent::ColumnsOf(Kind kind) const
{
    return m_columns[IndexOf(kind)];
}

std::size_t CSheetContent::RowCount(std::size_t table) const
{
    switch (m_tables[table].kind) {
    case Kind::Head:
        return m_sheet.facts.size();
    case Kind::Values:
        return m_sheet.items.size();
    case Kind::Changes:
        return m_sheet.changes->changes.size();
    case Kind::Text:
        break;
    }
    return 0;
}

QString CSheetContent::Text(std::size_t table, std::size_t row, std::size_t column) const
{
    const auto value = [&]() -> const SheetValue& { return m_sheet.blocks[m_tables[table].block].values[row]; };
    const auto change = [&]() -> const SheetChange& { return m_sheet.changes->changes[row]; };
    switch (PartOf(table, column)) {
    case Part::Label:
        return ToQt(m_sheet.facts[row].label);
    case Part::Text:
        return ToQt(m_sheet.facts[row].text);
    case Part::Item:
        return ToQt(m_sheet.items[row].title);
    case Part::Value:
        return ToQt(value().text);
    case Part::Unit:
        return ToQt(m_sheet.items[row].unit);
    case Part::Range:
        return ToQt(m_sheet.items[row].range);
    case Part::Remark:
        return ToQt(RemarkOn(value()));
    case Part::Row:
        return ToQt(change().row);
    case Part::ChangedItem:
        return ToQt(change().item);
    case Part::Old:
        return ToQt(change().oldText);
    case Part::New:
        return ToQt(change().newText);
    }
    return {};
}

bool CSheetContent::IsStrong(std::size_t table, std::size_t row, std::size_t column) const
{
    switch (PartOf(table, column)) {
    case Part::Label:
        return true;
    case Part::Value:
    case Part::Remark:
        return !m_sheet.blocks[m_tables[table].block].values[row].warning.empty();
    default:
        return false;
    }
}

bool CSheetContent::IsSharedColumn(Kind kind, std::size_t column) const
{
    const Part part = m_parts[IndexOf(kind)][column];
    return part == Part::Item || part == Part::Unit || part == Part::Range;
}
