#include "cli/MergeCommand.h"

#include "cli/KeptVersions.h"
#include "merge/MergeFileChoice.h"
#include "merge/MergeFiles.h"
#include "merge/SavePathRules.h"
#include "text/PathText.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <string_view>
#include <system_error>

namespace fs = std::filesystem;

namespace {

/// `file`, or no path when nothing but white space stands there.
fs::path PathUnlessBlank(const fs::path& file)
{
    return Trimmed(PathText(file)).empty() ? fs::path() : file;
}

/// Whether both files to merge are named; reported when not, as the first checks of a merge do.
bool AreFilesNamed(const MergeOptions& options, CReporter& reporter)
{
    const MergeParams named = {.firstPath = PathUnlessBlank(options.first.file),
                               .secondPath = PathUnlessBlank(options.second.file)};
    if (!named.firstPath.empty() && !named.secondPath.empty())
        return true;
    reporter.ShowError(*ValidateMergeParams(named));
    return false;
}

/// `given` with the ending of the merged file. Its own bytes stay as they are, valid text or not.
fs::path WithEnding(fs::path given, std::u16string_view text)
{
    if (WithRcpEnding(text) != text)
        given += ".rcp";
    return given;
}

bool MayReplace(const fs::path& path, CReporter& reporter)
{
    std::error_code error;
    return !fs::is_regular_file(path, error) || reporter.AskYesNo(OverwriteQuestion(PathText(path)));
}

/// The path of the merged file; nothing, and then reported, when its name will not do or there is such a file already.
std::optional<fs::path> ChooseTarget(const MergeOptions& options, CReporter& reporter)
{
    const std::u16string text = PathText(options.target);
    if (const auto fault = MergeNameFault(PathText(options.target.filename()))) {
        reporter.ShowError(*fault);
        return std::nullopt;
    }
    fs::path target = WithEnding(options.target, text);
    if (!options.force && !MayReplace(target, reporter))
        return std::nullopt;
    return target;
}

/// The whole words of a file, as far as they can be asked for.
std::int32_t WordsIn(std::int64_t bytes)
{
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::min(WholeWords(bytes), kMost));
}

} // namespace

bool MergeRecipes(const MergeOptions& options, CReporter& reporter)
{
    if (!AreFilesNamed(options, reporter))
        return false;
    const auto target = ChooseTarget(options, reporter);
    if (!target)
        return false;
    const auto firstBytes = MeasureMergeFile(options.first.file, MergeSource::First, reporter);
    if (!firstBytes)
        return false;
    const auto secondBytes = MeasureMergeFile(options.second.file, MergeSource::Second, reporter);
    if (!secondBytes)
        return false;

    const MergeParams params = {
        .mergedSize = options.size,
        .firstPath = options.first.file,
        .firstFileBytes = *firstBytes,
        .firstReadStart = options.first.readStart,
        .firstLength = options.first.length.value_or(WordsIn(*firstBytes)),
        .firstPlace = options.first.place,
        .secondPath = options.second.file,
        .secondFileBytes = *secondBytes,
        .secondReadStart = options.second.readStart,
        .secondLength = options.second.length.value_or(WordsIn(*secondBytes)),
        .secondPlace = options.second.place,
        .mergedPath = *target,
    };
    if (const auto fault = ValidateMergeParams(params)) {
        reporter.ShowError(*fault);
        return false;
    }
    if (!options.noVersion)
        KeepVersionOf(*target, u"merge", reporter);
    return MergeFiles(params, reporter);
}
