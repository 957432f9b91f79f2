#pragma once

#include "files/Outcome.h"
#include "files/Progress.h"
#include "files/SavePlan.h"
#include "files/StoredCells.h"
#include "files/WriteTarget.h"
#include "text/Reporter.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

// A save of the edited cells alone: their words, or fields, and no other byte of the file.

/// Writes the edited cells of `rows` into the file of `target`, of which `stored` tells type and cells; `stored`
/// follows what was written. Other bytes stay; where a flat file ends before an edited cell, the words up to it become
/// zeros. Without an edited cell nothing is written, and that counts as saved.
///
/// Not saved as a save of all cells is not (RecipeFile.h), reported in the same words; a file that is missing is not
/// made. Not saved either, and reported with the reason, when a table of texts is in a form in which its fields cannot
/// be written one by one (CsvEdits.h).
SaveResult SaveEdited(const CRecipeRows& rows, CStoredCells& stored, const WriteTarget& target, CReporter& reporter,
                      CProgress& progress);

/// What SaveEdited changes, in the order of the cells: as a plan of a save has it, but of edited cells alone.
std::vector<PlannedChange> PlanOfEdited(const CRecipeRows& rows, const CStoredCells& stored);

/// The words that become zeros then, since they lie between the end of the file and an edited cell.
std::vector<ZeroWords> ZeroWordsOfEdited(const CRecipeRows& rows, const CStoredCells& stored);

/// How many bytes the file at `path` holds then; of a paged one those of its logical content. Never writes. Nothing
/// where a table of texts would not be saved, and then reported as by SaveEdited.
std::optional<std::uint64_t> FileBytesAfterEdited(const CRecipeRows& rows, const CStoredCells& stored,
                                                  const std::filesystem::path& path, CReporter& reporter,
                                                  CProgress& progress);
