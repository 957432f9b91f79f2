#pragma once

#include "text/Reporter.h"

#include <filesystem>
#include <string_view>

// What is told of a file that cannot be read or written; "%s" stands for its path.

inline constexpr std::u16string_view kOpenFileError = u"Open file %s error!";
inline constexpr std::u16string_view kSaveFileError = u"Can't save file %s,please check file or your disk!";
inline constexpr std::u16string_view kMakeFileError = u"Open %s failed ,It can't save!";
inline constexpr std::u16string_view kOpenPagedError = u"Can't open the file that need save!"; // kept: names none
inline constexpr std::u16string_view kOpenTableError = u"Can't open file %s!";
inline constexpr std::u16string_view kSaveTableError = u"Save file %s failed!";

/// Shows `message` with the path filled in.
void ShowFileError(CReporter& reporter, std::u16string_view message, const std::filesystem::path& path);
