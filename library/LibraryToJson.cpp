#include "library/LibraryToJson.h"

#include "library/ItemFields.h"
#include "library/JsonText.h"
#include "library/NotesJson.h"
#include "text/Surrogates.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace {

/// How many units at the front of `units`, of which there is one at least, are one character; 0 for a zero or half a
/// pair, neither of which is one.
std::size_t CharacterLength(std::u16string_view units)
{
    const char16_t first = units.front();
    if (IsHighSurrogate(first))
        return units.size() > 1 && IsLowSurrogate(units[1]) ? 2 : 0;
    return first == u'\0' || IsLowSurrogate(first) ? 0 : 1;
}

/// The longest text at the front of `units`.
std::u16string_view LeadingText(std::u16string_view units)
{
    std::size_t length = 0;
    while (length < units.size()) {
        const std::size_t character = CharacterLength(units.substr(length));
        if (character == 0)
            break;
        length += character;
    }
    return units.substr(0, length);
}

/// Texts as long as they can be, and as numbers the units between them.
void AppendPieces(std::u16string_view units, std::string& json)
{
    const char* before = "[";
    while (!units.empty()) {
        json += before;
        before = ", ";
        const std::u16string_view text = LeadingText(units);
        if (text.empty())
            json += std::to_string(static_cast<unsigned>(units.front()));
        else
            AppendJsonText(text, json);
        units.remove_prefix(std::max<std::size_t>(text.size(), 1));
    }
    json += ']';
}

template <std::size_t N>
void AppendText(const FixedText<N>& field, std::string& json)
{
    const auto end = std::find_if(field.rbegin(), field.rend(), [](char16_t unit) { return unit != u'\0'; }).base();
    const std::u16string_view units(field.data(), static_cast<std::size_t>(end - field.begin()));
    if (units.size() < N && LeadingText(units) == units)
        AppendJsonText(units, json);
    else
        AppendPieces(units, json);
}

void AppendField(const ItemField& field, const DataItem& item, std::string& json)
{
    json.append("\"").append(field.name).append("\": ");
    if (field.get)
        json += std::to_string(field.get(item));
    else
        AppendText(item.description, json);
}

void AppendItem(const DataItem& item, std::string& json)
{
    const char* before = "    {";
    for (const ItemField& field : ItemFields()) {
        json += before;
        AppendField(field, item, json);
        before = ", ";
    }
    if (!item.notes.IsEmpty()) {
        json += ", \"notes\": ";
        AppendNotesObject(*item.notes, json);
    }
    json += '}';
}

void AppendFormat(const DataFormat& format, std::string& json)
{
    json += "  {\"name\": ";
    AppendText(format.name, json);
    json += ", \"items\": [";
    const char* before = "\n";
    for (std::size_t i = 0; i < format.savedItemCount(); ++i) {
        json += before;
        AppendItem(*format.items[i], json);
        before = ",\n";
    }
    json += "]}";
}

} // namespace

std::string LibraryToJson(const FormatLibrary& library)
{
    std::string json = "{\"startAddress\": " + std::to_string(library.startAddress) +
                       ", \"rowCount\": " + std::to_string(library.rowCount) + ", \"filePattern\": ";
    AppendText(library.filePattern, json);
    json += ", \"formats\": [";
    const char* before = "\n";
    for (const auto& format : library.formats) {
        json += before;
        AppendFormat(*format, json);
        before = ",\n";
    }
    json += library.formats.empty() ? "]}\n" : "\n]}\n";
    return json;
}
