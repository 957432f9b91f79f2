#include "files/RecipeReplacement.h"

#include "disk/File.h"
#include "files/BinaryRecipeFile.h"
#include "files/CsvRecipeFile.h"
#include "files/FinishReplacement.h"
#include "files/PagedRecipeFile.h"
#include "text/FileMessages.h"

#include <algorithm>

namespace fs = std::filesystem;

namespace {

/// Whether nothing of an old file stays.
bool IsMadeAnew(FileType type, std::int32_t startAddress)
{
    return type == FileType::Rcp && startAddress != 0;
}

/// Writes what the file is to hold before the rows are written.
bool Begin(FileType type, std::int32_t startAddress, CReplacement& file)
{
    if (IsMadeAnew(type, startAddress)) // kept: one zero byte a word of the start address, not two
        return file.AppendZeros(static_cast<std::uint64_t>(std::max(startAddress, 0)));
    return file.AppendOld();
}

/// Says that the file could not be begun, in the words that its type has for it.
void ReportNoBegin(FileType type, const fs::path& path, std::int32_t startAddress, CReporter& reporter)
{
    const bool isPagedToRead = IsPaged(type) && CFile(path, CFile::Mode::Read).IsOpen();
    if (IsPaged(type) && !isPagedToRead)
        reporter.ShowError(kOpenPagedError);
    else
        ShowFileError(reporter, IsMadeAnew(type, startAddress) ? kMakeFileError : kSaveFileError, path);
}

Outcome WriteAndFinish(FileType type, const CRecipeRows& rows, CReplacement& file, CProgress& progress)
{
    const Outcome written = IsPaged(type) ? WritePaged(rows, file.FreshPath(), type, progress)
                                          : WriteBinaryRecipe(rows, file.FreshPath(), progress);
    if (written == Outcome::GivenUp)
        return written;
    return written == Outcome::Done ? FinishReplacement(file) : Outcome::Failed;
}

/// `begin` reports what keeps it from beginning the file.
template <class Begun>
SaveResult Replace(FileType type, const CRecipeRows& rows, const fs::path& path, CReporter& reporter,
                   CProgress& progress, Begun begin)
{
    if (type == FileType::Csv)
        return SaveCsv(rows, path, reporter, progress);
    CReplacement file(path);
    if (!begin(file))
        return {};
    const Outcome outcome = WithinMemory([&] { return WriteAndFinish(type, rows, file, progress); });
    if (HasFailed(outcome))
        ShowFileError(reporter, kSaveFileError, path);
    return ResultOf(outcome);
}

} // namespace

SaveResult ReplaceRecipe(FileType type, const CRecipeRows& rows, const fs::path& path, std::int32_t startAddress,
                         CReporter& reporter, CProgress& progress)
{
    return Replace(type, rows, path, reporter, progress, [&](CReplacement& file) {
        if (file.IsOpen() && Begin(type, startAddress, file))
            return true;
        ReportNoBegin(type, path, startAddress, reporter);
        return false;
    });
}

SaveResult SaveRecipeCopy(FileType type, const CRecipeRows& rows, const fs::path& original, const fs::path& path,
                          CReporter& reporter, CProgress& progress)
{
    return Replace(type, rows, path, reporter, progress, [&](CReplacement& file) {
        if (file.IsOpen() && file.AppendFile(original))
            return true;
        ShowFileError(reporter, kSaveFileError, path);
        return false;
    });
}
