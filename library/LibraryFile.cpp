#include "library/LibraryFile.h"

#include "disk/Content.h"
#include "disk/File.h"
#include "library/LibraryFromJson.h"
#include "library/LibraryPlace.h"
#include "library/NotesFile.h"
#include "text/FileMessages.h"
#include "text/LowerCase.h"
#include "text/MessageText.h"
#include "text/PathText.h"

namespace fs = std::filesystem;

namespace {

constexpr std::uint64_t kMostJsonBytes = std::uint64_t{1} << 30;

bool LoadJson(const fs::path& path, FormatLibrary& library, CReporter& reporter)
{
    const auto json = ReadContent(path, kMostJsonBytes);
    if (!json) {
        ShowFileError(reporter, kOpenFileError, path);
        return false;
    }
    const auto fault = LibraryFromJson(*json, library);
    if (fault)
        reporter.ShowError(
            FillMessage(u"Format library error! File %s, at %s: %s!", {PathText(path), fault->place, fault->text}));
    return !fault;
}

bool LoadBinary(const fs::path& path, FormatLibrary& library, CReporter& reporter)
{
    if (IsMissing(path) || library.loadReadOnly(path) >= 0)
        return true;
    if (!library.versionsKnown) {
        ShowFileError(reporter, kOpenFileError, path);
        return false;
    }
    ShowFileError(reporter, u"The format library %s is damaged! What stands behind the damage is left out!", path);
    return true;
}

} // namespace

bool IsJsonLibrary(const fs::path& path)
{
    return LowerCase(PathText(path.extension())) == u".json";
}

fs::path LibraryToRead(const std::optional<fs::path>& given, CReporter& reporter)
{
    return given ? *given : ProgramLibraryToRead(ExecutablePath(), reporter);
}

fs::path LibraryToWrite(const std::optional<fs::path>& given, CReporter& reporter)
{
    return given ? *given : ProgramLibraryPath(ExecutablePath(), reporter);
}

bool LoadNotes(const fs::path& path, FormatLibrary& library, CReporter& reporter)
{
    const NotesFile file = ReadNotes(path);
    if (file.content == NotesFile::Content::Unreadable) {
        ShowFileError(reporter, kOpenFileError, path);
        return false;
    }
    if (file.content == NotesFile::Content::Damaged) {
        reporter.ShowError(
            FillMessage(u"Notes error! File %s, at %s: %s!", {PathText(path), file.fault.place, file.fault.text}));
        return false;
    }
    ReplaceNotes(library.formats, file.notes);
    return true;
}

bool LoadLibrary(const fs::path& path, FormatLibrary& library, CReporter& reporter)
{
    if (IsJsonLibrary(path) && !IsMissing(path))
        return LoadJson(path, library, reporter);
    if (!LoadBinary(path, library, reporter))
        return false;
    LoadNotes(NotesPathOf(path), library, reporter);
    return true;
}
