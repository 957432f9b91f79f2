#pragma once

#include <filesystem>
#include <string>

/// `path` as text for a message; what is no valid text in it shows as U+FFFD. Never throws.
std::u16string PathText(const std::filesystem::path& path);
