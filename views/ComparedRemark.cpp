#include "views/ComparedRemark.h"

#include "changes/WordsText.h"
#include "text/EscapedText.h"
#include "views/TextCrossing.h"

#include <QCoreApplication>

namespace {

constexpr qsizetype kLongestValue = 80; // characters of a value in a remark

QString Tr(const char* text)
{
    return QCoreApplication::translate("ComparedRemark", text);
}

QString Shortened(const QString& text)
{
    return text.size() > kLongestValue ? text.left(kLongestValue) + QChar(0x2026) : text;
}

QString WordsOf(const WordRun& words)
{
    std::string text;
    AppendWordsText(words, text);
    return QString::fromLatin1(text);
}

/// Texts that are alike are told apart by their words.
QString OtherValue(const ChangeRecord& change)
{
    if (!change.newText)
        return change.newWords.empty() ? Tr("no value") : QStringLiteral("[%1]").arg(WordsOf(change.newWords));
    const QString text = Shortened(ToQString(EscapedText(*change.newText)));
    if (change.oldText == change.newText && !change.newWords.empty())
        return text + QStringLiteral(" [%1]").arg(Shortened(WordsOf(change.newWords)));
    return text.isEmpty() ? Tr("the empty text") : text;
}

} // namespace

QString ComparedRemark(const CRecipeDocument& document, CellPlace place)
{
    const auto& comparison = document.Comparison();
    if (!comparison || !comparison->Differs(place))
        return {};
    const QString name = ToQString(EscapedText(comparison->Name()));
    return name + QStringLiteral(": ") + OtherValue(comparison->RecordOf(place));
}
