#pragma once

#include "library/StandingLibrary.h"
#include "text/Reporter.h"

#include <filesystem>
#include <optional>

struct FormatsImportOptions {
    std::filesystem::path file;                   ///< JSON, as ExportFormats writes it
    std::optional<std::filesystem::path> library; ///< else the program's own
    bool noVersion = false;                       ///< does not keep what it overwrites
};

/// Replaces the format library by what a JSON file says. A library that is damaged, or of another version, is kept in a
/// copy beside it (library/LibraryOriginal.h). What is there is kept as an earlier version right before it gets
/// other formats. A library in JSON is refused. False after a failure, then reported; the library file is then as it
/// was.
bool ImportFormats(const FormatsImportOptions& options, CReporter& reporter);
