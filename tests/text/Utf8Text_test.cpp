#include "text/Utf8Text.h"

#include <gtest/gtest.h>

namespace {

struct Utf8Case {
    const char* name;
    std::string bytes;
    std::u16string text;
    friend void PrintTo(const Utf8Case& c, std::ostream* out) { *out << c.name; }
};

std::string NameOf(const testing::TestParamInfo<Utf8Case>& info)
{
    return info.param.name;
}

struct ValidUtf8 : testing::TestWithParam<Utf8Case> {};

TEST_P(ValidUtf8, GoesBothWays)
{
    EXPECT_EQ(FromUtf8(GetParam().bytes), GetParam().text);
    EXPECT_EQ(ToUtf8(GetParam().text), GetParam().bytes);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, ValidUtf8, testing::Values(
    Utf8Case{"Empty",             "",                     u""},
    Utf8Case{"Ascii",             "a~\x7F",               u"a~\x7F"},
    Utf8Case{"FirstOfTwoBytes",   "\xC2\x80",             u"\u0080"},
    Utf8Case{"LastOfTwoBytes",    "\xDF\xBF",             u"\u07FF"},
    Utf8Case{"FirstOfThreeBytes", "\xE0\xA0\x80",         u"\u0800"},
    Utf8Case{"Chinese",           "\xE5\xAE\x8B",         u"\u5B8B"},
    Utf8Case{"LastBeforePairs",   "\xED\x9F\xBF",         u"\uD7FF"},
    Utf8Case{"LastOfThreeBytes",  "\xEF\xBF\xBF",         u"\uFFFF"},
    Utf8Case{"FirstOfFourBytes",  "\xF0\x90\x80\x80",     u"\U00010000"},
    Utf8Case{"LastOfAll",         "\xF4\x8F\xBF\xBF",     u"\U0010FFFF"},
    Utf8Case{"ZeroInside",        std::string("a\0b", 3), std::u16string(u"a\0b", 3)}), NameOf);
// clang-format on

struct InvalidUtf8 : testing::TestWithParam<Utf8Case> {};

TEST_P(InvalidUtf8, BecomesReplacementCharacters)
{
    EXPECT_EQ(FromUtf8(GetParam().bytes), GetParam().text);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, InvalidUtf8, testing::Values(
    Utf8Case{"StrayContinuation", "a\x80" "b",        u"a\uFFFDb"},
    Utf8Case{"CutAtTheEnd",       "a\xE5\xAE",        u"a\uFFFD\uFFFD"},
    Utf8Case{"CutByALetter",      "\xE5" "ab",        u"\uFFFDab"},
    Utf8Case{"OverlongSlash",     "\xC0\xAF",         u"\uFFFD\uFFFD"},
    Utf8Case{"OverlongInThree",   "\xE0\x80\xAF",     u"\uFFFD\uFFFD\uFFFD"},
    Utf8Case{"OverlongInFour",    "\xF0\x80\x80\xAF", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
    Utf8Case{"CodedSurrogate",    "\xED\xA0\x80",     u"\uFFFD\uFFFD\uFFFD"},
    Utf8Case{"LowSurrogate",      "\xED\xB0\x80",     u"\uFFFD\uFFFD\uFFFD"},
    Utf8Case{"AboveTheLast",      "\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
    Utf8Case{"NeverALead",        "\xFF",             u"\uFFFD"}), NameOf);
// clang-format on

struct LoneSurrogate : testing::TestWithParam<Utf8Case> {};

TEST_P(LoneSurrogate, BecomesTheReplacementCharacter)
{
    EXPECT_EQ(ToUtf8(GetParam().text), GetParam().bytes);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, LoneSurrogate, testing::Values(
    Utf8Case{"HighAtTheEnd",   "a\xEF\xBF\xBD",                 std::u16string{u'a', 0xD800}},
    Utf8Case{"HighThenLetter", "\xEF\xBF\xBD" "a",              std::u16string{0xDBFF, u'a'}},
    Utf8Case{"LowAlone",       "\xEF\xBF\xBD" "a",              std::u16string{0xDC00, u'a'}},
    Utf8Case{"HighThenPair",   "\xEF\xBF\xBD\xF0\x90\x80\x80",  std::u16string{0xD800, 0xD800, 0xDC00}}), NameOf);
// clang-format on

} // namespace
