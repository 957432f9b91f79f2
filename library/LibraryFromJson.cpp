#include "library/LibraryFromJson.h"

#include "library/ItemFields.h"
#include "library/NotesJson.h"
#include "text/MessageText.h"
#include "text/Utf8Text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace {

using Json = nlohmann::json;
using Int32Limits = std::numeric_limits<std::int32_t>;

std::u16string TooLong(std::size_t most)
{
    return FillMessage(u"the text is longer than %d characters", {static_cast<std::int64_t>(most)});
}

/// Zeros after the text.
void Fill(std::span<char16_t> field, std::u16string_view text)
{
    std::fill(std::copy(text.begin(), text.end(), field.begin()), field.end(), u'\0');
}

/// Builds a value out of the parser's events.
class CValueBuilder {
public:
    using Value = nlohmann::ordered_json;

    CValueBuilder() noexcept(false) = default; // a value that is made throws where there is no memory

    /// False when the object that is open has the key already.
    bool Key(std::string name)
    {
        m_key = std::move(name);
        return !m_open.back()->contains(m_key);
    }

    void Add(Value value)
    {
        const bool isOpen = value.is_structured();
        Value& place = m_open.empty()              ? m_root
                       : m_open.back()->is_array() ? m_open.back()->emplace_back()
                                                   : (*m_open.back())[m_key];
        place = std::move(value);
        if (isOpen)
            m_open.push_back(&place); // stays where it is: only the innermost one grows
    }

    void End() { m_open.pop_back(); }
    const std::string& LastKey() const { return m_key; }
    bool IsWhole() const { return m_open.empty(); }
    const Value& Root() const { return m_root; }

private:
    Value m_root;
    std::vector<Value*> m_open; ///< from the outside in
    std::string m_key;
};

/// Takes the parser's events in the order of the text and fills a library from them. An event's answer is false to end
/// the parsing.
class CLibraryReader final : public nlohmann::json_sax<Json> {
public:
    CLibraryReader(std::string_view json, FormatLibrary& library) : m_json(json), m_library(library) {}

    std::optional<JsonFault> Fault() const { return m_fault; }

    bool null() override { return m_notes ? AddToNotes(nullptr) : Refuse(WrongKind()); }
    bool boolean(bool value) override { return m_notes ? AddToNotes(value) : Refuse(WrongKind()); }
    bool binary(binary_t&) override { return Refuse(WrongKind()); }
    bool number_integer(number_integer_t value) override;
    bool number_unsigned(number_unsigned_t value) override;
    bool number_float(number_float_t value, const string_t& number) override;
    bool string(string_t& text) override;
    bool start_object(std::size_t) override;
    bool key(string_t& name) override;
    bool end_object() override;
    bool start_array(std::size_t) override;
    bool end_array() override;
    bool parse_error(std::size_t position, const std::string&, const Json::exception& fault) override;

private:
    enum class Level { Document, Library, Formats, Format, Items, Item, Pieces };
    enum class Kind { Object, Array, Integer, Text, Piece };

    struct Range {
        std::int64_t least;
        std::int64_t most;
    };

    /// An object or array that has begun and not ended yet.
    struct Open {
        Level level;
        std::vector<std::string> keys = {}; ///< of an object: those so far
        std::size_t index = 0;              ///< of an array: the element it is at
    };

    Level At() const { return m_open.empty() ? Level::Document : m_open.back().level; }
    const std::string& Key() const { return m_open.back().keys.back(); }
    DataFormat& Format() { return *m_library.formats.back(); }
    DataItem& Item() { return *Format().items.back(); }

    Kind Wanted() const;
    bool WantsInteger() const { return Wanted() == Kind::Integer || Wanted() == Kind::Piece; }
    bool IsKnown(std::string_view key) const;
    bool Begin(Level level);
    bool End();
    bool AddToNotes(CValueBuilder::Value value);
    bool EndInNotes();
    void EndItem();
    Range WantedRange() const;
    bool TakeInteger(std::int64_t value);
    std::span<char16_t> TextField();
    bool TakeText(std::u16string_view text);
    bool TakePiece(std::u16string_view units);
    bool EndPieces();

    std::u16string Place() const;
    std::u16string WrongKind() const;
    std::u16string OutOfRange() const;
    bool Refuse(std::u16string_view text);

    std::string_view m_json;
    FormatLibrary& m_library;
    std::vector<Open> m_open;
    std::u16string m_pieces;              ///< the units of the field whose list is open
    std::optional<CValueBuilder> m_notes; ///< those of the item, while they are open
    std::optional<JsonFault> m_fault;
};

