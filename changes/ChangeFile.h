#pragma once

#include "changes/ChangeList.h"
#include "files/Outcome.h"
#include "files/Progress.h"
#include "text/Reporter.h"

#include <filesystem>

/// Writes the changes as JSON Lines, header first, to the file at `path`, which takes the old one's place when it is
/// complete (CReplacement). Failed is reported once; the old file is then as it was, or there is none, as it is when
/// the work was given up. A list that grows shorter meanwhile fails.
Outcome SaveChanges(const CChangeList& changes, const std::filesystem::path& path, CReporter& reporter,
                    CProgress& progress);
