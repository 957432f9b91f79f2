#pragma once

#include "recovery/VersionStore.h"
#include "text/Reporter.h"

#include <filesystem>
#include <optional>
#include <string>

/// The one version of `file` whose time begins with `time`, the newest where that is empty; nothing, and then reported,
/// when there is none, or more.
std::optional<Version> ChosenVersion(const CVersionStore& store, const std::filesystem::path& file,
                                     const std::string& time, CReporter& reporter);
