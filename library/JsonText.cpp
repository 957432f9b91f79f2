#include "library/JsonText.h"

#include "text/Utf8Text.h"

namespace {

void AppendEscape(char16_t unit, std::string& json)
{
    constexpr char kDigits[] = "0123456789abcdef";
    json += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4)
        json += kDigits[(unit >> shift) & 0xF];
}

void AppendControl(char16_t character, std::string& json)
{
    switch (character) {
    case u'\b':
        json += "\\b";
        return;
    case u'\t':
        json += "\\t";
        return;
    case u'\n':
        json += "\\n";
        return;
    case u'\f':
        json += "\\f";
        return;
    case u'\r':
        json += "\\r";
        return;
    default:
        AppendEscape(character, json);
    }
}

/// Whether `unit` is an ASCII character that stands for itself.
bool IsPlain(char16_t unit)
{
    return unit >= 0x20 && unit < 0x80 && unit != u'"' && unit != u'\\';
}

void AppendCharacter(char32_t character, std::string& json)
{
    if (character < 0x20) {
        AppendControl(static_cast<char16_t>(character), json);
        return;
    }
    if (character == U'"' || character == U'\\')
        json += '\\';
    AppendUtf8(character, json);
}

/// Whether `character`, which was taken off a text that began with `unit`, stands for half a pair.
bool IsHalfOfPair(char32_t character, char16_t unit)
{
    return character < 0x10000 && character != unit;
}

} // namespace

void AppendJsonText(std::u16string_view text, std::string& json)
{
    json += '"';
    for (TakePlain(text, json, IsPlain); !text.empty(); TakePlain(text, json, IsPlain))
        AppendCharacter(TakeCharacter(text), json);
    json += '"';
}

void AppendWholeJsonText(std::u16string_view text, std::string& json)
{
    json += '"';
    for (TakePlain(text, json, IsPlain); !text.empty(); TakePlain(text, json, IsPlain)) {
        const char16_t unit = text.front();
        const char32_t character = TakeCharacter(text);
        if (IsHalfOfPair(character, unit))
            AppendEscape(unit, json);
        else
            AppendCharacter(character, json);
    }
    json += '"';
}
