#include "changes/ChangeSyntax.h"

#include "changes/ChangeFields.h"
#include "text/MessageText.h"
#include "text/Surrogates.h"
#include "text/Utf8Text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>
#include <vector>

namespace {

using Json = nlohmann::json;

constexpr std::size_t kEscapeLength = 6; // \ud83d

/// The unit whose escape \uXXXX stands at `at`; nothing when none does.
std::optional<char16_t> EscapedUnit(std::string_view line, std::size_t at)
{
    const std::string_view escape = line.substr(std::min(at, line.size()), kEscapeLength);
    if (escape.size() < kEscapeLength || !escape.starts_with("\\u"))
        return std::nullopt;
    std::uint16_t unit = 0;
    const char* const end = escape.data() + escape.size();
    if (std::from_chars(escape.data() + 2, end, unit, 16).ptr != end)
        return std::nullopt;
    return unit;
}

/// The JSON parser refuses the escape of half a surrogate pair. So each becomes the escape of a zero character, as long
/// as it was, and so that they can be told from those that were there, `units` has what all of them stood for, in
/// order.
std::string MaskHalves(std::string_view line, std::u16string& units)
{
    std::string masked(line);
    std::size_t at = 0;
    while ((at = line.find('\\', at)) != std::string_view::npos) {
        const std::optional<char16_t> unit = EscapedUnit(line, at);
        if (!unit) {
            at += 2; // a backslash escapes the next character, which may be another
            continue;
        }
        const std::optional<char16_t> next = EscapedUnit(line, at + kEscapeLength);
        if (IsHighSurrogate(*unit) && next && IsLowSurrogate(*next)) {
            at += 2 * kEscapeLength;
            continue;
        }
        if (*unit == 0 || IsHighSurrogate(*unit) || IsLowSurrogate(*unit)) {
            masked.replace(at, kEscapeLength, "\\u0000");
            units += *unit;
        }
        at += kEscapeLength;
    }
    return masked;
}

/// The column of the last of the first `end` bytes of a line, counted in characters from 1; the end of the line counts
/// as one.
std::int64_t ColumnAt(std::string_view line, std::size_t end)
{
    const std::string_view upTo = line.substr(0, end);
    const auto begun =
        std::count_if(upTo.begin(), upTo.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; });
    return std::max<std::int64_t>(begun + (end > line.size() ? 1 : 0), 1);
}

bool IsInteger(std::string_view number)
{
    return number.find_first_not_of("-0123456789") == std::string_view::npos;
}

/// Takes the parser's events in the order of the line. An event's answer is false to end the parsing.
class CLineParser final : public nlohmann::json_sax<Json> {
public:
    /// Takes `fields`; a key of `otherFields` is refused with the words `misplaced`.
    CLineParser(ChangeFields fields, ChangeFields otherFields, std::u16string_view misplaced)
        : m_line{fields},
          m_otherFields(otherFields),
          m_misplaced(misplaced)
    {
    }

    /// Parses all of `line` into `draft`.
    std::optional<ChangeFault> Parse(std::string_view line, ChangeDraft& draft);

    bool null() override { return RefuseKind(); }
    bool boolean(bool) override { return RefuseKind(); }
    bool binary(binary_t&) override { return RefuseKind(); }
    bool number_integer(number_integer_t value) override { return TakeNumber(value); }
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
    enum class Level { Outside, Line, Tables, Table };

    /// An object that has begun.
    struct Open {
        ChangeFields fields;
        const ChangeField* field = nullptr; ///< of the last key
        std::vector<const ChangeField*> seen = {};
    };

    Open& At() { return m_level == Level::Table ? m_table : m_line; }
    bool TakesValue() const { return m_level == Level::Line || m_level == Level::Table; }
    bool WantsText() { return TakesValue() && At().field->setText != nullptr; }
    bool WantsNumber() { return TakesValue() && At().field->setNumber != nullptr; }
    bool WantsList() { return TakesValue() && !WantsText() && !WantsNumber(); }

    std::u16string Unmasked(std::string_view text);
    bool TakeNumber(std::int64_t number);
    bool RefuseJson(std::size_t end);
    bool RefuseUnless(const std::u16string& complaint);
    bool RefuseKey(std::u16string_view name);
    bool RefuseKind();
    bool RefuseRange();
    std::u16string Place();
    bool Refuse(std::u16string_view text);
    bool RefuseAt(std::u16string place, std::u16string_view text);

