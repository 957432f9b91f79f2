#include "cli/ChangeText.h"

#include "changes/WordsText.h"
#include "text/EscapedText.h"
#include "text/NumberText.h"
#include "text/Utf8Text.h"

#include <string_view>

namespace {

constexpr std::u16string_view kNone = u"(none)";
constexpr std::u16string_view kGap = u"  ";
constexpr std::u16string_view kArrow = u" -> ";

void AppendPart(std::u16string_view part, std::u16string& text)
{
    if (!text.empty())
        text += kGap;
    text += part;
}

std::u16string WordsText(const WordRun& words)
{
    std::string text;
    AppendWordsText(words, text);
    return FromUtf8(text);
}

bool IsValue(const ChangeRecord& record)
{
    return record.row || record.line || record.oldText || record.newText;
}

std::u16string RunText(const WordRun& words)
{
    return words.empty() ? std::u16string(kNone) : WordsText(words);
}

std::u16string ValueText(const ChangeRecord& record)
{
    const bool withWords = record.oldText == record.newText;
    return SideText(record.oldText, record.oldWords, withWords) + std::u16string(kArrow) +
           SideText(record.newText, record.newWords, withWords);
}

std::u16string TextOf(const ChangeRecord& record)
{
    std::u16string text = PlaceText(record);
    if (record.zeros != 0) {
        AppendPart(u"zeros", text);
        AppendPart((record.zeros > 0 ? u"+" : u"") + DecimalText(record.zeros), text);
    } else if (IsValue(record)) {
        AppendPart(ValueText(record), text);
    } else if (record.address) {
        AppendPart(u"words", text);
        AppendPart(RunText(record.oldWords) + std::u16string(kArrow) + RunText(record.newWords), text);
    } else if (record.why) {
        AppendPart(WordOf(*record.why), text);
    }
    return text;
}

} // namespace

std::u16string PlaceText(const ChangeRecord& record)
{
    std::u16string text;
    if (record.address)
        AppendPart(u"RW" + DecimalText(record.address->number), text);
    if (record.row)
        AppendPart(u"row " + DecimalText(*record.row), text);
    if (record.item)
        AppendPart(EscapedText(*record.item), text);
    else if (record.column)
        AppendPart(u"column " + DecimalText(*record.column), text);
    if (record.line)
        AppendPart(u"line " + DecimalText(*record.line), text);
    return text;
}

std::u16string SideText(const std::optional<std::u16string>& text, const WordRun& words, bool withWords)
{
    std::u16string side = text ? EscapedText(*text) : std::u16string();
    if (!words.empty() && (withWords || !text))
        side += (text ? u" [" : u"[") + WordsText(words) + u"]";
    return text || !words.empty() ? side : std::u16string(kNone);
}

void AppendChangeText(const ChangeRecord& record, std::string& line)
{
    line += ToUtf8(TextOf(record));
    line += '\n';
}
