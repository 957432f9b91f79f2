#pragma once

#include "cli/StandardStreams.h"

#include <filesystem>
#include <optional>

struct FormatsExportOptions {
    std::optional<std::filesystem::path> library; ///< else the program's own
    std::optional<std::filesystem::path> file;    ///< the JSON file; else standard output
};

/// Writes the format library as JSON. False after a failure, then reported.
bool ExportFormats(const FormatsExportOptions& options, CStandardOutput& output, CReporter& reporter);
