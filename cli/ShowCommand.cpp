#include "cli/ShowCommand.h"

#include "cli/RecipeSource.h"
#include "cli/TextTable.h"
#include "files/RecipeWalk.h"
#include "library/JsonText.h"
#include "text/NumberText.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace {

using Align = CTextTable::Align;

constexpr std::u16string_view kIdTitle = u"ID";
constexpr std::u16string_view kAddressTitle = u"RW_Addr";
constexpr std::size_t kFixedColumns = 2;

std::u16string IdText(std::int32_t row)
{
    return DecimalText(std::int64_t{row} + 1);
}

std::u16string AddressText(const CRecipeRows& rows, std::int32_t row)
{
    return u"RW" + DecimalText(rows.RowAddress(row).number);
}

/// The rows of a source: what is printed, but for the texts of the cells.
struct Sheet {
    const RecipeSource& source;
    CRecipeRows layout;
};

/// Hands every cell to `taker`. False after a failure, then reported.
bool Walk(const Sheet& sheet, CCellTaker& taker, CReporter& reporter)
{
    return sheet.layout.RowCount() == 0 ||
           WalkRecipe(sheet.source.type, sheet.layout, sheet.source.path, taker, reporter);
}

CTextTable TableWithTitles(const CRecipeRows& layout)
{
    std::vector<Align> aligns = {Align::Right, Align::Left};
    for (const ColumnCoding& column : layout.Columns())
        aligns.push_back(column.dataType == DataType::String ? Align::Left : Align::Right);
    CTextTable table(aligns);
    table.MakeRoom(0, kIdTitle);
    table.MakeRoom(1, kAddressTitle);
    for (std::size_t column = 0; column < layout.Columns().size(); ++column)
        table.MakeRoom(kFixedColumns + column, layout.Columns()[column].title);
    if (layout.RowCount() > 0) { // of these, the last row's are the longest
        table.MakeRoom(0, IdText(layout.RowCount() - 1));
        table.MakeRoom(1, AddressText(layout, layout.RowCount() - 1));
    }
    return table;
}

/// Widens the columns of a table for every cell.
class CCellMeasure final : public CCellTaker {
public:
    explicit CCellMeasure(CTextTable& table) : m_table(table) {}

    void TakeCell(std::int32_t, std::size_t column, std::u16string_view text) override
    {
        m_table.MakeRoom(kFixedColumns + column, text);
    }

private:
    CTextTable& m_table;
};

/// Prints every cell as one of a table that has room for it.
class CTablePrinter final : public CCellTaker {
public:
    CTablePrinter(const CRecipeRows& layout, CTextTable& table, CStandardOutput& output)
        : m_layout(layout),
          m_table(table),
          m_output(output)
    {
    }

    void PrintTitles()
    {
        Print(kIdTitle);
        Print(kAddressTitle);
        for (const ColumnCoding& column : m_layout.Columns())
            Print(column.title);
    }

    void TakeCell(std::int32_t row, std::size_t column, std::u16string_view text) override
    {
        if (column == 0) {
            Print(IdText(row));
            Print(AddressText(m_layout, row));
        }
        Print(text);
    }

private:
    void Print(std::u16string_view text)
    {
        m_cell.clear();
        m_table.AppendCell(text, m_cell);
        m_output.Write(m_cell);
    }

    const CRecipeRows& m_layout;
    CTextTable& m_table;
    CStandardOutput& m_output;
    std::string m_cell;
};

/// Goes over the file twice, since the first line is as wide as the widest.
bool PrintTable(const Sheet& sheet, CStandardOutput& output, CReporter& reporter)
{
    CTextTable table = TableWithTitles(sheet.layout);
    CCellMeasure measure(table);
    if (!Walk(sheet, measure, reporter))
        return false;
    CTablePrinter printer(sheet.layout, table, output);
    printer.PrintTitles();
    return Walk(sheet, printer, reporter);
}

/// Prints every cell as a text of its row's object, a line a row.
class CJsonPrinter final : public CCellTaker {
public:
    CJsonPrinter(const CRecipeRows& layout, CStandardOutput& output) : m_layout(layout), m_output(output) {}

    void PrintTitles()
    {
        m_json = "{\"titles\": [";
        for (std::size_t column = 0; column < m_layout.Columns().size(); ++column) {
            m_json += column == 0 ? "" : ", ";
            AppendJsonText(m_layout.Columns()[column].title, m_json);
        }
        m_json += "], \"rows\": [";
        m_output.Write(m_json);
    }

    void TakeCell(std::int32_t row, std::size_t column, std::u16string_view text) override
    {
        m_json.clear();
        if (column == 0)
            BeginRow(row);
        else
            m_json += ", ";
        AppendJsonText(text, m_json);
        if (column + 1 == m_layout.Columns().size())
            m_json += "]}";
        m_output.Write(m_json);
    }

    void PrintEnd() { m_output.Write(m_layout.RowCount() == 0 ? "]}\n" : "\n]}\n"); }

private:
    void BeginRow(std::int32_t row)
    {
        m_json += row == 0 ? "\n" : ",\n";
        m_json += "{\"id\": " + std::to_string(std::int64_t{row} + 1) + ", \"address\": ";
        AppendJsonText(AddressText(m_layout, row), m_json);
        m_json += ", \"cells\": [";
    }

    const CRecipeRows& m_layout;
    CStandardOutput& m_output;
    std::string m_json;
};

/// One object.
bool PrintJson(const Sheet& sheet, CStandardOutput& output, CReporter& reporter)
{
    CJsonPrinter printer(sheet.layout, output);
    printer.PrintTitles();
    if (!Walk(sheet, printer, reporter))
        return false;
    printer.PrintEnd();
    return true;
}

} // namespace

bool ShowRecipe(const ShowOptions& options, CStandardOutput& output, CReporter& reporter)
{
    const auto source = FindSource(options.file, options.read, reporter);
    if (!source)
        return false;
    const Sheet sheet{*source, LayOutRows(source->settings)};
    const bool isPrinted = options.json ? PrintJson(sheet, output, reporter) : PrintTable(sheet, output, reporter);
    return isPrinted && output.Finish(reporter);
}
