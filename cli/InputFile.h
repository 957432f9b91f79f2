#pragma once

#include "files/FileType.h"
#include "text/Reporter.h"

#include <filesystem>
#include <optional>

/// Whether there is anything at `path`; reported when not.
bool IsThere(const std::filesystem::path& path, CReporter& reporter);

/// The type that goes with the extension of `path`; nothing, and then reported, for an unknown one.
std::optional<FileType> KnownTypeOf(const std::filesystem::path& path, CReporter& reporter);
