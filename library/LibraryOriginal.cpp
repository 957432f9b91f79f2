#include "library/LibraryOriginal.h"

#include "disk/Content.h"

#include <cstdint>
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

/// Whether `name` is in use, even by a link that leads nowhere.
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
        if (HaveSameContent(file, CopyName(file, number)))
            return true;
    return CopyToNewFile(file, CopyName(file, number));
}
