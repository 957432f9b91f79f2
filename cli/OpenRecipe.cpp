#include "cli/OpenRecipe.h"

#include "cli/RecipeTables.h"
#include "files/RecipeMessages.h"
#include "text/FileMessages.h"

#include <utility>

namespace fs = std::filesystem;

bool OpenRecipe(CRecipeDocument& document, const fs::path& file, const ReadOptions& options, CReporter& reporter)
{
    auto settings = SettingsOf(file, options, reporter);
    if (!settings)
        return false;
    if (!IsThere(file, reporter))
        return false;
    const auto type = KnownTypeOf(file, reporter);
    if (!type)
        return false;
    document.StartOpen(file, type);
    document.TakeSettings(std::move(*settings));
    return true;
}

bool OpenAndRead(CRecipeDocument& document, const fs::path& file, const ReadOptions& options, CReporter& reporter,
                 CProgress& progress)
{
    if (!OpenRecipe(document, file, options, reporter))
        return false;
    return document.ReadOnly(reporter, progress) != CRecipeDocument::Reading::Failed;
}

bool HoldForWriting(CRecipeDocument& document, const fs::path& path, CReporter& reporter)
{
    if (document.Hold(path) != CFileLock::State::Busy)
        return true;
    ShowFileError(reporter, kBusyFileError, path);
    return false;
}
