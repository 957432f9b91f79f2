#include "files/CsvPutBack.h"

#include "files/CsvFields.h"
#include "files/CsvShape.h"
#include "files/CsvSplices.h"
#include "files/FinishReplacement.h"
#include "text/FileMessages.h"
#include "text/MessageText.h"
#include "text/PathText.h"

#include <algorithm>
#include <new>
#include <string>
#include <string_view>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kWrittenAtOnce = std::size_t{1} << 20;

constexpr std::u16string_view kPutBackRefused = u"Can't put back file %s: %s!";

/// What reading shows of the bytes of a table.
CFieldTable FieldsOf(std::span<const std::byte> bytes, std::size_t rows, std::size_t columns)
{
    CFieldTable fields;
    CCsvShownFields shown(CsvFormOf(bytes), rows, columns, fields);
    CutCsv(bytes, shown);
    return fields;
}

/// One putting back.
class CTablePutBack {
public:
    CTablePutBack(const CsvPutBack& saved, const fs::path& path, CProgress& progress)
        : m_saved(saved),
          m_path(path),
          m_progress(progress)
    {
    }

    Outcome Run()
    {
        Outcome outcome = ReadCurrent();
        if (outcome == Outcome::Done)
            outcome = LookForFurther();
        if (outcome == Outcome::Done)
            outcome = MakeBytes();
        return outcome == Outcome::Done ? Write() : outcome;
    }

    /// Why it was refused; empty when it was not.
    std::u16string refusal;

private:
    Outcome Refuse(std::u16string reason)
    {
        refusal = std::move(reason);
        return Outcome::Failed;
    }

    Outcome ReadCurrent()
    {
        if (IsMissing(m_path))
            return Refuse(u"it does not exist");
        return ReadCsvFields(m_path, m_saved.rows, m_saved.columns, m_current, m_progress);
    }

    /// A save leaves nothing outside the rows, unless a text had a TAB or line feed in it: what stands there now came
    /// from others, or may have, and would be lost.
    Outcome LookForFurther()
    {
        CCsvShapeScan scan(m_saved.rows, m_saved.columns);
        scan.Open(m_path);
        while (scan.Continue())
            if (!m_progress.Advance(scan.Position(), scan.Size()))
                return Outcome::GivenUp;
        if (!scan.IsDone())
            return Outcome::Failed;
        if (scan.Shape().dropped.empty())
            return Outcome::Done;
        const auto line = static_cast<std::int64_t>(scan.Shape().dropped.front().line + 1);
        return Refuse(FillMessage(u"line %d has something outside the rows, which would be lost", {line}));
    }

    Outcome MakeBytes()
    {
        m_old = FieldsOf(m_saved.oldBytes, m_saved.rows, m_saved.columns);
        const std::vector<CsvEdit> edits = CarriedOver();
        const CsvTextForm& form = CsvFormOf(m_saved.oldBytes);
        CCsvSplicer splicer(form, edits);
        const CCsvCutter cutter = CutCsv(m_saved.oldBytes, splicer);
        splicer.Finish(cutter, m_saved.oldBytes.size());
        if (!splicer.Refusal().empty())
            return Refuse(splicer.Refusal());
        Join(splicer.Splices());
        return edits.empty() ? Outcome::Done : ReadAgain(edits);
    }

    void Join(std::span<const CsvSplice> splices)
    {
        CCsvSplicedBytes spliced(splices);
        const auto put = [this](std::span<const std::byte> run) {
            m_bytes.insert(m_bytes.end(), run.begin(), run.end());
        };
        m_bytes.reserve(m_saved.oldBytes.size());
        spliced.Append(m_saved.oldBytes, put);
        spliced.Finish(put);
    }

    /// The cells that are to show something else than the old bytes do.
    std::vector<CsvEdit> CarriedOver() const
    {
        std::vector<CsvEdit> edits;
        auto kept = m_saved.kept.begin();
        for (std::size_t row = 0; row < m_saved.rows; ++row) {
            for (std::size_t column = 0; column < m_saved.columns; ++column) {
                const CellPlace place{static_cast<std::int32_t>(row), static_cast<std::uint32_t>(column)};
                const bool isKept = kept != m_saved.kept.end() && *kept == place;
                if (isKept)
                    ++kept;
                const auto text = m_current.Field(row, column);
                const bool stays = isKept || text != m_saved.stored.Field(row, column);
                if (stays && text != m_old.Field(row, column))
                    edits.push_back({place, std::u16string(text)});
            }
        }
        return edits;
    }

    /// Looks whether the new bytes show what they should: in ANSI text, a line may have become too long.
    Outcome ReadAgain(std::span<const CsvEdit> edits)
    {
        const CFieldTable fields = FieldsOf(m_bytes, m_saved.rows, m_saved.columns);
        for (std::size_t row = 0; row < m_saved.rows; ++row) {
            for (std::size_t column = 0; column < m_saved.columns; ++column) {
                const CellPlace place{static_cast<std::int32_t>(row), static_cast<std::uint32_t>(column)};
                const bool isEdit = !edits.empty() && edits.front().place == place;
                const auto wanted = isEdit ? std::u16string_view(edits.front().text) : m_old.Field(row, column);
                if (fields.Field(row, column) != wanted)
                    return Refuse(
                        FillMessage(u"row %d would not be read again as it is", {static_cast<std::int64_t>(row + 1)}));
                if (isEdit)
                    edits = edits.subspan(1);
            }
        }
        return Outcome::Done;
    }

    Outcome Write()
    {
        CReplacement file(m_path);
        if (!file.IsOpen())
            return Outcome::Failed;
        for (std::span<const std::byte> rest = m_bytes; !rest.empty();) {
            const auto piece = rest.first(std::min(kWrittenAtOnce, rest.size()));
            rest = rest.subspan(piece.size());
            if (!file.Append(piece))
                return Outcome::Failed;
            if (!m_progress.Advance(m_bytes.size() - rest.size(), m_bytes.size()))
                return Outcome::GivenUp;
        }
        return FinishReplacement(file);
    }

    const CsvPutBack& m_saved;
    const fs::path& m_path;
    CProgress& m_progress;
    CFieldTable m_current; ///< what the file shows now
    CFieldTable m_old;     ///< what the old bytes show
    std::vector<std::byte> m_bytes;
};

} // namespace

std::optional<CByteBuffer> ReadWholeFile(const fs::path& path, std::uint64_t limit)
try {
    const CFile file(path, CFile::Mode::Read);
    const auto size = file.Size();
    if (!size || *size > limit)
        return std::nullopt;
    CByteBuffer bytes(static_cast<std::size_t>(*size));
    const auto arrived = file.ReadAt(0, bytes.Bytes());
    if (arrived != *size)
        return std::nullopt;
    return bytes;
} catch (const std::bad_alloc&) {
    return std::nullopt;
}

SaveResult PutBackCsv(const CsvPutBack& saved, const fs::path& path, CReporter& reporter, CProgress& progress)
{
    CTablePutBack putBack(saved, path, progress);
    const Outcome outcome = WithinMemory([&] { return putBack.Run(); });
    if (!putBack.refusal.empty())
        reporter.ShowError(FillMessage(kPutBackRefused, {PathText(path), putBack.refusal}));
    else if (HasFailed(outcome))
        ShowFileError(reporter, kSaveTableError, path);
    return ResultOf(outcome);
}
