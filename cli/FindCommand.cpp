#include "cli/FindCommand.h"

#include "changes/TablePieces.h"
#include "cli/CellLines.h"
#include "cli/RecipeTables.h"
#include "files/CellTexts.h"
#include "files/NumberPlaces.h"
#include "files/RecipeMessages.h"
#include "model/NumberForms.h"
#include "text/EscapedText.h"
#include "text/FileMessages.h"
#include "text/MessageText.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace {

/// Prints the cells that show a text.
class CTextFinder final : public CPieceTaker {
public:
    CTextFinder(const FindOptions& options, const RecipeTables& recipe, CStandardOutput& output)
        : m_wanted(FromUtf8(options.text)),
          m_isPart(options.isPart),
          m_output(output)
    {
        const auto addresses =
            recipe.type == FileType::Csv ? CCellLines::Addresses::None : CCellLines::Addresses::OfWords;
        for (const FileTable& table : recipe.tables)
            m_tables.push_back({CCellLines(table.layout, addresses), ColumnsToLookIn(options, table.layout)});
    }

    bool HasColumns() const
    {
        return std::any_of(m_tables.begin(), m_tables.end(), [](const Table& table) { return !table.columns.empty(); });
    }
    bool HasFound() const { return m_hasFound; }

    Answer Take(std::size_t table, const FileTable&, const CRowPieces& rows) override
    {
        if (m_tables[table].columns.empty())
            return Answer::NextTable;
        CCellTexts texts(rows.Rows());
        for (std::int32_t row = 0; row < rows.Rows().RowCount(); ++row)
            for (const std::uint32_t column : m_tables[table].columns) {
                texts.MoveTo(row, column);
                LookAt(m_tables[table].cells, {rows.First() + row, column}, texts.Text());
            }
        return m_output.HasFailed() ? Answer::End : Answer::GoOn;
    }

private:
    struct Table {
        CCellLines cells;
        std::vector<std::uint32_t> columns; ///< to look in
    };

    static std::vector<std::uint32_t> ColumnsToLookIn(const FindOptions& options, const CRecipeRows& layout)
    {
        std::vector<std::uint32_t> columns;
        for (std::uint32_t column = 0; column < layout.Columns().size(); ++column)
            if (!options.item || ToUtf8(layout.Columns()[column].title) == *options.item)
                columns.push_back(column);
        return columns;
    }

    void LookAt(const CCellLines& cells, CellPlace place, std::u16string_view text)
    {
        if (m_isPart ? text.find(m_wanted) == text.npos : text != m_wanted)
            return;
        m_hasFound = true;
        m_line.clear();
        cells.AppendPlace(place, " row ", m_line);
        AppendEscaped(text, m_line);
        m_line += '\n';
        m_output.Write(m_line);
    }

    const std::u16string m_wanted;
    const bool m_isPart;
    std::vector<Table> m_tables;
    CStandardOutput& m_output;
    std::string m_line;
    bool m_hasFound = false;
};

ExitCode FindInCells(const FindOptions& options, const RecipeTables& recipe, CStandardOutput& output,
                     CReporter& reporter, CProgress& progress)
{
    CTextFinder finder(options, recipe, output);
    if (HasFailed(WalkTables(recipe.type, recipe.path, recipe.tables, finder, progress))) {
        ShowFileError(reporter, OpenErrorOf(recipe.type), recipe.path);
        return kTrouble;
    }
    if (!options.item || finder.HasColumns())
        return finder.HasFound() ? kDone : kNothingFound;
    reporter.ShowError(FillMessage(u"The item %s doesn't exist!", {FromUtf8(*options.item)}));
    return kTrouble;
}

/// Looks on until the search has ended, or nobody reads what is found. Nothing after a failure.
template <class Search>
std::optional<bool> RunSearch(Search& search, const typename Search::Taker& print, const bool& hasFound,
                              const CStandardOutput& output, CProgress& progress)
{
    while (search.Continue(print))
        if (output.HasFailed() || !progress.Advance(search.Position(), search.Size()))
            return hasFound;
    return search.HasFailed() ? std::nullopt : std::optional(hasFound);
}

/// Prints the places in the words of a file where a number stands in one of its forms. Nothing after a failure.
std::optional<bool> FindInWords(const RecipeTables& recipe, std::vector<NumberForm> forms, CStandardOutput& output,
                                CProgress& progress)
{
    CNumberPlaces places(recipe.type, recipe.path, std::move(forms));
    bool hasFound = false;
    const auto print = [&](std::uint64_t word, const NumberForm& form) {
        hasFound = true;
        output.Write("RW" + std::to_string(word) + ' ' + ToUtf8(form.name) + '\n');
    };
    return RunSearch(places, print, hasFound, output, progress);
}

/// Prints the fields of a table of texts that are a number. Nothing after a failure.
std::optional<bool> FindInFields(const RecipeTables& recipe, const CDecimal& number, CStandardOutput& output,
                                 CProgress& progress)
{
    CNumberFields fields(recipe.path, number);
    bool hasFound = false;
    const auto print = [&](std::uint64_t line, std::size_t field, std::u16string_view text) {
        hasFound = true;
        output.Write("line " + std::to_string(line) + " field " + std::to_string(field) + " = " +
                     ToUtf8(EscapedText(text)) + '\n');
    };
    return RunSearch(fields, print, hasFound, output, progress);
}

ExitCode FindAnywhere(const FindOptions& options, const RecipeTables& recipe, CStandardOutput& output,
                      CReporter& reporter, CProgress& progress)
{
    const std::u16string text = FromUtf8(options.text);
    const auto number = CDecimal::Parse(text);
    auto forms = FormsOfNumber(text);
    const bool isTable = recipe.type == FileType::Csv;
    if (isTable ? !number : forms.empty() && !number) {
        reporter.ShowError(FillMessage(u"%s is no number!", {text}));
        return kTrouble;
    }
    const auto found = isTable ? FindInFields(recipe, *number, output, progress)
                               : FindInWords(recipe, std::move(forms), output, progress);
    if (!found) {
        ShowFileError(reporter, OpenErrorOf(recipe.type), recipe.path);
        return kTrouble;
    }
    return *found ? kDone : kNothingFound;
}

} // namespace

ExitCode FindText(const FindOptions& options, CStandardOutput& output, CReporter& reporter, CProgress& progress)
{
    const auto recipe = TablesOf(options.file, options.read, reporter);
    if (!recipe)
        return kTrouble;
    const ExitCode code = options.anywhere ? FindAnywhere(options, *recipe, output, reporter, progress)
                                           : FindInCells(options, *recipe, output, reporter, progress);
    return output.Finish(reporter) ? code : kTrouble;
}
