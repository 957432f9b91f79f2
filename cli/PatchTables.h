#pragma once

#include "changes/ChangeRecord.h"
#include "cli/RecipeTables.h"

#include <optional>
#include <string>

/// The tables of the recipe file that a patch is for: those that the command line names; else those that `header`
/// names, of which one whose format the library has not has no columns; else as TablesOf. Nothing, and then reported,
/// when the file is missing, its type is unknown, the library cannot be opened or a setting is not possible.
std::optional<RecipeTables> TablesForPatch(const std::string& file, const ChangeHeader& header,
                                           const ReadOptions& options, CReporter& reporter);
