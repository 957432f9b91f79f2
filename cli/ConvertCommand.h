#pragma once

#include "cli/ReadOptions.h"
#include "files/Progress.h"
#include "text/Reporter.h"

#include <filesystem>

struct ConvertOptions {
    std::filesystem::path source;
    std::filesystem::path target;
    ReadOptions read;
    bool noVersion = false; ///< does not keep what it overwrites
};

/// Reads the rows of one recipe file and saves them as another, by its type, all at once (files/RecipeReplacement.h). A
/// target that is the source itself, by whatever name or link, is refused, and so is a format without words, which lays
/// out no rows. False after a failure, then reported; the target is as it was, or missing as before.
bool ConvertRecipe(const ConvertOptions& options, CReporter& reporter, CProgress& progress);
