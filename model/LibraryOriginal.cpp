#include "model/LibraryOriginal.h"

#include "disk/File.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <fstream>
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
    return fs::is_empty(file, fault) && !fault;
}

bool HaveSameSize(const fs::path& a, const fs::path& b)
{
    std::error_code faultA;
    std::error_code faultB;
    const auto sizeA = fs::file_size(a, faultA);
    const auto sizeB = fs::file_size(b, faultB);
    return !faultA && !faultB && sizeA == sizeB;
}

bool HaveSameBytes(const fs::path& a, const fs::path& b)
{
    if (!HaveSameSize(a, b))
        return false;
    constexpr std::size_t kBlockSize = 4096;
    std::ifstream fileA(a, std::ios::binary);
    std::ifstream fileB(b, std::ios::binary);
    std::array<char, kBlockSize> blockA{};
    std::array<char, kBlockSize> blockB{};
    while (fileA && fileB) {
        fileA.read(blockA.data(), kBlockSize);
        fileB.read(blockB.data(), kBlockSize);
        const auto length = fileA.gcount();
        if (length != fileB.gcount() || !std::equal(blockA.begin(), blockA.begin() + length, blockB.begin()))
            return false;
    }
    return fileA.eof() && fileB.eof();
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
