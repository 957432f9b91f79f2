#include "changes/LayoutFile.h"

#include "changes/LayoutPattern.h"
#include "disk/Content.h"
#include "files/ShowLimits.h"
#include "text/FileMessages.h"
#include "text/MessageText.h"
#include "text/PathText.h"
#include "text/Utf8Text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <limits>
#include <span>
#include <system_error>

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::json;

constexpr std::uint64_t kMostLayoutBytes = std::uint64_t{64} << 20;

/// What an element of a path is in a layout, and where a fault in it stands.
struct Field {
    std::string_view key;
    enum class Kind { Text, Integer, List } kind;
    bool isRequired;
    std::int64_t least = 0; ///< of an integer
    std::int64_t most = 0;
};

constexpr Field kLayoutFields[] = {
    {"library", Field::Kind::Text, false},
    {"notes", Field::Kind::Text, false},
    {"tables", Field::Kind::List, true},
};

constexpr Field kTableFields[] = {
    {"files", Field::Kind::Text, true},
    {"format", Field::Kind::Text, true},
    {"start", Field::Kind::Integer, false, 0, std::numeric_limits<std::int32_t>::max()},
    {"rows", Field::Kind::Integer, false, 1, kMostRows},
};

/// Takes the parser's events in the order of the text. An event's answer is false to end the parsing.
class CLayoutReader final : public nlohmann::json_sax<Json> {
public:
    CLayoutReader(std::string_view json, Layout& layout) : m_json(json), m_layout(layout) {}

    std::optional<JsonFault> Fault() const { return m_fault; }

    bool null() override { return RefuseKind(); }
    bool boolean(bool) override { return RefuseKind(); }
    bool binary(binary_t&) override { return RefuseKind(); }
    bool number_integer(number_integer_t value) override { return TakeInteger(value); }
    bool number_unsigned(number_unsigned_t value) override
    {
        constexpr auto kMost = static_cast<number_unsigned_t>(std::numeric_limits<std::int64_t>::max());
        return TakeInteger(static_cast<std::int64_t>(std::min(value, kMost))); // far above any range
    }
    /// An integer of too many digits comes as a real number, too.
    bool number_float(number_float_t, const string_t& number) override
    {
        return Wants(Field::Kind::Integer) && IsJsonInteger(number) ? RefuseRange() : RefuseKind();
    }
    bool string(string_t& text) override;
    bool start_object(std::size_t) override;
    bool key(string_t& name) override;
    bool end_object() override;
    bool start_array(std::size_t) override;
    bool end_array() override;
    bool parse_error(std::size_t position, const std::string&, const Json::exception& fault) override;

private:
    enum class Level { Outside, Layout, Tables, Table };

    /// An object that has begun.
    struct Open {
        std::span<const Field> fields;
        std::string key = {};         ///< the last one
        const Field* field = nullptr; ///< its field
        std::vector<const Field*> seen = {};
    };

    Open& At() { return m_level == Level::Table ? m_table : m_top; }
    bool TakesValue() const { return m_level == Level::Layout || m_level == Level::Table; }
    bool Wants(Field::Kind kind) { return TakesValue() && At().field->kind == kind; }
    LayoutTable& Table() { return m_layout.tables.back(); }

    bool TakeInteger(std::int64_t value);
    bool RefuseKind();
    bool RefuseRange();
    bool Refuse(std::u16string_view text);
    std::u16string Place();

    std::string_view m_json;
    Layout& m_layout;
    Level m_level = Level::Outside;
    Open m_top{kLayoutFields};
    Open m_table{kTableFields};
    std::optional<JsonFault> m_fault;
};

bool CLayoutReader::string(string_t& text)
{
    if (!Wants(Field::Kind::Text))
        return RefuseKind();
    if (text.empty())
        return Refuse(u"the text is empty");
    if (text.find('\0') != std::string::npos)
        return Refuse(u"the text holds a zero character");
    if (m_level == Level::Table && At().key == "files" && !CanMatch(FromUtf8(text)))
        return Refuse(u"no file has such a path");
    if (m_level == Level::Layout)
        (At().key == "library" ? m_layout.library : m_layout.notes) = PathOfUtf8(text);
    else
        (At().key == "files" ? Table().files : Table().format) = FromUtf8(text);
    return true;
}

