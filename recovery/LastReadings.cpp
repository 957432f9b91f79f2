#include "recovery/LastReadings.h"

#include "disk/File.h"
#include "disk/Replacement.h"
#include "library/JsonText.h"
#include "library/LibraryLock.h"
#include "recovery/VersionFolder.h"
#include "text/PathText.h"
#include "text/Utf8Text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <limits>
#include <span>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::json;

constexpr std::size_t kMostRecipes = 1000;
constexpr std::uint64_t kMostBytes = std::uint64_t{16} << 20;
constexpr std::int64_t kMostNumber = std::numeric_limits<std::int32_t>::max();

struct Entry {
    std::u16string file;
    LastReading reading;
};

/// What the file holds.
struct Contents {
    enum class State {
        Usable, ///< or not there
        Damaged,
        LeaveAlone, ///< another user's, a later version's, or one that wants nothing to be kept
    };

    State state = State::Usable;
    std::vector<Entry> entries; ///< the newest first
};

/// Nothing for a name that is no valid text: it could be taken for another.
std::optional<std::u16string> KeyOf(const fs::path& recipe)
{
    const fs::path known = PathKey(KnownPath(recipe));
    std::u16string text = PathText(known);
    const std::u8string name = known.u8string();
    if (ToUtf8(text) != std::string(name.begin(), name.end()))
        return std::nullopt;
    return text;
}

std::optional<std::u16string> TextAt(const Json& object, const char* key)
{
    const auto field = object.find(key);
    if (field == object.end() || !field->is_string())
        return std::nullopt;
    return FromUtf8(field->get_ref<const std::string&>());
}

std::optional<std::int32_t> NumberAt(const Json& object, const char* key, std::int64_t least)
{
    const auto field = object.find(key);
    if (field == object.end() || !field->is_number_integer())
        return std::nullopt;
    const auto number = field->get<std::int64_t>();
    return number >= least && number <= kMostNumber ? std::optional(static_cast<std::int32_t>(number)) : std::nullopt;
}

std::optional<Entry> EntryOf(const Json& json)
{
    if (!json.is_object())
        return std::nullopt;
    auto file = TextAt(json, "file");
    auto format = TextAt(json, "format");
    const auto start = NumberAt(json, "start", 0);
    const auto rows = NumberAt(json, "rows", 1);
    if (!file || !format || !start || !rows)
        return std::nullopt;
    return Entry{std::move(*file), {std::move(*format), *start, *rows}};
}

Contents ContentsOf(const Json& json)
{
    const auto kind = json.is_object() ? json.find("vantor") : json.end();
    if (!json.is_object() || kind == json.end() || *kind != "readings")
        return {Contents::State::Damaged, {}};
    const auto version = json.find("version");
    const auto keep = json.find("keep");
    if ((version != json.end() && *version != 1) || (keep != json.end() && *keep == false))
        return {Contents::State::LeaveAlone, {}};
    const auto files = json.find("files");
    if (files == json.end() || !files->is_array())
        return {Contents::State::Damaged, {}};
    Contents contents;
    for (const Json& file : *files) {
        auto entry = EntryOf(file);
        if (!entry)
            return {Contents::State::Damaged, {}};
        contents.entries.push_back(std::move(*entry));
    }
    return contents;
}

Contents ReadContents(const fs::path& path)
{
    if (path.empty())
        return {Contents::State::LeaveAlone, {}};
    if (IsMissing(path))
        return {};
    const CFile file(path, CFile::Mode::Read);
    const auto size = file.Size();
    if (!size || !file.IsOwn())
        return {Contents::State::LeaveAlone, {}};
    if (*size > kMostBytes)
        return {Contents::State::Damaged, {}};
    std::string text(static_cast<std::size_t>(*size), '\0');
    if (file.ReadAt(0, std::as_writable_bytes(std::span(text))) != text.size())
        return {Contents::State::LeaveAlone, {}};
    return ContentsOf(Json::parse(text, nullptr, false));
}

void AppendEntry(const Entry& entry, std::string& json)
{
    json += "{\"file\":";
    AppendJsonText(entry.file, json);
    json += ",\"format\":";
    AppendJsonText(entry.reading.format, json);
    json +=
        ",\"start\":" + std::to_string(entry.reading.start) + ",\"rows\":" + std::to_string(entry.reading.rows) + '}';
}

std::string JsonOf(const std::vector<Entry>& entries)
{
    std::string json = "{\"vantor\":\"readings\",\"version\":1,\"files\":[";
    for (const Entry& entry : entries) {
        json += &entry == entries.data() ? "\n" : ",\n";
        AppendEntry(entry, json);
    }
    return json + "\n]}\n";
}

bool WriteAnew(const fs::path& path, const std::string& text)
{
    CReplacement file(path);
    return file.IsOpen() && file.Append(std::as_bytes(std::span(text))) && file.Finish();
}

/// A new file is the user's alone, and goes when it cannot be filled: an empty one counts as damaged. One that takes an
/// old one's place is what that was.
bool Replace(const fs::path& path, const std::string& text)
{
    const bool isNew = IsMissing(path);
    if (isNew && !CFile(path, CFile::Mode::CreatePrivate).Close())
        return false;
    const bool isWritten = WriteAnew(path, text);
    std::error_code ignored;
    if (isNew && !isWritten)
        fs::remove(path, ignored);
    return isWritten;
}

bool SetAside(const fs::path& path)
{
    fs::path aside = path;
    aside += ".damaged";
    std::error_code fault;
    fs::rename(path, aside, fault);
    return !fault;
}

/// Reads the file, has `change` change its entries, and writes them when it says that they are others now.
template <class Change>
bool ChangeEntries(const fs::path& path, Change change)
{
    std::error_code ignored;
    if (path.empty() || (!fs::is_directory(path.parent_path(), ignored) && !MakePrivateFolder(path.parent_path())))
        return false;
    const CLibraryLock lock(path);
    Contents contents = ReadContents(path);
    if (contents.state == Contents::State::LeaveAlone)
        return false;
    if (contents.state == Contents::State::Damaged && !SetAside(path))
        return false;
    return !change(contents.entries) || Replace(path, JsonOf(contents.entries));
}

auto EntryFor(const std::u16string& key)
{
    return [&key](const Entry& entry) { return entry.file == key; };
}

} // namespace

CLastReadings::CLastReadings(const fs::path& dataFolder)
    : m_file(dataFolder.empty() ? fs::path() : dataFolder / "readings.json")
{
}

std::optional<LastReading> CLastReadings::Find(const fs::path& recipe) const
{
    const auto key = KeyOf(recipe);
    if (!key)
        return std::nullopt;
    const Contents contents = ReadContents(m_file);
    const auto found = std::find_if(contents.entries.begin(), contents.entries.end(), EntryFor(*key));
    return found == contents.entries.end() ? std::nullopt : std::optional(found->reading);
}

bool CLastReadings::Remember(const fs::path& recipe, const LastReading& reading) const
{
    const auto key = KeyOf(recipe);
    return key && ChangeEntries(m_file, [&](std::vector<Entry>& entries) {
               if (!entries.empty() && entries.front().file == *key && entries.front().reading == reading)
                   return false;
               std::erase_if(entries, EntryFor(*key));
               entries.insert(entries.begin(), Entry{*key, reading});
               entries.resize(std::min(entries.size(), kMostRecipes));
               return true;
           });
}

bool CLastReadings::Forget(const fs::path& recipe) const
{
    const auto key = KeyOf(recipe);
    return key && ChangeEntries(
                      m_file, [&](std::vector<Entry>& entries) { return std::erase_if(entries, EntryFor(*key)) > 0; });
}
