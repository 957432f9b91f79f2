#pragma once

#include "files/Outcome.h"
#include "files/Progress.h"
#include "text/Reporter.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

/// What tells the content of a file from any other.
struct FileContent {
    std::string sha256; ///< 64 hexadecimal digits; empty where it is not known
    std::uint64_t bytes = 0;

    friend bool operator==(const FileContent&, const FileContent&) = default;
};

/// That of the file at `path`. Failed when it cannot be read, which is not reported. Never writes.
Outcome ReadFileContent(const std::filesystem::path& path, FileContent& content, CProgress& progress);

/// What a file that a sheet is written to holds, by the ending of its name.
enum class SheetFileType { Html, Pdf, Unknown };

SheetFileType SheetFileTypeOf(const std::filesystem::path& path);

/// Whether a sheet of the file at `recipe` may be written to `path`; reported when it may not: the name has another
/// ending than that of a sheet, or it is that file itself.
bool MayWriteSheet(const std::filesystem::path& path, const std::filesystem::path& recipe, CReporter& reporter);

/// Writes `bytes` to the file at `path`, which takes the old one's place when it is complete. False after a failure,
/// then reported once.
bool WriteSheetFile(const std::filesystem::path& path, std::string_view bytes, CReporter& reporter);
