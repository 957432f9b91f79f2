#include "files/PagedRecipeFile.h"

#include "files/PagedFile.h"
#include "files/StretchCoding.h"
#include "text/FileMessages.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPieceBytes = std::size_t{1} << 20;

/// The word at byte `pos` of the stretch that `rows` show.
WordAddress WordAt(const CRecipeRows& rows, std::size_t pos)
{
    return rows.RowAddress(0) + static_cast<std::int64_t>(pos / 2);
}

/// kept: 0x0030, 0x0000, and zeros for the longest value.
CByteBuffer WordsOfNoFile(const CRecipeRows& rows)
{
    std::size_t words = 2;
    for (const ColumnCoding& column : rows.Columns())
        words = std::max(words, static_cast<std::size_t>(std::max(column.dataLength, 0)));
    CByteBuffer buffer(2 * words);
    std::fill(buffer.Bytes().begin(), buffer.Bytes().end(), std::byte{0});
    buffer.Bytes()[0] = std::byte{0x30};
    return buffer;
}

Outcome ReadStretch(const CRecipeRows& rows, CPagedReader& file, CByteBuffer& image, CProgress& progress)
{
    if (!file.PrepareToRead(rows.RowAddress(0), rows.StretchBytes()))
        return Outcome::Failed;
    image = CByteBuffer(static_cast<std::size_t>(rows.StretchBytes()));
    const std::size_t total = image.Bytes().size();
    for (std::size_t done = 0; done < total;) {
        const auto piece = image.Bytes().subspan(done, std::min(kPieceBytes, total - done));
        if (!file.Read(WordAt(rows, done), piece))
            return Outcome::Failed;
        done += piece.size();
        if (!progress.Advance(done, total))
            return Outcome::GivenUp;
    }
    return Outcome::Done;
}

Outcome WriteStretch(const CRecipeRows& rows, CPagedFile& file, std::span<const std::byte> image, CProgress& progress)
{
    if (!file.MakeRoom(rows.RowAddress(0), image.size())) // a full disk is found before an old word is touched
        return Outcome::Failed;
    for (std::size_t done = 0; done < image.size();) {
        const auto piece = image.subspan(done, std::min(kPieceBytes, image.size() - done));
        if (!file.Write(WordAt(rows, done), piece))
            return Outcome::FailedMixed;
        done += piece.size();
        // Too late to give up: a file that is half old and half new would be worse than a wait.
        progress.Advance(image.size() + done, 2 * static_cast<std::uint64_t>(image.size()));
    }
    return file.Close() ? Outcome::Done : Outcome::FailedMixed;
}

Outcome SaveRows(const CRecipeRows& rows, const WriteTarget& target, PagedKind kind, CPagedFile& file,
                 CProgress& progress, CByteBuffer* saved)
{
    return WithinMemory([&] {
        if (rows.ShowsTheSameEverywhere() || !file.IsSound(rows.RowAddress(0), rows.StretchBytes()))
            return Outcome::Failed;
        CByteBuffer image(static_cast<std::size_t>(rows.StretchBytes()));
        const Outcome coded = CodeStretch(rows, RecipeKind::Paged, image.Bytes(), progress);
        if (coded != Outcome::Done)
            return coded;
        // Another file may have that name by now: what is written into the one that had it would be lost.
        const Outcome written =
            file.OpenTarget(target, kind) ? WriteStretch(rows, file, image.Bytes(), progress) : Outcome::Failed;
        if (written == Outcome::Done && saved != nullptr)
            *saved = std::move(image);
        return written;
    });
}

/// Fills `rows` when that is done.
Outcome ReadRows(CRecipeRows& rows, CPagedReader& file, CProgress& progress)
{
    CByteBuffer image;
    const Outcome outcome = ReadStretch(rows, file, image, progress);
    if (outcome == Outcome::Done)
        rows.ShowWords(std::move(image), RecipeKind::Paged);
    return outcome;
}

/// `outcome`, once a failure was reported.
Outcome ReportedRead(Outcome outcome, const fs::path& path, CReporter& reporter)
{
    if (outcome == Outcome::Failed)
        ShowFileError(reporter, kOpenFileError, path);
    return outcome;
}

} // namespace

Outcome ReadPaged(CRecipeRows& rows, const fs::path& path, FileType type, CReporter& reporter, CProgress& progress)
{
    rows.ShowNothing();
    const Outcome outcome = WithinMemory([&] {
        CPagedFile file;
        if (file.Open(path, KindOf(type)))
            return ReadRows(rows, file, progress);
        rows.ShowEverywhere(WordsOfNoFile(rows), RecipeKind::Paged);
        return Outcome::Done;
    });
    return ReportedRead(outcome, path, reporter);
}

Outcome ReadPagedOnly(CRecipeRows& rows, const fs::path& path, FileType type, CReporter& reporter, CProgress& progress)
{
    rows.ShowNothing();
    const Outcome outcome = WithinMemory([&] {
        CPagedReader file;
        return file.Open(path, KindOf(type)) ? ReadRows(rows, file, progress) : Outcome::Failed;
    });
    return ReportedRead(outcome, path, reporter);
}

SaveResult SavePaged(const CRecipeRows& rows, const WriteTarget& target, FileType type, CReporter& reporter,
                     CProgress& progress, CByteBuffer* saved)
{
    CPagedFile file;
    const bool isOpen = file.OpenTarget(target, KindOf(type));
    if (!isOpen && IsMissingOrProtected(file.LastError()))
        return {.isLeftOut = true};
    const Outcome outcome = isOpen ? SaveRows(rows, target, KindOf(type), file, progress, saved) : Outcome::Failed;
    if (HasFailed(outcome))
        ShowFileError(reporter, kSaveFileError, target.path);
    return ResultOf(outcome);
}

Outcome WritePaged(const CRecipeRows& rows, const fs::path& path, FileType type, CProgress& progress)
{
    CPagedFile file;
    return file.Open(path, KindOf(type)) ? SaveRows(rows, path, KindOf(type), file, progress, nullptr)
                                         : Outcome::Failed;
}
