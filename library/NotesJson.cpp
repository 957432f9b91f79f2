#include "library/NotesJson.h"

#include "library/JsonText.h"
#include "text/MessageText.h"
#include "text/Utf8Text.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

namespace {

using Json = nlohmann::ordered_json;

void AppendField(std::string_view name, std::u16string_view text, std::string& json)
{
    json.append(", \"").append(name).append("\": ");
    AppendJsonText(text, json);
}

void AppendBits(const std::vector<std::u16string>& bits, std::string& json)
{
    const char* before = ", \"bits\": [";
    for (const auto& name : bits) {
        json += std::exchange(before, ", ");
        AppendJsonText(name, json);
    }
    json += ']';
}

void AppendTexts(const std::vector<ValueText>& texts, std::string& json)
{
    const char* before = ", \"texts\": [{\"value\": ";
    for (const auto& [value, text] : texts) {
        json += std::exchange(before, ", {\"value\": ");
        AppendJsonText(value, json);
        AppendField("text", text, json);
        json += '}';
    }
    json += ']';
}

/// Control characters but line feeds, which only a text of several lines may have.
bool HasControl(std::u16string_view text, bool mayHaveLines)
{
    return std::any_of(text.begin(), text.end(), [mayHaveLines](char16_t unit) {
        return (unit < 0x20 && !(mayHaveLines && unit == u'\n')) || unit == 0x7F;
    });
}

/// Reads fields one after the other; the first fault is kept.
class CNotesReader {
public:
    CNotesReader(std::string place, ItemNotes& notes) : m_place(std::move(place)), m_notes(notes) {}

    std::optional<JsonFault> Read(const Json& object)
    {
        for (const auto& [key, value] : object.items()) {
            m_field = m_place + "/" + EscapedKey(key);
            if (!Take(key, value))
                return m_fault;
        }
        m_field = m_place + "/highest";
        if (m_notes.lowest && m_notes.highest && *m_notes.lowest > *m_notes.highest)
            Refuse(u"the highest value lies below the lowest one");
        return m_fault;
    }

private:
    bool Take(std::string_view key, const Json& value)
    {
        if (key == "unit")
            return TakeText(value, ItemNotes::kLongestUnit, m_notes.unit);
        if (key == "lowest")
            return TakeNumber(value, m_notes.lowest);
        if (key == "highest")
            return TakeNumber(value, m_notes.highest);
        if (key == "comment")
            return TakeText(value, ItemNotes::kLongestComment, m_notes.comment, true);
        if (key == "bits")
            return TakeBits(value);
        if (key == "texts")
            return TakeTexts(value);
        return Refuse(u"there is no field of this name");
    }

    bool TakeText(const Json& value, std::size_t longest, std::u16string& text, bool mayHaveLines = false)
    {
        if (!value.is_string())
            return Refuse(u"a text is expected");
        text = FromUtf8(value.get_ref<const std::string&>());
        if (text.size() > longest)
            return Refuse(FillMessage(u"the text is longer than %d characters", {static_cast<std::int64_t>(longest)}));
        return !HasControl(text, mayHaveLines) || Refuse(u"the text holds a control character");
    }

    bool TakeNumber(const Json& value, std::optional<CDecimal>& number)
    {
        if (!value.is_string() && !value.is_number())
            return Refuse(u"a number is expected");
        const std::string text = value.is_string() ? value.get<std::string>() : value.dump();
        number = CDecimal::Parse(FromUtf8(text));
        return number || Refuse(u"a number is expected");
    }

    bool TakeBits(const Json& value)
    {
        return TakeList(value, ItemNotes::kMostBits, [this](const Json& name) {
            return TakeText(name, ItemNotes::kLongestName, m_notes.bits.emplace_back());
        });
    }

    bool TakeTexts(const Json& value)
    {
        return TakeList(value, ItemNotes::kMostTexts, [this](const Json& named) {
            if (!named.is_object() || named.size() != 2 || !named.contains("value") || !named.contains("text"))
                return Refuse(u"an object with \"value\" and \"text\" is expected");
            ValueText& text = m_notes.texts.emplace_back();
            return TakeText(named["value"], ItemNotes::kLongestName, text.value) &&
                   TakeText(named["text"], ItemNotes::kLongestName, text.text);
        });
    }

    template <class TakeElement>
    bool TakeList(const Json& list, std::size_t most, TakeElement takeElement)
    {
        if (!list.is_array())
            return Refuse(u"an array is expected");
        if (list.size() > most)
            return Refuse(FillMessage(u"there are more than %d elements", {static_cast<std::int64_t>(most)}));
        const std::string field = m_field;
        for (std::size_t i = 0; i < list.size(); ++i) {
            m_field = field + "/" + std::to_string(i);
            if (!takeElement(list[i]))
                return false;
        }
        return true;
    }

    bool Refuse(std::u16string_view text)
    {
        m_fault = JsonFault{FromUtf8(m_field), std::u16string(text)};
        return false;
    }

    std::string m_place;
    std::string m_field; ///< where the reader is
    ItemNotes& m_notes;
    std::optional<JsonFault> m_fault;
};

} // namespace

void AppendNotes(const ItemNotes& notes, std::string& json)
{
    if (!notes.unit.empty())
        AppendField("unit", notes.unit, json);
    if (notes.lowest)
        AppendField("lowest", notes.lowest->Text(), json);
    if (notes.highest)
        AppendField("highest", notes.highest->Text(), json);
    if (!notes.comment.empty())
        AppendField("comment", notes.comment, json);
    if (!notes.bits.empty())
        AppendBits(notes.bits, json);
    if (!notes.texts.empty())
        AppendTexts(notes.texts, json);
}

void AppendNotesObject(const ItemNotes& notes, std::string& json)
{
    constexpr std::size_t kBetween = 2; // ", " before a field
    std::string fields;
    AppendNotes(notes, fields);
    json.append("{").append(fields, std::min(kBetween, fields.size())).append("}");
}

std::optional<JsonFault> NotesFromJson(const Json& object, const std::string& place, ItemNotes& notes)
{
    if (!object.is_object())
        return JsonFault{FromUtf8(place), u"an object is expected"};
    return CNotesReader(place, notes).Read(object);
}
