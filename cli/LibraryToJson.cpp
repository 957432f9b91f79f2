#include "cli/LibraryToJson.h"

#include "cli/ItemFields.h"
#include "cli/JsonText.h"

namespace {

void AppendField(const ItemField& field, const DataItem& item, std::string& json)
{
    json.append("\"").append(field.name).append("\": ");
    if (field.get)
        json += std::to_string(field.get(item));
    else
        AppendJsonText(TextOf(item.description), json);
}

void AppendItem(const DataItem& item, std::string& json)
{
    const char* before = "    {";
    for (const ItemField& field : ItemFields()) {
        json += before;
        AppendField(field, item, json);
        before = ", ";
    }
    json += '}';
}

void AppendFormat(const DataFormat& format, std::string& json)
{
    json += "  {\"name\": ";
    AppendJsonText(TextOf(format.name), json);
    json += ", \"items\": [";
    const char* before = "\n";
    for (const auto& item : format.items) {
        json += before;
        AppendItem(*item, json);
        before = ",\n";
    }
    json += "]}";
}

} // namespace

std::string LibraryToJson(const FormatLibrary& library)
{
    std::string json = "{\"startAddress\": " + std::to_string(library.startAddress) +
                       ", \"rowCount\": " + std::to_string(library.rowCount) + ", \"filePattern\": ";
    AppendJsonText(TextOf(library.filePattern), json);
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
