#pragma once

#include "document/ReadSettings.h"
#include "text/Reporter.h"

#include <cstdint>
#include <optional>
#include <string>

/// How the words of a file become rows, as far as the command line says so.
struct ReadOptions {
    std::optional<std::string> library;       ///< path of the format library; else the program's own
    std::optional<std::string> formatName;    ///< UTF-8; else the library's first format
    std::optional<std::int32_t> startAddress; ///< in words; else the library's
    std::optional<std::int32_t> rowCount;     ///< else the library's
};

/// Completes `options` from the format library, which is never created or changed; one that is missing or holds no
/// format stands for the default format, and a damaged one is reported. Nothing, and then reported, when the library
/// cannot be opened or a setting is not possible.
std::optional<ReadSettings> SettleReadSettings(const ReadOptions& options, CReporter& reporter);
