#pragma once

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

/// `text`, which names a file, in a form that all its names share: where a system knows two separators and minds no
/// case, with its own separator and in small ASCII letters; elsewhere as it stands.
template <class Character>
std::basic_string<Character> PathLook(std::basic_string<Character> text)
{
    if (std::filesystem::path::preferred_separator == '/')
        return text;
    std::transform(text.begin(), text.end(), text.begin(), [](Character c) {
        if (c == '/')
            return Character('\\');
        return c >= 'A' && c <= 'Z' ? static_cast<Character>(c - 'A' + 'a') : c;
    });
    return text;
}

/// The same for each of several texts.
template <class Text>
std::vector<Text> PathLook(std::vector<Text> texts)
{
    for (Text& text : texts)
        text = PathLook(text);
    return texts;
}
