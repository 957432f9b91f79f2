#include "files/CsvRecipeFile.h"

#include "disk/Replacement.h"
#include "files/CellTexts.h"
#include "files/CsvFields.h"
#include "text/FileMessages.h"
#include "text/Utf16Bytes.h"

#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPieceUnits = std::size_t{512} << 10; // a megabyte; the cell that fills it is written with it
constexpr std::size_t kRoomBehind = std::size_t{16} << 10;  // so that it seldom has to grow for that cell

constexpr std::u16string_view kRowBegin = u"\"";
constexpr std::u16string_view kBetweenCells = u"\"\t\"";
constexpr std::u16string_view kRowEnd = u"\"\r\n";
constexpr std::u16string_view kEmptyRow = u"\r\n";

/// Collects text and hands it to a file piece by piece.
class CTableText {
public:
    explicit CTableText(CReplacement& file) : m_file(file)
    {
        m_text.reserve(kPieceUnits + kRoomBehind);
        m_text = u'\uFEFF';
    }

    std::u16string& Text() { return m_text; }
    bool IsFull() const { return m_text.size() >= kPieceUnits; }

    bool Write()
    {
        SwapUnlessLowByteFirst(m_text);
        const bool isWritten = m_file.Append(std::as_bytes(std::span(m_text)));
        m_text.clear();
        return isWritten;
    }

private:
    CReplacement& m_file;
    std::u16string m_text;
};

Outcome WriteTable(const CRecipeRows& rows, CReplacement& file, CProgress& progress)
{
    const std::size_t columns = rows.Columns().size();
    const std::uint64_t total = columns * static_cast<std::uint64_t>(rows.RowCount());
    std::uint64_t done = 0;
    CCellTexts texts(rows);
    CTableText table(file);
    for (std::int32_t row = 0; row < rows.RowCount(); ++row) {
        for (std::size_t column = 0; column < columns; ++column) {
            table.Text() += column == 0 ? kRowBegin : kBetweenCells;
            texts.MoveTo(row, column);
            texts.AppendTo(table.Text()); // kept: a quote within the text is not doubled
            ++done;
            if (!table.IsFull())
                continue;
            if (!table.Write())
                return Outcome::Failed;
            if (!progress.Advance(done, total))
                return Outcome::GivenUp;
        }
        table.Text() += columns == 0 ? kEmptyRow : kRowEnd;
    }
    if (!table.Write())
        return Outcome::Failed;
    return progress.Advance(done, total) ? Outcome::Done : Outcome::GivenUp;
}

Outcome SaveTable(const CRecipeRows& rows, const fs::path& path, CProgress& progress)
{
    CReplacement file(path);
    if (!file.IsOpen())
        return Outcome::Failed;
    const Outcome outcome = WriteTable(rows, file, progress);
    if (outcome != Outcome::Done)
        return outcome;
    if (file.Finish())
        return Outcome::Done;
    return file.MayHoldOldAndNew() ? Outcome::FailedMixed : Outcome::Failed;
}

} // namespace

Outcome ReadCsv(CRecipeRows& rows, const fs::path& path, CReporter& reporter, CProgress& progress)
{
    rows.ShowNothing();
    CFieldTable fields;
    const auto lines = static_cast<std::size_t>(rows.RowCount());
    const Outcome outcome = ReadCsvFields(path, lines, rows.Columns().size(), fields, progress);
    if (outcome == Outcome::Failed)
        ShowFileError(reporter, kOpenTableError, path);
    if (outcome == Outcome::Done)
        rows.ShowFields(std::move(fields));
    return outcome;
}

SaveResult SaveCsv(const CRecipeRows& rows, const fs::path& path, CReporter& reporter, CProgress& progress)
{
    const Outcome outcome = WithinMemory([&] { return SaveTable(rows, path, progress); });
    if (HasFailed(outcome))
        ShowFileError(reporter, kSaveTableError, path);
    return ResultOf(outcome);
}
