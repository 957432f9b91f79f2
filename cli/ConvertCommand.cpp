#include "cli/ConvertCommand.h"

#include "cli/RecipeSource.h"
#include "disk/File.h"
#include "files/RecipeMessages.h"
#include "files/RecipeReplacement.h"

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

/// A format without words lays out no rows. To save none would empty the target, or put zeros over it.
bool HasRows(const CRecipeRows& rows, FileType type, const fs::path& target, CReporter& reporter)
{
    if (rows.RowCount() > 0)
        return true;
    ShowFileError(reporter, SaveErrorOf(type), target);
    return false;
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
    return type && IsAnotherFile(target, source->path, reporter) && ReadRows(*source, rows, reporter) &&
           HasRows(rows, *type, target, reporter) &&
           ReplaceRecipe(*type, rows, target, source->settings.startAddress, reporter).isSaved;
}
