#include "cli/TextconvCommand.h"

#include "changes/WordsText.h"
#include "cli/CellLines.h"
#include "cli/RecipeTables.h"
#include "disk/Crc32.h"
#include "disk/File.h"
#include "files/CellComparison.h"
#include "files/CellTexts.h"
#include "files/CsvCutter.h"
#include "files/RecipeMessages.h"
#include "files/RowPieces.h"
#include "files/TableTitles.h"
#include "files/WordBytes.h"
#include "text/EscapedText.h"
#include "text/FileMessages.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <new>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPieceBytes = std::size_t{256} << 10;
constexpr std::size_t kLineBytes = 16; // of words outside the tables

/// Keeps what it is told, as one line.
class CToldLine final : public CReporter {
public:
    void ShowError(std::u16string_view text) override
    {
        if (!m_text.empty())
            m_text += u' ';
        m_text += text;
    }

    bool AskYesNo(std::u16string_view) override { return false; }

    const std::u16string& Text() const { return m_text; }
    std::u16string TakeText() { return std::exchange(m_text, {}); }

private:
    std::u16string m_text;
};

/// The checksum of all bytes; nothing when they cannot be read.
std::optional<std::uint32_t> ChecksumOf(const fs::path& path)
{
    const CFile file(path, CFile::Mode::Read);
    std::vector<std::byte> piece(kPieceBytes);
    std::uint32_t sum = 0;
    std::uint64_t offset = 0;
    for (std::size_t last = piece.size(); last == piece.size(); offset += last) {
        const auto arrived = file.ReadAt(offset, piece);
        if (!arrived)
            return std::nullopt;
        last = *arrived;
        sum = Crc32(std::span(piece).first(last), sum);
    }
    return sum;
}

std::string FormLine(std::uint32_t checksum)
{
    std::array<char, 32> line{};
    std::snprintf(line.data(), line.size(), "form = %08X\n", static_cast<unsigned>(checksum));
    return line.data();
}

/// Prints words, eight a line. Of several equal lines in a row the first and the last, and "*" between.
class CWordLines {
public:
    CWordLines(std::uint64_t begin, CStandardOutput& output) : m_offset(begin), m_output(output) {}

    /// The next words; only the last piece need not be whole lines.
    void Append(std::span<const std::byte> bytes)
    {
        for (; !bytes.empty(); bytes = bytes.subspan(std::min(kLineBytes, bytes.size())))
            AppendLine(bytes.first(std::min(kLineBytes, bytes.size())));
    }

    void Finish()
    {
        if (m_repeats > 1)
            m_output.Write("*\n");
        if (m_repeats > 0)
            Print();
    }

private:
    void AppendLine(std::span<const std::byte> bytes)
    {
        if (m_length == bytes.size() && std::equal(bytes.begin(), bytes.end(), m_line.begin())) {
            ++m_repeats;
        } else {
            Finish();
            m_repeats = 0;
            m_length = bytes.size();
            std::copy(bytes.begin(), bytes.end(), m_line.begin());
        }
        m_lineOffset = m_offset;
        m_offset += bytes.size();
        if (m_repeats == 0)
            Print();
    }

    void Print()
    {
        std::string text = "RW" + std::to_string(m_lineOffset / 2) + ": ";
        AppendWordsText(std::span(m_line).first(m_length), text);
        text += '\n';
        m_output.Write(text);
    }

    std::uint64_t m_offset;
    std::uint64_t m_lineOffset = 0; ///< of the line at hand
    std::array<std::byte, kLineBytes> m_line{};
    std::size_t m_length = 0;
    std::uint64_t m_repeats = 0; ///< of the line at hand, none of them printed
    CStandardOutput& m_output;
};

/// How a part of the work ended.
enum class Part { Done, Failed, GivenUp };

Part PrintOutside(const FileZone& zone, CWordBytes& words, CStandardOutput& output, CProgress& progress)
{
    CWordLines lines(zone.begin, output);
    std::vector<std::byte> piece(kPieceBytes);
    for (std::uint64_t at = zone.begin; at < zone.end; at += piece.size()) {
        const auto bytes =
            std::span(piece).first(static_cast<std::size_t>(std::min<std::uint64_t>(piece.size(), zone.end - at)));
        if (!words.Read(at, bytes))
            return Part::Failed;
        lines.Append(bytes);
        if (output.HasFailed() || !progress.Advance(at, words.Count()))
            return Part::GivenUp;
    }
    lines.Finish();
    return Part::Done;
}

/// Prints the values of a table that the file holds, or begins.
class CTablePrinter {
public:
    CTablePrinter(const CRecipeRows& layout, CStandardOutput& output) : m_cells(layout), m_output(output) {}

    void Print(const CRowPieces& pieces)
    {
        const CRecipeRows& rows = pieces.Rows();
        const CStoredCells stored = pieces.Stored();
        CCellTexts texts(rows);
        for (std::int32_t row = 0; row < rows.RowCount(); ++row)
            for (std::uint32_t column = 0; column < rows.Columns().size(); ++column) {
                m_words.resize(BytesOfCell(rows, {row, column}));
                const std::size_t held = stored.LoadWords({row, column}, m_words);
                if (held == 0)
                    continue;
                texts.MoveTo(row, column);
                PrintCell({pieces.First() + row, column}, texts.Text(), std::span(m_words).first(held));
            }
    }

private:
    void PrintCell(CellPlace place, std::u16string_view text, std::span<const std::byte> words)
    {
        m_line.clear();
        m_cells.AppendPlace(place, " ", m_line);
        AppendEscaped(text, m_line);
        m_line += " [";
        AppendWordsText(words, m_line);
        m_line += "]\n";
        m_output.Write(m_line);
    }

