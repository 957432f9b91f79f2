#pragma once

#include "files/FileType.h"
#include "model/DataFormat.h"

#include <cstdint>
#include <filesystem>
#include <optional>

// How many rows of a format a file has, where nobody says.

/// How many bytes of words, or lines of a table of texts, the file at `path` holds. Reads a table to its end, and never
/// writes. Nothing when it cannot be read.
std::optional<std::uint64_t> ContentCount(const std::filesystem::path& path, FileType type);

/// How many whole rows of `format`, which has words, a file with that content has from word `start` on; a table of
/// texts has one a line.
std::int32_t RowsIn(const DataFormat& format, std::int32_t start, FileType type, std::uint64_t content);
