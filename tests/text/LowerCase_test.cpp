#include "text/LowerCase.h"

#include <gtest/gtest.h>

namespace {

struct LowerCaseCase {
    const char* name;
    const char16_t* text;
    const char16_t* lower;
    friend void PrintTo(const LowerCaseCase& c, std::ostream* out) { *out << c.name; }
};
struct LowerCaseOf : testing::TestWithParam<LowerCaseCase> {};

TEST_P(LowerCaseOf, IsTheSmallLetters)
{
    EXPECT_EQ(LowerCase(GetParam().text), GetParam().lower);
}

TEST_P(LowerCaseOf, LeavesSmallLettersAsTheyAre)
{
    EXPECT_EQ(LowerCase(GetParam().lower), GetParam().lower);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, LowerCaseOf, testing::Values(
    //            name                text                  lower
    LowerCaseCase{"Ascii",            u"ABYZ",              u"abyz"},
    LowerCaseCase{"NextToAscii",      u"@[`{ 09_-.\\/:",    u"@[`{ 09_-.\\/:"},
    LowerCaseCase{"Latin1",           u"ÀÖØÞ×ÄÉ",           u"àöøþ×äé"},
    LowerCaseCase{"LatinOfEurope",    u"ĀĮĲĶĹŇŊŶŸŹŽŁŐ",     u"āįĳķĺňŋŷÿźžłő"},
    LowerCaseCase{"TurkishDottedI",   u"İ",                 u"İ"},
    LowerCaseCase{"Vietnamese",       u"ƠƯĂẠỸ",             u"ơưăạỹ"},
    LowerCaseCase{"Pinyin",           u"ǍǛ",                u"ǎǜ"},
    LowerCaseCase{"Greek",            u"ΆΈΊΌΎΏΑΡΣΫ",        u"άέίόύώαρσϋ"},
    LowerCaseCase{"Cyrillic",         u"ЀЁЏАЯѠҀҊҾӁӍӐԮ",     u"ѐёџаяѡҁҋҿӂӎӑԯ"},
    LowerCaseCase{"Armenian",         u"ԱՖ",                u"աֆ"},
    LowerCaseCase{"LatinTwoMarks",    u"ḀẔ",                u"ḁẕ"},
    LowerCaseCase{"FullWidth",        u"ＡＺ",              u"ａｚ"},
    LowerCaseCase{"NoCase",           u"配方テスト한글",     u"配方テスト한글"},
    LowerCaseCase{"HalfASurrogate",   u"A\xD800",           u"a\xD800"},
    LowerCaseCase{"Empty",            u"",                  u""}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

} // namespace
