#pragma once

#include <QString>

#include <filesystem>
#include <string_view>

// Texts and paths on their way between the toolkit and the core. Both hold UTF-16 units, so a text crosses as it
// stands.

/// A copy of `text` for the toolkit.
QString ToQString(std::u16string_view text);

/// `title` for a window that shows it as it stands: "[*]" in one would be the toolkit's mark of a changed window.
QString LiteralTitle(QString title);

/// The units of `text` for the core; the view lives as long as `text` and is not changed.
std::u16string_view ViewOf(const QString& text);

/// `path` for the core's file calls, with the platform's own separators, as its users know it from messages and titles.
/// A text that names no file on this platform gives an empty path, which no file call accepts.
std::filesystem::path NativePath(const QString& path);

/// `path` for the toolkit; what is no valid text in it becomes U+FFFD.
QString ToQPath(const std::filesystem::path& path);