bool CLibraryReader::number_integer(number_integer_t value)
{
    if (m_notes)
        return AddToNotes(value);
    return WantsInteger() ? TakeInteger(value) : Refuse(WrongKind());
}

bool CLibraryReader::number_unsigned(number_unsigned_t value)
{
    if (m_notes)
        return AddToNotes(value);
    if (!WantsInteger())
        return Refuse(WrongKind());
    if (value > static_cast<number_unsigned_t>(std::numeric_limits<std::int64_t>::max()))
        return Refuse(OutOfRange());
    return TakeInteger(static_cast<std::int64_t>(value));
}

/// An integer of too many digits comes as a real number, too. The ends of a range take the digits as they stand.
bool CLibraryReader::number_float(number_float_t value, const string_t& number)
{
    if (m_notes && (m_notes->LastKey() == "lowest" || m_notes->LastKey() == "highest"))
        return AddToNotes(number);
    if (m_notes)
        return AddToNotes(value);
    return Refuse(WantsInteger() && IsJsonInteger(number) ? OutOfRange() : WrongKind());
}

bool CLibraryReader::string(string_t& text)
{
    if (m_notes)
        return AddToNotes(text);
    if (Wanted() != Kind::Text && Wanted() != Kind::Piece)
        return Refuse(WrongKind());
    const std::u16string units = FromUtf8(text);
    if (units.find(u'\0') != std::u16string::npos)
        return Refuse(u"the text holds a zero character");
    return At() == Level::Pieces ? TakePiece(units) : TakeText(units);
}

bool CLibraryReader::start_object(std::size_t)
{
    if (m_notes)
        return AddToNotes(CValueBuilder::Value::object());
    if (Wanted() != Kind::Object)
        return Refuse(WrongKind());
    switch (At()) {
    case Level::Formats:
        m_library.formats.push_back(std::make_unique<DataFormat>());
        return Begin(Level::Format);
    case Level::Items:
        Format().insertItem(Format().items.size(), std::make_unique<DataItem>(DefaultItem()));
        ++Format().itemCount;
        return Begin(Level::Item);
    case Level::Item:
        m_notes.emplace();
        return AddToNotes(CValueBuilder::Value::object());
    default:
        return Begin(Level::Library);
    }
}

bool CLibraryReader::key(string_t& name)
{
    if (m_notes)
        return m_notes->Key(name) || Refuse(u"a field stands twice");
    std::vector<std::string>& keys = m_open.back().keys;
    const bool isTwice = std::find(keys.begin(), keys.end(), name) != keys.end();
    keys.push_back(name);
    if (!IsKnown(name))
        return Refuse(u"there is no field of this name");
    return !isTwice || Refuse(u"the field stands twice");
}

bool CLibraryReader::end_object()
{
    if (m_notes)
        return EndInNotes();
    if (At() == Level::Item)
        EndItem();
    return End();
}

bool CLibraryReader::start_array(std::size_t)
{
    if (m_notes)
        return AddToNotes(CValueBuilder::Value::array());
    if (Wanted() == Kind::Text) {
        m_pieces.clear();
        return Begin(Level::Pieces);
    }
    if (Wanted() != Kind::Array)
        return Refuse(WrongKind());
    return Begin(At() == Level::Library ? Level::Formats : Level::Items);
}

bool CLibraryReader::end_array()
{
    if (m_notes)
        return EndInNotes();
    return At() == Level::Pieces ? EndPieces() : End();
}

bool CLibraryReader::parse_error(std::size_t position, const std::string&, const Json::exception& fault)
{
    constexpr int kNumberOverflow = 406;
    if (fault.id == kNumberOverflow)
        return Refuse(WantsInteger() ? OutOfRange() : WrongKind());
    return Refuse(FillMessage(u"%s is no valid JSON", {LineAndColumn(m_json, position)}));
}

CLibraryReader::Kind CLibraryReader::Wanted() const
{
    switch (At()) {
    case Level::Library:
        return Key() == "formats" ? Kind::Array : Key() == "filePattern" ? Kind::Text : Kind::Integer;
    case Level::Format:
        return Key() == "items" ? Kind::Array : Kind::Text;
    case Level::Item:
        return Key() == "description" ? Kind::Text : Key() == "notes" ? Kind::Object : Kind::Integer;
    case Level::Pieces:
        return Kind::Piece;
    default:
        return Kind::Object;
    }
}

