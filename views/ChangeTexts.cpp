#include "views/ChangeTexts.h"

#include "changes/WordsText.h"
#include "text/EscapedText.h"
#include "text/Surrogates.h"
#include "views/CellRemarks.h"
#include "views/TextCrossing.h"

#include <QCoreApplication>

#include <cstdlib>
#include <span>

namespace {

constexpr std::size_t kBytesOfWord = 2;

QString Tr(const char* text)
{
    return QCoreApplication::translate("CChangesPanel", text);
}

QString InOneLine(std::u16string_view text, std::size_t most)
{
    const std::u16string_view part = CutText(text, most);
    return ToQString(EscapedText(part)) + (part.size() < text.size() ? QStringLiteral("…") : QString());
}

QString WordsOf(const WordRun& words, std::size_t most)
{
    const std::size_t count = (words.size() + 1) / kBytesOfWord;
    const auto part = std::span(words).first(count > most ? most * kBytesOfWord : words.size());
    std::string text;
    AppendWordsText(part, text);
    return QString::fromLatin1(text) + (count > most ? QStringLiteral("…") : QString());
}

QString ZerosOf(std::int64_t count)
{
    return count == 1 ? Tr("1 zero word") : Tr("%1 zero words").arg(count);
}

QString ValueOf(std::u16string_view text, const ColumnCoding* column, std::size_t most)
{
    const QString shown = InOneLine(text, most);
    return column != nullptr ? WithMeaning(*column, shown) : shown;
}

/// How the sides of a change are written.
struct SideForm {
    bool withWords; ///< after the text
    std::size_t most;
    const ColumnCoding* column; ///< null where it has no notes to show
};

/// One side of a change: its text, else its words.
QString SideOf(const std::optional<std::u16string>& text, const WordRun& words, const SideForm& form)
{
    const auto& [withWords, most, column] = form;
    if (!text)
        return WordsOf(words, most);
    const QString shown = ValueOf(*text, column, most);
    return withWords && !words.empty() ? QStringLiteral("%1 [%2]").arg(shown, WordsOf(words, most)) : shown;
}

QString NewSideOf(const ChangeRecord& change, const SideForm& form)
{
    if (change.zeros > 0)
        return ZerosOf(change.zeros);
    const QString side = SideOf(change.newText, change.newWords, form);
    return change.reads ? Tr("%1 (reads %2)").arg(side, ValueOf(*change.reads, form.column, form.most)) : side;
}

QString RowOf(const ChangeRecord& change)
{
    if (change.row)
        return QString::number(*change.row);
    return change.line ? Tr("line %1").arg(*change.line) : QString();
}

QString WhyOf(const ChangeRecord& change, std::size_t most)
{
    if (!change.note.empty())
        return InOneLine(change.note, most);
    return change.why ? ToQString(WordOf(*change.why)) : QString();
}

QString ItemOf(const ChangeRecord& change, std::size_t most)
{
    if (change.item)
        return InOneLine(*change.item, most);
    return change.why == ChangeReason::Form ? Tr("the whole file") : QString();
}

} // namespace

ChangeTexts TextsOf(const ChangeRecord& change, std::size_t most, const ColumnCoding* column)
{
    const SideForm form{change.oldText && change.oldText == change.newText, most, column};
    return {change.address ? QStringLiteral("RW%1").arg(change.address->number) : QString(),
            RowOf(change),
            ItemOf(change, most),
            change.zeros < 0 ? ZerosOf(-change.zeros) : SideOf(change.oldText, change.oldWords, form),
            NewSideOf(change, form),
            WhyOf(change, most)};
}

QString ReasonSentence(ChangeReason reason)
{
    switch (reason) {
    case ChangeReason::Edited:
        return Tr("You changed this value.");
    case ChangeReason::Type:
        return Tr("The rows were read from a file of another type than they are saved as.");
    case ChangeReason::End:
        return Tr("The value lies past the end of the file, which becomes longer.");
    case ChangeReason::Limits:
        return Tr("Because of its limits the number is shown as another one, and a save stores what is shown.");
    case ChangeReason::Decimals:
        return Tr("The decimals shown make another number than the one stored, and a save stores them.");
    case ChangeReason::Digits:
        return Tr("The number has more digits than are shown, and a save stores what is shown.");
    case ChangeReason::Coding:
        return Tr("The words are none that the value's coding gives, and a save stores what is shown.");
    case ChangeReason::Text:
        return Tr("The text has characters that the string cannot hold, or something lies after its end; a save stores "
                  "what is shown.");
    case ChangeReason::Quotes:
        return Tr("The quotation marks of the field are not kept.");
    case ChangeReason::Rows:
        return Tr("The line or field is not shown, and a save drops it.");
    case ChangeReason::Form:
        break;
    }
    return Tr("No value changes, only the form of the file, such as quotation marks, line ends or the character set.");
}
