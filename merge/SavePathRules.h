#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

// The rules by which the user's choice of a folder and a name becomes the path of the merged file. `separator` is what
// the platform puts between folders. A folder ends in a separator.

/// True when the folder exists.
using FolderTest = std::function<bool(std::u16string_view folder)>;

/// `text` without the white space at both ends.
std::u16string_view Trimmed(std::u16string_view text);

/// The folder to start in: that of the program's own `executable`, in lower case. Only where that does not exist and
/// the folder as it is really written does (the file system minds case) it is the latter.
std::u16string ExecutableFolder(std::u16string_view executable, char16_t separator, const FolderTest& folderExists);

/// The folder that the user has chosen; an empty `path` for a place that is no folder of the file system.
/// kept: a network path loses one of the two separators it begins with.
std::u16string FolderChosen(std::u16string_view path, char16_t separator);

/// The path to show for `folder` and the name as typed, blanks included.
///
/// Every double separator becomes a single one, in one pass from left to right: of three in a row two stay.
std::u16string ShownPath(std::u16string_view folder, std::u16string_view name, char16_t separator);

/// What is wrong with the name as typed; nothing when it will do. White space around it does not count.
std::optional<std::u16string> MergeNameFault(std::u16string_view name);

/// `path`, with ".rcp" appended unless it ends so, in whatever case.
std::u16string WithRcpEnding(std::u16string_view path);

/// The question to ask before the file at `path`, which exists, is replaced.
std::u16string OverwriteQuestion(std::u16string_view path);
