#pragma once

#include <filesystem>

// The files in which a CReplacement grows. Each is held (CFile::Hold) by the program that makes it, so that another can
// tell a file that is being written from one that was left behind.

/// A new name for one: short, whatever the name of the file that it is to replace, which may be as long as a name can
/// be.
std::filesystem::path TemporaryName();

/// The name under which the temporary file `file` is kept for good: nothing removes one of this name.
std::filesystem::path KeptName(const std::filesystem::path& file);

/// Removes from `folder` the temporary files of this user whose programs ended before they had done with them. What is
/// held, belongs to another user, is not a regular file, is a link, or cannot be told from these stays. Reports
/// nothing.
void RemoveLeftOvers(const std::filesystem::path& folder);
