#include "files/CsvRecipeFile.h"

#include "files/CellTexts.h"
#include "files/CsvFields.h"
#include "files/CsvRules.h"
#include "files/FinishReplacement.h"
#include "text/FileMessages.h"
#include "text/Utf16Bytes.h"

#include <algorithm>
#include <new>
#include <span>
#include <stdexcept>
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

/// Collects the fields as reading the saved file will show them, for who wants them: what fails here is no failure of
/// the save.
class CSavedFields {
public:
    CSavedFields(std::size_t columns, std::optional<CFieldTable>* fields) : m_columns(columns), m_fields(fields)
    {
        if (m_fields)
            m_fields->emplace();
    }

    bool AreWanted() const { return m_fields != nullptr && m_fields->has_value(); }

    /// The next cell of a row was written with this text, between quotes.
    void Add(std::size_t column, std::u16string_view text)
    {
        const auto isMark = [](char16_t c) { return c == u'\t' || c == u'\n'; };
        m_isCut = m_isCut || std::any_of(text.begin(), text.end(), isMark);
        WithinMemoryOrNone([&] {
            if (column + 1 < m_columns)
                (*m_fields)->AddField(WithoutQuotes(text));
            else
                (*m_fields)->AddField(m_last.assign(1, u'"').append(text).append(1, u'"')); // kept: with its quotes
        });
    }

    /// So many of all cells are written: the others take about as much room, which is better made once than bit by bit.
    void MakeRoom(std::uint64_t done, std::uint64_t all)
    {
        if (std::exchange(m_hasRoom, true))
            return;
        const std::uint64_t characters = (*m_fields)->CharacterCount() * all / done;
        WithinMemoryOrNone([&] {
            (*m_fields)->Reserve(static_cast<std::size_t>(characters + characters / 16), static_cast<std::size_t>(all));
        });
    }

    void EndLine()
    {
        WithinMemoryOrNone([&] { (*m_fields)->EndLine(); });
    }

    /// The save has ended. A text that is cut when it is read moves those that come after it: then the file is read.
    void Finish(Outcome outcome, const CRecipeRows& rows, const fs::path& path)
    {
        if (!AreWanted())
            return;
        if (outcome != Outcome::Done)
            m_fields->reset();
        else if (m_isCut)
            ReadAgain(rows, path);
    }

private:
    template <class Work>
    void WithinMemoryOrNone(Work work)
    try {
        work();
    } catch (const std::bad_alloc&) {
        m_fields->reset();
    } catch (const std::length_error&) {
        m_fields->reset();
    }

    void ReadAgain(const CRecipeRows& rows, const fs::path& path)
    {
        CNoProgress progress;
        CFieldTable& fields = m_fields->emplace();
        const auto lines = static_cast<std::size_t>(rows.RowCount());
        if (ReadCsvFields(path, lines, rows.Columns().size(), fields, progress) != Outcome::Done)
            m_fields->reset();
    }

    const std::size_t m_columns;
    std::optional<CFieldTable>* m_fields; ///< null when nobody wants them; none once they cannot be had
    bool m_isCut = false;
    bool m_hasRoom = false;
    std::u16string m_last;
};

Outcome WriteTable(const CRecipeRows& rows, CReplacement& file, CSavedFields& saved, CProgress& progress)
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
            const std::size_t begin = table.Text().size();
            texts.AppendTo(table.Text()); // kept: a quote within the text is not doubled
            if (saved.AreWanted())
                saved.Add(column, std::u16string_view(table.Text()).substr(begin));
            ++done;
            if (!table.IsFull())
                continue;
            if (saved.AreWanted())
                saved.MakeRoom(done, total);
            if (!table.Write())
                return Outcome::Failed;
            if (!progress.Advance(done, total))
                return Outcome::GivenUp;
        }
        table.Text() += columns == 0 ? kEmptyRow : kRowEnd;
        if (saved.AreWanted())
            saved.EndLine();
    }
    if (!table.Write())
        return Outcome::Failed;
    return progress.Advance(done, total) ? Outcome::Done : Outcome::GivenUp;
}

Outcome SaveTable(const CRecipeRows& rows, const fs::path& path, CSavedFields& saved, CProgress& progress)
{
    CReplacement file(path);
    if (!file.IsOpen())
        return Outcome::Failed;
    const Outcome outcome = WriteTable(rows, file, saved, progress);
    return outcome == Outcome::Done ? FinishReplacement(file) : outcome;
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

SaveResult SaveCsv(const CRecipeRows& rows, const fs::path& path, CReporter& reporter, CProgress& progress,
                   std::optional<CFieldTable>* shown)
{
    CSavedFields saved(rows.Columns().size(), shown);
    const Outcome outcome = WithinMemory([&] { return SaveTable(rows, path, saved, progress); });
    saved.Finish(outcome, rows, path);
    if (HasFailed(outcome))
        ShowFileError(reporter, kSaveTableError, path);
    return ResultOf(outcome);
}

std::uint64_t CsvBytes(const CRecipeRows& rows)
{
    const std::size_t columns = rows.Columns().size();
    const std::size_t between = columns == 0 ? 0 : (columns - 1) * kBetweenCells.size();
    const std::size_t aroundCells = columns == 0 ? kEmptyRow.size() : kRowBegin.size() + between + kRowEnd.size();
    std::uint64_t units = 1 + aroundCells * static_cast<std::uint64_t>(rows.RowCount());
    CCellTexts texts(rows);
    for (std::int32_t row = 0; row < rows.RowCount(); ++row)
        for (std::size_t column = 0; column < columns; ++column) {
            texts.MoveTo(row, column);
            units += texts.Text().size();
        }
    return sizeof(char16_t) * units;
}
