#include "library/NotesFile.h"

#include "disk/Content.h"
#include "disk/File.h"
#include "disk/Replacement.h"
#include "library/JsonText.h"
#include "library/NotesJson.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <utility>

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::ordered_json;

constexpr std::uint64_t kMostBytes = std::uint64_t{64} << 20;
constexpr std::string_view kHead = R"({"vantor": "notes", "version": 1, "formats": [)";

void AppendName(std::string_view kind, std::u16string_view name, std::size_t number, std::string& json)
{
    json.append("{\"").append(kind).append("\": ");
    AppendJsonText(name, json);
    if (number != 1)
        json += ", \"number\": " + std::to_string(number);
}

/// Reads the file's objects from the outside in; the first fault is kept.
class CNotesFileReader {
public:
    explicit CNotesFileReader(LibraryNotes& notes) : m_notes(notes) {}

    std::optional<JsonFault> Read(const Json& file)
    {
        if (!IsObject(file, "", {"vantor", "version", "formats"}))
            return m_fault;
        if (file.value("vantor", Json()) != "notes")
            Refuse("/vantor", u"\"notes\" is expected");
        else if (file.value("version", Json()) != 1)
            Refuse("/version", u"1 is expected");
        else
            TakeList(file, "", "formats",
                     [this](const Json& format, const std::string& place) { return TakeFormat(format, place); });
        return m_fault;
    }

private:
    bool TakeFormat(const Json& format, const std::string& place)
    {
        NotesKey key;
        return IsObject(format, place, {"format", "number", "items"}) &&
               TakeName(format, place, "format", key.format, key.formatNumber) &&
               TakeList(format, place, "items",
                        [&](const Json& item, const std::string& itemPlace) { return TakeItem(item, itemPlace, key); });
    }

    bool TakeItem(const Json& item, const std::string& place, NotesKey key)
    {
        if (!item.is_object())
            return Refuse(place, u"an object is expected");
        if (!TakeName(item, place, "item", key.item, key.itemNumber))
            return false;
        Json fields = item;
        fields.erase("item");
        fields.erase("number");
        ItemNotes notes;
        m_fault = NotesFromJson(fields, place, notes);
        if (m_fault)
            return false;
        notes = Tidied(std::move(notes));
        if (notes.IsEmpty() || m_notes.emplace(std::move(key), std::move(notes)).second)
            return true;
        return Refuse(place, u"the item stands twice");
    }

    bool TakeName(const Json& object, const std::string& place, const char* kind, std::u16string& name,
                  std::size_t& number)
    {
        const auto text = object.find(kind);
        if (text == object.end() || !text->is_string())
            return Refuse(place + "/" + kind, u"a text is expected");
        name = FromUtf8(text->get_ref<const std::string&>());
        const Json which = object.value("number", Json(1U));
        if (!which.is_number_unsigned() || which == 0)
            return Refuse(place + "/number", u"an integer from 1 on is expected");
        number = which.get<std::size_t>();
        return true;
    }

    template <class TakeElement>
    bool TakeList(const Json& object, const std::string& place, const char* name, TakeElement takeElement)
    {
        const auto list = object.find(name);
        const std::string listPlace = place + "/" + name;
        if (list == object.end() || !list->is_array())
            return Refuse(listPlace, u"an array is expected");
        for (std::size_t i = 0; i < list->size(); ++i)
            if (!takeElement((*list)[i], listPlace + "/" + std::to_string(i)))
                return false;
        return true;
    }

    bool IsObject(const Json& object, const std::string& place, std::initializer_list<std::string_view> keys)
    {
        if (!object.is_object())
            return Refuse(place.empty() ? "/" : place, u"an object is expected");
        for (const auto& [key, value] : object.items())
            if (std::find(keys.begin(), keys.end(), key) == keys.end())
                return Refuse(place + "/" + EscapedKey(key), u"there is no field of this name");
        return true;
    }

    bool Refuse(const std::string& place, std::u16string_view text)
    {
        m_fault = JsonFault{FromUtf8(place), std::u16string(text)};
        return false;
    }

    LibraryNotes& m_notes;
    std::optional<JsonFault> m_fault;
};

} // namespace

fs::path NotesPathOf(const fs::path& library)
{
    fs::path path = LinkTarget(library);
    path.replace_extension(".Notes.json");
    return path;
}

NotesFile ReadNotes(const fs::path& path)
{
    NotesFile file;
    if (IsMissing(path))
        return file;
    const auto json = ReadContent(path, kMostBytes);
    if (!json) {
        file.content = NotesFile::Content::Unreadable;
        return file;
    }
    const auto fault = NotesFromJson(*json, file.notes);
    file.content = fault ? NotesFile::Content::Damaged : NotesFile::Content::Whole;
    file.fault = fault.value_or(JsonFault{});
    if (fault)
        file.notes.clear();
    return file;
}

bool AreNotesSavedAt(const LibraryNotes& notes, const fs::path& path)
{
    if (notes.empty() && IsMissing(path))
        return true;
    const std::string json = NotesToJson(notes);
    return ReadContent(path, json.size()) == json;
}

bool WriteNotes(const LibraryNotes& notes, const fs::path& path)
{
    if (AreNotesSavedAt(notes, path))
        return true;
    const std::string json = NotesToJson(notes);
    CReplacement file(path);
    return file.IsOpen() && file.Append(std::as_bytes(std::span(json))) && file.Finish();
}

std::string NotesToJson(const LibraryNotes& notes)
{
    std::string json{kHead};
    const NotesKey* before = nullptr;
    for (const auto& [key, ofItem] : notes) {
        if (!before || !AreOfOneFormat(*before, key)) {
            json += before ? "]},\n  " : "\n  ";
            AppendName("format", key.format, key.formatNumber, json);
            json += ", \"items\": [\n    ";
        } else {
            json += ",\n    ";
        }
        AppendName("item", key.item, key.itemNumber, json);
        AppendNotes(ofItem, json);
        json += '}';
        before = &key;
    }
    json += before ? "]}]}\n" : "]}\n";
    return json;
}

std::optional<JsonFault> NotesFromJson(std::string_view json, LibraryNotes& notes)
{
    if (json.find('\0') != std::string_view::npos) // the parser would take it for the end
        return JsonFault{u"/", u"it holds a zero byte"};
    try {
        return CNotesFileReader(notes).Read(Json::parse(json));
    } catch (const Json::parse_error& fault) {
        return JsonFault{u"/", LineAndColumn(json, fault.byte) + u" is no valid JSON"};
    } catch (const Json::exception&) {
        return JsonFault{u"/", u"it is no valid JSON"}; // such as a number that is too large
    }
}
