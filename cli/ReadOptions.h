#pragma once

#include "document/ReadSettings.h"
#include "library/FormatLibrary.h"
#include "text/Reporter.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

/// How the words of a file become rows, as far as the command line says so.
struct ReadOptions {
    std::optional<std::filesystem::path> library; ///< the format library; else the program's own
    std::optional<std::string> formatName;        ///< UTF-8; else the library's first format
    std::optional<std::int32_t> startAddress;     ///< in words; else the library's
    std::optional<std::int32_t> rowCount;         ///< else the library's
    std::optional<std::filesystem::path> layout;  ///< the layout file that is asked for; empty to look for one

    /// Whether anything is said of the rows themselves.
    bool SayRows() const { return formatName || startAddress || rowCount; }
};

/// Completes `options` from the format library, which is never created or changed; one that is missing or holds no
/// format stands for the default format, and a damaged one is reported. Nothing, and then reported, when the library
/// cannot be opened or a setting is not possible. A layout is not looked at.
std::optional<ReadSettings> SettleReadSettings(const ReadOptions& options, CReporter& reporter);

/// Has a library without formats hold the default one.
void EnsureFormat(FormatLibrary& library);

/// The first format of that name; null where there is none.
const DataFormat* FindFormat(const FormatLibrary& library, std::u16string_view name);

/// What is told of a format that is not in the library.
std::u16string NoFormatText(std::u16string_view name);
