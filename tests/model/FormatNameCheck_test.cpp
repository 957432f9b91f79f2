#include "model/FormatNameCheck.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr std::u16string_view kEmpty = u"The File name is Empty!";
constexpr std::u16string_view kLength = u" File name's length Error!"; // the leading blank belongs to it
constexpr std::u16string_view kCharacter = u"The File name Error!";

struct NameCase {
    const char* name;
    std::u16string text;
    std::u16string_view message; ///< empty for a name that may stand
    friend void PrintTo(const NameCase& c, std::ostream* out) { *out << c.name; }
};

struct FormatName : testing::TestWithParam<NameCase> {};

} // namespace

TEST_P(FormatName, IsCheckedInOrder)
{
    EXPECT_EQ(FormatNameFault(GetParam().text).value_or(u""), GetParam().message);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, FormatName, testing::Values(
    NameCase{"Plain",                  u"Test",                         u""},
    NameCase{"InnerBlank",             u"my format",                    u""},
    NameCase{"OtherScripts",           u"配方 1",                       u""},
    NameCase{"SignsThatAreAllowed",    u"a-b_c+d,e;f=g(h)[i]{j}'k'&l%", u""},
    NameCase{"Empty",                  u"",                             kEmpty},
    NameCase{"LongestName",            std::u16string(128, u'n'),       u""},
    NameCase{"OneMoreIsTooLong",       std::u16string(129, u'n'),       kLength},
    NameCase{"LengthBeforeCharacters", std::u16string(129, u'.'),       kLength},
    NameCase{"FullStop",               u"a.b",                          kCharacter},
    NameCase{"VerticalBar",            u"a|b",                          kCharacter},
    NameCase{"Backslash",              u"a\\b",                         kCharacter},
    NameCase{"DoubleQuote",            u"a\"b",                         kCharacter},
    NameCase{"Asterisk",               u"a*b",                          kCharacter},
    NameCase{"Slash",                  u"a/b",                          kCharacter},
    NameCase{"LessThan",               u"a<b",                          kCharacter},
    NameCase{"GreaterThan",            u"a>b",                          kCharacter},
    NameCase{"QuestionMark",           u"a?b",                          kCharacter},
    NameCase{"Colon",                  u"x:y",                          kCharacter},
    NameCase{"AtTheFront",             u".ab",                          kCharacter},
    NameCase{"AtTheEnd",               u"ab:",                          kCharacter}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on
