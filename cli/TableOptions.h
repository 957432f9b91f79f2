#pragma once

#include "cli/ReadOptions.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <optional>

// Options that several commands have. What they fill must live until the command line is parsed.

/// --library: for commands that read or write formats.
void AddLibrary(CLI::App& command, std::optional<std::filesystem::path>& library);

/// The options of every command that reads rows: --library, --format, --start, --rows and --layout. The last one takes
/// a path only after "=".
void AddTableOptions(CLI::App& command, ReadOptions& options);
