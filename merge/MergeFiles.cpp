#include "merge/MergeFiles.h"

#include "files/File.h"
#include "files/FileMessages.h"

#include <algorithm>
#include <array>
#include <span>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace {

/// What goes from one source to the merged file, in words.
struct Stretch {
    const fs::path& source;
    std::int32_t readStart;
    std::int32_t length;
    std::int32_t place;
};

std::array<Stretch, 2> StretchesOf(const MergeParams& params)
{
    return {{{params.firstPath, params.firstReadStart, params.firstLength, params.firstPlace},
             {params.secondPath, params.secondReadStart, params.secondLength, params.secondPlace}}};
}

std::size_t ByteCount(std::int32_t words)
{
    return 2 * static_cast<std::size_t>(words);
}

std::uint64_t ByteAddress(std::int32_t wordAddress)
{
    return 2 * static_cast<std::uint64_t>(wordAddress);
}

bool FitsInto(std::int32_t mergedWords, const Stretch& stretch)
{
    return stretch.readStart >= 0 && stretch.length >= 0 && stretch.place >= 0 && stretch.length <= mergedWords &&
           stretch.place <= mergedWords - stretch.length;
}

bool IsSameFile(const fs::path& one, const fs::path& other)
{
    std::error_code missing; // a file that is not there is no other's
    return fs::equivalent(one, other, missing);
}

/// Copies by way of `buffer`, which holds at least the stretch.
bool CopyStretch(const Stretch& stretch, const CFile& source, CFile& merged, std::span<std::byte> buffer)
{
    const std::span<std::byte> bytes = buffer.first(ByteCount(stretch.length));
    std::fill(bytes.begin(), bytes.end(), std::byte{0}); // what the source no longer holds
    return source.ReadAt(ByteAddress(stretch.readStart), bytes) && merged.WriteAt(ByteAddress(stretch.place), bytes);
}

bool MergeFailed(const fs::path& mergedPath, CReporter& reporter)
{
    ShowFileError(reporter, u"Merge file %s failed!", mergedPath);
    return false;
}

} // namespace

bool MergeFiles(const MergeParams& params, CReporter& reporter)
{
    const std::int32_t words = MergedWords(params.mergedSize);
    const std::array<Stretch, 2> stretches = StretchesOf(params);
    const bool isHarmless = std::all_of(stretches.begin(), stretches.end(), [&](const Stretch& stretch) {
        return FitsInto(words, stretch) && !IsSameFile(stretch.source, params.mergedPath);
    });
    if (!isHarmless)
        return MergeFailed(params.mergedPath, reporter);

    std::vector<std::byte> buffer(ByteCount(words));
    CFile merged(params.mergedPath, CFile::Mode::Truncate);
    if (!merged.IsOpen() || !merged.WriteAt(0, buffer))
        return MergeFailed(params.mergedPath, reporter);

    for (const Stretch& stretch : stretches) {
        const CFile source(stretch.source, CFile::Mode::Read);
        if (!source.IsOpen()) {
            ShowFileError(reporter, u"Open file %s failed!", stretch.source);
            return false;
        }
        if (!CopyStretch(stretch, source, merged, buffer))
            return MergeFailed(params.mergedPath, reporter);
    }
    return merged.Close() || MergeFailed(params.mergedPath, reporter);
}
