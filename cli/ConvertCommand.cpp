#include "cli/ConvertCommand.h"

#include "cli/OpenRecipe.h"
#include "disk/File.h"
#include "text/FileMessages.h"

namespace fs = std::filesystem;

namespace {

/// What is written would take words away from what is read.
bool IsAnotherFile(const fs::path& target, const fs::path& source, CReporter& reporter)
{
    if (!IsSameFile(target, source))
        return true;
    ShowFileError(reporter, u"The file %s can't be converted into itself!", target);
    return false;
}

} // namespace

bool ConvertRecipe(const ConvertOptions& options, CReporter& reporter)
{
    CRecipeDocument document;
    if (!OpenRecipe(document, options.source, options.read, reporter))
        return false;
    const fs::path target(options.target);
    const auto type = KnownTypeOf(target, reporter);
    CNoProgress progress;
    return type && IsAnotherFile(target, document.Path(), reporter) && HoldForWriting(document, target, reporter) &&
           document.ReadOnly(reporter, progress) != CRecipeDocument::Reading::Failed &&
           document.Replace(*type, target, reporter).isSaved;
}
