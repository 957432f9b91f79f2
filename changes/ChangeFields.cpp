#include "changes/ChangeFields.h"

#include "changes/WordsText.h"
#include "text/MessageText.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr NumberRange kIndex{0, std::numeric_limits<std::int32_t>::max()};
constexpr NumberRange kRow{1, kIndex.most};
constexpr NumberRange kColumn{2, kIndex.most};
constexpr NumberRange kLine{1, std::numeric_limits<std::int64_t>::max()};
constexpr NumberRange kSize{0, kLine.most};
constexpr NumberRange kAddress{0, kSize.most / 2}; // its byte is a number of 64 bits, too
constexpr NumberRange kAnyWords{-kAddress.most, kAddress.most};

template <auto Member>
constexpr auto kHeaderText = [](ChangeDraft& draft, const std::u16string& text) {
    draft.header.*Member = text;
    return std::u16string();
};

template <auto Member>
constexpr auto kHeaderNumber = [](ChangeDraft& draft, std::int64_t number) {
    draft.header.*Member = number;
    return std::u16string();
};

template <auto Member>
constexpr auto kRecordText = [](ChangeDraft& draft, const std::u16string& text) {
    draft.record.*Member = text;
    return std::u16string();
};

template <auto Member>
constexpr auto kRecordNumber = [](ChangeDraft& draft, std::int64_t number) {
    draft.record.*Member = static_cast<std::int32_t>(number); // its range is that of a row
    return std::u16string();
};

template <auto Member>
constexpr auto kRecordWords = [](ChangeDraft& draft, const std::u16string& text) -> std::u16string {
    auto words = WordsFromText(text);
    if (!words)
        return u"words of four hexadecimal digits with a blank between are expected";
    draft.record.*Member = std::move(*words);
    return {};
};

std::u16string SetMark(ChangeDraft&, const std::u16string& text)
{
    return text == u"changes" ? u"" : u"\"changes\" is expected";
}

std::u16string SetVersion(ChangeDraft&, std::int64_t number)
{
    return number == 1 ? u"" : FillMessage(u"version %d is not known, only version 1", {number});
}

std::u16string SetType(ChangeDraft& draft, const std::u16string& text)
{
    const bool isWord = std::all_of(text.begin(), text.end(), [](char16_t c) { return c >= u'a' && c <= u'z'; });
    draft.header.type = isWord ? FileTypeOf(u"." + text) : std::nullopt;
    return draft.header.type ? u"" : u"\"rcp\", \"csv\", \"erp\" or \"frp\" is expected";
}

std::u16string SetFormat(ChangeDraft& draft, const std::u16string& text)
{
    draft.header.tables.back().format = text;
    return {};
}

std::u16string SetStart(ChangeDraft& draft, std::int64_t number)
{
    draft.header.tables.back().start = WordAddress(number);
    return {};
}

std::u16string SetRows(ChangeDraft& draft, std::int64_t number)
{
    draft.header.tables.back().rows = static_cast<std::int32_t>(number);
    return {};
}

std::u16string SetAddress(ChangeDraft& draft, std::int64_t number)
{
    draft.record.address = WordAddress(number);
    return {};
}

std::u16string SetLine(ChangeDraft& draft, std::int64_t number)
{
    draft.record.line = number;
    return {};
}

std::u16string SetZeros(ChangeDraft& draft, std::int64_t number)
{
    draft.record.zeros = number;
    return number != 0 ? u"" : u"the number is 0";
}

std::u16string SetWhy(ChangeDraft& draft, const std::u16string& text)
{
    draft.record.why = ReasonOf(text);
    return draft.record.why ? u"" : u"none of these: " + AllReasonWords();
}

constexpr ChangeField kHeaderFields[] = {
    {.key = u"vantor", .setText = SetMark, .isRequired = true},
    {.key = u"version", .setNumber = SetVersion, .range = kSize, .isRequired = true},
    {.key = u"file", .setText = kHeaderText<&ChangeHeader::file>},
    {.key = u"type", .setText = SetType},
    {.key = u"bytes", .setNumber = kHeaderNumber<&ChangeHeader::bytes>, .range = kSize},
    {.key = u"newBytes", .setNumber = kHeaderNumber<&ChangeHeader::newBytes>, .range = kSize},
    {.key = u"tables"},
};

constexpr ChangeField kTableFields[] = {
    {.key = u"format", .setText = SetFormat, .isRequired = true},
    {.key = u"start", .setNumber = SetStart, .range = kAnyWords, .isRequired = true},
    {.key = u"rows", .setNumber = SetRows, .range = kIndex, .isRequired = true},
};

constexpr ChangeField kRecordFields[] = {
    {.key = u"address", .setNumber = SetAddress, .range = kAddress},
    {.key = u"table", .setNumber = kRecordNumber<&ChangeRecord::table>, .range = kIndex},
    {.key = u"row", .setNumber = kRecordNumber<&ChangeRecord::row>, .range = kRow},
    {.key = u"column", .setNumber = kRecordNumber<&ChangeRecord::column>, .range = kColumn},
    {.key = u"item", .setText = kRecordText<&ChangeRecord::item>},
    {.key = u"line", .setNumber = SetLine, .range = kLine},
    {.key = u"old", .setText = kRecordText<&ChangeRecord::oldText>},
    {.key = u"new", .setText = kRecordText<&ChangeRecord::newText>},
    {.key = u"reads", .setText = kRecordText<&ChangeRecord::reads>},
    {.key = u"oldWords", .setText = kRecordWords<&ChangeRecord::oldWords>},
    {.key = u"newWords", .setText = kRecordWords<&ChangeRecord::newWords>},
    {.key = u"zeros", .setNumber = SetZeros, .range = kAnyWords},
    {.key = u"why", .setText = SetWhy},
};

} // namespace

ChangeFields FieldsOfHeader()
{
    return kHeaderFields;
}

ChangeFields FieldsOfTable()
{
    return kTableFields;
}

ChangeFields FieldsOfRecord()
{
    return kRecordFields;
}

const ChangeField* FindChangeField(ChangeFields fields, std::u16string_view key)
{
    const auto found =
        std::find_if(fields.begin(), fields.end(), [&](const ChangeField& field) { return field.key == key; });
    return found == fields.end() ? nullptr : &*found;
}
