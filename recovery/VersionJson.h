#pragma once

#include <nlohmann/json.hpp>

#include <filesystem>

/// The JSON object in the small file at `path`, which belongs to the user; an empty object where there is none, and
/// where it is damaged, too large or another user's.
nlohmann::json ReadSmallJson(const std::filesystem::path& path);
