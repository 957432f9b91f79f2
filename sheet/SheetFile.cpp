#include "sheet/SheetFile.h"

#include "disk/File.h"
#include "disk/Sha256.h"

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
