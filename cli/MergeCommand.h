#pragma once

#include "merge/MergeParams.h"
#include "text/Reporter.h"

#include <cstdint>
#include <filesystem>
#include <optional>

/// A file to merge, and which words of it go where. In words.
struct MergePart {
    std::filesystem::path file;
    std::int32_t readStart = 0;
    std::optional<std::int32_t> length; ///< else all whole words of the file
    std::int32_t place = 0;
};

struct MergeOptions {
    MergePart first;
    MergePart second;
    std::filesystem::path target; ///< gets ".rcp" where it does not end so
    MergedSize size = MergedSize::Words128K;
    bool force = false;     ///< replace an existing target
    bool noVersion = false; ///< does not keep what it overwrites
};

/// Merges two recipe files into a new one. False after a failure, then reported; before the checks have passed nothing
/// is written.
bool MergeRecipes(const MergeOptions& options, CReporter& reporter);
