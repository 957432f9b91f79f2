#pragma once

#include "disk/File.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

// What files hold, copied and compared.

/// Copies the first `length` bytes of `from` over those of `to` by way of `piece`, which is at least one byte. False
/// after an error or when `from` is shorter; a part may have been copied then.
bool CopyContent(const CFile& from, CFile& to, std::uint64_t length, std::span<std::byte> piece);

/// Copies `file` to the new name `copy`, with its owner and rights where that is allowed, has it put on the disk and
/// reads it back. False, and nothing new on the disk, when the name is taken or the copy is not whole.
bool CopyToNewFile(const std::filesystem::path& file, const std::filesystem::path& copy);

/// Whether both files hold the same bytes; false when one of them cannot be read.
bool HaveSameContent(const std::filesystem::path& one, const std::filesystem::path& other);

/// All that the file at `path` holds; nothing when it cannot be read, or holds more than `most` bytes.
std::optional<std::string> ReadContent(const std::filesystem::path& path, std::uint64_t most);
