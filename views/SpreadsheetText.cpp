#include "views/SpreadsheetText.h"

#include "text/Decimal.h"
#include "views/TextCrossing.h"

QString SpreadsheetText(const ColumnCoding& coding, const QString& text, const QString& point)
{
    if (coding.dataType == DataType::String || !text.contains(u'.') || !CDecimal::Parse(ViewOf(text)))
        return text;
    return QString(text).replace(u'.', point);
}
