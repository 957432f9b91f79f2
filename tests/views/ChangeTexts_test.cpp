#include "tests/support/GuiTest.h"
#include "tests/support/TestFiles.h"
#include "views/ChangeTexts.h"

#include <gtest/gtest.h>

#include <set>

namespace {

QString In(const ChangeRecord& change, ChangeColumn column, std::size_t most = 1000)
{
    return TextsOf(change, most)[static_cast<std::size_t>(column)];
}

} // namespace

TEST(ChangeTexts, TextsThatLookAlikeHaveTheirWords)
{
    const ChangeRecord change{
        .oldText = u"1.50", .newText = u"1.50", .oldWords = WordBytes({0x69}), .newWords = WordBytes({0x96})};
    EXPECT_EQ(In(change, ChangeColumn::Old), "1.50 [0069]");
    EXPECT_EQ(In(change, ChangeColumn::New), "1.50 [0096]");
    EXPECT_EQ(In({.oldText = u"a", .newText = u"a"}, ChangeColumn::New), "a");
}

TEST(ChangeTexts, ZerosStandOnTheirSide)
{
    EXPECT_EQ(In({.zeros = 1}, ChangeColumn::New), "1 zero word");
    EXPECT_EQ(In({.zeros = 1}, ChangeColumn::Old), "");
    EXPECT_EQ(In({.zeros = -1000}, ChangeColumn::Old), "1000 zero words");
    EXPECT_EQ(In({.zeros = -1000}, ChangeColumn::New), "");
}

TEST(ChangeTexts, ALongValueIsCutOff)
{
    const ChangeRecord change{.oldText = u"123456", .newText = u"12345\U0001F600", .reads = u"1234567"};
    EXPECT_EQ(In(change, ChangeColumn::Old, 5), "12345…");
    EXPECT_EQ(In(change, ChangeColumn::New, 6), "12345… (reads 123456…)");
    const ChangeRecord words{.oldWords = WordBytes({1, 2, 3}), .newWords = BytesOf({1, 0, 2})};
    EXPECT_EQ(In(words, ChangeColumn::Old, 2), "0001 0002…");
    EXPECT_EQ(In(words, ChangeColumn::Old, 3), "0001 0002 0003");
    EXPECT_EQ(In(words, ChangeColumn::New, 2), "0001 02");
}

TEST(ChangeTexts, HalfASurrogatePairIsSeen)
{
    const char16_t half[] = {u'a', 0xD83D, 0};
    EXPECT_EQ(In({.newText = half}, ChangeColumn::New), "a\\ud83d");
}

TEST(ChangeTexts, EachReasonHasASentenceOfItsOwn)
{
    std::set<QString> sentences;
    for (int reason = 0; reason <= static_cast<int>(ChangeReason::Form); ++reason) {
        const QString sentence = ReasonSentence(static_cast<ChangeReason>(reason));
        EXPECT_TRUE(sentence.endsWith('.') && sentence[0].isUpper()) << sentence.toStdString();
        sentences.insert(sentence);
    }
    EXPECT_EQ(sentences.size(), 11U);
}