bool CLibraryReader::IsKnown(std::string_view key) const
{
    switch (At()) {
    case Level::Library:
        return key == "startAddress" || key == "rowCount" || key == "filePattern" || key == "formats";
    case Level::Format:
        return key == "name" || key == "items";
    default:
        return FindItemField(key) != nullptr || key == "notes";
    }
}

bool CLibraryReader::Begin(Level level)
{
    m_open.push_back({level});
    return true;
}

bool CLibraryReader::End()
{
    m_open.pop_back();
    if (!m_open.empty())
        ++m_open.back().index;
    return true;
}

bool CLibraryReader::AddToNotes(CValueBuilder::Value value)
{
    m_notes->Add(std::move(value));
    return true;
}

bool CLibraryReader::EndInNotes()
{
    m_notes->End();
    if (!m_notes->IsWhole())
        return true;
    ItemNotes notes;
    m_fault = NotesFromJson(m_notes->Root(), ToUtf8(Place()), notes);
    if (m_fault)
        return false;
    Item().notes = CSharedNotes(Tidied(std::move(notes)));
    m_notes.reset();
    return true;
}

void CLibraryReader::EndItem()
{
    const std::vector<std::string>& keys = m_open.back().keys;
    const bool hasBounds =
        std::any_of(keys.begin(), keys.end(), [](const auto& key) { return key == "minValue" || key == "maxValue"; });
    if (!hasBounds)
        deriveBounds(Item());
}

CLibraryReader::Range CLibraryReader::WantedRange() const
{
    if (At() == Level::Pieces)
        return {0, std::numeric_limits<char16_t>::max()};
    if (At() != Level::Item)
        return {Int32Limits::min(), Int32Limits::max()};
    const ItemField& field = *FindItemField(Key());
    return {field.least, field.most};
}

bool CLibraryReader::TakeInteger(std::int64_t value)
{
    const Range range = WantedRange();
    if (value < range.least || value > range.most)
        return Refuse(OutOfRange());
    if (At() == Level::Pieces)
        return TakePiece(std::u16string(1, static_cast<char16_t>(value)));
    if (At() == Level::Item)
        FindItemField(Key())->set(Item(), value);
    else
        (Key() == "rowCount" ? m_library.rowCount : m_library.startAddress) = static_cast<std::int32_t>(value);
    return true;
}

/// The field that the last key names, in the object that is open or that the open list stands in.
std::span<char16_t> CLibraryReader::TextField()
{
    const std::size_t inner = At() == Level::Pieces ? 2 : 1;
    switch (m_open[m_open.size() - inner].level) {
    case Level::Library:
        return m_library.filePattern;
    case Level::Format:
        return Format().name;
    default:
        return Item().description;
    }
}

bool CLibraryReader::TakeText(std::u16string_view text)
{
    const std::span<char16_t> field = TextField();
    if (text.size() >= field.size())
        return Refuse(TooLong(field.size() - 1));
    Fill(field, text);
    return true;
}

bool CLibraryReader::TakePiece(std::u16string_view units)
{
    m_pieces += units;
    if (m_pieces.size() > TextField().size())
        return Refuse(TooLong(TextField().size()));
    ++m_open.back().index;
    return true;
}

bool CLibraryReader::EndPieces()
{
    Fill(TextField(), m_pieces);
    return End();
}

std::u16string CLibraryReader::Place() const
{
    std::string place;
    for (const Open& open : m_open) {
        if (open.level == Level::Formats || open.level == Level::Items || open.level == Level::Pieces)
            place += "/" + std::to_string(open.index);
        else if (!open.keys.empty())
            place += "/" + EscapedKey(open.keys.back());
    }
    return place.empty() ? u"/" : FromUtf8(place);
}

std::u16string CLibraryReader::WrongKind() const
{
    switch (Wanted()) {
    case Kind::Object:
        return u"an object is expected";
    case Kind::Array:
        return u"an array is expected";
    case Kind::Text:
        return u"a text is expected";
    case Kind::Piece:
        return u"a text or an integer is expected";
    case Kind::Integer:
        break;
    }
    return u"an integer is expected";
}

std::u16string CLibraryReader::OutOfRange() const
{
    const Range range = WantedRange();
    return FillMessage(u"the number is not between %d and %d", {range.least, range.most});
}

bool CLibraryReader::Refuse(std::u16string_view text)
{
    m_fault = JsonFault{Place(), std::u16string(text)};
    return false;
}

} // namespace

std::optional<JsonFault> LibraryFromJson(std::string_view json, FormatLibrary& library)
{
    CLibraryReader reader(json, library);
    Json::sax_parse(json.begin(), json.end(), &reader);
    return reader.Fault();
}
