#include "cli/ConvertCommand.h"

#include "cli/RecipeSource.h"

bool ConvertRecipe(const ConvertOptions& options, CReporter& reporter)
{
    const auto source = FindSource(options.source, options.read, reporter);
    if (!source)
        return false;
    const std::filesystem::path target(options.target);
    const auto type = KnownTypeOf(target, reporter);
    CRecipeRows rows;
    if (!type || !ReadRows(*source, rows, reporter) ||
        !PrepareSaveAs(*type, target, source->settings.startAddress, reporter))
        return false;
    return SaveRows(*type, rows, target, reporter);
}
