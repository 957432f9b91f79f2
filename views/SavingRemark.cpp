#include "views/SavingRemark.h"

#include "model/StoredNumber.h"
#include "views/ChangeTexts.h"
#include "views/TextCrossing.h"

#include <QCoreApplication>

namespace {

constexpr qsizetype kLongestValue = 80; // characters of a value in a remark

QString Tr(const char* text)
{
    return QCoreApplication::translate("SavingRemark", text);
}

QString Shortened(std::u16string_view text)
{
    const QString all = ToQString(text);
    return all.size() > kLongestValue ? all.left(kLongestValue) + QChar(0x2026) : all;
}

/// What stands between the two values is theirs: a value may hold "%2" itself.
QString Filled(const QString& text, const QString& first, const QString& second)
{
    return text.arg(first, second);
}

QString HoldsPart(const CellOutlook& outlook)
{
    if (!outlook.holds)
        return Tr("lies past the end of the file");
    if (*outlook.holds == outlook.shown)
        return Tr("holds %1").arg(Shortened(*outlook.holds));
    return Filled(Tr("holds %1, shown as %2"), Shortened(*outlook.holds), Shortened(outlook.shown));
}

QString NumberTextOf(const ColumnCoding& coding, const TypedValue& judged)
{
    return judged.stored ? Shortened(NumberText(coding, *judged.stored)) : Shortened(judged.shown);
}

/// `judged` is what becomes of the text `typed`.
QString TypedRemark(const ColumnCoding& coding, std::u16string_view typed, const TypedValue& judged, bool isSaved)
{
    const QString stored = isSaved ? Tr("%1 is stored as %2") : Tr("%1 will be stored as %2");
    switch (judged.verdict) {
    case TypedVerdict::Fine:
        break;
    case TypedVerdict::StoredAsZero:
        return Filled(stored, Tr("the empty text"), NumberTextOf(coding, judged));
    case TypedVerdict::ShownAsAnother:
        return Filled(isSaved ? Tr("%1 is stored as it is, but will be shown as %2")
                              : Tr("%1 will be stored as it is, but shown as %2"),
                      Shortened(typed), Shortened(judged.shown));
    case TypedVerdict::AnotherText:
        return Filled(stored, Shortened(typed), Shortened(judged.shown));
    case TypedVerdict::AnotherNumber:
    case TypedVerdict::NoNumber:
        return Filled(stored, Shortened(typed), NumberTextOf(coding, judged));
    }
    return {};
}

} // namespace

QString RewriteRemark(const CellOutlook& outlook)
{
    return HoldsPart(outlook) + Tr("; a save stores %1. ").arg(Shortened(outlook.stores)) + ReasonSentence(outlook.why);
}

QString TypedRemark(const CRecipeDocument& document, CellPlace place)
{
    const auto judged = document.JudgeTyped(place);
    if (!judged)
        return {};
    const CRecipeRows& rows = document.Rows();
    return TypedRemark(rows.Columns()[place.column], rows.State(place).Text(), *judged,
                       !rows.IsEdited(place.row, place.column));
}
