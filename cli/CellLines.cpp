#include "cli/CellLines.h"

#include "files/CellComparison.h"
#include "files/TableTitles.h"
#include "text/EscapedText.h"
#include "text/NumberText.h"
#include "text/Utf8Text.h"

CCellLines::CCellLines(const CRecipeRows& layout, Addresses addresses) : m_layout(layout), m_addresses(addresses)
{
    for (const ColumnCoding& column : layout.Columns())
        m_titles.push_back(ToUtf8(EscapedText(column.title)));
}

void CCellLines::AppendPlace(CellPlace place, std::string_view beforeRow, std::string& line) const
{
    if (m_addresses == Addresses::OfWords) {
        AppendDecimal(AddressOfCell(m_layout, place).number, line += "RW");
        line += beforeRow;
    } else if (beforeRow.starts_with(' ')) {
        line += beforeRow.substr(1);
    }
    AppendDecimal(std::int64_t{place.row} + kTitleRows, line);
    line.append(" ").append(m_titles[place.column]).append(" = ");
}
