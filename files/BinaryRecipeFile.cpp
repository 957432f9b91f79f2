#include "files/BinaryRecipeFile.h"

#include "disk/File.h"
#include "files/StretchCoding.h"
#include "text/FileMessages.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPieceBytes = std::size_t{64} << 20; // of one read or write; the usual stretch is one piece

Outcome ReadImage(const fs::path& path, const CRecipeRows& rows, CByteBuffer& image, CProgress& progress)
{
    const CFile file(path, CFile::Mode::Read);
    const auto fileSize = file.Size();
    if (!fileSize)
        return Outcome::Failed;

    const std::size_t total = static_cast<std::size_t>(rows.BytesWithin(*fileSize));
    image = CByteBuffer(total);
    std::size_t done = 0;
    while (done < total) {
        const auto piece = image.Bytes().subspan(done, std::min(kPieceBytes, total - done));
        const auto arrived = file.ReadAt((rows.FirstByte() + done).number, piece);
        if (!arrived)
            return Outcome::Failed;
        done += *arrived;
        if (!progress.Advance(done, total))
            return Outcome::GivenUp;
        if (*arrived < piece.size()) // someone cut the file meanwhile
            break;
    }
    image.Shorten(done);
    return Outcome::Done;
}

/// How a save failed that had begun to write at `offset` into a file of `oldSize` bytes.
Outcome MixedOver(std::uint64_t oldSize, std::uint64_t offset)
{
    return offset < oldSize ? Outcome::FailedMixed : Outcome::Failed;
}

bool WritePieces(CFile& file, std::uint64_t offset, std::span<const std::byte> image, CProgress& progress)
{
    for (std::size_t done = 0; done < image.size();) {
        const auto piece = image.subspan(done, std::min(kPieceBytes, image.size() - done));
        if (!file.WriteAt(offset + done, piece))
            return false;
        done += piece.size();
        // Too late to give up: a file that is half old and half new would be worse than a wait.
        progress.Advance(image.size() + done, 2 * static_cast<std::uint64_t>(image.size()));
    }
    return true;
}

/// The room comes first, so that a full disk is found before an old word is touched.
Outcome WriteImage(const WriteTarget& target, std::uint64_t offset, std::span<const std::byte> image,
                   CProgress& progress)
{
    CFileToWrite file(target, CFile::Mode::OpenOrCreate);
    const auto oldSize = file->Size();
    if (!oldSize || !file->Reserve(offset, image.size())) {
        file.Discard();
        return Outcome::Failed;
    }
    if (WritePieces(*file, offset, image, progress))
        return file.Finish() ? Outcome::Done : MixedOver(*oldSize, offset);
    file->CutTo(*oldSize);
    file.Discard();
    return MixedOver(*oldSize, offset);
}

} // namespace

Outcome WriteBinaryRecipe(const CRecipeRows& rows, const WriteTarget& target, CProgress& progress, CByteBuffer* saved)
{
    if (rows.StartAddress() < 0) // no file has such words
        return Outcome::Failed;
    return WithinMemory([&] {
        CByteBuffer image(static_cast<std::size_t>(rows.StretchBytes()));
        const Outcome coded = CodeStretch(rows, RecipeKind::Flat, image.Bytes(), progress);
        if (coded != Outcome::Done)
            return coded;
        const Outcome written = WriteImage(target, rows.FirstByte().number, image.Bytes(), progress);
        if (written == Outcome::Done && saved != nullptr)
            *saved = std::move(image);
        return written;
    });
}

Outcome ReadBinaryRecipe(CRecipeRows& rows, const fs::path& path, bool newFile, CReporter& reporter,
                         CProgress& progress)
{
    rows.ShowNothing();
    if (path.empty() && newFile) {
        rows.ShowNewDocument();
        return Outcome::Done;
    }
    CByteBuffer image;
    const Outcome outcome = WithinMemory([&] { return ReadImage(path, rows, image, progress); });
    if (outcome == Outcome::Failed)
        ShowFileError(reporter, kOpenFileError, path);
    if (outcome == Outcome::Done)
        rows.ShowWords(std::move(image), RecipeKind::Flat);
    return outcome;
}

SaveResult SaveBinaryRecipe(const CRecipeRows& rows, const WriteTarget& target, CReporter& reporter,
                            CProgress& progress, CByteBuffer* saved)
{
    const Outcome outcome = WriteBinaryRecipe(rows, target, progress, saved);
    if (HasFailed(outcome))
        ShowFileError(reporter, kSaveFileError, target.path);
    return ResultOf(outcome);
}
