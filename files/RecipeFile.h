#pragma once

#include "files/FileType.h"
#include "files/Outcome.h"
#include "files/Progress.h"
#include "files/RecipeRows.h"
#include "files/StoredCells.h"
#include "files/WriteTarget.h"
#include "text/Reporter.h"

#include <cstdint>
#include <filesystem>
#include <optional>

/// Fills `rows` from the file at `path` in the given type. With `newFile` and an empty `path`, a flat file's rows are
/// those of a new document. A number that is none of the four types reads nothing, and that is Done.
///
/// - Done: the rows are filled. kept: even when a paged file could not be opened; CRecipeRows::ShowsTheSameEverywhere
///   tells (PagedRecipeFile.h).
/// - Failed: every cell is empty, and the failure was reported here, exactly once and in the type's own words.
/// - GivenUp: every cell is empty, because `progress` had the work end, and nothing was reported.
Outcome ReadRecipe(FileType type, CRecipeRows& rows, const std::filesystem::path& path, bool newFile,
                   CReporter& reporter, CProgress& progress);

/// As ReadRecipe for an existing file, but never writes: a paged file need not be writable, gets no pages, and one that
/// cannot be opened is Failed, too, and reported.
Outcome ReadRecipeOnly(FileType type, CRecipeRows& rows, const std::filesystem::path& path, CReporter& reporter,
                       CProgress& progress);

/// Writes `rows` to `target` in the given type; a table of texts takes the place of the file there. Not saved after a
/// failure, reported exactly once in the type's own words, or when the work was given up. kept: a paged file that is
/// missing or that one may not write is left as it is, and nothing is reported (PagedRecipeFile.h); PrepareSaveAs
/// creates one. What was saved goes to `saved`, unless that is null.
SaveResult SaveRecipe(FileType type, const CRecipeRows& rows, const WriteTarget& target, CReporter& reporter,
                      CProgress& progress, SavedContent* saved = nullptr);

/// What the file at `path` holds of cells laid out as `layout`; never writes, and reports nothing. Not known when the
/// file cannot be read, or memory does not suffice.
CStoredCells ReadStoredCells(const CRecipeRows& layout, FileType type, const std::filesystem::path& path);

/// How many bytes the file at `path` holds: its size, or of a paged file that of its logical content, up to the end of
/// its last page that is there. Never writes. Nothing when it cannot be read.
std::optional<std::uint64_t> LogicalBytes(FileType type, const std::filesystem::path& path);

/// Makes `path` ready to be saved to under a new name.
///
/// ".rcp": with a start address other than 0 the file is created anew and filled with `startAddress` zero bytes; kept:
/// one byte a word of the address, not two. False, reported ("Open %s failed ,It can't save!"), when it cannot be
/// created.
/// ".erp", ".frp": the file is created empty when it is missing. False, reported ("Can't open the file that need
/// save!"), when it cannot be opened or created. ".csv": nothing to do.
bool PrepareSaveAs(FileType type, const std::filesystem::path& path, std::int32_t startAddress, CReporter& reporter);
