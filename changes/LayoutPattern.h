#pragma once

#include <string_view>

/// Whether `path`, whose parts have "/" between them, goes by `pattern`: "*" stands for any number of characters and
/// "?" for one, but neither for "/". A "/" at the front of a pattern changes nothing. Takes no more time than the
/// product of both lengths.
bool IsMatch(std::u16string_view pattern, std::u16string_view path);

/// Whether any path can go by the pattern: its parts are neither empty nor "." nor "..".
bool CanMatch(std::u16string_view pattern);

/// Whether the pattern is one for the name of a file, in whatever folder.
bool IsForNames(std::u16string_view pattern);

/// What stands before the last "/" of a pattern, and what after it; the first is empty where there is none.
std::u16string_view FolderOf(std::u16string_view pattern);
std::u16string_view NameOf(std::u16string_view pattern);