    Open m_line;
    Open m_table{FieldsOfTable()};
    ChangeFields m_otherFields;
    std::u16string_view m_misplaced;
    Level m_level = Level::Outside;
    std::string_view m_text; ///< of the line
    std::u16string m_units;  ///< what the zero characters of the texts stand for
    std::size_t m_unit = 0;  ///< how many of them were met
    ChangeDraft* m_draft = nullptr;
    std::optional<ChangeFault> m_fault;
};

std::optional<ChangeFault> CLineParser::Parse(std::string_view line, ChangeDraft& draft)
{
    m_text = line;
    m_draft = &draft;
    if (line.starts_with('\xEF')) { // of a byte-order mark, which the parser would skip in each line
        RefuseJson(1);
        return m_fault;
    }
    const std::string masked = MaskHalves(line, m_units);
    Json::sax_parse(masked.begin(), masked.end(), this);
    if (const std::size_t zero = line.find('\0'); !m_fault && zero != std::string_view::npos)
        RefuseJson(zero + 1); // the parser takes it for the end
    return m_fault;
}

bool CLineParser::number_unsigned(number_unsigned_t value)
{
    if (value > static_cast<number_unsigned_t>(std::numeric_limits<std::int64_t>::max()))
        return RefuseRange();
    return TakeNumber(static_cast<std::int64_t>(value));
}

/// An integer of too many digits comes as a real number, too.
bool CLineParser::number_float(number_float_t, const string_t& number)
{
    return IsInteger(number) ? RefuseRange() : RefuseKind();
}

bool CLineParser::string(string_t& text)
{
    if (!WantsText())
        return RefuseKind();
    return RefuseUnless(At().field->setText(*m_draft, Unmasked(text)));
}

bool CLineParser::start_object(std::size_t)
{
    if (m_level == Level::Outside) {
        m_level = Level::Line;
        return true;
    }
    if (m_level != Level::Tables)
        return RefuseKind();
    m_draft->header.tables.emplace_back();
    m_table = Open{FieldsOfTable()};
    m_level = Level::Table;
    return true;
}

bool CLineParser::key(string_t& name)
{
    Open& open = At();
    const std::u16string key = Unmasked(name);
    open.field = FindChangeField(open.fields, key);
    if (open.field == nullptr)
        return RefuseKey(key);
    if (std::find(open.seen.begin(), open.seen.end(), open.field) != open.seen.end())
        return Refuse(u"the field stands twice");
    open.seen.push_back(open.field);
    return true;
}

bool CLineParser::end_object()
{
    Open& open = At();
    for (const ChangeField& field : open.fields) {
        if (!field.isRequired || std::find(open.seen.begin(), open.seen.end(), &field) != open.seen.end())
            continue;
        open.field = &field;
        return Refuse(u"the field is missing");
    }
    m_level = m_level == Level::Table ? Level::Tables : Level::Outside;
    return true;
}

bool CLineParser::start_array(std::size_t)
{
    if (!WantsList())
        return RefuseKind();
    m_level = Level::Tables;
    return true;
}

bool CLineParser::end_array()
{
    m_level = Level::Line;
    return true;
}

bool CLineParser::parse_error(std::size_t position, const std::string&, const Json::exception& fault)
{
    constexpr int kNumberOverflow = 406;
    if (fault.id == kNumberOverflow)
        return RefuseKind(); // such a number has an exponent or a fraction
    return RefuseJson(position);
}

/// The text of what the parser took from the masked line.
std::u16string CLineParser::Unmasked(std::string_view text)
{
    std::u16string units = FromUtf8(text);
    for (char16_t& unit : units)
        if (unit == u'\0')
            unit = m_units[m_unit++];
    return units;
}

bool CLineParser::TakeNumber(std::int64_t number)
{
    if (!WantsNumber())
        return RefuseKind();
    const ChangeField& field = *At().field;
    if (number < field.range.least || number > field.range.most)
        return RefuseRange();
    return RefuseUnless(field.setNumber(*m_draft, number));
}

/// The last of the first `end` bytes is wrong.
bool CLineParser::RefuseJson(std::size_t end)
{
    return RefuseAt({}, FillMessage(u"column %d is no valid JSON", {ColumnAt(m_text, end)}));
}

bool CLineParser::RefuseUnless(const std::u16string& complaint)
{
    return complaint.empty() || Refuse(complaint);
}

