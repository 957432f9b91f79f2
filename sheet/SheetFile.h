#pragma once

#include "files/Outcome.h"
#include "files/Progress.h"

#include <cstdint>
#include <filesystem>
#include <string>

/// What tells the content of a file from any other.
struct FileContent {
    std::string sha256; ///< 64 hexadecimal digits; empty where it is not known
    std::uint64_t bytes = 0;

    friend bool operator==(const FileContent&, const FileContent&) = default;
};

/// That of the file at `path`. Failed when it cannot be read, which is not reported. Never writes.
Outcome ReadFileContent(const std::filesystem::path& path, FileContent& content, CProgress& progress);
