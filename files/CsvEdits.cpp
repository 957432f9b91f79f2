#include "files/CsvEdits.h"

#include "files/CsvShape.h"
#include "files/FinishReplacement.h"
#include "text/FileMessages.h"
#include "text/MessageText.h"
#include "text/PathText.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPieceBytes = std::size_t{256} << 10;
constexpr std::size_t kWrittenAtOnce = std::size_t{1} << 20;

/// Looks at every field of a table and finds what has to change.
class CEditsTaker final : public CCsvRawTaker {
public:
    explicit CEditsTaker(CCsvEditor& bytesEditor) : editor(bytesEditor) {}

    void Take(const CsvRawField& field) override
    {
        formCheck.Take(field);
        editor.Take(field);
    }

    CCsvFormCheck formCheck;
    CCsvEditor& editor;
};

/// Collects small runs of bytes for a file.
class CRunsForFile {
public:
    explicit CRunsForFile(CReplacement& file) : m_file(file) { m_bytes.reserve(kWrittenAtOnce); }

    void Put(std::span<const std::byte> bytes)
    {
        if (m_bytes.size() + bytes.size() > kWrittenAtOnce)
            Write();
        if (bytes.size() > kWrittenAtOnce)
            m_isWritten = m_isWritten && m_file.Append(bytes);
        else
            m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
    }

    /// Writes what was collected. False when that, or anything before, failed.
    bool Write()
    {
        m_isWritten = m_isWritten && m_file.Append(m_bytes);
        m_bytes.clear();
        return m_isWritten;
    }

    bool IsWritten() const { return m_isWritten; }

private:
    CReplacement& m_file;
    std::vector<std::byte> m_bytes;
    bool m_isWritten = true;
};

/// Whether a save of edited cells is made, or only foretold.
enum class Purpose { Save, Foretell };

/// One save of edited cells.
class CEditsSave {
public:
    CEditsSave(const fs::path& path, Purpose purpose, CProgress& progress)
        : m_path(path),
          m_purpose(purpose),
          m_progress(progress)
    {
    }

    /// `makeEditor` makes the editor of a table of the form that it is given.
    template <class MakeEditor>
    Outcome Save(MakeEditor makeEditor)
    {
        const CFile old(m_path, CFile::Mode::Read);
        if (!old.IsOpen())
            return IsMissing(m_path) ? Refuse(u"it does not exist") : Outcome::Failed;
        CCsvFileCutter cutter(old);
        const auto editor = makeEditor(cutter.Form());
        CEditsTaker taker(*editor);
        const Outcome outcome = Look(cutter, taker);
        if (outcome != Outcome::Done)
            return outcome;
        const auto& splices = taker.editor.Splices();
        newBytes = cutter.Position();
        for (const CsvSplice& splice : splices)
            newBytes += splice.bytes.size() - splice.length;
        return splices.empty() || m_purpose == Purpose::Foretell ? outcome : Write(old, cutter.Position(), splices);
    }

    /// Why the save was refused; empty when it was not.
    std::u16string refusal;

    std::uint64_t newBytes = 0; ///< of the file once it is saved

private:
    Outcome Refuse(std::u16string_view reason)
    {
        refusal = reason;
        return Outcome::Failed;
    }

    Outcome Look(CCsvFileCutter& cutter, CEditsTaker& taker)
    {
        while (cutter.Continue(taker))
            if (!m_progress.Advance(cutter.Position() / 2, cutter.Size()))
                return Outcome::GivenUp;
        if (cutter.HasFailed())
            return Outcome::Failed;
        taker.formCheck.Finish(cutter);
        if (!taker.formCheck.Fault().empty())
            return Refuse(taker.formCheck.Fault());
        taker.editor.Finish(cutter.Cutter(), cutter.Position());
        return taker.editor.Refusal().empty() ? Outcome::Done : Refuse(taker.editor.Refusal());
    }

    Outcome Write(const CFile& old, std::uint64_t size, std::span<const CsvSplice> splices)
    {
        CReplacement file(m_path);
        if (!file.IsOpen())
            return Outcome::Failed;
        const Outcome outcome = Copy(old, size, splices, file);
        return outcome == Outcome::Done ? FinishReplacement(file) : outcome;
    }

