#pragma once

#include "cli/ReadOptions.h"
#include "cli/StandardStreams.h"

#include <filesystem>

enum class ShowForm {
    Table, ///< aligned columns
    Json,  ///< one object
    Lines, ///< an object a row
};

struct ShowOptions {
    std::filesystem::path file;
    ReadOptions read;
    ShowForm form = ShowForm::Table;
};

/// Prints the rows of a recipe file: as a table, "ID", "RW_Addr" and the columns' titles, then a line a row; or as one
/// JSON object; or as JSON Lines, where each cell has its item's unit, range and names of the value and its bits, too.
/// Never writes a file, and keeps no more of it than a piece, however many rows there are. False after a failure, then
/// reported.
bool ShowRecipe(const ShowOptions& options, CStandardOutput& output, CReporter& reporter);
