#include "cli/ShowCommand.h"

#include "cli/JsonText.h"
#include "cli/RecipeSource.h"
#include "cli/TextTable.h"
#include "files/CellTexts.h"
#include "model/NumberText.h"

#include <cstddef>
#include <vector>

namespace {

using Align = CTextTable::Align;

constexpr std::size_t kFixedColumns = 2; // "ID" and "RW_Addr"

std::u16string AddressText(const CRecipeRows& rows, std::int32_t row)
{
    return u"RW" + DecimalText(rows.WordAddress(row));
}

/// Calls `take` with the table column and the text of every cell, line by line, the titles first.
template <typename Take>
void ForEachCell(const CRecipeRows& rows, Take take)
{
    const std::size_t columns = rows.Columns().size();
    take(0, u"ID");
    take(1, u"RW_Addr");
    for (std::size_t column = 0; column < columns; ++column)
        take(kFixedColumns + column, rows.Columns()[column].title);

    CCellTexts cells(rows);
    for (std::int32_t row = 0; row < rows.RowCount(); ++row) {
        take(0, DecimalText(std::int64_t{row} + 1));
        take(1, AddressText(rows, row));
        for (std::size_t column = 0; column < columns; ++column) {
            cells.MoveTo(row, column);
            take(kFixedColumns + column, cells.Text());
        }
    }
}

CTextTable TableFor(const CRecipeRows& rows)
{
    std::vector<Align> aligns = {Align::Right, Align::Left};
    for (const ColumnCoding& column : rows.Columns())
        aligns.push_back(column.dataType == DataType::String ? Align::Left : Align::Right);
    CTextTable table(aligns);
    ForEachCell(rows, [&](std::size_t column, std::u16string_view text) { table.MakeRoom(column, text); });
    return table;
}

void PrintTable(const CRecipeRows& rows, CStandardOutput& output)
{
    CTextTable table = TableFor(rows);
    std::string cell;
    ForEachCell(rows, [&](std::size_t, std::u16string_view text) {
        cell.clear();
        table.AppendCell(text, cell);
        output.Write(cell);
    });
}

void AppendTitles(const CRecipeRows& rows, std::string& json)
{
    for (std::size_t column = 0; column < rows.Columns().size(); ++column) {
        json += column == 0 ? "" : ", ";
        AppendJsonText(rows.Columns()[column].title, json);
    }
}

void AppendRow(const CRecipeRows& rows, std::int32_t row, CCellTexts& cells, std::string& json)
{
    json += "{\"id\": " + std::to_string(std::int64_t{row} + 1) + ", \"address\": ";
    AppendJsonText(AddressText(rows, row), json);
    json += ", \"cells\": [";
    for (std::size_t column = 0; column < rows.Columns().size(); ++column) {
        json += column == 0 ? "" : ", ";
        cells.MoveTo(row, column);
        AppendJsonText(cells.Text(), json);
    }
    json += "]}";
}

/// One object, a line a row.
void PrintJson(const CRecipeRows& rows, CStandardOutput& output)
{
    std::string json = "{\"titles\": [";
    AppendTitles(rows, json);
    json += "], \"rows\": [";
    CCellTexts cells(rows);
    for (std::int32_t row = 0; row < rows.RowCount(); ++row) {
        json += row == 0 ? "\n" : ",\n";
        AppendRow(rows, row, cells, json);
        output.Write(json);
        json.clear();
    }
    json += rows.RowCount() == 0 ? "]}\n" : "\n]}\n";
    output.Write(json);
}

} // namespace

bool ShowRecipe(const ShowOptions& options, CStandardOutput& output, CReporter& reporter)
{
    const auto source = FindSource(options.file, options.read, reporter);
    CRecipeRows rows;
    if (!source || !ReadRows(*source, rows, reporter))
        return false;
    if (options.json)
        PrintJson(rows, output);
    else
        PrintTable(rows, output);
    return output.Finish(reporter);
}
