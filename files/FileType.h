#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

/// The four file types, by the numbers that the frame and the panes pass on.
enum class FileType : std::int32_t {
    Rcp = 0, ///< flat word image
    Csv = 1, ///< text table
    Erp = 2, ///< paged word image, flat part of 1 MiB
    Frp = 3, ///< paged word image, flat part of 64 KiB
};

constexpr bool IsPaged(FileType type)
{
    return type == FileType::Erp || type == FileType::Frp;
}

/// The type that goes with the extension of `path`, whatever its case; nothing for any other extension.
std::optional<FileType> FileTypeOf(const std::filesystem::path& path);
