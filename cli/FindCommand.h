#pragma once

#include "cli/ExitCode.h"
#include "cli/ReadOptions.h"
#include "cli/StandardStreams.h"
#include "files/Progress.h"

#include <filesystem>
#include <optional>
#include <string>

struct FindOptions {
    std::filesystem::path file;
    std::string text;                ///< UTF-8
    std::optional<std::string> item; ///< the title of the columns to look in; else all of them
    bool isPart = false;             ///< cells that contain the text are found, too
    bool anywhere = false;           ///< the text is a number, to be found in the whole file
    ReadOptions read;
};

/// Prints a line for each cell that shows the text or, anywhere, for each place where the number stands as a value of
/// some type, scaling and order of its words. Keeps no more of the file than a piece, and never writes. kNothingFound
/// when there is none; what fails was reported.
ExitCode FindText(const FindOptions& options, CStandardOutput& output, CReporter& reporter, CProgress& progress);
