#pragma once

#include "cli/CellOrders.h"
#include "cli/ReadOptions.h"

#include <string>
#include <vector>

struct SetOptions {
    std::string file;
    ReadOptions read;
    std::vector<CellOrder> orders;
    std::vector<CellCondition> conditions;
};

/// Gives cells of a recipe file what the orders say and saves it in place. False after a failure, then reported: when
/// any order is refused, the first one is, and nothing is written.
bool SetCells(const SetOptions& options, CReporter& reporter);
