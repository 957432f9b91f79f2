#include "cli/InputFile.h"

#include "files/RecipeMessages.h"
#include "text/FileMessages.h"

#include <system_error>

bool IsThere(const std::filesystem::path& path, CReporter& reporter)
{
    std::error_code error;
    if (std::filesystem::exists(path, error))
        return true;
    ShowFileError(reporter, u"Open error! %s doesn't exit!", path);
    return false;
}

std::optional<FileType> KnownTypeOf(const std::filesystem::path& path, CReporter& reporter)
{
    const auto type = FileTypeOf(path);
    if (!type)
        ShowFileError(reporter, kUnknownTypeError, path);
    return type;
}
