#include "changes/ChangeFile.h"

#include "changes/ChangeLines.h"
#include "disk/Replacement.h"
#include "text/FileMessages.h"

#include <cstddef>
#include <span>
#include <string>

namespace {

constexpr std::size_t kPieceBytes = std::size_t{64} << 10;

/// What is listed without a new side, with a remark of why, is refused: a patch has no place for it.
bool IsRefused(const ChangeRecord& record)
{
    return !record.note.empty() && !record.newText && record.newWords.empty() && record.zeros == 0;
}

/// Appends `lines` and empties them. False after an error.
bool Hand(std::string& lines, CReplacement& file)
{
    const bool isDone = file.Append(std::as_bytes(std::span(lines)));
    lines.clear();
    return isDone;
}

Outcome WriteLines(const CChangeList& changes, CReplacement& file, CProgress& progress)
{
    const std::size_t count = changes.Count();
    std::string lines;
    AppendLine(changes.Header(), lines);
    for (std::size_t i = 0; i < count; ++i) {
        if (i >= changes.Count())
            return Outcome::Failed;
        if (const ChangeRecord record = changes.At(i); !IsRefused(record))
            AppendLine(record, lines);
        if (lines.size() < kPieceBytes)
            continue;
        if (!Hand(lines, file))
            return Outcome::Failed;
        if (!progress.Advance(i + 1, count))
            return Outcome::GivenUp;
    }
    if (!Hand(lines, file))
        return Outcome::Failed;
    return progress.Advance(count, count) ? Outcome::Done : Outcome::GivenUp;
}

Outcome Replace(const CChangeList& changes, const std::filesystem::path& path, CProgress& progress)
{
    CReplacement file(path);
    if (!file.IsOpen())
        return Outcome::Failed;
    const Outcome written = WriteLines(changes, file, progress);
    if (written != Outcome::Done || file.Finish())
        return written;
    return file.MayHoldOldAndNew() ? Outcome::FailedMixed : Outcome::Failed;
}

} // namespace

Outcome SaveChanges(const CChangeList& changes, const std::filesystem::path& path, CReporter& reporter,
                    CProgress& progress)
{
    const Outcome outcome = WithinMemory([&] { return Replace(changes, path, progress); });
    if (HasFailed(outcome))
        ShowFileError(reporter, kSaveFileError, path);
    return outcome;
}
