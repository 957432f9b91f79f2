#pragma once

#include "text/Surrogates.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

/// A UTF-16 field of fixed size, in memory as in the library file: zero-terminated and zero-filled.
template <std::size_t N>
using FixedText = std::array<char16_t, N>;

/// The text of `field` up to its first zero unit; the view lives as long as the field.
template <std::size_t N>
std::u16string_view TextOf(const FixedText<N>& field)
{
    return {field.data(), static_cast<std::size_t>(std::find(field.begin(), field.end(), u'\0') - field.begin())};
}

/// Puts `text` into `field`, cut to N - 1 units so that a zero ends it, zeros after it. Never cuts a character in two.
template <std::size_t N>
void SetText(FixedText<N>& field, std::u16string_view text)
{
    field.fill(u'\0');
    text = CutText(text, N - 1);
    std::copy(text.begin(), text.end(), field.begin());
}
