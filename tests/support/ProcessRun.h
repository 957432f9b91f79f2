#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// What came of a program that ran to its end.
struct ProcessResult {
    int exitCode = -1; ///< -1 when it was ended by a signal
    std::string out;   ///< all of its standard output
    std::string error; ///< all of its standard error
};

/// Runs `program` with `arguments` as they stand (no shell) and an empty standard input. Throws when it cannot be
/// started.
ProcessResult RunProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments);

/// As above, with the settings `NAME=VALUE` of `environment` in place of this process's own of the same names.
ProcessResult RunProcessIn(const std::vector<std::string>& environment, const std::filesystem::path& program,
                           const std::vector<std::string>& arguments);

/// As RunProcess, but standard output goes to `outputFile`, a device for example, and `out` stays empty.
ProcessResult RunProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                         const std::filesystem::path& outputFile);
