#include "recovery/VersionStore.h"

#include "changes/ChangeFile.h"
#include "disk/Content.h"
#include "disk/File.h"
#include "files/FileType.h"
#include "files/RecipeFile.h"
#include "recovery/VersionCheck.h"
#include "recovery/VersionFolder.h"
#include "recovery/VersionMaking.h"
#include "recovery/VersionNote.h"
#include "recovery/VersionRetention.h"
#include "recovery/VersionSetting.h"
#include "text/FileMessages.h"
#include "text/MessageText.h"
#include "text/PathText.h"
#include "text/UtcTime.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <exception>
#include <system_error>
#include <utility>

namespace fs = std::filesystem;

namespace {

using Result = VersionKept::Result;

VersionKept Failed(std::u16string reason)
{
    return {.result = Result::Failed, .reason = std::move(reason), .stamp = {}};
}

VersionKept Failed(std::error_code fault)
{
    return Failed(FromUtf8(ReasonUtf8(fault)));
}

bool HasWords(std::optional<FileType> type)
{
    return type && *type != FileType::Csv;
}

std::optional<std::uint64_t> WordsIn(const fs::path& path, std::optional<FileType> type)
{
    if (!HasWords(type))
        return std::nullopt;
    const auto bytes = LogicalBytes(*type, path);
    return bytes ? std::optional(*bytes / 2) : std::nullopt;
}

/// Why the folder is not there, or not to be used.
std::u16string FolderFault(const fs::path& folder)
{
    std::error_code fault;
    fs::create_directories(folder, fault); // fails again, and tells why
    if (fault)
        return FromUtf8(ReasonUtf8(fault));
    return FillMessage(u"The folder %s is another user's", {PathText(folder)});
}

/// What may be used of the folder for versions: the user's own, and no link that others put there.
std::optional<std::u16string> PrepareFolder(const CVersionFolder& folder)
{
    for (const fs::path& path : {folder.Path().parent_path(), folder.Path()})
        if (!MakePrivateFolder(path))
            return FolderFault(path);
    folder.RemoveLeftOvers();
    return std::nullopt;
}

/// All folders of versions in `versions`.
std::vector<CVersionFolder> FoldersIn(const fs::path& versions)
{
    std::vector<CVersionFolder> folders;
    std::error_code fault; // what cannot be listed holds none
    for (fs::directory_iterator entry(versions, fault), end; !fault && entry != end; entry.increment(fault)) {
        std::error_code ignored;
        if (IsVersionFolderName(entry->path().filename()) && fs::is_directory(entry->symlink_status(ignored)))
            folders.emplace_back(entry->path());
    }
    return folders;
}

/// Removes what is too old or too much in all folders.
void RemoveOld(const fs::path& versionsFolder, UtcTime now)
{
    const std::vector<CVersionFolder> folders = FoldersIn(versionsFolder);
    std::vector<KeptVersion> kept;
    std::vector<StoredVersion> stored;
    for (std::size_t i = 0; i < folders.size(); ++i)
        for (StoredVersion& version : folders[i].Versions()) {
            kept.push_back({i, version.time, version.bytes, version.isRecords});
            stored.push_back(std::move(version));
        }
    for (const std::size_t gone : VersionsToRemove(kept, now))
        folders[kept[gone].file].Remove(stored[gone]);
}

/// Whether the newest version is a copy of just these bytes.
std::optional<std::string> SameAsNewest(const CVersionFolder& folder, const fs::path& file, std::uint64_t size)
{
    const std::vector<StoredVersion> versions = folder.Versions();
    if (versions.empty() || versions.back().isRecords || versions.back().bytes != size ||
        !HaveSameContent(file, folder.PathOf(versions.back())))
        return std::nullopt;
    return versions.back().stamp;
}

/// Copies the first `size` bytes of `source`, and has them put on the disk.
std::error_code Copy(const CFile& source, std::uint64_t size, const fs::path& path)
{
    CFile copy(path, CFile::Mode::ReadWrite);
    std::vector<std::byte> piece(std::size_t{256} << 10);
    if (CopyContent(source, copy, size, piece) && copy.Close())
        return {};
    return copy.LastError()     ? copy.LastError()
           : source.LastError() ? source.LastError()
                                : std::make_error_code(std::errc::io_error);
}

VersionKept Kept(const CVersionMaking& made, const CVersionFolder& folder, UtcTime now)
{
    RemoveOld(folder.Path().parent_path(), now);
    return {.result = Result::Kept, .reason = {}, .stamp = made.Stamp()};
}

VersionKept KeepCopy(const CVersionFolder& folder, const CFile& source, std::uint64_t size, const VersionNote& note)
{
    const UtcTime now = note.time;
    CVersionMaking making(folder, note);
    if (!making.IsBegun())
        return Failed(making.Fault());
    if (const std::error_code fault = Copy(source, size, making.PartPath()))
        return Failed(fault);
    if (!making.Complete(folder.CopyPath(making.Stamp())))
        return Failed(making.Fault());
    return Kept(making, folder, now);
}

VersionKept KeepRecords(const CVersionFolder& folder, const CCheckedChanges& changes, const VersionNote& note)
{
    const UtcTime now = note.time;
    CVersionMaking making(folder, note);
    if (!making.IsBegun())
        return Failed(making.Fault());
    CSilentReporter silent;
    CNoProgress progress;
    const Outcome outcome = SaveChanges(changes, making.PartPath(), silent, progress);
    if (!changes.Fault().empty())
        return Failed(changes.Fault());
    if (outcome != Outcome::Done)
        return Failed(u"The changes can't be written");
    if (!making.Complete(folder.RecordsPath(making.Stamp())))
        return Failed(making.Fault());
    return Kept(making, folder, now);
}

} // namespace

