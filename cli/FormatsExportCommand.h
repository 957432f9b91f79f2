#pragma once

#include "cli/StandardStreams.h"

#include <optional>
#include <string>

struct FormatsExportOptions {
    std::optional<std::string> library; ///< path; else the program's own
    std::optional<std::string> file;    ///< path of the JSON file; else standard output
};

/// Writes the format library as JSON. False after a failure, then reported.
bool ExportFormats(const FormatsExportOptions& options, CStandardOutput& output, CReporter& reporter);