bool CLayoutReader::start_object(std::size_t)
{
    if (m_level == Level::Outside) {
        m_level = Level::Layout;
        return true;
    }
    if (m_level != Level::Tables)
        return RefuseKind();
    m_layout.tables.emplace_back();
    m_table = Open{kTableFields};
    m_level = Level::Table;
    return true;
}

bool CLayoutReader::key(string_t& name)
{
    Open& open = At();
    const auto field =
        std::find_if(open.fields.begin(), open.fields.end(), [&name](const Field& f) { return f.key == name; });
    open.key = name;
    if (field == open.fields.end())
        return Refuse(u"there is no field of this name");
    open.field = &*field;
    if (std::find(open.seen.begin(), open.seen.end(), open.field) != open.seen.end())
        return Refuse(u"the field stands twice");
    open.seen.push_back(open.field);
    return true;
}

bool CLayoutReader::end_object()
{
    Open& open = At();
    for (const Field& field : open.fields) {
        if (!field.isRequired || std::find(open.seen.begin(), open.seen.end(), &field) != open.seen.end())
            continue;
        open.key = field.key;
        return Refuse(u"the field is missing");
    }
    m_level = m_level == Level::Table ? Level::Tables : Level::Outside;
    return true;
}

bool CLayoutReader::start_array(std::size_t)
{
    if (!Wants(Field::Kind::List))
        return RefuseKind();
    m_level = Level::Tables;
    return true;
}

bool CLayoutReader::end_array()
{
    m_level = Level::Layout;
    return true;
}

bool CLayoutReader::parse_error(std::size_t position, const std::string&, const Json::exception& fault)
{
    constexpr int kNumberOverflow = 406; // of a number with an exponent or a fraction
    if (fault.id == kNumberOverflow)
        return RefuseKind();
    return Refuse(FillMessage(u"%s is no valid JSON", {LineAndColumn(m_json, position)}));
}

bool CLayoutReader::TakeInteger(std::int64_t value)
{
    if (!Wants(Field::Kind::Integer))
        return RefuseKind();
    const Field& field = *At().field;
    if (value < field.least || value > field.most)
        return RefuseRange();
    const auto number = static_cast<std::int32_t>(value);
    if (field.key == "rows")
        Table().rows = number;
    else
        Table().start = number;
    return true;
}

bool CLayoutReader::RefuseKind()
{
    if (Wants(Field::Kind::Text))
        return Refuse(u"a text is expected");
    if (Wants(Field::Kind::Integer))
        return Refuse(u"an integer is expected");
    return Refuse(Wants(Field::Kind::List) ? u"an array is expected" : u"an object is expected");
}

bool CLayoutReader::RefuseRange()
{
    const Field& field = *At().field;
    return Refuse(FillMessage(u"the number is not between %d and %d", {field.least, field.most}));
}

bool CLayoutReader::Refuse(std::u16string_view text)
{
    m_fault = JsonFault{Place(), std::u16string(text)};
    return false;
}

/// "/tables/0/rows" for example.
std::u16string CLayoutReader::Place()
{
    std::string place;
    if (m_level == Level::Tables)
        place = "/tables/" + std::to_string(m_layout.tables.size());
    else if (m_level == Level::Table)
        place = "/tables/" + std::to_string(m_layout.tables.size() - 1);
    if (TakesValue() && !At().key.empty())
        place += '/' + EscapedKey(At().key);
    return place.empty() ? u"/" : FromUtf8(place);
}

/// `path` from the root on. As it is written, so that links in it stay what they were named, but for a ".." that a link
/// would lead elsewhere.
fs::path WholePath(const fs::path& path)
{
    std::error_code error;
    const fs::path whole = fs::absolute(path, error);
    if (error)
        return path;
    if (std::find(whole.begin(), whole.end(), "..") == whole.end())
        return whole.lexically_normal();
    const fs::path folder = fs::weakly_canonical(whole.parent_path(), error);
    return error ? whole.lexically_normal() : folder / whole.filename();
}