bool CLineParser::RefuseKey(std::u16string_view name)
{
    constexpr std::size_t kShownUnits = 64;
    const bool isMisplaced = m_level == Level::Line && FindChangeField(m_otherFields, name) != nullptr;
    std::u16string place = Place();
    place += CutText(name, kShownUnits);
    return RefuseAt(std::move(place), isMisplaced ? m_misplaced : u"there is no field of this name");
}

bool CLineParser::RefuseKind()
{
    if (WantsText())
        return Refuse(u"a text is expected");
    if (WantsNumber())
        return Refuse(u"an integer is expected");
    return Refuse(WantsList() ? u"an array is expected" : u"an object is expected");
}

bool CLineParser::RefuseRange()
{
    if (!WantsNumber())
        return RefuseKind();
    const NumberRange range = At().field->range;
    return Refuse(FillMessage(u"the number is not between %d and %d", {range.least, range.most}));
}

/// "row", "tables/0" or "tables/0/rows" for example.
std::u16string CLineParser::Place()
{
    std::u16string place;
    if (m_level == Level::Tables || m_level == Level::Table) {
        const std::size_t ended = m_draft->header.tables.size() - (m_level == Level::Table ? 1 : 0);
        place = FillMessage(u"tables/%d", {static_cast<std::int64_t>(ended)});
        if (m_level == Level::Table)
            place += u'/';
    }
    if (TakesValue() && At().field != nullptr)
        place += At().field->key;
    return place;
}

bool CLineParser::Refuse(std::u16string_view text)
{
    return RefuseAt(Place(), text);
}

bool CLineParser::RefuseAt(std::u16string place, std::u16string_view text)
{
    m_fault = ChangeFault{0, std::move(place), std::u16string(text)};
    return false;
}

ChangeFault Fault(std::u16string_view key, std::u16string_view text)
{
    return {0, std::u16string(key), std::u16string(text)};
}

bool HasWords(const ChangeRecord& record)
{
    return !record.oldWords.empty() || !record.newWords.empty();
}

bool HasTexts(const ChangeRecord& record)
{
    return record.oldText || record.newText || record.reads;
}

bool HasCell(const ChangeRecord& record)
{
    return record.table != 0 || record.row || record.column || record.item;
}

bool IsOfTheForm(const ChangeRecord& record)
{
    ChangeRecord form;
    form.why = ChangeReason::Form;
    return record == form;
}

/// What is wrong with a record whose values are all good by themselves.
std::optional<ChangeFault> RecordFault(const ChangeRecord& record)
{
    if (IsOfTheForm(record))
        return std::nullopt;
    if (record.line && (record.address || HasCell(record) || HasWords(record) || record.zeros != 0))
        return Fault(u"line", u"a line behind the rows has no address, no row and no words");
    if (record.zeros != 0 && (!record.address || HasWords(record) || HasTexts(record)))
        return Fault(u"zeros", u"they have an address, no words and no texts");
    if (!record.address && !record.line && !(record.row && (record.column || record.item)))
        return Fault(u"", u"an address, a row with a column or an item, or a line is missing");
    if (!HasWords(record) && !HasTexts(record) && record.zeros == 0)
        return Fault(u"", u"a text, words or zeros are missing");
    return std::nullopt;
}

} // namespace

std::u16string FaultText(const ChangeFault& fault)
{
    const auto line = static_cast<std::int64_t>(fault.line);
    if (fault.key.empty())
        return FillMessage(u"line %d: %s", {line, fault.text});
    return FillMessage(u"line %d, \"%s\": %s", {line, fault.key, fault.text});
}

std::optional<ChangeFault> HeaderFromLine(std::string_view line, ChangeHeader& header)
{
    ChangeDraft draft;
    CLineParser parser(FieldsOfHeader(), FieldsOfRecord(), u"it belongs to a record, and the first line is the header");
    auto fault = parser.Parse(line, draft);
    header = std::move(draft.header);
    return fault;
}

std::optional<ChangeFault> ChangeFromLine(std::string_view line, ChangeRecord& record)
{
    ChangeDraft draft;
    CLineParser parser(FieldsOfRecord(), FieldsOfHeader(), u"it belongs to the header, which is the first line");
    auto fault = parser.Parse(line, draft);
    record = std::move(draft.record);
    return fault ? fault : RecordFault(record);
}
