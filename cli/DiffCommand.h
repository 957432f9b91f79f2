#pragma once

#include "cli/ExitCode.h"
#include "cli/ReadOptions.h"
#include "cli/StandardStreams.h"
#include "files/Progress.h"
#include "text/Reporter.h"

#include <filesystem>

/// What `diff` is asked for.
struct DiffOptions {
    std::filesystem::path file;
    std::filesystem::path other;
    ReadOptions read;
    bool json = false;  ///< records in the place of lines for people
    bool patch = false; ///< records that `patch` makes the other file of
};

/// Prints in what the files differ, the second as the new one. Never writes. Throws std::bad_alloc.
ExitCode DiffCommand(const DiffOptions& options, CStandardOutput& output, CReporter& reporter, CProgress& progress);
