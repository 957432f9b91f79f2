#pragma once

#include "files/StoredCells.h"
#include "recovery/VersionStore.h"

#include <filesystem>
#include <optional>
#include <vector>

/// What `version` of `file` holds of cells laid out as `layout`. Not known when the version cannot be had, the type of
/// the file is none, or memory does not suffice. Reports nothing and never writes.
CStoredCells ReadVersionCells(const CVersionStore& store, const std::filesystem::path& file, const Version& version,
                              const CRecipeRows& layout);

/// Cells as the file holds them now, and as a version of it holds them.
struct VersionDifferences {
    CStoredCells now;
    CStoredCells then;
    std::vector<CellPlace> places; ///< of those that differ, in ascending order
};

/// How the cells of `now`, which `file` holds, were in `version`. Nothing when one of both is not known.
std::optional<VersionDifferences> DifferencesFrom(const CStoredCells& now, const CVersionStore& store,
                                                  const std::filesystem::path& file, const Version& version);
