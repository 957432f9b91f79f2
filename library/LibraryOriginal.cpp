#include "library/LibraryOriginal.h"

#include "disk/File.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <system_error>

namespace fs = std::filesystem;

namespace {

bool IsNothingToKeep(const fs::path& file)
{
    std::error_code fault;
    if (!fs::exists(file, fault))
        return !fault;
    return fs::is_empty(file, fault); // not when nobody can tell
}

bool HaveSameBytes(const fs::path& a, const fs::path& b)
{
    const CFile fileA(a, CFile::Mode::Read);
    const CFile fileB(b, CFile::Mode::Read);
    std::array<std::byte, 4096> pieceA;
    std::array<std::byte, 4096> pieceB;
    for (std::uint64_t done = 0;;) {
        const auto length = fileA.ReadAt(done, pieceA);
        if (!length || length != fileB.ReadAt(done, pieceB) ||
            !std::equal(pieceA.begin(), pieceA.begin() + static_cast<std::ptrdiff_t>(*length), pieceB.begin()))
            return false;
        if (*length == 0)
            return true;
        done += *length;
    }
}

/// Whether `name` is in use, be it by a link that leads nowhere.
bool IsTaken(const fs::path& name)
{
    std::error_code ignored;
    return fs::exists(fs::symlink_status(name, ignored));
}

fs::path CopyName(const fs::path& file, int number)
{
    fs::path name = file;
    name += number == 1 ? ".bak" : ".bak" + std::to_string(number);
    return name;
}

/// Copies `file` to the new name `copy`, has it put on the disk and reads it back; a copy that is not whole is removed.
bool CopyWhole(const fs::path& file, const fs::path& copy)
{
    CFile to(copy, CFile::Mode::CreateNew);
    if (!to.IsOpen())
        return false; // made by another program meanwhile: not ours to remove
    const CFile from(file, CFile::Mode::Read);
    to.TakeAttributesOf(file); // or else it is the user's own, which is no loss
    const auto length = from.Size();
    std::array<std::byte, 65536> piece;
    const bool isCopied = length && CopyContent(from, to, *length, piece) && to.Close() && FlushFolderOf(copy);
    if (isCopied && HaveSameBytes(file, copy))
        return true;
    std::error_code ignored;
    fs::remove(copy, ignored);
    return false;
}

} // namespace

bool IsOriginalAtRisk(const FormatLibrary& library, std::int64_t loaded)
{
    return loaded < 0 || (loaded > 0 && library.fileVersion != library.programVersion);
}

bool KeepOriginal(const fs::path& file)
{
    if (IsNothingToKeep(file))
        return true;
    int number = 1;
    for (; IsTaken(CopyName(file, number)); ++number)
        if (HaveSameBytes(file, CopyName(file, number)))
            return true;
    return CopyWhole(file, CopyName(file, number));
}
