#include "cli/SheetSince.h"

#include "changes/FileDifferences.h"
#include "changes/FileTables.h"
#include "cli/InputFile.h"
#include "cli/VersionChoice.h"
#include "files/RecipeMessages.h"
#include "recovery/DataFolder.h"
#include "recovery/VersionContent.h"
#include "text/FileMessages.h"
#include "text/MessageText.h"
#include "text/PathText.h"
#include "text/UtcTime.h"
#include "text/Utf8Text.h"

#include <system_error>

namespace fs = std::filesystem;

namespace {

/// "the version of 2026-11-22 12:02 (UTC+01:00)".
std::u16string VersionName(const Version& version)
{
    const auto time = TimeOfStamp(version.stamp);
    return u"the version of " + FromUtf8(time ? LocalText(*time) : version.stamp);
}

std::optional<SheetSince> FindVersion(const std::string& time, const fs::path& file, CReporter& reporter)
{
    const CVersionStore store(OwnDataFolder());
    const auto version = ChosenVersion(store, file, time, reporter);
    if (!version)
        return std::nullopt;
    const CVersionContent content(store, file, version->stamp);
    std::u16string fault = content.Fault();
    if (fault.empty() && !content.IsCopy())
        fault = u"only changes of it were kept, from which \"versions show --output\" can make a file";
    if (fault.empty())
        return SheetSince{content.Base(), VersionName(*version)};
    reporter.ShowError(
        FillMessage(u"Can't go back to version %s of file %s: %s!", {FromUtf8(version->stamp), PathText(file), fault}));
    return std::nullopt;
}

} // namespace

std::optional<SheetSince> FindSince(const std::string& since, const fs::path& file, CReporter& reporter)
{
    const fs::path other = PathOfUtf8(since);
    std::error_code error;
    if (since.empty() || !fs::exists(other, error))
        return FindVersion(since, file, reporter);
    if (!KnownTypeOf(other, reporter))
        return std::nullopt;
    return SheetSince{other, PathText(other.filename())};
}

bool CollectChanges(const SheetSince& since, const fs::path& file, const ReadSettings& settings, CSheetChanges& changes,
                    CReporter& reporter, CProgress& progress)
{
    const auto before = KnownTypeOf(since.path, reporter);
    const auto after = KnownTypeOf(file, reporter);
    if (!before || !after)
        return false;
    CFileDifferences differences({since.path, *before}, {file, *after},
                                 {MakeTable(settings.format, settings.startAddress, settings.rowCount)});
    changes.TakeHeader(differences.Header());
    if (differences.HandTo(changes, progress))
        return true;
    const ComparedFile& unreadable = *differences.Unreadable();
    ShowFileError(reporter, OpenErrorOf(unreadable.type), unreadable.path);
    return false;
}
