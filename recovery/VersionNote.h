#pragma once

#include "text/UtcTime.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

/// What is noted beside a version of a file; what is not known is empty or not there.
struct VersionNote {
    std::u16string file; ///< its path
    UtcTime time{};      ///< by the clock, as far as seconds
    std::u16string command;
    std::optional<std::uint64_t> words;
    std::optional<std::uint64_t> bytes;
};

/// The note as JSON, in one line.
std::string NoteToJson(const VersionNote& note);

/// The note in the file at `path`, which belongs to the user; an empty one where it is missing or damaged. Its time is
/// not read.
VersionNote ReadNote(const std::filesystem::path& path);
