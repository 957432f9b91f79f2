#include "text/AnsiText.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <thread>

namespace {

std::string Bytes(int codePage, std::u16string_view text)
{
    std::string bytes = "<"; // what is there stays
    CCodePage(codePage).AppendBytes(text, bytes);
    return bytes.substr(1);
}

std::u16string Text(int codePage, std::string_view bytes)
{
    std::u16string text = u"<";
    CCodePage(codePage).AppendText(bytes, text);
    return text.substr(1);
}

struct PageCase {
    const char* name;
    int codePage;
    std::u16string text;
    std::string bytes;
    friend void PrintTo(const PageCase& c, std::ostream* out) { *out << c.name; }
};

struct CodePageText : testing::TestWithParam<PageCase> {};

TEST_P(CodePageText, GoesToBytesAndBack)
{
    EXPECT_EQ(Bytes(GetParam().codePage, GetParam().text), GetParam().bytes);
    EXPECT_EQ(Text(GetParam().codePage, GetParam().bytes), GetParam().text);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, CodePageText, testing::Values(
    PageCase{"Empty",             936,  u"",           ""},
    PageCase{"Ascii",             936,  u"Recipe 1",   "Recipe 1"},
    PageCase{"SimplifiedChinese", 936,  u"A中文B",     "A\xD6\xD0\xCE\xC4" "B"},
    PageCase{"TraditionalChinese", 950, u"中文",       "\xA4\xA4\xA4\xE5"},
    PageCase{"Japanese",          932,  u"日本ｱ",      "\x93\xFA\x96\x7B\xB1"},
    PageCase{"BackslashByte",     932,  u"表\\表",     "\x95\x5C\x5C\x95\x5C"},
    PageCase{"Korean",            949,  u"한글",       "\xC7\xD1\xB1\xDB"},
    PageCase{"Western",           1252, u"é€ÿ",        "\xE9\x80\xFF"},
    PageCase{"CentralEuropean",   1250, u"Łódź",       "\xA3\xF3\x64\x9F"},
    PageCase{"Cyrillic",          1251, u"Да",         "\xC4\xE0"},
    PageCase{"Greek",             1253, u"αβ",         "\xE1\xE2"},
    PageCase{"Turkish",           1254, u"ğış",        "\xF0\xFD\xFE"},
    PageCase{"Hebrew",            1255, u"שלום",       "\xF9\xEC\xE5\xED"},
    PageCase{"Arabic",            1256, u"سلام",       "\xD3\xE1\xC7\xE3"},
    PageCase{"Baltic",            1257, u"ąčę",        "\xE0\xE8\xE6"},
    PageCase{"Vietnamese",        1258, u"đơư",        "\xF0\xF5\xFD"},
    PageCase{"Thai",              874,  u"กข",         "\xA1\xA2"},
    PageCase{"FreeControlBytes",  1252, u"\u0081\u008D\u008F\u0090\u009D", "\x81\x8D\x8F\x90\x9D"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(CodePage, LongTextsComeBackWhole)
{
    std::u16string text;
    for (int i = 0; i < 1000; ++i)
        text += u"中x文";
    EXPECT_EQ(Text(936, Bytes(936, text)), text);
    EXPECT_EQ(Bytes(936, text).size(), 5000U);
}

TEST(CodePage, ACharacterThatItDoesNotHoldIsAQuestionMark)
{
    EXPECT_EQ(Bytes(1252, u"a中b"), "a?b");
    EXPECT_EQ(Bytes(1252, u"é中文é"), "\xE9??\xE9");
    EXPECT_EQ(Bytes(1252, u"é\U0001F600é"), "\xE9?\xE9"); // one character, though two units
    EXPECT_EQ(Bytes(1252, u"\u0080"), "?");               // the byte 0x80 is the euro sign there
    EXPECT_EQ(Bytes(936, u"\U0001F600中"), "?\xD6\xD0");
}

TEST(CodePage, ALoneSurrogateIsAQuestionMark)
{
    EXPECT_EQ(Bytes(1252, std::u16string({u'a', 0xD800})), "a?");
    EXPECT_EQ(Bytes(1252, std::u16string({0xD800, u'a'})), "?a");
    EXPECT_EQ(Bytes(1252, std::u16string({0xDC00, u'\u00E9'})), "?\xE9");
    EXPECT_EQ(Bytes(936, std::u16string({0xD800, 0xD800, 0xDC00, u'中'})), "??\xD6\xD0");
    EXPECT_EQ(Bytes(936, std::u16string({0xD800, 0xE000, u'中'})), "??\xD6\xD0");
}

TEST(CodePage, AByteThatStandsForNothingIsTheReplacementCharacter)
{
    EXPECT_EQ(Text(936, "A\xD6"), u"A\uFFFD"); // a character cut at the end
    EXPECT_EQ(Text(936, "\xD6\xD0\xFF"
                        "A"),
              u"中\uFFFDA");
    EXPECT_EQ(Text(932, "\x93"), u"\uFFFD");
    EXPECT_EQ(Text(1253, "\xAA\xE1"), u"\uFFFDα");
}

TEST(CodePage, OneThatTheSystemLacksLeavesAsciiAsItIs)
{
    constexpr int kNoPage = 12345;
    EXPECT_EQ(Bytes(kNoPage, u"aéb中"), "a?b?");
    EXPECT_EQ(Text(kNoPage, "a\xE9"
                            "b"),
              u"a\uFFFDb");
}

TEST(CodePage, AnErrorDoesNotSpoilTheNextText)
{
    CCodePage page(936);
    std::u16string text;
    page.AppendText("\xD6", text);
    page.AppendText("\xD6\xD0", text);
    EXPECT_EQ(text, u"\uFFFD中");
}

TEST(AnsiText, KeepsAsciiInAnyCodePage)
{
    EXPECT_EQ(ToAnsi(u"Desc1 ~\x7F"), "Desc1 ~\x7F");
    EXPECT_EQ(FromAnsi("Desc1 ~\x7F"), u"Desc1 ~\x7F");
    std::u16string text = u"a";
    AppendFromAnsi("b", text);
    EXPECT_EQ(text, u"ab");
    std::string bytes = "a";
    AppendToAnsi(u"b", bytes);
    EXPECT_EQ(bytes, "ab");
}

TEST(AnsiText, UsesTheCodePageInUse)
{
    EXPECT_EQ(ToAnsi(u"é中Да"), Bytes(AnsiCodePage(), u"é中Да"));
    EXPECT_EQ(FromAnsi("\xC4\xE0"), Text(AnsiCodePage(), "\xC4\xE0"));
}

TEST(AnsiText, ServesEveryThread)
{
    const std::u16string here = FromAnsi("\xC4\xE0");
    std::u16string there;
    std::thread([&there] { there = FromAnsi("\xC4\xE0"); }).join();
    EXPECT_EQ(there, here);
}

struct ChoiceCase {
    const char* name;
    std::string_view wanted;
    std::string_view locale;
    int codePage;
    friend void PrintTo(const ChoiceCase& c, std::ostream* out) { *out << c.name; }
};

struct CodePageChoice : testing::TestWithParam<ChoiceCase> {};

TEST_P(CodePageChoice, FollowsTheWishThenTheLanguage)
{
    EXPECT_EQ(ChooseCodePage(GetParam().wanted, GetParam().locale), GetParam().codePage);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, CodePageChoice, testing::Values(
    ChoiceCase{"SimplifiedChinese", "",       "zh_CN.UTF-8",     936},
    ChoiceCase{"Singapore",         "",       "zh_SG",           936},
    ChoiceCase{"Taiwan",            "",       "zh_TW.UTF-8",     950},
    ChoiceCase{"HongKong",          "",       "zh_HK.big5hkscs", 950},
    ChoiceCase{"Japanese",          "",       "ja_JP.UTF-8",     932},
    ChoiceCase{"Korean",            "",       "ko_KR.UTF-8",     949},
    ChoiceCase{"Russian",           "",       "ru_RU.KOI8-R",    1251},
    ChoiceCase{"Ukrainian",         "",       "uk_UA.UTF-8",     1251},
    ChoiceCase{"Polish",            "",       "pl_PL",           1250},
    ChoiceCase{"SerbianCyrillic",   "",       "sr_RS.UTF-8",     1251},
    ChoiceCase{"SerbianLatin",      "",       "sr_RS@latin",     1250},
    ChoiceCase{"Greek",             "",       "el",              1253},
    ChoiceCase{"Turkish",           "",       "tr_TR",           1254},
    ChoiceCase{"Hebrew",            "",       "he_IL",           1255},
    ChoiceCase{"Arabic",            "",       "ar_EG",           1256},
    ChoiceCase{"Latvian",           "",       "lv_LV",           1257},
    ChoiceCase{"Vietnamese",        "",       "vi_VN",           1258},
    ChoiceCase{"Thai",              "",       "th_TH",           874},
    ChoiceCase{"English",           "",       "en_GB.UTF-8",     1252},
    ChoiceCase{"None",              "",       "",                1252},
    ChoiceCase{"C",                 "",       "C.UTF-8",         1252},
    ChoiceCase{"OtherLanguage",     "",       "tra_XX",          1252},   // not Turkish, though it begins with "tr"
    ChoiceCase{"Wish",              "936",    "de_DE",           936},
    ChoiceCase{"WishOverLanguage",  "1252",   "zh_CN",           1252},
    ChoiceCase{"WishIsNoNumber",    "latin1", "zh_CN",           936},
    ChoiceCase{"WishHasARest",      "1252x",  "zh_CN",           936},
    ChoiceCase{"WishIsNoAnsiPage",  "1200",   "zh_CN",           936},
    ChoiceCase{"WishForThai",       "874",    "de_DE",           874},
    ChoiceCase{"WishForJapanese",   "932",    "de_DE",           932},
    ChoiceCase{"WishForKorean",     "949",    "de_DE",           949},
    ChoiceCase{"WishForTaiwan",     "950",    "de_DE",           950},
    ChoiceCase{"WishForTheFirst",   "1250",   "de_DE",           1250},
    ChoiceCase{"WishForTheLast",    "1258",   "de_DE",           1258},
    ChoiceCase{"WishBelowTheFirst", "1249",   "zh_CN",           936},
    ChoiceCase{"WishAboveTheLast",  "1259",   "zh_CN",           936},
    ChoiceCase{"WishIsTooLarge",    "99999999999", "zh_CN",      936}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

} // namespace
