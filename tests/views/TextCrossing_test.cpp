#include "views/TextCrossing.h"

#include <gtest/gtest.h>

TEST(TextCrossing, KeepsTheUnitsAsTheyStand)
{
    const std::u16string odd{u'A', char16_t{0xD800}, u'\u4E2D', u'\0', u'z'}; // a lone surrogate and a zero among them
    const QString text = ToQString(odd);
    EXPECT_EQ(text.size(), 5);
    EXPECT_EQ(ViewOf(text), odd);
}

TEST(TextCrossing, APathKeepsItsCharacters)
{
    EXPECT_EQ(NativePath(QString::fromUtf8("/tmp/配方 1.rcp")).u16string(), u"/tmp/配方 1.rcp");
}

TEST(TextCrossing, ATextThatNamesNoFileGivesAnEmptyPath)
{
    EXPECT_TRUE(NativePath(QString(QChar(0xD800))).empty());
}
