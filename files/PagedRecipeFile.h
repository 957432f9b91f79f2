#pragma once

#include "files/FileType.h"
#include "files/Outcome.h"
#include "files/PagedLayout.h"
#include "files/Progress.h"
#include "files/RecipeRows.h"
#include "files/WriteTarget.h"
#include "text/Reporter.h"

#include <filesystem>

// Rows out of and into the paged recipe files (PagedFile.h). `type` is FileType::Erp or FileType::Frp.

constexpr PagedKind KindOf(FileType type)
{
    return type == FileType::Erp ? kErp : kFrp;
}

/// Fills `rows` from the file at `path`, as the window does. What it does not hold reads as zero bytes.
///
/// kept: this reading needs a file that can be written, too, and makes missing tables and pages in one that is longer
/// than its flat part. When it cannot be opened so, nothing is shown and every cell is that of the words 0x0030,
/// 0x0000: an integer shows "48", a hexadecimal value "30"; CRecipeRows::ShowsTheSameEverywhere tells.
///
/// Failed, with every cell empty, when the file is damaged or cannot be read; then reported: "Open file %s error!".
/// GivenUp leaves every cell empty, too.
Outcome ReadPaged(CRecipeRows& rows, const std::filesystem::path& path, FileType type, CReporter& reporter,
                  CProgress& progress);

/// The same, but never writes: the file need not be writable, and one that cannot be opened is a failure like any
/// other.
Outcome ReadPagedOnly(CRecipeRows& rows, const std::filesystem::path& path, FileType type, CReporter& reporter,
                      CProgress& progress);

/// Writes `rows` into the file of `target`. Every cell is coded first; words before and after the stretch stay as they
/// are.
///
/// kept: a file that is missing or that one may not write is left as it is without a word; `isLeftOut` says so.
///
/// Not saved either when the rows are those of a file that could not be opened to be read, or when the file cannot be
/// opened for another reason, is damaged or a write fails (then reported: "Can't save file %s,please check file or your
/// disk!") or the work was given up before anything was written. A damaged file is left as it is, and so is one for
/// which the disk has no room. What was saved goes to `saved`, unless that is null.
SaveResult SavePaged(const CRecipeRows& rows, const WriteTarget& target, FileType type, CReporter& reporter,
                     CProgress& progress, CByteBuffer* saved = nullptr);

/// The same, with the failure left for the caller to report; a file that cannot be opened is one, too.
Outcome WritePaged(const CRecipeRows& rows, const std::filesystem::path& path, FileType type, CProgress& progress);
