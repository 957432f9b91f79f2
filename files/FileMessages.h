#pragma once

#include "files/RecipeFile.h"
#include "model/Reporter.h"

#include <filesystem>
#include <optional>
#include <string_view>

// What the readers and writers of recipe files tell of a file; "%s" stands for its path.

inline constexpr std::u16string_view kOpenFileError = u"Open file %s error!";
inline constexpr std::u16string_view kSaveFileError = u"Can't save file %s,please check file or your disk!";
inline constexpr std::u16string_view kMakeFileError = u"Open %s failed ,It can't save!";
inline constexpr std::u16string_view kOpenPagedError = u"Can't open the file that need save!"; // kept: names none
inline constexpr std::u16string_view kOpenTableError = u"Can't open file %s!";
inline constexpr std::u16string_view kSaveTableError = u"Save file %s failed!";

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

/// Shows `message` with the path filled in.
void ShowFileError(CReporter& reporter, std::u16string_view message, const std::filesystem::path& path);
