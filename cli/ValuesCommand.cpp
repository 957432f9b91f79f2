#include "cli/ValuesCommand.h"

#include "changes/TablePieces.h"
#include "changes/ValueLines.h"
#include "cli/RecipeTables.h"
#include "files/RecipeMessages.h"
#include "text/PathText.h"

#include <cstddef>
#include <cstdint>

namespace {

class CValuesPrinter final : public CPieceTaker {
public:
    CValuesPrinter(const std::filesystem::path& file, CStandardOutput& output)
        : m_file(PathText(file)),
          m_output(output)
    {
    }

    Answer Take(std::size_t table, const FileTable& layout, const CRowPieces& rows) override
    {
        const CStoredCells stored = rows.Stored();
        CValueLines values(
            m_file, table,
            {.rows = rows.Rows(), .stored = stored, .wholeLayout = layout.layout, .first = rows.First()});
        for (std::int32_t row = 0; row < rows.Rows().RowCount(); ++row) {
            m_line.clear();
            values.Append(row, m_line);
            m_output.Write(m_line);
        }
        return m_output.HasFailed() ? Answer::End : Answer::GoOn;
    }

private:
    const std::u16string m_file;
    CStandardOutput& m_output;
    std::string m_line;
};

/// False after a failure, then reported.
bool PrintFile(const std::filesystem::path& file, CTableFinder& finder, CStandardOutput& output, CReporter& reporter,
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
    for (const std::filesystem::path& file : options.files) {
        if (output.HasFailed())
            break;
        isWell = PrintFile(file, finder, output, reporter, progress) && isWell;
    }
    return output.Finish(reporter) && isWell ? kDone : kTrouble;
}
