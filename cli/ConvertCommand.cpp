#include "cli/ConvertCommand.h"

#include "cli/RecipeSource.h"

#include <system_error>

namespace fs = std::filesystem;

namespace {

/// Saves `rows` to `target`, of which nothing is left after a failure unless it was there before.
bool SaveAs(FileType type, const CRecipeRows& rows, std::int32_t startAddress, const fs::path& target,
            CReporter& reporter)
{
    std::error_code ignored;
    const bool isNew = fs::symlink_status(target, ignored).type() == fs::file_type::not_found; // for certain
    const bool isSaved = PrepareSaveAs(type, target, startAddress, reporter) && SaveRows(type, rows, target, reporter);
    if (isNew && !isSaved)
        fs::remove(target, ignored);
    return isSaved;
}

} // namespace

bool ConvertRecipe(const ConvertOptions& options, CReporter& reporter)
{
    const auto source = FindSource(options.source, options.read, reporter);
    if (!source)
        return false;
    const fs::path target(options.target);
    const auto type = KnownTypeOf(target, reporter);
    CRecipeRows rows;
    return type && ReadRows(*source, rows, reporter) &&
           SaveAs(*type, rows, source->settings.startAddress, target, reporter);
}
