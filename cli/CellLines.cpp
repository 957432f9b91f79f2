#include "cli/CellLines.h"

#include "files/CellComparison.h"
#include "files/TableTitles.h"
#include "text/EscapedText.h"
#include "text/Utf8Text.h"

CCellLines::CCellLines(const CRecipeRows& layout, Addresses addresses) : m_layout(layout), m_addresses(addresses)
{
    for (const ColumnCoding& column : layout.Columns())
        m_titles.push_back(ToUtf8(EscapedText(column.title)));
}

void CCellLines::AppendPlace(CellPlace place, std::string_view beforeRow, std::string& line) const
{
    if (m_addresses == Addresses::OfWords) {
        line += "RW" + std::to_string(AddressOfCell(m_layout, place).number);
        line += beforeRow;
    } else if (beforeRow.starts_with(' ')) {
        line += beforeRow.substr(1);
    }
    line += std::to_string(std::int64_t{place.row} + kTitleRows) + ' ' + m_titles[place.column] + " = ";
}
