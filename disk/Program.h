#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// Runs the program at `path` with `arguments` as they stand, and waits for its end. It has this program's environment,
/// working folder and standard streams. Its exit status; nothing when it cannot be started, or something ended it.
std::optional<int> RunProgram(const std::filesystem::path& path, const std::vector<std::string>& arguments);

/// The program of that name beside this one, whether it is there or not.
std::filesystem::path SiblingProgram(const std::string& name);
