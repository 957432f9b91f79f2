#include "sheet/SheetFile.h"

#include "disk/File.h"
#include "disk/Replacement.h"
#include "disk/Sha256.h"
#include "text/FileMessages.h"
#include "text/LowerCase.h"
#include "text/PathText.h"

#include <cstddef>
#include <span>
#include <vector>

Outcome ReadFileContent(const std::filesystem::path& path, FileContent& content, CProgress& progress)
{
    constexpr std::size_t kPieceBytes = std::size_t{256} << 10;
    content = {};
    const CFile file(path, CFile::Mode::Read);
    const auto size = file.IsOpen() ? file.Size() : std::nullopt;
    if (!size)
        return Outcome::Failed;
    CSha256 sha;
    std::vector<std::byte> piece(kPieceBytes);
    for (std::uint64_t done = 0;;) {
        const auto length = file.ReadAt(done, piece);
        if (!length)
            return Outcome::Failed;
        if (*length == 0) {
            content = {sha.Finish(), done};
            return Outcome::Done;
        }
        sha.Append(std::span(piece).first(*length));
        done += *length;
        if (!progress.Advance(done, *size))
            return Outcome::GivenUp;
    }
}

SheetFileType SheetFileTypeOf(const std::filesystem::path& path)
{
    const std::u16string ending = LowerCase(PathText(path.extension()));
    if (ending == u".pdf")
        return SheetFileType::Pdf;
    return ending == u".html" || ending == u".htm" ? SheetFileType::Html : SheetFileType::Unknown;
}

bool MayWriteSheet(const std::filesystem::path& path, const std::filesystem::path& recipe, CReporter& reporter)
{
    if (SheetFileTypeOf(path) == SheetFileType::Unknown) {
        ShowFileError(reporter, u"The type of file %s is unknown! A sheet must be .pdf or .html!", path);
        return false;
    }
    if (!recipe.empty() && IsSameFile(path, recipe)) {
        ShowFileError(reporter, u"The file %s is the recipe itself! The sheet needs another name!", path);
        return false;
    }
    return true;
}

bool WriteSheetFile(const std::filesystem::path& path, std::string_view bytes, CReporter& reporter)
{
    CReplacement file(path);
    const bool isWritten = file.IsOpen() && file.Append(std::as_bytes(std::span(bytes))) && file.Finish();
    if (!isWritten)
        ShowFileError(reporter, kSaveFileError, path);
    return isWritten;
}
