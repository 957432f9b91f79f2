#include "merge/MergeFileChoice.h"

#include "disk/File.h"
#include "text/FileMessages.h"

namespace {

/// kept: the two differ in one word.
std::u16string_view CannotOpen(MergeSource source)
{
    return source == MergeSource::First ? u"Can't open file %s,it can't be mergered!"
                                        : u"Can't open file %s,it can't be merged!";
}

} // namespace

std::optional<std::int64_t> MeasureMergeFile(const std::filesystem::path& path, MergeSource source, CReporter& reporter)
{
    const CFile file(path, CFile::Mode::Read);
    const std::optional<std::uint64_t> bytes = file.Size();
    if (!bytes) {
        ShowFileError(reporter, CannotOpen(source), path);
        return std::nullopt;
    }
    return static_cast<std::int64_t>(*bytes);
}

std::int64_t WholeWords(std::int64_t bytes)
{
    return bytes / 2;
}
