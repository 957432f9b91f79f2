#include "cli/FormatsExportCommand.h"

#include "disk/File.h"
#include "disk/Replacement.h"
#include "library/LibraryFile.h"
#include "library/LibraryToJson.h"
#include "library/NotesFile.h"
#include "text/FileMessages.h"

#include <span>

namespace fs = std::filesystem;

namespace {

bool WriteFile(const fs::path& path, const std::string& text)
{
    CReplacement file(path);
    return file.IsOpen() && file.Append(std::as_bytes(std::span(text))) && file.Finish();
}

/// Never over the library itself or its notes, whatever name they go by.
bool SaveJson(const fs::path& path, const std::string& json, const fs::path& library, CReporter& reporter)
{
    const bool isOfLibrary = IsSameFile(path, library) || IsSameFile(path, NotesPathOf(library));
    if (!isOfLibrary && WriteFile(path, json))
        return true;
    ShowFileError(reporter, kSaveFileError, path);
    return false;
}

} // namespace

bool ExportFormats(const FormatsExportOptions& options, CStandardOutput& output, CReporter& reporter)
{
    FormatLibrary library;
    const fs::path libraryPath = LibraryToRead(options.library, reporter);
    if (!LoadLibrary(libraryPath, library, reporter))
        return false;
    const std::string json = LibraryToJson(library);
    if (options.file)
        return SaveJson(*options.file, json, libraryPath, reporter);
    output.Write(json);
    return output.Finish(reporter);
}
