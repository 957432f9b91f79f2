#pragma once

#include "merge/MergeParams.h"

#include <CLI/CLI.hpp>

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

// Options as CLI11 does not read them by itself: a number is always decimal ("010" is ten), and an empty text is a
// text. What they fill must live until the command line is parsed.

/// A path, in the encoding of ProgramArguments.
CLI::Option* AddPath(CLI::App& command, const std::string& name, std::filesystem::path& path,
                     const std::string& description);

CLI::Option* AddPath(CLI::App& command, const std::string& name, std::optional<std::filesystem::path>& path,
                     const std::string& description);

/// One or more of them.
CLI::Option* AddPaths(CLI::App& command, const std::string& name, std::vector<std::filesystem::path>& paths,
                      const std::string& description);

CLI::Option* AddText(CLI::App& command, const std::string& name, std::optional<std::string>& text,
                     const std::string& description);

CLI::Option* AddNumber(CLI::App& command, const std::string& name, std::optional<std::int32_t>& number,
                       const std::string& description);

CLI::Option* AddNumber(CLI::App& command, const std::string& name, std::int32_t& number,
                       const std::string& description);

/// "128K" or "256K".
CLI::Option* AddMergedSize(CLI::App& command, const std::string& name, MergedSize& size,
                           const std::string& description);

/// One of two words; `isSecond` tells which.
CLI::Option* AddChoice(CLI::App& command, const std::string& name, bool& isSecond,
                       const std::array<std::string, 2>& words, const std::string& description);
