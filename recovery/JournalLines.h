#pragma once

#include "recovery/UnsavedWork.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

// The lines of a journal as they are written: eight digits of a checksum, a blank, a JSON object in UTF-8, a line feed.
// JournalSyntax.h reads the objects.

inline constexpr std::string_view kJournalStart = R"({"vantor":"unsaved","version":)";
inline constexpr int kJournalVersion = 1;
inline constexpr std::size_t kChecksumDigits = 8;

/// Before the object: the digits and the blank.
inline constexpr std::size_t kLinePrefix = kChecksumDigits + 1;

/// Longer lines are neither written nor read.
inline constexpr std::size_t kMostJournalLine = std::size_t{1} << 30;

/// The word for `type` in a header, "rcp" for example.
std::string_view WordOf(FileType type);

/// Appends the object of the first line.
void AppendHeaderJson(const WorkHeader& header, std::string& json);

/// Appends a cell of a command; `isOfWords` where the work has a file of words.
void AppendCellJson(const UnsavedCell& cell, bool isOfWords, std::string& json);

/// The checksum of `json`, the object of a line, which goes on from that of the line before; 0 before the first.
std::uint32_t ChecksumOf(std::string_view json, std::uint32_t before);

/// Puts the digits of `checksum` and the blank at the beginning of `line`, which has room for them.
void PutChecksum(std::uint32_t checksum, std::string& line);
