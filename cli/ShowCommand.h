#pragma once

#include "cli/ReadOptions.h"
#include "cli/StandardStreams.h"

#include <string>

struct ShowOptions {
    std::string file;
    ReadOptions read;
    bool json = false;
};

/// Prints the rows of a recipe file: as a table, "ID", "RW_Addr" and the columns' titles, then a line a row; or as one
/// JSON object. Never writes a file, and keeps no more of it than a piece, however many rows there are. False after a
/// failure, then reported.
bool ShowRecipe(const ShowOptions& options, CStandardOutput& output, CReporter& reporter);
