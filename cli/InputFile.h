#pragma once

#include "text/Reporter.h"

#include <filesystem>

/// Whether there is anything at `path`; reported when not.
bool IsThere(const std::filesystem::path& path, CReporter& reporter);
