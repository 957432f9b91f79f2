#include "text/EscapedText.h"
#include "text/Utf8Text.h"

#include <gtest/gtest.h>

namespace {

struct EscapedCase {
    const char* name;
    std::u16string_view text;
    std::u16string_view line;
    friend void PrintTo(const EscapedCase& c, std::ostream* out) { *out << c.name; }
};
struct EscapedTextOf : testing::TestWithParam<EscapedCase> {};

TEST_P(EscapedTextOf, IsOneLineThatCanBeSeen)
{
    EXPECT_EQ(EscapedText(GetParam().text), GetParam().line);
    std::string line = "°";
    AppendEscaped(GetParam().text, line);
    EXPECT_EQ(line, "°" + ToUtf8(GetParam().line));
}

constexpr char16_t kNull[] = u"a\0b";
constexpr char16_t kHigh[] = {0xD83D, u'a', 0};
constexpr char16_t kHighAtEnd[] = {u'a', 0xD83D, 0};
constexpr char16_t kLow[] = {0xDE00, u'a', 0};
constexpr char16_t kTwoHighs[] = {0xD83D, 0xD83D, 0xDE00, 0};
constexpr char16_t kTwoHighsLine[] = {u'\\', u'u', u'd', u'8', u'3', u'd', 0xD83D, 0xDE00, 0};

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, EscapedTextOf, testing::Values(
    //          name            text                                line
    EscapedCase{"Nothing",      u"",                                u""},
    EscapedCase{"Plain",        u"Zone °C(2) 配方 \\",               u"Zone °C(2) 配方 \\"},
    EscapedCase{"Pair",         u"\U0001F600!",                     u"\U0001F600!"},
    EscapedCase{"LineEnds",     u"a\r\nb\tc",                       u"a\\r\\nb\\tc"},
    EscapedCase{"Null",         std::u16string_view(kNull, 3),      u"a\\u0000b"},
    EscapedCase{"Bell",         u"\u0007\u001F ",                   u"\\u0007\\u001f "},
    EscapedCase{"Delete",       u"~\u007F\u009F\u00A0",             u"~\\u007f\\u009f\u00A0"},
    EscapedCase{"Separators",   u"\u2027\u2028\u2029\uFEFF",        u"\u2027\\u2028\\u2029\\ufeff"},
    EscapedCase{"Direction",    u"\u202E\u202F\u2066\u2069",        u"\\u202e\u202F\\u2066\\u2069"},
    EscapedCase{"HighHalf",     kHigh,                              u"\\ud83da"},
    EscapedCase{"HighHalfLast", kHighAtEnd,                         u"a\\ud83d"},
    EscapedCase{"LowHalf",      kLow,                               u"\\ude00a"},
    EscapedCase{"HalfAndPair",  kTwoHighs,                          kTwoHighsLine}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

} // namespace
