#pragma once

#include "cli/ExitCode.h"
#include "cli/ReadOptions.h"
#include "cli/StandardStreams.h"
#include "files/Progress.h"

#include <filesystem>
#include <vector>

struct CheckOptions {
    std::vector<std::filesystem::path> files;
    ReadOptions read;
    bool asLines = false;       ///< of JSON
    bool failOnWarning = false; ///< a warning counts as an error does
};

/// Prints what there is to find in recipe files (changes/Findings.h): a line a finding, but as text for values that a
/// save would rewrite one a column. kFailed when an error was found; kTrouble, and then reported, when it cannot be
/// told how a file is to be read, or the output cannot be written. Goes on with the other files. Never writes a file,
/// and keeps a piece of one, however many rows there are.
ExitCode CheckRecipes(const CheckOptions& options, CStandardOutput& output, CReporter& reporter, CProgress& progress);
