#include "views/NumberField.h"

#include "views/NoticeLine.h"
#include "views/TextCrossing.h"

#include <QCoreApplication>
#include <QLineEdit>

namespace {

QString Tr(const char* text)
{
    return QCoreApplication::translate("NumberField", text);
}

} // namespace

QString NumberFault(const QString& text)
{
    const QString number = text.trimmed();
    if (CDecimal::Parse(ViewOf(number)))
        return {};
    if (number.isEmpty())
        return Tr("A number is missing.");
    return number.contains(QLatin1Char(',')) ? Tr("Numbers are typed with a point here, as in 1.5.")
                                             : Tr("That is not a number.");
}

std::optional<CDecimal> TakeNumber(QLineEdit& field, QLabel& notice)
{
    const QString text = field.text().trimmed();
    auto number = CDecimal::Parse(ViewOf(text));
    ShowNotice(notice, NumberFault(text), {&field});
    if (!number) {
        field.setFocus();
        field.selectAll();
    }
    return number;
}
