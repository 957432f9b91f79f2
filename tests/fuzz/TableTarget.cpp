#include "files/CsvCutter.h"
#include "files/CsvEdits.h"
#include "files/CsvFields.h"
#include "files/CsvPutBack.h"
#include "files/CsvRecipeFile.h"
#include "tests/fuzz/FuzzInput.h"
#include "tests/fuzz/Property.h"
#include "tests/fuzz/Scratch.h"
#include "tests/fuzz/Targets.h"
#include "tests/support/RecordingReporter.h"
#include "text/AnsiText.h"

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace {

using Text = std::u16string;
using Line = std::vector<Text>;

constexpr std::size_t kPieceBytes = std::size_t{256} << 10; ///< the reader's; a long table goes beyond it

bool IsUtf16(FuzzBytes file)
{
    return (!file.empty() && file[0] == std::byte{0xFF}) || (file.size() > 1 && file[1] == std::byte{0xFE});
}

/// The lines of a UTF-16 table without their ends.
std::vector<Text> Utf16Lines(FuzzBytes file)
{
    std::vector<Text> lines;
    Text line;
    for (std::size_t at = 2; at + 1 < file.size(); at += 2) {
        const int unit = std::to_integer<int>(file[at]) | std::to_integer<int>(file[at + 1]) << 8;
        if (unit != u'\n') {
            line += static_cast<char16_t>(unit);
            continue;
        }
        lines.push_back(line);
        line.clear();
    }
    if (!line.empty())
        lines.push_back(line);
    return lines;
}

/// The lines of an ANSI table as a text stream and a buffer of 2047 bytes and a zero give them.
std::vector<Text> AnsiLines(FuzzBytes file)
{
    std::string stream;
    for (std::size_t i = 0; i < file.size(); ++i)
        if (file[i] != std::byte{'\r'} || i + 1 == file.size() || file[i + 1] != std::byte{'\n'})
            stream += static_cast<char>(file[i]);

    std::vector<Text> lines;
    for (std::size_t begin = 0; begin < stream.size();) {
        std::string line = stream.substr(begin, std::min(stream.find('\n', begin), stream.size() - 1) + 1 - begin);
        line.resize(std::min<std::size_t>(line.size(), 2047));
        begin += line.size();
        if (line.back() == '\n')
            line.pop_back();
        lines.push_back(FromAnsi(line));
    }
    return lines;
}

Text WithoutQuotes(const Text& field)
{
    const std::size_t first = field.find_first_not_of(u'"');
    return first == Text::npos ? Text() : field.substr(first, field.find_last_not_of(u'"') + 1 - first);
}

Line Fields(Text line, bool isUtf16, std::size_t columns)
{
    line.resize(line.find_last_not_of(u'\r') + 1); // npos + 1 is 0
    Line fields;
    while (fields.size() < columns && !line.empty()) {
        const std::size_t end = line.find(isUtf16 ? u'\t' : u',');
        const Text field = line.substr(0, end);
        fields.push_back(isUtf16 && end != Text::npos ? WithoutQuotes(field) : field);
        line.erase(0, end == Text::npos ? end : end + 1);
    }
    fields.resize(columns, u"0");
    return fields;
}

/// The cells that the table should show, row by row.
std::vector<Line> ShouldShow(FuzzBytes file, std::size_t rows, std::size_t columns)
{
    const bool isUtf16 = IsUtf16(file);
    std::vector<Text> lines = isUtf16 ? Utf16Lines(file) : AnsiLines(file);
    lines.resize(rows);
    std::vector<Line> cells;
    for (const Text& line : lines)
        cells.push_back(Fields(line, isUtf16, columns));
    return cells;
}

/// The file that the cells should be saved as.
Bytes ShouldBeSavedAs(const std::vector<Line>& cells)
{
    Text text = u"\uFEFF";
    for (const Line& line : cells) {
        for (std::size_t column = 0; column < line.size(); ++column)
            text += (column == 0 ? u"\"" : u"\t\"") + line[column] + u"\"";
        text += u"\r\n";
    }
    Bytes bytes;
    for (const char16_t unit : text)
        bytes.insert(bytes.end(), {static_cast<std::byte>(unit), static_cast<std::byte>(unit >> 8)});
    return bytes;
}

CRecipeRows EmptyRows(std::size_t rows, std::size_t columns)
{
    ColumnCoding column;
    column.dataType = DataType::String;
    column.dataLength = 1;
    CRecipeRows empty;
    empty.LayOut(std::vector<ColumnCoding>(columns, column), 0, static_cast<std::int32_t>(rows));
    return empty;
}

/// Reads the table that holds `file` and requires the cells that it should show.
CRecipeRows ReadAsDescribed(FuzzBytes file, std::size_t rowCount, std::size_t columns)
{
    const auto path = ScratchFolder() / "read.csv";
    PutFile(path, file);
    CRecipeRows rows = EmptyRows(rowCount, columns);
    CRecordingReporter reporter;
    CNoProgress progress;
    Require(ReadCsv(rows, path, reporter, progress) == Outcome::Done && reporter.shown.empty(),
            "any file can be read as a table");
    const std::vector<Line> wanted = ShouldShow(file, rowCount, columns);
    for (std::size_t row = 0; row < rowCount; ++row)
        for (std::size_t column = 0; column < columns; ++column)
            Require(rows.Text(static_cast<std::int32_t>(row), column) == wanted[row][column],
                    "a cell shows the field that stands in its place");
    return rows;
}

/// Requires that the table is cut as it is read.
void RequireCutAsRead(FuzzBytes file, const CRecipeRows& rows)
{
    CFieldTable fields;
    CCsvShownFields shown(CsvFormOf(file), static_cast<std::size_t>(rows.RowCount()), rows.Columns().size(), fields);
    CutCsv(file, shown);
    for (std::int32_t row = 0; row < rows.RowCount(); ++row)
        for (std::size_t column = 0; column < rows.Columns().size(); ++column)
            Require(rows.Text(row, column) == fields.Field(static_cast<std::size_t>(row), column),
                    "a table is cut as it is read");
}

bool IsCutWhenRead(const std::vector<Line>& cells)
{
    const auto isCut = [](const Text& text) { return text.find_first_of(u"\t\n") != Text::npos; };
    const auto hasCut = [&](const Line& line) { return std::any_of(line.begin(), line.end(), isCut); };
    return std::any_of(cells.begin(), cells.end(), hasCut);
}

/// Requires that a cell can be saved alone into the table that was saved at `path`, and that `old` can be put back
/// over it but for that cell, which is refused or reads as it did.
void RequireEditAndPutBack(const std::filesystem::path& path, FuzzBytes old, const CRecipeRows& rows,
                           const CFieldTable& stored)
{
    CRecordingReporter reporter;
    CNoProgress progress;
    const auto rowCount = static_cast<std::size_t>(rows.RowCount());
    const CsvPutBack all{old, rowCount, rows.Columns().size(), stored, {}};
    const Bytes saved = FileContent(path);
    Require(bool(PutBackCsv(all, path, reporter, progress)), "what nobody changed can be put back");
    Require(AreSame(FileContent(path), old), "what is put back is the old file");
    PutFile(path, saved);
    const std::vector<CsvEdit> edits = {{{rows.RowCount() / 2, 0}, u"edit"}};
    Require(bool(SaveCsvEdits(edits, path, reporter, progress)), "a saved table takes an edited cell alone");
    const Bytes edited = FileContent(path);
    const bool isDone(PutBackCsv(all, path, reporter, progress));
    Require(isDone || AreSame(FileContent(path), edited), "what is refused changes nothing");
    CRecipeRows after = EmptyRows(rowCount, rows.Columns().size());
    Require(ReadCsv(after, path, reporter, progress) == Outcome::Done, "any file can be read as a table");
    Require(after.Text(rows.RowCount() / 2, 0) == u"edit", "a cell that was edited since stays");
}

/// The input, or a table so long that it is read in several pieces.
Bytes TakeTable(CFuzzInput& input, bool isLong)
{
    const FuzzBytes rest = input.Rest();
    Bytes table(rest.begin(), rest.end());
    while (isLong && !rest.empty() && table.size() <= kPieceBytes + 64)
        table.insert(table.end(), rest.begin(), rest.end());
    return table;
}

} // namespace

