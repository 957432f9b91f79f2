#include "views/TextCrossing.h"

#include <QDir>
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
    const QString path = QDir::toNativeSeparators(QString::fromUtf8("/tmp/配方 1.rcp"));
    EXPECT_EQ(NativePath(path).u16string(), ViewOf(path));
}

TEST(TextCrossing, APathHasThePlatformsOwnSeparators)
{
    const QString path = QStringLiteral("C:/recipes/a.rcp"); // as the toolkit writes it on every platform
    EXPECT_EQ(ToQPath(NativePath(path)), QDir::toNativeSeparators(path));
}

TEST(TextCrossing, ATextThatNamesNoFileGivesAnEmptyPath)
{
    EXPECT_TRUE(NativePath(QString(QChar(0xD800))).empty());
}
