#pragma once

#include "cli/CellChoice.h"
#include "cli/ReadOptions.h"
#include "files/Progress.h"
#include "sheet/SheetPdf.h"
#include "text/Reporter.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

struct SheetOptions {
    std::filesystem::path file;
    std::filesystem::path output;
    ReadOptions read;
    std::optional<RowChoice> rows;    ///< else all
    std::optional<std::string> since; ///< a file, or the beginning of the time of a version; empty for the newest one
    bool isLetter = false;            ///< else A4
    std::optional<std::string> title;
};

/// What makes PDF: `pdf`, or where that is null the program vantor-sheet beside this one, which gets `arguments`, those
/// that this program got.
struct PdfMaking {
    CSheetPdf* pdf = nullptr;
    std::vector<std::string> arguments;
};

/// Writes a sheet of a recipe file, which it never writes. False after a failure, then reported.
bool MakeSheet(const SheetOptions& options, const PdfMaking& making, CReporter& reporter, CProgress& progress);
