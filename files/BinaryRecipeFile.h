#pragma once

#include "files/Outcome.h"
#include "files/Progress.h"
#include "files/RecipeRows.h"
#include "files/WriteTarget.h"
#include "text/Reporter.h"

#include <filesystem>

// The flat recipe file, ".rcp": words 0 to N - 1, each little-endian, word address a at byte 2a. No header, trailer or
// checksum; N is what the file's size gives.

/// Fills `rows` from the file at `path`, in one read of the stretch they show. What lies past the end of the file shows
/// as the codec shows missing bytes.
///
/// An empty `path` with `newFile` set makes a new document. Failed, with every cell empty, when the file cannot be
/// opened or read; then reported: "Open file %s error!". GivenUp leaves every cell empty, too.
Outcome ReadBinaryRecipe(CRecipeRows& rows, const std::filesystem::path& path, bool newFile, CReporter& reporter,
                         CProgress& progress);

/// Writes `rows` into the file of `target`, which is created when missing and never truncated: every cell is coded
/// first, then the stretch goes out in one positioned write. Words before and after it stay as they are; a gap before
/// it reads as zero bytes.
///
/// Not saved when the file cannot be opened or written (then reported: "Can't save file %s,please check file or your
/// disk!") or the work was given up before anything was written. Room on the disk is set aside before the first old
/// word is touched; a file that then cannot be written is cut back to its old length, a new one is removed. What was
/// saved goes to `saved`, unless that is null.
SaveResult SaveBinaryRecipe(const CRecipeRows& rows, const WriteTarget& target, CReporter& reporter,
                            CProgress& progress, CByteBuffer* saved = nullptr);

/// The same, with the failure left for the caller to report.
Outcome WriteBinaryRecipe(const CRecipeRows& rows, const WriteTarget& target, CProgress& progress,
                          CByteBuffer* saved = nullptr);
