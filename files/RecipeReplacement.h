#pragma once

#include "files/FileType.h"
#include "files/Outcome.h"
#include "files/Progress.h"
#include "files/RecipeRows.h"
#include "text/Reporter.h"

#include <cstdint>
#include <filesystem>

/// Saves `rows` as the file at `path` and leaves there what PrepareSaveAs and SaveRecipe leave together, but all at
/// once: the file is built beside the old one, with the old one's words where they stay, and takes its place when it is
/// complete (CReplacement). The disk needs room for both until then.
///
/// Not saved after a failure, reported exactly once in the words of those two: the old file is then as it was, or there
/// is still none, as when the work was given up. Only where it could not be replaced, and writing over it failed
/// part-way, may it hold old and new.
SaveResult ReplaceRecipe(FileType type, const CRecipeRows& rows, const std::filesystem::path& path,
                         std::int32_t startAddress, CReporter& reporter, CProgress& progress);

/// As ReplaceRecipe, but leaves at `path` what saving `rows` into the file at `original`, of the same type, would make
/// of that one.
SaveResult SaveRecipeCopy(FileType type, const CRecipeRows& rows, const std::filesystem::path& original,
                          const std::filesystem::path& path, CReporter& reporter, CProgress& progress);
