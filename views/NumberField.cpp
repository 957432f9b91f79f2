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

std::optional<CDecimal> TakeNumber(QLineEdit& field, QLabel& notice)
{
    const QString text = field.text().trimmed();
    auto number = CDecimal::Parse(ViewOf(text));
    QString fault;
    if (!number && text.isEmpty())
        fault = Tr("A number is missing.");
    else if (!number)
        fault = text.contains(QLatin1Char(',')) ? Tr("Numbers are typed with a point here, as in 1.5.")
                                                : Tr("That is not a number.");
    ShowNotice(notice, fault, {&field});
    if (!number) {
        field.setFocus();
        field.selectAll();
    }
    return number;
}
