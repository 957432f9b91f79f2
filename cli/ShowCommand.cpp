#include "cli/ShowCommand.h"

#include "changes/CellNow.h"
#include "changes/TablePieces.h"
#include "cli/OpenRecipe.h"
#include "cli/TextTable.h"
#include "files/RecipeMessages.h"
#include "files/TableTitles.h"
#include "library/JsonText.h"
#include "model/StoredNumber.h"
#include "model/ValueNames.h"
#include "text/FileMessages.h"
#include "text/Utf8Text.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using Align = CTextTable::Align;

CTextTable TableWithTitles(const CRecipeRows& layout)
{
    std::vector<Align> aligns = {Align::Right, Align::Left};
    for (const ColumnCoding& column : layout.Columns())
        aligns.push_back(column.dataType == DataType::String ? Align::Left : Align::Right);
    CTextTable table(aligns);
    table.MakeRoom(0, kIdTitle);
    table.MakeRoom(1, kAddressTitle);
    for (std::size_t column = 0; column < layout.Columns().size(); ++column)
        table.MakeRoom(kTitleColumns + column, layout.Columns()[column].title);
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
        m_table.MakeRoom(kTitleColumns + column, text);
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

    bool GoesOn() const override { return !m_output.HasFailed(); }

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
bool PrintTable(const CRecipeDocument& document, CStandardOutput& output, CReporter& reporter)
{
    const CRecipeRows layout = LayOutRows(document.Settings());
    CTextTable table = TableWithTitles(layout);
    CCellMeasure measure(table);
    if (!document.Walk(measure, reporter))
        return false;
    CTablePrinter printer(layout, table, output);
    printer.PrintTitles();
    return document.Walk(printer, reporter);
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

    bool GoesOn() const override { return !m_output.HasFailed(); }

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
bool PrintJson(const CRecipeDocument& document, CStandardOutput& output, CReporter& reporter)
{
    const CRecipeRows layout = LayOutRows(document.Settings());
    CJsonPrinter printer(layout, output);
    printer.PrintTitles();
    if (!document.Walk(printer, reporter))
        return false;
    printer.PrintEnd();
    return true;
}

/// Prints each row as an object of its own, with what the notes of its items say.
class CLinesPrinter final : public CPieceTaker {
public:
    CLinesPrinter(const CRecipeRows& layout, CStandardOutput& output) : m_layout(layout), m_output(output)
    {
        for (const ColumnCoding& column : layout.Columns())
            m_items.push_back(ItemOf(column));
    }

    Answer Take(std::size_t, const FileTable&, const CRowPieces& pieces) override
    {
        const CStoredCells stored = pieces.Stored();
        CCellNow now(pieces.Rows(), stored);
        for (std::int32_t row = 0; row < pieces.Rows().RowCount(); ++row) {
            BeginRow(pieces.First() + row, !now.IsTable());
            for (std::uint32_t column = 0; column < m_items.size(); ++column)
                AppendCell(pieces.Rows(), {row, column}, now);
            m_json += "]}\n";
            m_output.Write(m_json);
        }
        return m_output.HasFailed() ? Answer::End : Answer::GoOn;
    }

private:
    /// What all cells of a column have.
    static std::string ItemOf(const ColumnCoding& column)
    {
        std::string json = "\"item\":";
        AppendJsonText(column.title, json);
        if (!column.notes->unit.empty()) {
            json += ",\"unit\":";
            AppendJsonText(column.notes->unit, json);
        }
        AppendEnd("lowest", column.notes->lowest, json);
        AppendEnd("highest", column.notes->highest, json);
        return json;
    }

    static void AppendEnd(std::string_view name, const std::optional<CDecimal>& number, std::string& json)
    {
        if (number)
            json.append(",\"").append(name).append("\":").append(ToUtf8(number->Text()));
    }

    void BeginRow(std::int32_t row, bool hasWords)
    {
        m_json = "{\"row\":" + std::to_string(std::int64_t{row} + 1);
        if (hasWords)
            m_json += ",\"address\":" + std::to_string(m_layout.RowAddress(row).number);
        m_json += ",\"cells\":[";
    }

    void AppendCell(const CRecipeRows& rows, CellPlace place, CCellNow& now)
    {
        const ColumnCoding& column = m_layout.Columns()[place.column];
        m_text.clear();
        rows.AppendText(place.row, place.column, m_text);
        m_json += place.column == 0 ? "{" : ",{";
        m_json += m_items[place.column];
        m_json += ",\"text\":";
        AppendJsonText(m_text, m_json);
        if (!column.notes->texts.empty())
            AppendName(column);
        if (!column.notes->bits.empty())
            AppendBits(column, place, now);
        m_json += '}';
    }

    void AppendName(const ColumnCoding& column)
    {
        const auto means = TextOfValue(*column.notes, column, m_text);
        if (means.empty())
            return;
        m_json += ",\"means\":";
        AppendJsonText(means, m_json);
    }

    /// Bits are those of the words: a number may be shown as another one. A text that is no number has none.
    void AppendBits(const ColumnCoding& column, CellPlace place, CCellNow& now)
    {
        const auto number = NumberOfText(column, m_text);
        if (!number)
            return;
        const std::uint32_t bits = now.IsTable() ? BitsOfNumber(column, *number) : BitsOfWords(now.Words(place));
        m_json += ",\"set\":[";
        const char* before = "";
        for (const auto name : NamesOfSetBits(column, bits)) {
            m_json += std::exchange(before, ",");
            AppendJsonText(name, m_json);
        }
        m_json += ']';
    }

    const CRecipeRows& m_layout;
    CStandardOutput& m_output;
    std::vector<std::string> m_items;
    std::u16string m_text;
    std::string m_json;
};

bool PrintLines(const CRecipeDocument& document, CStandardOutput& output, CReporter& reporter)
{
    const ReadSettings& settings = document.Settings();
    const std::vector tables{MakeTable(settings.format, settings.startAddress, settings.rowCount)};
    CLinesPrinter printer(tables.front().layout, output);
    CNoProgress unseen;
    const Outcome outcome = WalkTables(document.Type(), document.Path(), tables, printer, unseen);
    if (HasFailed(outcome))
        ShowFileError(reporter, OpenErrorOf(document.Type()), document.Path());
    return outcome == Outcome::Done;
}

bool Print(const CRecipeDocument& document, ShowForm form, CStandardOutput& output, CReporter& reporter)
{
    switch (form) {
    case ShowForm::Json:
        return PrintJson(document, output, reporter);
    case ShowForm::Lines:
        return PrintLines(document, output, reporter);
    default:
        return PrintTable(document, output, reporter);
    }
}

} // namespace

bool ShowRecipe(const ShowOptions& options, CStandardOutput& output, CReporter& reporter)
{
    CRecipeDocument document;
    if (!OpenRecipe(document, options.file, options.read, reporter))
        return false;
    const bool isPrinted = Print(document, options.form, output, reporter);
    return (isPrinted || output.HasFailed()) && output.Finish(reporter);
}
