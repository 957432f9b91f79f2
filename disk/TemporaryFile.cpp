#include "disk/TemporaryFile.h"

#include "disk/File.h"

#include <algorithm>
#include <chrono>
#include <string>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kStart = "vantor-";
constexpr std::string_view kTemporaryEnd = ".new";
constexpr std::string_view kKeptEnd = ".kept";

/// Whether TemporaryName could have made `name`.
bool IsTemporaryName(const fs::path& name)
{
    const fs::path::string_type& text = name.native();
    if (text.size() <= kStart.size() + kTemporaryEnd.size())
        return false;
    const auto number = text.begin() + static_cast<std::ptrdiff_t>(kStart.size());
    const auto end = text.end() - static_cast<std::ptrdiff_t>(kTemporaryEnd.size());
    return std::equal(text.begin(), number, kStart.begin()) && std::equal(end, text.end(), kTemporaryEnd.begin()) &&
           std::all_of(number, end, [](auto c) { return c >= '0' && c <= '9'; });
}

std::vector<fs::path> TemporaryFilesIn(const fs::path& folder)
{
    std::vector<fs::path> files;
    std::error_code fault; // what cannot be listed holds none that could be removed
    for (fs::directory_iterator entry(folder.empty() ? "." : folder, fault), end; !fault && entry != end;
         entry.increment(fault))
        if (IsTemporaryName(entry->path().filename()))
            files.push_back(entry->path());
    return files;
}

/// It is held while it is looked at and removed, so that no other program takes it up meanwhile.
void RemoveIfLeftOver(const fs::path& path)
{
    std::error_code ignored;
    if (!fs::is_regular_file(fs::symlink_status(path, ignored)))
        return; // before it is opened: a device may mind even that
    CFile file(path, CFile::Mode::Read);
    if (file.Hold() == Holder::ThisFile && file.IsAt(path) && file.IsOwn())
        fs::remove(path, ignored);
}

} // namespace

fs::path TemporaryName()
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    return std::string(kStart) + std::to_string(now) + std::string(kTemporaryEnd);
}

fs::path KeptName(const fs::path& file)
{
    return fs::path(file).replace_extension(kKeptEnd);
}

void RemoveLeftOvers(const fs::path& folder)
{
    for (const fs::path& file : TemporaryFilesIn(folder))
        RemoveIfLeftOver(file);
}