    CCellLines m_cells;
    CStandardOutput& m_output;
    std::vector<std::byte> m_words;
    std::string m_line;
};

Part PrintTable(FileType type, const CRecipeRows& layout, CWordBytes& words, CStandardOutput& output,
                CProgress& progress)
{
    const auto pieces = PiecesOfWords(type, layout, words);
    CTablePrinter printer(layout, output);
    while (pieces->Next()) {
        printer.Print(*pieces);
        const std::uint64_t done = layout.FirstByte().number + layout.BytesBefore({pieces->First(), 0});
        if (output.HasFailed() || !progress.Advance(done, words.Count()))
            return Part::GivenUp;
    }
    return pieces->HasFailed() ? Part::Failed : Part::Done;
}

/// False when the file cannot be read.
bool PrintWords(const RecipeTables& recipe, CStandardOutput& output, CProgress& progress)
{
    CFileWords words(recipe.type, recipe.path);
    if (!words.IsOpen() || !words.IsUndamaged())
        return false;
    for (const FileZone& zone : ZonesOf(recipe.tables, words.Count())) {
        const Part part = zone.table
                              ? PrintTable(recipe.type, recipe.tables[*zone.table].layout, words, output, progress)
                              : PrintOutside(zone, words, output, progress);
        if (part != Part::Done)
            return part == Part::GivenUp;
    }
    return true;
}

/// Prints each field that stands in a table of texts; one that is not shown goes by the number of its column.
class CFieldPrinter final : public CCsvRawTaker {
public:
    CFieldPrinter(const CRecipeRows& layout, const CsvTextForm& form, CStandardOutput& output)
        : m_layout(layout),
          m_form(form),
          m_output(output),
          m_cells(layout, CCellLines::Addresses::None)
    {
    }

    void Take(const CsvRawField& field) override
    {
        if (!field.IsField())
            return;
        m_line.clear();
        const auto rowCount = static_cast<std::uint64_t>(m_layout.RowCount());
        if (field.line < rowCount && field.column < m_layout.Columns().size())
            m_cells.AppendPlace({static_cast<std::int32_t>(field.line), static_cast<std::uint32_t>(field.column)}, " ",
                                m_line);
        else
            m_line += std::to_string(field.line + kTitleRows) + " column " +
                      std::to_string(field.column + kTitleColumns) + " = ";
        AppendEscaped(field.Shown(m_form), m_line);
        m_line += '\n';
        m_output.Write(m_line);
    }

private:
    const CRecipeRows& m_layout;
    const CsvTextForm& m_form;
    CStandardOutput& m_output;
    CCellLines m_cells;
    std::string m_line;
};

bool PrintFields(const RecipeTables& recipe, CStandardOutput& output, CProgress& progress)
{
    const CRecipeRows none;
    const CFile file(recipe.path, CFile::Mode::Read);
    CCsvFileCutter cutter(file);
    CFieldPrinter printer(recipe.tables.empty() ? none : recipe.tables.front().layout, cutter.Form(), output);
    while (cutter.Continue(printer))
        if (output.HasFailed() || !progress.Advance(cutter.Position(), cutter.Size()))
            return true;
    return cutter.IsDone();
}

bool PrintRecipe(const RecipeTables& recipe, const std::optional<std::uint32_t>& checksum, CStandardOutput& output,
                 CProgress& progress)
{
    const bool isTable = recipe.type == FileType::Csv;
    const bool hasForm = isTable || IsPaged(recipe.type);
    if (hasForm && !checksum)
        return false;
    if (!(isTable ? PrintFields(recipe, output, progress) : PrintWords(recipe, output, progress)))
        return false;
    if (hasForm)
        output.Write(FormLine(*checksum));
    return true;
}

/// A tool that compares gets no failure: it would compare nothing. The checksum tells one unreadable file from another.
void PrintFailure(std::u16string_view told, const std::optional<std::uint32_t>& checksum, CStandardOutput& output)
{
    output.Write(ToUtf8(EscapedText(told)));
    output.Write(checksum ? " " + FormLine(*checksum) : "\n");
}

/// The recipe printed; else what failed is told.
void PrintOrTell(const TextconvOptions& options, CToldLine& failure, CStandardOutput& output, CReporter& reporter,
                 CProgress& progress)
try {
    const auto recipe = TablesOf(options.file, options.read, failure);
    if (!recipe)
        return;
    if (!failure.Text().empty()) // of a library that is damaged, and can be used all the same
        reporter.ShowError(failure.TakeText());
    const auto checksum = recipe->type == FileType::Rcp ? std::nullopt : ChecksumOf(recipe->path);
    if (!PrintRecipe(*recipe, checksum, output, progress)) // its folder may be there for a moment only
        ShowFileError(failure, OpenErrorOf(recipe->type), recipe->path.filename());
} catch (const std::bad_alloc&) {
    failure.ShowError(u"There is not enough memory!");
}

} // namespace

ExitCode PrintAsText(const TextconvOptions& options, CStandardOutput& output, CReporter& reporter, CProgress& progress)
{
    CToldLine failure;
    PrintOrTell(options, failure, output, reporter, progress);
    if (!failure.Text().empty())
        PrintFailure(failure.Text(), ChecksumOf(options.file), output);
    return output.Finish(reporter) ? kDone : kTrouble;
}
