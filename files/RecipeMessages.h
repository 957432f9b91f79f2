#pragma once

#include "files/FileType.h"
#include "text/FileMessages.h"

#include <optional>
#include <string_view>

/// What is told of a file of none of the four types.
inline constexpr std::u16string_view kUnknownTypeError =
    u"The type of file %s is unknown! It must be .rcp, .csv, .erp or .frp!";

/// What is told of a file that another program goes on writing (CFileLock).
inline constexpr std::u16string_view kBusyFileError = u"File %s is being written by another program!";

/// What is told of a file of `type` that cannot be opened to be read; without one, of any file.
constexpr std::u16string_view OpenErrorOf(std::optional<FileType> type)
{
    return type == FileType::Csv ? kOpenTableError : kOpenFileError;
}

/// What a save of `type` tells when it fails.
constexpr std::u16string_view SaveErrorOf(FileType type)
{
    return type == FileType::Csv ? kSaveTableError : kSaveFileError;
}
