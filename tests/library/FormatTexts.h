#pragma once

#include "library/LibraryMerge.h"
#include "tests/support/Formats.h"

#include <algorithm>
#include <string>
#include <string_view>

/// A format of that name with one item; formats of other numbers have other items.
inline DataFormat NumberedFormat(std::u16string_view name, int number)
{
    DataItem item = DefaultItem();
    item.dataLength = number;
    return MakeFormat(name, {item});
}

/// The formats that `text` names: "A=1, B=2" are two.
inline Formats FormatsIn(std::u16string_view text)
{
    Formats formats;
    while (!text.empty()) {
        const auto equals = text.find(u'=');
        const auto end = std::min(text.find(u','), text.size());
        int number = 0;
        for (const char16_t digit : text.substr(equals + 1, end - equals - 1))
            number = 10 * number + (digit - u'0');
        formats.push_back(std::make_unique<DataFormat>(NumberedFormat(text.substr(0, equals), number)));
        text.remove_prefix(std::min(end + 2, text.size())); // and the blank
    }
    return formats;
}

/// The same text of formats that were made so, as they would be saved.
inline std::u16string TextOf(const Formats& formats)
{
    std::u16string text;
    for (const auto& format : formats) {
        text += text.empty() ? u"" : u", ";
        text += TextOf(format->name);
        for (std::size_t i = 0; i < format->savedItemCount(); ++i) {
            text += u'=';
            for (const char digit : std::to_string(format->items[i]->dataLength))
                text += static_cast<char16_t>(digit);
        }
    }
    return text;
}
