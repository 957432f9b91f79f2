#pragma once

#include "document/ReadSettings.h"
#include "files/Progress.h"
#include "sheet/SheetMaking.h"
#include "text/Reporter.h"

#include <filesystem>
#include <optional>
#include <string>

/// What the changes of a sheet are told since.
struct SheetSince {
    std::filesystem::path path; ///< of the file, or of the copy that a version is
    std::u16string name;
};

/// The file at `since`, else the version of `file` whose time begins so. Nothing, and then reported, when there is
/// neither, or only changes of the version were kept.
std::optional<SheetSince> FindSince(const std::string& since, const std::filesystem::path& file, CReporter& reporter);

/// Hands what changed since then in `file`, as `vantor-cli diff` prints it, to `changes`. False after a failure, then
/// reported.
bool CollectChanges(const SheetSince& since, const std::filesystem::path& file, const ReadSettings& settings,
                    CSheetChanges& changes, CReporter& reporter, CProgress& progress);
