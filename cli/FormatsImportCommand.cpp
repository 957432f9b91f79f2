#include "cli/FormatsImportCommand.h"

#include "cli/InputFile.h"
#include "cli/KeptVersions.h"
#include "disk/Content.h"
#include "disk/File.h"
#include "library/LibraryFile.h"
#include "library/LibraryFromJson.h"
#include "library/LibraryLock.h"
#include "library/LibraryNotes.h"
#include "library/StandingLibrary.h"
#include "text/FileMessages.h"
#include "text/MessageText.h"
#include "text/PathText.h"

#include <cstdint>
#include <limits>

namespace fs = std::filesystem;

namespace {

std::optional<std::string> ReadJson(const fs::path& path, CReporter& reporter)
{
    if (!IsThere(path, reporter))
        return std::nullopt;
    auto json = ReadContent(path, std::numeric_limits<std::uint64_t>::max());
    if (!json)
        ShowFileError(reporter, kOpenFileError, path);
    return json;
}

/// Saves `library` at `path`, whatever the one there holds. Another program that writes it is waited for.
bool Replace(const fs::path& path, const FormatLibrary& library, const BeforeFormatsChange& before)
{
    const CLibraryLock lock(path);
    const StandingLibrary standing = ReadStanding(path);
    LibraryNotes notes = NotesOf(library.formats);
    if (notes.empty())
        notes = standing.notes.notes; // formats without any notes say nothing of them
    return ReplaceStanding(standing, library, notes, path, before);
}

} // namespace

bool ImportFormats(const FormatsImportOptions& options, CReporter& reporter)
{
    if (options.library && (IsJsonLibrary(*options.library) || IsJsonLibrary(LinkTarget(*options.library)))) {
        ShowFileError(reporter, u"Formats can't be imported into the JSON file %s, only into a library file!",
                      *options.library);
        return false;
    }
    const fs::path& path = options.file;
    const auto json = ReadJson(path, reporter);
    if (!json)
        return false;
    FormatLibrary library;
    if (const auto fault = LibraryFromJson(*json, library)) {
        reporter.ShowError(
            FillMessage(u"Import error! File %s, at %s: %s!", {PathText(path), fault->place, fault->text}));
        return false;
    }
    const fs::path libraryPath = LibraryToWrite(options.library, reporter);
    std::optional<VersionKept> kept;
    BeforeFormatsChange keep;
    if (!options.noVersion)
        keep = [&](const fs::path& standing) { kept = UsersVersions().Keep(standing, u"formats import"); };
    if (Replace(libraryPath, library, keep)) {
        if (kept)
            TellUnlessKept(*kept, libraryPath, reporter);
        return true;
    }
    ShowFileError(reporter, kSaveFileError, libraryPath);
    return false;
}
