#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <variant>

/// One value for a placeholder: a text for "%s", a number for "%d".
using MessageValue = std::variant<std::u16string_view, std::int64_t>;

/// `pattern` with each "%s" and "%d" replaced, from left to right, by the next of `values`. A value's own text is not
/// searched for placeholders; a placeholder without a value stays as it stands.
std::u16string FillMessage(std::u16string_view pattern, std::initializer_list<MessageValue> values);