/// Whether anything has the name, a link that leads nowhere, too; where that cannot be told there is nothing to read.
bool HasName(const fs::path& path)
{
    std::error_code error;
    const fs::file_type type = fs::symlink_status(path, error).type();
    return type != fs::file_type::not_found && type != fs::file_type::none;
}

/// Appends the layout files in `folder` and above it, none twice.
void AppendUpwards(fs::path folder, std::vector<fs::path>& files)
{
    for (;;) {
        fs::path file = folder / kLayoutName;
        if (HasName(file) && std::find(files.begin(), files.end(), file) == files.end())
            files.push_back(std::move(file));
        fs::path parent = folder.parent_path();
        if (parent == folder || parent.empty())
            return;
        folder = std::move(parent);
    }
}

/// The path of `file` from `folder` on, "/" between its parts; nothing where it does not lie within.
std::optional<std::u16string> PathWithin(const fs::path& folder, const fs::path& file)
{
    const auto [inFolder, inFile] = std::mismatch(folder.begin(), folder.end(), file.begin(), file.end());
    if (inFolder != folder.end() && !(std::next(inFolder) == folder.end() && inFolder->empty()))
        return std::nullopt;
    std::u16string path;
    for (auto part = inFile; part != file.end(); ++part) {
        if (!path.empty())
            path += u'/';
        path += PathText(*part);
    }
    return path;
}

bool IsPathMatch(std::u16string_view pattern, std::u16string_view path)
{
    return IsMatch(pattern, IsForNames(pattern) ? NameOf(path) : path);
}

bool IsNameMatch(std::u16string_view pattern, std::u16string_view name)
{
    return IsMatch(NameOf(pattern), name);
}

/// Whether all patterns with "/" whose last part matches the name are for one folder.
bool NamesOneFolder(const Layout& layout, std::u16string_view name)
{
    std::optional<std::u16string_view> folder;
    for (const LayoutTable& table : layout.tables) {
        if (IsForNames(table.files) || !IsNameMatch(table.files, name))
            continue;
        if (folder && *folder != FolderOf(table.files))
            return false;
        folder = FolderOf(table.files);
    }
    return true;
}

} // namespace

std::optional<JsonFault> LayoutFromJson(std::string_view json, Layout& layout)
{
    CLayoutReader reader(json, layout);
    Json::sax_parse(json.begin(), json.end(), &reader);
    return reader.Fault();
}

std::optional<Layout> ReadLayout(const fs::path& path, CReporter& reporter)
{
    const auto json = ReadContent(path, kMostLayoutBytes);
    if (!json) {
        ShowFileError(reporter, kOpenFileError, path);
        return std::nullopt;
    }
    Layout layout;
    layout.path = path;
    if (const auto fault = LayoutFromJson(*json, layout)) {
        ShowLayoutFault(reporter, path, *fault);
        return std::nullopt;
    }
    for (auto* file : {&layout.library, &layout.notes})
        if (*file)
            *file = path.parent_path() / **file;
    return layout;
}

void ShowLayoutFault(CReporter& reporter, const fs::path& path, const JsonFault& fault)
{
    reporter.ShowError(FillMessage(u"Layout error! File %s, at %s: %s!", {PathText(path), fault.place, fault.text}));
}

std::vector<fs::path> LayoutFilesFor(const fs::path& file)
{
    std::vector<fs::path> files;
    AppendUpwards(WholePath(file).parent_path(), files);
    std::error_code error;
    if (const fs::path working = fs::current_path(error); !error)
        AppendUpwards(working, files);
    return files;
}

std::vector<std::size_t> TablesFor(const Layout& layout, const fs::path& file)
{
    const fs::path whole = WholePath(file);
    const auto path = PathWithin(WholePath(layout.path).parent_path(), whole);
    const std::u16string name = PathText(whole.filename());
    const bool mayBeAnyFolder = !path && NamesOneFolder(layout, name);
    std::vector<std::size_t> tables;
    for (std::size_t i = 0; i < layout.tables.size(); ++i) {
        const std::u16string_view pattern = layout.tables[i].files;
        const bool isMatch =
            path ? IsPathMatch(pattern, *path) : (mayBeAnyFolder || IsForNames(pattern)) && IsNameMatch(pattern, name);
        if (isMatch)
            tables.push_back(i);
    }
    return tables;
}
