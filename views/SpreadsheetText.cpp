#include "views/SpreadsheetText.h"

#include "model/StoredNumber.h"
#include "views/TextCrossing.h"

QString SpreadsheetText(const ColumnCoding& coding, const QString& text, const QString& point)
{
    if (!text.contains(u'.') || !NumberOfText(coding, ViewOf(text)))
        return text;
    return text.trimmed().replace(u'.', point); // doubles may have blanks before them
}
