#include "library/JsonText.h"

#include "text/Utf8Text.h"

namespace {

void AppendControl(char32_t character, std::string& json)
{
    constexpr char kDigits[] = "0123456789abcdef";
    switch (character) {
    case U'\b':
        json += "\\b";
        return;
    case U'\t':
        json += "\\t";
        return;
    case U'\n':
        json += "\\n";
        return;
    case U'\f':
        json += "\\f";
        return;
    case U'\r':
        json += "\\r";
        return;
    default:
        json += "\\u00";
        json += kDigits[character >> 4];
        json += kDigits[character & 0xF];
    }
}

} // namespace

void AppendJsonText(std::u16string_view text, std::string& json)
{
    json += '"';
    while (!text.empty()) {
        const char32_t character = TakeCharacter(text);
        if (character < 0x20) {
            AppendControl(character, json);
            continue;
        }
        if (character == U'"' || character == U'\\')
            json += '\\';
        AppendUtf8(character, json);
    }
    json += '"';
}
