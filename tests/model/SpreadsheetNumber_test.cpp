#include "model/SpreadsheetNumber.h"

#include <gtest/gtest.h>

TEST(SpreadsheetNumbers, HaveTheDecimalSignOfTheLanguageInNumbersOnly)
{
    ColumnCoding number;
    number.dataType = DataType::Float;
    ColumnCoding text;
    text.dataType = DataType::String;
    EXPECT_EQ(SpreadsheetNumber(number, u"-1.50", u','), u"-1,50");
    EXPECT_EQ(SpreadsheetNumber(number, u"1.5e+30", u','), u"1,5e+30");
    EXPECT_EQ(SpreadsheetNumber(number, u"1.50", u'.'), u"1.50");
    EXPECT_EQ(SpreadsheetNumber(number, u"  1.50", u','), u"1,50"); // as a double is shown
    EXPECT_EQ(SpreadsheetNumber(number, u"0.-5", u','), u"0.-5");   // kept: no number
    EXPECT_EQ(SpreadsheetNumber(number, u"nan", u','), u"nan");
    EXPECT_EQ(SpreadsheetNumber(number, u"12", u','), u"12");
    EXPECT_EQ(SpreadsheetNumber(text, u"1.50", u','), u"1.50");
}
