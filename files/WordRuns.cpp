#include "files/WordRuns.h"

#include "disk/File.h"
#include "files/PagedFile.h"
#include "files/PagedRecipeFile.h"
#include "text/FileMessages.h"

#include <algorithm>

namespace fs = std::filesystem;

namespace {

/// The runs of `runs`, one after the other, for as long as `take` says yes.
template <class Take>
bool ForEachRun(const CWordRuns& runs, Take take)
{
    for (std::size_t i = 0; i < runs.Count(); ++i)
        if (!take(runs.At(i)))
            return false;
    return true;
}

bool HasRoom(CFile& file, const CWordRuns& runs)
{
    return ForEachRun(runs, [&file](const CWordRuns::Run& run) {
        return file.Reserve(FirstByteOf(run.first).number, run.bytes.size());
    });
}

/// Whether `runs` write over bytes that the file had.
bool GoesOverOld(const CWordRuns& runs, std::uint64_t oldSize)
{
    return runs.Count() > 0 && FirstByteOf(runs.At(0).first).number < oldSize;
}

Outcome WriteFlat(const CWordRuns& runs, const WriteTarget& target, std::optional<std::uint64_t> length)
{
    CFileToWrite file(target, CFile::Mode::ReadWrite);
    const auto oldSize = file->Size();
    if (!oldSize)
        return Outcome::Failed;
    const Outcome broken = GoesOverOld(runs, *oldSize) ? Outcome::FailedMixed : Outcome::Failed;
    if (!HasRoom(*file, runs)) {
        file->CutTo(*oldSize);
        return Outcome::Failed;
    }
    const bool isWritten = ForEachRun(
        runs, [&file](const CWordRuns::Run& run) { return file->WriteAt(FirstByteOf(run.first).number, run.bytes); });
    if (!isWritten) {
        file->CutTo(*oldSize);
        return broken;
    }
    if (length && !file->CutTo(*length))
        return Outcome::FailedMixed;
    return file.Finish() ? Outcome::Done : broken;
}

Outcome WritePages(const CWordRuns& runs, CPagedFile& file)
{
    std::vector<CPagedFile::Stretch> stretches;
    for (std::size_t i = 0; i < runs.Count(); ++i)
        stretches.push_back({runs.At(i).first, runs.At(i).bytes.size()});
    if (!file.MakeRoom(stretches))
        return Outcome::Failed;
    const bool isWritten =
        ForEachRun(runs, [&file](const CWordRuns::Run& run) { return file.Write(run.first, run.bytes); });
    return isWritten && file.Close() ? Outcome::Done : Outcome::FailedMixed;
}

SaveResult Reported(Outcome outcome, const fs::path& path, CReporter& reporter)
{
    if (HasFailed(outcome))
        ShowFileError(reporter, kSaveFileError, path);
    return ResultOf(outcome);
}

} // namespace

void CWordRuns::Append(WordAddress first, std::span<const std::byte> bytes)
{
    const auto end = [this] {
        const Begin& last = m_begins.back();
        return last.first + static_cast<std::int64_t>((m_bytes.size() - last.byte) / 2);
    };
    if (bytes.empty())
        return;
    if (m_begins.empty() || end() != first)
        m_begins.push_back({first, m_bytes.size()});
    m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
}

CWordRuns::Run CWordRuns::At(std::size_t index) const
{
    const Begin& begin = m_begins[index];
    const std::size_t end = index + 1 < m_begins.size() ? m_begins[index + 1].byte : m_bytes.size();
    return {begin.first, std::span(m_bytes).subspan(begin.byte, end - begin.byte)};
}

SaveResult WriteWordRuns(FileType type, const CWordRuns& runs, const WriteTarget& target,
                         std::optional<std::uint64_t> length, CReporter& reporter)
{
    if (!IsPaged(type))
        return Reported(WriteFlat(runs, target, length), target.path, reporter);
    CPagedFile file;
    const bool isOpen = file.OpenTarget(target, KindOf(type));
    if (!isOpen && IsMissingOrProtected(file.LastError()))
        return {.isLeftOut = true};
    const Outcome outcome = isOpen ? WithinMemory([&] { return WritePages(runs, file); }) : Outcome::Failed;
    return Reported(outcome, target.path, reporter);
}
