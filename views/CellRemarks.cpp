#include "views/CellRemarks.h"

#include "document/CellJudge.h"
#include "document/OutsideRange.h"
#include "files/CellComparison.h"
#include "files/TableTitles.h"
#include "model/ValueLimits.h"
#include "model/ValueNames.h"
#include "text/EscapedText.h"
#include "views/ComparedRemark.h"
#include "views/SavingRemark.h"
#include "views/TextCrossing.h"

#include <QCoreApplication>

#include <cstdint>

namespace {

constexpr qsizetype kLongestValue = 80; // characters of a value in a remark
constexpr std::size_t kBitsOfWord = 16;

QString Tr(const char* text)
{
    return QCoreApplication::translate("CellRemarks", text);
}

QString Joined(QStringList parts)
{
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

/// The bit browser's names are spelt right, but it has none for reals and strings.
std::u16string_view NameOf(DataType type)
{
    const std::u16string_view name = BitBrowserTypeName(type);
    return name.empty() ? TypeName(type) : name;
}

QString LimitsRemark(const CRecipeDocument& document, CellPlace place)
{
    const auto value = document.Rows().OutsideLimits(place.row, place.column);
    if (!value)
        return {};
    const ColumnCoding& coding = document.Rows().Columns()[place.column];
    return Tr("the value %1 lies outside the limits %2")
        .arg(ToQString(*value).left(kLongestValue), ToQString(LimitsText(coding)));
}

QString RangeRemark(const CRecipeDocument& document, CellPlace place)
{
    return ToQString(EscapedText(OutsideRangeRemark(document, place)));
}

/// What is said of the cell besides its limits and its range.
QStringList StateRemarks(CRecipeDocument& document, CellPlace place)
{
    QStringList remarks;
    const bool isEdited = document.Rows().IsEdited(place.row, place.column);
    if (isEdited)
        remarks += Tr("changed, not saved yet");
    remarks += TypedRemark(document, place);
    if (const auto outlook = isEdited ? std::nullopt : document.OutlookOf(place))
        remarks += RewriteRemark(*outlook);
    remarks += ComparedRemark(document, place);
    return remarks;
}

/// The bits of the value, 0 for one that has none to name.
std::uint32_t BitsOf(const CRecipeDocument& document, CellPlace place)
{
    const CRecipeRows& rows = document.Rows();
    const std::size_t count = BitsToName(rows.Columns()[place.column]);
    const std::u16string words = CCellJudge(rows, document.Stored(), document.Type()).WordsIn(place);
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < words.size() && i * kBitsOfWord < count; ++i)
        bits |= static_cast<std::uint32_t>(words[i]) << (i * kBitsOfWord);
    return bits;
}

/// "set: Heater, Door open", the lowest bit first; empty where no bit with a name is set.
QString SetBits(const CRecipeDocument& document, CellPlace place)
{
    const ColumnCoding& coding = document.Rows().Columns()[place.column];
    if (coding.notes->bits.empty())
        return {};
    QStringList names;
    for (const auto name : NamesOfSetBits(coding, BitsOf(document, place)))
        names += ToQString(EscapedText(name));
    return names.isEmpty() ? QString() : Tr("set: %1").arg(names.join(QStringLiteral(", ")));
}

QString NamedValue(const ColumnCoding& coding, std::u16string_view text)
{
    const std::u16string_view name = TextOfValue(*coding.notes, coding, text);
    return name.empty() ? QString() : ToQString(EscapedText(text) + u" = " + EscapedText(name));
}

QString UnitOf(const ItemNotes& notes)
{
    return ToQString(EscapedText(notes.unit));
}

/// "150 to 280 °C"; empty without a range.
QString RangeWithUnit(const ItemNotes& notes)
{
    const QString range = ToQString(RangeText(notes));
    return range.isEmpty() || notes.unit.empty() ? range : QStringLiteral("%1 %2").arg(range, UnitOf(notes));
}

QString RangePart(const ItemNotes& notes)
{
    if (HasRange(notes))
        return Tr("sensible: %1").arg(RangeWithUnit(notes));
    return notes.unit.empty() ? QString() : Tr("in %1").arg(UnitOf(notes));
}

} // namespace

QString CellRemark(CRecipeDocument& document, CellPlace place)
{
    return Joined(QStringList{LimitsRemark(document, place), RangeRemark(document, place)} +
                  StateRemarks(document, place));
}

QString CellInfo(CRecipeDocument& document, CellPlace place)
{
    const ColumnCoding& coding = document.Rows().Columns()[place.column];
    const QString address = QStringLiteral("RW%1").arg(AddressOfCell(document.Rows(), place).number);
    return Joined(
        QStringList{address, RangeRemark(document, place)} + CellMeaning(document, place) +
        QStringList{ToQString(NameOf(coding.dataType)), ToQString(LimitsText(coding)), LimitsRemark(document, place)} +
        StateRemarks(document, place));
}

QStringList CellMeaning(const CRecipeDocument& document, CellPlace place)
{
    const ColumnCoding& coding = document.Rows().Columns()[place.column];
    if (coding.notes.IsEmpty())
        return {};
    QStringList parts{NamedValue(coding, document.Rows().Text(place.row, place.column)), SetBits(document, place)};
    if (!NumberOutsideRange(document, place)) // else it is said already
        parts += RangePart(*coding.notes);
    parts.removeAll(QString());
    return parts;
}

QString TitleRemark(const ColumnCoding& coding)
{
    const ItemNotes& notes = *coding.notes;
    QStringList lines;
    if (!notes.unit.empty())
        lines += Tr("Unit: %1").arg(UnitOf(notes));
    if (HasRange(notes))
        lines += Tr("Sensible: %1").arg(RangeWithUnit(notes));
    if (!notes.comment.empty())
        lines += ToQString(notes.comment);
    return lines.join(QLatin1Char('\n'));
}

QString WithMeaning(const ColumnCoding& coding, const QString& text)
{
    if (text.isEmpty() || coding.notes.IsEmpty())
        return text;
    const ItemNotes& notes = *coding.notes;
    const QString value = notes.unit.empty() ? text : QStringLiteral("%1 %2").arg(text, UnitOf(notes));
    const std::u16string_view name = TextOfValue(notes, coding, ViewOf(text));
    return name.empty() ? value : QStringLiteral("%1 = %2").arg(value, ToQString(EscapedText(name)));
}
