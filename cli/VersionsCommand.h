#pragma once

#include "cli/StandardStreams.h"

#include <filesystem>
#include <optional>
#include <string>

struct VersionsOptions {
    std::filesystem::path file;
    std::string time;                            ///< of a version, or the beginning of it
    std::optional<std::filesystem::path> output; ///< file to write; else standard output
};

// Each gives false after a failure, then reported.

/// Prints a line a version of the file, the newest first: time, command, words in the file, and how many of them are
/// others now, a TAB between them; "-" for what cannot be told. Never writes a file.
bool ListVersions(const VersionsOptions& options, CStandardOutput& output, CReporter& reporter);

/// Writes what the file held in a version.
bool ShowVersion(const VersionsOptions& options, CStandardOutput& output, CReporter& reporter);

/// Puts a version in the place of the file: the newest where no time is given.
bool RestoreFile(const VersionsOptions& options, CReporter& reporter);

/// Removes all versions of the file.
bool ForgetVersions(const VersionsOptions& options, CReporter& reporter);
