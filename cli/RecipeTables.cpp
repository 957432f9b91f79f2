#include "cli/RecipeTables.h"

#include "cli/InputFile.h"
#include "cli/OpenRecipe.h"

namespace fs = std::filesystem;

std::optional<RecipeTables> TablesOf(const std::string& file, const ReadOptions& options, CReporter& reporter)
{
    const fs::path path(file);
    if (!IsThere(path, reporter))
        return std::nullopt;
    const auto type = KnownTypeOf(path, reporter);
    if (!type)
        return std::nullopt;
    const auto settings = SettleReadSettings(options, reporter);
    if (!settings)
        return std::nullopt;
    return RecipeTables{path, *type, {MakeTable(settings->format, settings->startAddress, settings->rowCount)}};
}
