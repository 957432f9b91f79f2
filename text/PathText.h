#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// `path` as text for a message; what is no valid text in it shows as U+FFFD. Never throws.
std::u16string PathText(const std::filesystem::path& path);

/// The path that `name` is, in UTF-8 where the system keeps names as text, else byte for byte. A path that is made of
/// `name` itself takes it for text of the C library's encoding there.
std::filesystem::path PathOfUtf8(std::string_view name);
