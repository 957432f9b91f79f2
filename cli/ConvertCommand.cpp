#include "cli/ConvertCommand.h"

#include "cli/KeptVersions.h"
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

bool ConvertRecipe(const ConvertOptions& options, CReporter& reporter, CProgress& progress)
{
    const CVersionStore versions = UsersVersions();
    CRecipeDocument document;
    if (!options.noVersion)
        document.KeepVersionsIn(versions, u"convert");
    if (!OpenRecipe(document, options.source, options.read, reporter))
        return false;
    const fs::path& target = options.target;
    const auto type = KnownTypeOf(target, reporter);
    if (!type || !IsAnotherFile(target, document.Path(), reporter) || !HoldForWriting(document, target, reporter) ||
        document.ReadOnly(reporter, progress) == CRecipeDocument::Reading::Failed)
        return false;
    const SaveResult result = document.Replace(*type, target, reporter);
    if (const auto& version = document.LastSave().version; version && (result.isSaved || result.mayHoldOldAndNew))
        TellUnlessKept(*version, target, reporter);
    return result.isSaved;
}
