#include "recovery/VersionRestore.h"

#include "disk/Content.h"
#include "disk/Replacement.h"
#include "files/FileType.h"
#include "files/FinishReplacement.h"
#include "files/Outcome.h"
#include "files/WordRuns.h"
#include "recovery/VersionContent.h"
#include "text/FileMessages.h"
#include "text/MessageText.h"
#include "text/PathText.h"
#include "text/Utf8Text.h"

#include <exception>
#include <optional>

namespace fs = std::filesystem;

namespace {

constexpr std::u16string_view kCommand = u"Restore";
constexpr std::u16string_view kNoMemory = u"there is not enough memory";

void Refuse(const fs::path& file, std::string_view stamp, std::u16string_view reason, CReporter& reporter)
{
    reporter.ShowError(
        FillMessage(u"Can't go back to version %s of file %s: %s!", {FromUtf8(stamp), PathText(file), reason}));
}

/// Keeps what the file holds now; `next` is what it is about to hold.
VersionKept KeepPresent(const CVersionStore& store, const fs::path& file, CVersionContent& next)
{
    VersionKept kept = store.Keep(file, kCommand);
    if (kept.result != VersionKept::Result::NeedsChanges)
        return kept;
    CFileWords present(*FileTypeOf(file), file);
    if (next.Words() == nullptr || !present.IsOpen())
        return {.result = VersionKept::Result::Failed, .reason = u"The file can't be read", .stamp = {}};
    const auto changes = next.DifferencesFrom(present);
    if (!changes->IsRead())
        return {.result = VersionKept::Result::Failed, .reason = u"The file can't be read", .stamp = {}};
    return store.KeepChanges(file, kCommand, *changes);
}

/// The file holds what it is to hold: there is nothing to write, and nothing to keep.
VersionRestored Unchanged()
{
    VersionRestored result{.isRestored = true};
    result.kept.result = VersionKept::Result::Same;
    return result;
}

VersionRestored ReplaceWhole(const CVersionStore& store, const fs::path& file, CVersionContent& content,
                             CReporter& reporter)
{
    VersionRestored result;
    CReplacement fresh(file);
    const bool isGrown = fresh.IsOpen() && content.Grow(fresh); // first: keeping one may remove the oldest
    if (isGrown) {
        result.kept = KeepPresent(store, file, content);
        result.isRestored = fresh.Finish();
        result.mayHoldOldAndNew = fresh.MayHoldOldAndNew();
    }
    if (!result.isRestored)
        ShowFileError(reporter, kSaveFileError, file);
    return result;
}

VersionRestored WriteWords(const CVersionStore& store, const fs::path& file, CVersionContent& content,
                           CReporter& reporter)
{
    const FileType type = *FileTypeOf(file);
    CFileWords present(type, file);
    const auto changes = content.DifferencesFrom(present);
    const auto runs = changes->Runs();
    if (!changes->IsRead() || !runs) {
        ShowFileError(reporter, kOpenFileError, file);
        return {};
    }
    if (changes->Count() == 0)
        return Unchanged();
    VersionRestored result;
    result.kept = KeepPresent(store, file, content);
    const auto length = IsPaged(type) ? std::nullopt : std::optional(content.Words()->Count());
    const SaveResult saved = WriteWordRuns(type, *runs, file, length, reporter);
    if (saved.isLeftOut)
        ShowFileError(reporter, kSaveFileError, file);
    result.isRestored = saved.isSaved;
    result.mayHoldOldAndNew = saved.mayHoldOldAndNew;
    return result;
}

VersionRestored Restore(const CVersionStore& store, const fs::path& file, CVersionContent& content, CReporter& reporter)
{
    if (content.IsMadeOfFile())
        return WriteWords(store, file, content, reporter);
    if (content.IsCopy() && HaveSameContent(file, content.Base()))
        return Unchanged();
    return ReplaceWhole(store, file, content, reporter);
}

} // namespace

VersionRestored RestoreVersion(const CVersionStore& store, const fs::path& file, std::string_view stamp,
                               CReporter& reporter)
try {
    CVersionContent content(store, file, stamp);
    if (content.Fault().empty())
        return Restore(store, file, content, reporter);
    Refuse(file, stamp, content.Fault(), reporter);
    return {};
} catch (const std::exception&) {
    Refuse(file, stamp, kNoMemory, reporter);
    return {};
}

bool WriteVersion(const CVersionStore& store, const fs::path& file, const Version& version, const fs::path& path,
                  CReporter& reporter)
try {
    CVersionContent content(store, file, version.stamp);
    if (!content.Fault().empty()) {
        Refuse(file, version.stamp, content.Fault(), reporter);
        return false;
    }
    CReplacement fresh(path);
    if (fresh.IsOpen() && content.Grow(fresh) && fresh.Finish())
        return true;
    ShowFileError(reporter, kSaveFileError, path);
    return false;
} catch (const std::exception&) {
    Refuse(file, version.stamp, kNoMemory, reporter);
    return false;
}
