#include "library/JsonText.h"

#include <gtest/gtest.h>

namespace {

struct JsonTextCase {
    const char* name;
    std::u16string text;
    std::string json;
    friend void PrintTo(const JsonTextCase& c, std::ostream* out) { *out << c.name; }
};

std::string NameOf(const testing::TestParamInfo<JsonTextCase>& info)
{
    return info.param.name;
}

struct JsonText : testing::TestWithParam<JsonTextCase> {};

TEST_P(JsonText, IsWrittenAlikeInBothWays)
{
    std::string json = "[";
    AppendJsonText(GetParam().text, json);
    EXPECT_EQ(json, "[" + GetParam().json);

    std::string whole = "[";
    AppendWholeJsonText(GetParam().text, whole);
    EXPECT_EQ(whole, "[" + GetParam().json);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, JsonText, testing::Values(
    JsonTextCase{"Empty",             u"",                           "\"\""},
    JsonTextCase{"Ascii",             u"a/'~\x7F",                   "\"a/'~\x7F\""},
    JsonTextCase{"QuotesAndBackslash", u"\"\\\"",                    R"("\"\\\"")"},
    JsonTextCase{"ShortEscapes",      u"\b\t\n\f\r",                 R"("\b\t\n\f\r")"},
    JsonTextCase{"LongEscapes",       std::u16string(u"\0\x1\xB\x1F", 4), R"("\u0000\u0001\u000b\u001f")"},
    JsonTextCase{"TwoAndThreeBytes",  u"°宋",                        "\"°宋\""},
    JsonTextCase{"Pair",              u"\U0001F600",                 "\"\xF0\x9F\x98\x80\""},
    JsonTextCase{"ReplacementCharacter", u"\uFFFD",                  "\"\xEF\xBF\xBD\""}), NameOf);
// clang-format on

struct JsonOfHalfAPair : testing::TestWithParam<JsonTextCase> {};

TEST_P(JsonOfHalfAPair, IsTheReplacementCharacterOrItsEscape)
{
    std::string json;
    AppendJsonText(GetParam().text, json);
    EXPECT_EQ(json.find("\\u"), std::string::npos);
    EXPECT_NE(json.find("\xEF\xBF\xBD"), std::string::npos);

    std::string whole;
    AppendWholeJsonText(GetParam().text, whole);
    EXPECT_EQ(whole, GetParam().json);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, JsonOfHalfAPair, testing::Values(
    JsonTextCase{"HighAtTheEnd",   {u'a', 0xD83D},             R"("a\ud83d")"},
    JsonTextCase{"HighThenLetter", {0xDBFF, u'a'},             R"("\udbffa")"},
    JsonTextCase{"LowAlone",       {0xDC00, u'a'},             R"("\udc00a")"},
    JsonTextCase{"LowThenHigh",    {0xDFFF, 0xD800},           R"("\udfff\ud800")"},
    JsonTextCase{"HighThenPair",   {0xD800, 0xD800, 0xDC00},   "\"\\ud800\xF0\x90\x80\x80\""}), NameOf);
// clang-format on

} // namespace
