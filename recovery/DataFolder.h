#pragma once

#include <filesystem>

/// Vantor's own folder among what programs keep for this user; it may not exist yet. Empty when the platform does not
/// tell it: then nothing is kept.
std::filesystem::path OwnDataFolder();
