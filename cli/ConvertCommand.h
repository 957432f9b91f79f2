#pragma once

#include "cli/ReadSettings.h"

#include <string>

struct ConvertOptions {
    std::string source;
    std::string target;
    ReadOptions read;
};

/// Reads the rows of one recipe file and saves them as another, by its type; an existing one is written to as the type
/// has it. Source and target may be the same file. False after a failure, then reported.
bool ConvertRecipe(const ConvertOptions& options, CReporter& reporter);
