#pragma once

#include "cli/StandardStreams.h"

#include <filesystem>
#include <optional>

struct FormatsListOptions {
    std::optional<std::filesystem::path> library; ///< else the program's own
};

/// Prints a line a format: name, item count and words a row, a TAB between them. False after a failure, then reported.
bool ListFormats(const FormatsListOptions& options, CStandardOutput& output, CReporter& reporter);
