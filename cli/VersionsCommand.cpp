#include "cli/VersionsCommand.h"

#include "cli/KeptVersions.h"
#include "cli/VersionChoice.h"
#include "disk/File.h"
#include "disk/FileLock.h"
#include "files/FileType.h"
#include "files/RecipeMessages.h"
#include "library/LibraryLock.h"
#include "recovery/DataFolder.h"
#include "recovery/LibraryRestore.h"
#include "recovery/VersionContent.h"
#include "recovery/VersionRestore.h"
#include "recovery/VersionStore.h"
#include "text/FileMessages.h"
#include "text/MessageText.h"
#include "text/PathText.h"
#include "text/PrintableText.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPieceBytes = std::size_t{64} << 10;

std::string NumberOrDash(std::optional<std::uint64_t> number)
{
    return number ? std::to_string(*number) : "-";
}

void PrintBytes(std::span<const std::byte> bytes, CStandardOutput& output)
{
    std::string text(bytes.size(), '\0');
    std::transform(bytes.begin(), bytes.end(), text.begin(), [](std::byte b) { return static_cast<char>(b); });
    output.Write(text);
}

bool PrintFile(const fs::path& path, CStandardOutput& output)
{
    const CFile file(path, CFile::Mode::Read);
    std::vector<std::byte> piece(kPieceBytes);
    for (std::uint64_t done = 0;;) {
        const auto length = file.ReadAt(done, piece);
        if (!length)
            return false;
        if (*length == 0)
            return true;
        PrintBytes(std::span(piece).first(*length), output);
        done += *length;
    }
}

bool PrintWords(CWordBytes& words, CStandardOutput& output)
{
    std::vector<std::byte> piece(kPieceBytes);
    for (std::uint64_t done = 0; done < words.Count(); done += piece.size()) {
        const std::uint64_t left = words.Count() - done;
        const auto part = std::span(piece).first(static_cast<std::size_t>(std::min<std::uint64_t>(left, kPieceBytes)));
        if (!words.Read(done, part))
            return false;
        PrintBytes(part, output);
    }
    return true;
}

bool PrintVersion(const CVersionStore& store, const fs::path& file, const Version& version, CStandardOutput& output,
                  CReporter& reporter)
{
    CVersionContent content(store, file, version.stamp);
    std::u16string fault = content.Fault();
    const auto type = FileTypeOf(file);
    if (fault.empty() && !content.IsCopy() && type && IsPaged(*type))
        fault = u"only changes of it were kept, from which a paged file can be made with --output";
    if (fault.empty()) {
        const bool isPrinted =
            content.IsCopy() ? PrintFile(content.Base(), output) : PrintWords(*content.Words(), output);
        if (isPrinted)
            return output.Finish(reporter);
        fault = u"it can't be read";
    }
    reporter.ShowError(
        FillMessage(u"Can't go back to version %s of file %s: %s!", {FromUtf8(version.stamp), PathText(file), fault}));
    return false;
}

bool SaveVersion(const CVersionStore& store, const fs::path& file, const Version& version, const fs::path& path,
                 CReporter& reporter)
{
    if (IsSameFile(file, path)) {
        reporter.ShowError(
            FillMessage(u"File %s is the file itself: \"versions restore\" brings it back!", {PathText(path)}));
        return false;
    }
    if (FileTypeOf(path))
        TellUnlessKept(store.Keep(path, u"versions show"), path, reporter);
    return WriteVersion(store, file, version, path, reporter);
}

} // namespace

bool ListVersions(const VersionsOptions& options, CStandardOutput& output, CReporter& reporter)
{
    const CVersionStore store(OwnDataFolder());
    const fs::path& file = options.file;
    for (const Version& version : store.Find(file, options.time)) {
        std::string line = version.stamp + '\t';
        AppendPrintable(version.command.empty() ? u"-" : std::u16string_view(version.command), line);
        line += '\t' + NumberOrDash(version.words);
        line += '\t' + NumberOrDash(CountDifferentWords(store, file, version.stamp));
        output.Write(line + '\n');
    }
    return output.Finish(reporter);
}

bool ShowVersion(const VersionsOptions& options, CStandardOutput& output, CReporter& reporter)
{
    const CVersionStore store(OwnDataFolder());
    const auto version = ChosenVersion(store, options.file, options.time, reporter);
    if (!version)
        return false;
    if (options.output)
        return SaveVersion(store, options.file, *version, *options.output, reporter);
    return PrintVersion(store, options.file, *version, output, reporter);
}

bool RestoreFile(const VersionsOptions& options, CReporter& reporter)
{
    const CVersionStore store(OwnDataFolder());
    const auto version = ChosenVersion(store, options.file, options.time, reporter);
    if (!version)
        return false;
    CFileLock lock;
    if (lock.Take(options.file, kLongestLockWait) == CFileLock::State::Busy) {
        ShowFileError(reporter, kBusyFileError, options.file);
        return false;
    }
    std::optional<CLibraryLock> libraryLock; // a format library is written under the lock beside it
    if (!FileTypeOf(options.file))
        libraryLock.emplace(options.file);
    const VersionRestored result = libraryLock ? RestoreLibrary(store, options.file, version->stamp, reporter)
                                               : RestoreVersion(store, options.file, version->stamp, reporter);
    if (result)
        TellUnlessKept(result.kept, options.file, reporter);
    return result.isRestored;
}

bool ForgetVersions(const VersionsOptions& options, CReporter& reporter)
{
    const fs::path& file = options.file;
    const CVersionStore store(OwnDataFolder());
    bool isForgotten = false;
    if (options.time.empty()) {
        isForgotten = store.Forget(file);
    } else {
        const auto version = ChosenVersion(store, options.file, options.time, reporter);
        if (!version)
            return false;
        isForgotten = store.Forget(file, *version);
    }
    if (!isForgotten)
        reporter.ShowError(FillMessage(u"Not all versions of file %s could be removed!", {PathText(file)}));
    return isForgotten;
}
