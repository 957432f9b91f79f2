#pragma once

#include "text/Reporter.h"

#include <cstdint>
#include <filesystem>
#include <optional>

/// The two files that a merge takes words from.
enum class MergeSource { First, Second };

/// The length in bytes of the file that the user has chosen for `source`; nothing when it cannot be opened for reading,
/// then reported.
std::optional<std::int64_t> MeasureMergeFile(const std::filesystem::path& path, MergeSource source,
                                             CReporter& reporter);

/// The words in a file of `bytes` bytes, which is the length to merge until the user asks for another; an odd last byte
/// is not counted.
std::int64_t WholeWords(std::int64_t bytes);
