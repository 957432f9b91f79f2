#pragma once

#include "files/FieldTable.h"
#include "files/Outcome.h"
#include "files/Progress.h"
#include "files/RecipeRows.h"
#include "text/Reporter.h"

#include <cstdint>
#include <filesystem>
#include <optional>

// The text table, ".csv": FF FE, then UTF-16 text, low byte first. A line a row, ended by CR LF; in it the cells' texts
// as they are shown, each between double quotes, a TAB between two of them. There are no titles and no addresses.

/// Fills `rows` from the table at `path`: a line a row, from the first line on. A field that is missing shows "0".
///
/// kept: a field that a TAB ends loses all double quotes at both ends, the last of a line keeps them. A file that is
/// not UTF-16 (neither is its first byte FF nor its second FE) is read in the ANSI code page: its fields end at commas
/// and keep their quotes, and a line of more than 2047 bytes counts as several.
///
/// Failed, with every cell empty, when the file cannot be opened or read; then reported: "Can't open file %s!". GivenUp
/// leaves every cell empty, too.
Outcome ReadCsv(CRecipeRows& rows, const std::filesystem::path& path, CReporter& reporter, CProgress& progress);

/// Writes `rows` as the table at `path`, which is created or replaced as a whole.
///
/// Not saved when the file cannot be written (then reported: "Save file %s failed!") or the work was given up. The old
/// file is then as it was, unless it could not be replaced (Replacement.h) and writing over it failed part-way.
///
/// `shown` takes the fields as reading the saved file shows them; nothing when it was not saved or there is no memory
/// for them, which is no failure of the save.
SaveResult SaveCsv(const CRecipeRows& rows, const std::filesystem::path& path, CReporter& reporter, CProgress& progress,
                   std::optional<CFieldTable>* shown = nullptr);

/// How many bytes SaveCsv writes for `rows`. Goes through all texts.
std::uint64_t CsvBytes(const CRecipeRows& rows);
