#pragma once

#include <filesystem>
#include <string>
#include <system_error>

/// `path` as text for a message; what is no valid text in it shows as U+FFFD. Never throws.
std::u16string PathText(const std::filesystem::path& path);

/// The system's own words for `error`, in the user's language where the system has them in it.
std::u16string ReasonText(std::error_code error);
