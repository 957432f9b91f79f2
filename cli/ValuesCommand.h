#pragma once

#include "cli/ExitCode.h"
#include "cli/ReadOptions.h"
#include "cli/StandardStreams.h"
#include "files/Progress.h"

#include <filesystem>
#include <vector>

struct ValuesOptions {
    std::vector<std::filesystem::path> files;
    ReadOptions read;
};

/// Prints the rows of recipe files, a row a line, as JSON that docs/command-line.md describes. kTrouble, and then
/// reported, when a file cannot be read, which keeps none of the others from being printed, or the output cannot be
/// written. Never writes a file, and keeps a piece of one, however many rows there are.
ExitCode PrintValues(const ValuesOptions& options, CStandardOutput& output, CReporter& reporter, CProgress& progress);
