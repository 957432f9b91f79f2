#pragma once

#include "library/FormatLibrary.h"

#include <cstdint>
#include <filesystem>
#include <functional>

/// What is called with the path of a library file right before others take the place of the formats in it.
using BeforeFormatsChange = std::function<void(const std::filesystem::path&)>;

/// A library file as it stands when it is about to be replaced. It is read and replaced under one CLibraryLock.
struct StandingLibrary {
    FormatLibrary library;
    std::int64_t loaded = -1; ///< what FormatLibrary::loadReadOnly gave

    /// Whether it holds anything and was understood in full.
    bool IsUnderstood() const;
};

StandingLibrary ReadStanding(const std::filesystem::path& path);

/// Saves `library` in the place of `standing`, which was read from `path`. One that was not understood in full is
/// copied first (LibraryOriginal.h), and left alone when it cannot be copied. `before`, which may be empty, is called
/// when the formats differ in any byte from those of a file that is there, not for the read settings alone. False after
/// a failure; reports nothing.
bool ReplaceStanding(const StandingLibrary& standing, const FormatLibrary& library, const std::filesystem::path& path,
                     const BeforeFormatsChange& before);
