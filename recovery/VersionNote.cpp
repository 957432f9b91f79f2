#include "recovery/VersionNote.h"

#include "library/JsonText.h"
#include "recovery/VersionJson.h"
#include "text/Utf8Text.h"

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::json;

std::u16string TextAt(const Json& note, const char* key)
{
    const auto field = note.find(key);
    return field != note.end() && field->is_string() ? FromUtf8(field->get_ref<const std::string&>())
                                                     : std::u16string();
}

std::optional<std::uint64_t> NumberAt(const Json& note, const char* key)
{
    const auto field = note.find(key);
    if (field == note.end() || !field->is_number_unsigned())
        return std::nullopt;
    return field->get<std::uint64_t>();
}

void AppendNumber(std::string_view key, std::optional<std::uint64_t> number, std::string& json)
{
    if (number)
        json.append(",\"").append(key).append("\":").append(std::to_string(*number));
}

} // namespace

std::string NoteToJson(const VersionNote& note)
{
    std::string json = "{\"vantor\":\"version\",\"version\":1,\"file\":";
    AppendJsonText(note.file, json);
    json += ",\"time\":\"" + UtcText(note.time) + "\",\"command\":";
    AppendJsonText(note.command, json);
    AppendNumber("words", note.words, json);
    AppendNumber("bytes", note.bytes, json);
    return json + "}\n";
}

VersionNote ReadNote(const fs::path& path)
{
    const Json json = ReadSmallJson(path);
    const auto kind = json.find("vantor");
    if (kind == json.end() || *kind != "version")
        return {};
    return {.file = TextAt(json, "file"),
            .command = TextAt(json, "command"),
            .words = NumberAt(json, "words"),
            .bytes = NumberAt(json, "bytes")};
}
