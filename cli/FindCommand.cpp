#include "cli/FindCommand.h"

#include "changes/TablePieces.h"
#include "cli/CellLines.h"
#include "cli/RecipeTables.h"
#include "disk/File.h"
#include "files/CellTexts.h"
#include "files/CsvCutter.h"
#include "files/RecipeMessages.h"
#include "files/WordBytes.h"
#include "model/NumberForms.h"
#include "model/StoredNumber.h"
#include "text/EscapedText.h"
#include "text/FileMessages.h"
#include "text/MessageText.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t kPieceBytes = std::size_t{256} << 10;
constexpr std::size_t kLongestForm = 8; // bytes

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

/// Prints the places in the words of a file where a number stands in one of its forms.
class CNumberFinder {
public:
    CNumberFinder(std::vector<NumberForm> forms, CStandardOutput& output) : m_forms(std::move(forms)), m_output(output)
    {
        for (const NumberForm& form : m_forms)
            m_begins[FirstWord(form.bytes)] = true;
    }

    bool HasFound() const { return m_hasFound; }

    /// Looks at the words of the first `count` of `bytes`, those at `offset` of the file; the others only follow them.
    void Look(std::uint64_t offset, std::span<const std::byte> bytes, std::size_t count)
    {
        for (std::size_t at = 0; at < count && at + 1 < bytes.size(); at += 2)
            if (m_begins[FirstWord(bytes.subspan(at))])
                LookAt((offset + at) / 2, bytes.subspan(at));
    }

private:
    static std::size_t FirstWord(std::span<const std::byte> bytes)
    {
        return std::to_integer<std::size_t>(bytes[0]) | std::to_integer<std::size_t>(bytes[1]) << 8;
    }

    void LookAt(std::uint64_t word, std::span<const std::byte> bytes)
    {
        for (const NumberForm& form : m_forms) {
            if (form.bytes.size() > bytes.size() || !std::equal(form.bytes.begin(), form.bytes.end(), bytes.begin()))
                continue;
            m_hasFound = true;
            m_output.Write("RW" + std::to_string(word) + ' ' + ToUtf8(form.name) + '\n');
        }
    }

    const std::vector<NumberForm> m_forms;
    std::vector<bool> m_begins = std::vector<bool>(0x10000); ///< by the first word of a form
    CStandardOutput& m_output;
    bool m_hasFound = false;
};

/// Nothing after a failure.
std::optional<bool> FindInWords(const RecipeTables& recipe, std::vector<NumberForm> forms, CStandardOutput& output,
                                CProgress& progress)
{
    CFileWords words(recipe.type, recipe.path);
    if (!words.IsOpen() || !words.IsUndamaged())
        return std::nullopt;
    CNumberFinder finder(std::move(forms), output);
    std::vector<std::byte> piece(kPieceBytes + kLongestForm);
    for (std::uint64_t at = 0; at < words.Count(); at += kPieceBytes) {
        const auto bytes =
            std::span(piece).first(static_cast<std::size_t>(std::min<std::uint64_t>(piece.size(), words.Count() - at)));
        if (!words.Read(at, bytes))
            return std::nullopt;
        finder.Look(at, bytes, kPieceBytes);
        if (output.HasFailed() || !progress.Advance(at, words.Count()))
            break;
    }
    return finder.HasFound();
}

/// Prints the fields of a table of texts that are a number.
class CNumberFields final : public CCsvRawTaker {
public:
    CNumberFields(const CDecimal& number, const CsvTextForm& form, CStandardOutput& output)
        : m_number(number),
          m_form(form),
          m_output(output)
    {
    }

    bool HasFound() const { return m_hasFound; }

    void Take(const CsvRawField& field) override
    {
        if (!field.IsField())
            return;
        const std::u16string_view text = field.Shown(m_form);
        if (CDecimal::Parse(text) != m_number)
            return;
        m_hasFound = true;
        m_output.Write("line " + std::to_string(field.line + 1) + " field " + std::to_string(field.column + 1) + " = " +
                       ToUtf8(EscapedText(text)) + '\n');
    }

private:
    const CDecimal m_number;
    const CsvTextForm& m_form;
    CStandardOutput& m_output;
    bool m_hasFound = false;
};

/// Nothing after a failure.
std::optional<bool> FindInFields(const RecipeTables& recipe, const CDecimal& number, CStandardOutput& output,
                                 CProgress& progress)
{
    const CFile file(recipe.path, CFile::Mode::Read);
    CCsvFileCutter cutter(file);
    CNumberFields fields(number, cutter.Form(), output);
    while (cutter.Continue(fields))
        if (output.HasFailed() || !progress.Advance(cutter.Position(), cutter.Size()))
            return fields.HasFound();
    return cutter.IsDone() ? std::optional(fields.HasFound()) : std::nullopt;
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
