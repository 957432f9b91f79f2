#pragma once

#include "cli/ReadOptions.h"

#include <cstdint>
#include <string>
#include <vector>

/// A text for a cell, which is named as the grid counts: row 1 and column 2 are the first that hold data.
struct TypedCell {
    std::int64_t row = 0;
    std::int64_t column = 0;
    std::string text; ///< UTF-8
};

struct SetOptions {
    std::string file;
    ReadOptions read;
    std::vector<TypedCell> cells;
};

/// Puts texts into the cells of a recipe file and saves it in place. False after a failure, then reported: when any
/// text is refused, the first one is, and nothing is written.
bool SetCells(const SetOptions& options, CReporter& reporter);
