#pragma once

#include "cli/StandardStreams.h"

#include <optional>
#include <string>

struct FormatsListOptions {
    std::optional<std::string> library; ///< path; else the program's own
};

/// Prints a line a format: name, item count and words a row, a TAB between them. False after a failure, then reported.
bool ListFormats(const FormatsListOptions& options, CStandardOutput& output, CReporter& reporter);
