#pragma once

#include "cli/ExitCode.h"
#include "cli/ReadOptions.h"
#include "cli/StandardStreams.h"
#include "text/Reporter.h"

#include <filesystem>
#include <optional>

/// What `patch` is asked for.
struct PatchOptions {
    std::filesystem::path file;
    std::optional<std::filesystem::path> patch; ///< file of the records; else standard input
    ReadOptions read;
    bool reverse = false;
    bool dryRun = false;
    bool noVersion = false;
};

/// Makes the changes of a patch in a file: all of them, or none where an old value is another. Throws std::bad_alloc.
ExitCode PatchCommand(const PatchOptions& options, CStandardOutput& output, CReporter& reporter);