void FuzzTable(FuzzBytes bytes)
{
    CFuzzInput input(bytes);
    const std::uint8_t height = input.TakeByte();
    const std::uint8_t width = input.TakeByte();
    const std::size_t rowCount = 1 + height % 24;
    const std::size_t columns = 1 + width % 6;
    const Bytes table = TakeTable(input, height >= 0xF0 && width >= 0xF0); // seldom: it takes long

    const CRecipeRows rows = ReadAsDescribed(table, rowCount, columns);
    const auto path = ScratchFolder() / "saved.csv";
    CRecordingReporter reporter;
    CNoProgress progress;
    std::optional<CFieldTable> shown;
    Require(SaveCsv(rows, path, reporter, progress, &shown) && reporter.shown.empty(),
            "any cells can be saved as a table");
    const Bytes saved = FileContent(path);
    Require(AreSame(saved, ShouldBeSavedAs(ShouldShow(table, rowCount, columns))), "cells are saved as described");
    RequireCutAsRead(table, rows);
    RequireCutAsRead(saved, ReadAsDescribed(saved, rowCount, columns));
    Require(shown.has_value(), "a save tells what reading shows");
    if (!IsCutWhenRead(ShouldShow(table, rowCount, columns)))
        RequireEditAndPutBack(path, table, rows, *shown);
}
