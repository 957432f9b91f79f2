#include "disk/Content.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <system_error>

namespace fs = std::filesystem;

bool CopyContent(const CFile& from, CFile& to, std::uint64_t length, std::span<std::byte> piece)
{
    for (std::uint64_t done = 0; done < length;) {
        const auto part = piece.first(static_cast<std::size_t>(std::min<std::uint64_t>(piece.size(), length - done)));
        if (from.ReadAt(done, part) != part.size() || !to.WriteAt(done, part))
            return false;
        done += part.size();
    }
    return true;
}

bool CopyToNewFile(const fs::path& file, const fs::path& copy)
{
    CFile to(copy, CFile::Mode::CreateNew);
    if (!to.IsOpen())
        return false; // what has the name is not ours to remove
    const CFile from(file, CFile::Mode::Read);
    to.TakeAttributesOf(file); // or else it is the user's own, which is no loss
    const auto length = from.Size();
    std::array<std::byte, 65536> piece;
    const bool isCopied = length && CopyContent(from, to, *length, piece) && to.Close() && FlushFolderOf(copy);
    if (isCopied && HaveSameContent(file, copy))
        return true;
    std::error_code ignored;
    fs::remove(copy, ignored);
    return false;
}

bool HaveSameContent(const fs::path& one, const fs::path& other)
{
    const CFile oneFile(one, CFile::Mode::Read);
    const CFile otherFile(other, CFile::Mode::Read);
    if (oneFile.Size() != otherFile.Size())
        return false;
    std::array<std::byte, 65536> onePiece;
    std::array<std::byte, 65536> otherPiece;
    for (std::uint64_t done = 0;;) {
        const auto length = oneFile.ReadAt(done, onePiece);
        if (!length || length != otherFile.ReadAt(done, otherPiece) ||
            std::memcmp(onePiece.data(), otherPiece.data(), *length) != 0)
            return false;
        if (*length == 0)
            return true;
        done += *length;
    }
}

std::optional<std::string> ReadContent(const fs::path& path, std::uint64_t most)
{
    const CFile file(path, CFile::Mode::Read);
    const auto size = file.Size();
    if (!size || *size > most)
        return std::nullopt;
    std::string text(static_cast<std::size_t>(*size), '\0');
    const auto length = file.ReadAt(0, std::as_writable_bytes(std::span(text)));
    if (!length)
        return std::nullopt;
    text.resize(*length);
    return text;
}
