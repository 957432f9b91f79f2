#include "library/LibraryFile.h"

#include "disk/File.h"
#include "library/LibraryPlace.h"
#include "text/FileMessages.h"

namespace fs = std::filesystem;

fs::path LibraryToRead(const std::optional<std::string>& given, CReporter& reporter)
{
    return given ? fs::path(*given) : ProgramLibraryToRead(ExecutablePath(), reporter);
}

fs::path LibraryToWrite(const std::optional<std::string>& given, CReporter& reporter)
{
    return given ? fs::path(*given) : ProgramLibraryPath(ExecutablePath(), reporter);
}

bool LoadLibrary(const fs::path& path, FormatLibrary& library, CReporter& reporter)
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
