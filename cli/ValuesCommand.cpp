#include "cli/ValuesCommand.h"

#include "changes/TablePieces.h"
#include "changes/WordsText.h"
#include "cli/RecipeTables.h"
#include "files/CellComparison.h"
#include "files/RecipeMessages.h"
#include "library/JsonText.h"
#include "model/StoredNumber.h"
#include "text/Utf8Text.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace {

/// Prints the rows of one piece of a table.
class CPiecePrinter {
public:
    CPiecePrinter(const std::string& begin, const FileTable& table, const CRowPieces& pieces, CStandardOutput& output)
        : m_begin(begin),
          m_table(table),
          m_first(pieces.First()),
          m_rows(pieces.Rows()),
          m_isTable(m_rows.Fields() != nullptr),
          m_stored(pieces.Stored()),
          m_comparison(m_rows, m_stored, false),
          m_output(output)
    {
    }

    void Print()
    {
        m_comparison.Compare(0, m_rows.RowCount(), m_changes);
        for (std::int32_t row = 0; row < m_rows.RowCount(); ++row)
            PrintRow(row);
    }

private:
    void PrintRow(std::int32_t row)
    {
        m_line = m_begin;
        m_line += ",\"row\":" + std::to_string(std::int64_t{m_first} + row + 1);
        if (!m_isTable)
            m_line += ",\"address\":" + std::to_string(m_table.layout.RowAddress(m_first + row).number);
        m_line += ",\"cells\":[";
        for (std::uint32_t column = 0; column < m_rows.Columns().size(); ++column) {
            m_line += column == 0 ? "{" : ",{";
            AppendCell({row, column});
            m_line += '}';
        }
        m_line += "]}\n";
        m_output.Write(m_line);
    }

    void AppendCell(CellPlace place)
    {
        const ColumnCoding& coding = m_rows.Columns()[place.column];
        const auto words = m_isTable ? std::span<const std::byte>() : m_comparison.OldWords(place);
        const bool isThere = m_isTable ? m_stored.HasField(place) : words.size() == BytesOfCell(m_rows, place);
        m_text.clear();
        m_rows.AppendText(place.row, place.column, m_text);
        m_line += "\"item\":";
        AppendJsonText(coding.title, m_line);
        m_line += ",\"text\":";
        AppendJsonText(m_text, m_line);
        m_line += ",\"number\":";
        AppendNumber(isThere ? NumberOf(coding, words) : std::nullopt);
        if (!words.empty()) {
            m_line += ",\"words\":\"";
            AppendWordsText(words, m_line);
            m_line += '"';
        }
        AppendMarks(place, isThere);
    }

    std::optional<CDecimal> NumberOf(const ColumnCoding& coding, std::span<const std::byte> words) const
    {
        return m_isTable ? NumberOfText(coding, m_text) : StoredNumber(coding, words);
    }

    /// In full; where that were too long to read, with an exponent.
    void AppendNumber(const std::optional<CDecimal>& number)
    {
        constexpr std::size_t kLongest = 40;
        if (!number) {
            m_line += "null";
            return;
        }
        const std::string digits = ToUtf8(number->Text());
        m_line += digits.size() <= kLongest ? digits : ToUtf8(number->TextWithExponent());
    }

    /// To be called for all cells in their order.
    void AppendMarks(CellPlace place, bool isThere)
    {
        const bool isOutside = isThere && m_rows.OutsideLimits(place.row, place.column);
        const bool isRewritten = m_nextChange < m_changes.size() && m_changes[m_nextChange].place == place;
        if (isRewritten)
            ++m_nextChange;
        m_line += ",\"marks\":[";
        if (isOutside)
            m_line += "\"outside\"";
        if (isRewritten)
            m_line += isOutside ? ",\"rewritten\"" : "\"rewritten\"";
        m_line += ']';
    }

    const std::string& m_begin;
    const FileTable& m_table;
    const std::int32_t m_first;
    const CRecipeRows& m_rows;
    const bool m_isTable;
    const CStoredCells m_stored;
    CCellComparison m_comparison;
    CStandardOutput& m_output;
    std::vector<PlannedChange> m_changes;
    std::size_t m_nextChange = 0;
    std::u16string m_text;
    std::string m_line;
};

class CValuesPrinter final : public CPieceTaker {
public:
    CValuesPrinter(const std::string& file, CStandardOutput& output) : m_file(FromUtf8(file)), m_output(output) {}

    Answer Take(std::size_t table, const FileTable& layout, const CRowPieces& rows) override
    {
        std::string begin = "{\"file\":";
        AppendJsonText(m_file, begin);
        begin += ",\"table\":" + std::to_string(table);
        CPiecePrinter(begin, layout, rows, m_output).Print();
        return m_output.HasFailed() ? Answer::End : Answer::GoOn;
    }

private:
    const std::u16string m_file;
    CStandardOutput& m_output;
};

/// False after a failure, then reported.
bool PrintFile(const std::string& file, CTableFinder& finder, CStandardOutput& output, CReporter& reporter,
               CProgress& progress)
{
    const auto tables = finder.TablesOf({file}, reporter, reporter);
    if (!tables)
        return false;
    CValuesPrinter printer(file, output);
    const Outcome outcome = WalkTables(tables->type, tables->path, tables->tables, printer, progress);
    if (HasFailed(outcome))
        ShowFileError(reporter, OpenErrorOf(tables->type), tables->path);
    return !HasFailed(outcome);
}

} // namespace

ExitCode PrintValues(const ValuesOptions& options, CStandardOutput& output, CReporter& reporter, CProgress& progress)
{
    CTableFinder finder(options.read);
    bool isWell = true;
    for (const std::string& file : options.files) {
        if (output.HasFailed())
            break;
        isWell = PrintFile(file, finder, output, reporter, progress) && isWell;
    }
    return output.Finish(reporter) && isWell ? kDone : kTrouble;
}
