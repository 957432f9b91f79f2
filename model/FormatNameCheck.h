#pragma once

#include <optional>
#include <string>
#include <string_view>

/// What is wrong with `name`, its blanks at both ends removed, as the name of a new data format: the message of the
/// first check that fails, nothing when the name may stand. Two formats may bear the same name.
///
/// kept: the messages call it a file name. A name takes up to 128 characters, although the library has room for 127 and
/// reads back 64 (kReadNameLength).
std::optional<std::u16string_view> FormatNameFault(std::u16string_view name);

/// What becomes of such a name when it is longer than what is read of a library, to be told while it is typed; nothing
/// of a shorter one.
std::optional<std::u16string> FormatNameNotice(std::u16string_view name);
