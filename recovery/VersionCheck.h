#pragma once

#include "changes/ChangeList.h"

#include <filesystem>
#include <optional>
#include <string>

/// Why `changes` cannot be gone back by later: they are not complete, have no words, or do not begin with what the file
/// of words at `file` holds now. Nothing where they can.
std::optional<std::u16string> ChangesFault(const CChangeList& changes, FileType type,
                                           const std::filesystem::path& file);
