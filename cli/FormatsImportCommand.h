#pragma once

#include "library/StandingLibrary.h"
#include "text/Reporter.h"

#include <optional>
#include <string>

struct FormatsImportOptions {
    std::string file;                   ///< JSON, as ExportFormats writes it
    std::optional<std::string> library; ///< path; else the program's own
};

/// Replaces the format library by what a JSON file says. A library that is damaged, or of another version, is kept in a
/// copy beside it (library/LibraryOriginal.h). `before` is called right before a library that is there gets other
/// formats. False after a failure, then reported; the library file is then as it was.
bool ImportFormats(const FormatsImportOptions& options, CReporter& reporter, const BeforeFormatsChange& before = {});
