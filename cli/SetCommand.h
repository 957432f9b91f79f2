#pragma once

#include "cli/CellOrders.h"
#include "cli/ReadOptions.h"
#include "cli/StandardStreams.h"

#include <filesystem>
#include <vector>

struct SetOptions {
    std::filesystem::path file;
    ReadOptions read;
    std::vector<CellOrder> orders;
    std::vector<CellCondition> conditions;
    bool onlyEdited = false; ///< saves the cells that were set and no other byte
    bool dryRun = false;     ///< tells what the save would change, and never writes
    bool noVersion = false;  ///< does not keep what it overwrites
};

/// Gives cells of a recipe file what the orders say and saves it in place. False after a failure, then reported: when
/// any order is refused, the first one is, and nothing is written. After a save of all cells `reporter` is told how
/// many values changed that were not set, if any.
///
/// As a dry run it prints the changes that the save would make (ChangeLines.h) instead, and is refused where the save
/// would be.
bool SetCells(const SetOptions& options, CStandardOutput& output, CReporter& reporter, CProgress& progress);
