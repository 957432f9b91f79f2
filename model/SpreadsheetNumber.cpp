#include "model/SpreadsheetNumber.h"

#include "model/StoredNumber.h"

#include <algorithm>

std::u16string SpreadsheetNumber(const ColumnCoding& coding, std::u16string text, char16_t point)
{
    if (coding.dataType == DataType::String || text.find(u'.') == text.npos || !NumberOfText(coding, text))
        return text;
    std::u16string number(WithoutBlanks(text)); // doubles may have blanks before them
    std::replace(number.begin(), number.end(), u'.', point);
    return number;
}