std::u16string NotKeptText(const VersionKept& kept, const fs::path& file)
{
    std::u16string_view reason = kept.reason;
    if (kept.result == VersionKept::Result::NeedsChanges)
        reason = u"The file is too large";
    else if (kept.result != VersionKept::Result::Failed)
        return {};
    return FillMessage(u"No earlier version of file %s was kept: %s.", {PathText(file), reason});
}

CVersionStore::CVersionStore(fs::path dataFolder) : m_dataFolder(std::move(dataFolder)) {}

fs::path CVersionStore::FolderOf(const fs::path& file) const
{
    return m_dataFolder / "versions" / VersionFolderName(KnownPath(file));
}

std::optional<VersionKept> CVersionStore::WhyNotKept(const fs::path& file) const
{
    if (!AreVersionsKept(m_dataFolder))
        return VersionKept{.result = Result::Off, .reason = {}, .stamp = {}};
    std::error_code ignored;
    if (IsMissing(file) || fs::is_directory(file, ignored))
        return VersionKept{.result = Result::Nothing, .reason = {}, .stamp = {}};
    if (m_dataFolder.empty())
        return Failed(u"There is no folder for the user's data");
    return std::nullopt;
}

VersionKept CVersionStore::Keep(const fs::path& file, std::u16string_view command) const
try {
    if (auto whyNot = WhyNotKept(file))
        return *whyNot;
    const CFile source(file, CFile::Mode::Read);
    const auto size = source.Size();
    if (!size)
        return Failed(source.LastError());
    const auto type = FileTypeOf(file);
    if (HasWords(type) && *size > kMostCopiedBytes)
        return {.result = Result::NeedsChanges, .reason = {}, .stamp = {}};
    if (*size > VersionLimits().bytes)
        return Failed(u"The file is too large");

    const CVersionFolder folder(FolderOf(file));
    if (auto fault = PrepareFolder(folder))
        return Failed(std::move(*fault));
    if (auto same = SameAsNewest(folder, file, *size))
        return {.result = Result::Same, .reason = {}, .stamp = std::move(*same)};
    return KeepCopy(folder, source, *size,
                    {.file = PathText(KnownPath(file)),
                     .time = UtcNow(),
                     .command = std::u16string(command),
                     .words = WordsIn(file, type),
                     .bytes = *size});
} catch (const std::exception&) {
    return Failed(u"There is not enough memory");
}

VersionKept CVersionStore::KeepChanges(const fs::path& file, std::u16string_view command,
                                       const CChangeList& changes) const
try {
    if (auto whyNot = WhyNotKept(file))
        return *whyNot;
    const auto type = FileTypeOf(file);
    if (!HasWords(type))
        return Failed(u"The file has no words");
    const CCheckedChanges checked(changes, *type, file);
    if (!checked.Fault().empty())
        return Failed(checked.Fault());
    if (changes.Count() == 0)
        return {.result = Result::Same, .reason = {}, .stamp = {}};

    const CVersionFolder folder(FolderOf(file));
    if (auto fault = PrepareFolder(folder))
        return Failed(std::move(*fault));
    return KeepRecords(folder, checked,
                       {.file = PathText(KnownPath(file)),
                        .time = UtcNow(),
                        .command = std::u16string(command),
                        .words = WordsIn(file, type),
                        .bytes = CFile(file, CFile::Mode::Read).Size()});
} catch (const std::exception&) {
    return Failed(u"There is not enough memory");
}

std::vector<Version> CVersionStore::List(const fs::path& file) const
{
    return Find(file, {});
}

std::vector<Version> CVersionStore::Find(const fs::path& file, std::string_view stamp) const
try {
    std::vector<Version> found;
    if (m_dataFolder.empty())
        return found;
    const CVersionFolder folder(FolderOf(file));
    const std::vector<StoredVersion> stored = folder.Versions();
    for (auto version = stored.rbegin(); version != stored.rend(); ++version) {
        if (!version->stamp.starts_with(stamp))
            continue;
        const VersionNote note = ReadNote(folder.NotePath(version->stamp));
        const auto words =
            note.words || version->isRecords ? note.words : WordsIn(folder.PathOf(*version), FileTypeOf(file));
        const std::uint64_t bytes = version->isRecords ? note.bytes.value_or(0) : version->bytes;
        found.push_back({version->stamp, note.command, words, bytes, version->isRecords});
    }
    return found;
} catch (const std::exception&) {
    return {};
}

fs::path CVersionStore::PathOf(const fs::path& file, const Version& version) const
{
    const CVersionFolder folder(FolderOf(file));
    return version.isRecords ? folder.RecordsPath(version.stamp) : folder.CopyPath(version.stamp);
}

bool CVersionStore::Forget(const fs::path& file) const
try {
    return m_dataFolder.empty() || CVersionFolder(FolderOf(file)).RemoveAll();
} catch (const std::exception&) {
    return false;
}

bool CVersionStore::Forget(const fs::path& file, const Version& version) const
try {
    const CVersionFolder folder(FolderOf(file));
    for (const StoredVersion& stored : folder.Versions())
        if (stored.stamp == version.stamp)
            return folder.Remove(stored);
    return true;
} catch (const std::exception&) {
    return false;
}

bool CVersionStore::ForgetAll() const
try {
    bool isDone = true;
    if (!m_dataFolder.empty())
        for (const CVersionFolder& folder : FoldersIn(m_dataFolder / "versions"))
            isDone = folder.RemoveAll() && isDone;
    return isDone;
} catch (const std::exception&) {
    return false;
}
