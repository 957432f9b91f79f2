#pragma once

#include "cli/ExitCode.h"
#include "cli/ReadOptions.h"
#include "cli/StandardStreams.h"
#include "files/Progress.h"

#include <filesystem>

struct TextconvOptions {
    std::filesystem::path file;
    ReadOptions read;
};

/// Prints a recipe file as lines that tools for texts can compare: a line a value, the words outside the tables, and,
/// where the same values can stand in other bytes, a checksum of the file. Two files of one name print the same lines
/// only when they hold the same bytes. Keeps no more of the file than a piece, and never writes.
///
/// What fails is the only line printed, since a failure would stop the tool that asked for the text. So this is kDone,
/// but where the output itself cannot be written.
ExitCode PrintAsText(const TextconvOptions& options, CStandardOutput& output, CReporter& reporter, CProgress& progress);