    Outcome Copy(const CFile& old, std::uint64_t size, std::span<const CsvSplice> splices, CReplacement& file)
    {
        CRunsForFile runs(file);
        CCsvSplicedBytes spliced(splices);
        const auto put = [&runs](std::span<const std::byte> bytes) { runs.Put(bytes); };
        CByteBuffer buffer(kPieceBytes);
        std::uint64_t pos = 0;
        for (std::size_t last = kPieceBytes; last == kPieceBytes;) {
            const auto arrived = old.ReadAt(pos, buffer.Bytes());
            if (!arrived || !runs.IsWritten())
                return Outcome::Failed;
            last = *arrived;
            pos += last;
            spliced.Append(buffer.Bytes().first(last), put);
            if (!m_progress.Advance(size / 2 + std::min(pos, size) / 2, size))
                return Outcome::GivenUp;
        }
        spliced.Finish(put);
        const bool isSame = pos == size; // as long as it was looked at
        return isSame && runs.Write() ? Outcome::Done : Outcome::Failed;
    }

    const fs::path& m_path;
    Purpose m_purpose;
    CProgress& m_progress;
};

/// A patcher that leaves behind what it found.
class CPatchEditor final : public CCsvEditor {
public:
    CPatchEditor(const CsvTextForm& form, std::span<const CsvChange> changes, const CsvExtent& extent, CsvPatchEnd& end)
        : m_patcher(form, changes, extent),
          m_end(end)
    {
    }

    void Take(const CsvRawField& field) override { m_patcher.Take(field); }
    void Finish(const CCsvCutter& cutter, std::uint64_t size) override
    {
        m_patcher.Finish(cutter, size);
        m_end.others = m_patcher.Others();
        m_end.oldBytes = size;
    }
    const std::vector<CsvSplice>& Splices() const override { return m_patcher.Splices(); }
    const std::u16string& Refusal() const override { return m_patcher.Refusal(); }

private:
    CCsvPatcher m_patcher;
    CsvPatchEnd& m_end;
};

Outcome Run(CEditsSave& save, std::span<const CsvEdit> edits, const fs::path& path, CReporter& reporter)
{
    const auto makeEditor = [edits](const CsvTextForm& form) { return std::make_unique<CCsvSplicer>(form, edits); };
    const Outcome outcome = WithinMemory([&] { return save.Save(makeEditor); });
    if (!save.refusal.empty())
        reporter.ShowError(CsvRefusalText(path, save.refusal));
    else if (HasFailed(outcome))
        ShowFileError(reporter, kSaveTableError, path);
    return outcome;
}

CsvPatchEnd RunPatch(Purpose purpose, std::span<const CsvChange> changes, const CsvExtent& extent, const fs::path& path,
                     CProgress& progress)
{
    CEditsSave save(path, purpose, progress);
    CsvPatchEnd end;
    const auto makeEditor = [&](const CsvTextForm& form) {
        return std::make_unique<CPatchEditor>(form, changes, extent, end);
    };
    end.outcome = WithinMemory([&] { return save.Save(makeEditor); });
    end.refusal = std::move(save.refusal);
    end.newBytes = save.newBytes;
    return end;
}

} // namespace

SaveResult SaveCsvEdits(std::span<const CsvEdit> edits, const fs::path& path, CReporter& reporter, CProgress& progress)
{
    CEditsSave save(path, Purpose::Save, progress);
    return ResultOf(Run(save, edits, path, reporter));
}

std::optional<std::uint64_t> CsvBytesAfterEdits(std::span<const CsvEdit> edits, const fs::path& path,
                                                CReporter& reporter, CProgress& progress)
{
    CEditsSave save(path, Purpose::Foretell, progress);
    return Run(save, edits, path, reporter) == Outcome::Done ? std::optional(save.newBytes) : std::nullopt;
}

std::u16string CsvRefusalText(const fs::path& path, std::u16string_view reason)
{
    return FillMessage(u"Can't save only the edited cells of file %s: %s!", {PathText(path), reason});
}

CsvPatchEnd LookAtCsvPatch(std::span<const CsvChange> changes, const CsvExtent& extent, const fs::path& path,
                           CProgress& progress)
{
    return RunPatch(Purpose::Foretell, changes, extent, path, progress);
}

CsvPatchEnd SaveCsvPatch(std::span<const CsvChange> changes, const CsvExtent& extent, const fs::path& path,
                         CProgress& progress)
{
    return RunPatch(Purpose::Save, changes, extent, path, progress);
}
