#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// The files that a program's standard output and error go to; they are made where they are not there.
struct RunStreams {
    std::filesystem::path out;
    std::filesystem::path error;
};

/// Runs `program` to its end, in the way of this platform, and gives its exit code, -1 when it was ended by a signal.
/// Its standard input is empty, its settings are this process's with `environment` in place of those of the same
/// names. Throws when it cannot be started.
int RunRedirected(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                  const RunStreams& streams, const std::vector<std::string>& environment);
