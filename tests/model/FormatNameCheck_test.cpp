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

std::u16string AllSaved(const char* length, const char* read)
{
    const std::string text = std::string("All ") + length + " characters are saved, but only the first " + read +
                             " are read at the next start.";
    return {text.begin(), text.end()};
}

std::u16string Cut(const char* saved)
{
    const std::string text = std::string("Of 128 characters the first ") + saved +
                             " are saved, and only the first 64 are read at the next start.";
    return {text.begin(), text.end()};
}

struct NoticeCase {
    const char* name;
    std::u16string text;
    std::u16string notice; ///< empty for none
    friend void PrintTo(const NoticeCase& c, std::ostream* out) { *out << c.name; }
};

struct LongFormatName : testing::TestWithParam<NoticeCase> {};

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

TEST_P(LongFormatName, TellsWhatBecomesOfIt)
{
    EXPECT_EQ(FormatNameNotice(GetParam().text).value_or(u""), GetParam().notice);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, LongFormatName, testing::Values(
    NoticeCase{"Empty",           u"",                                        u""},
    NoticeCase{"AllIsRead",       std::u16string(64, u'n'),                   u""},
    NoticeCase{"NotAllIsRead",    std::u16string(65, u'n'),                   AllSaved("65", "64")},
    NoticeCase{"PairAtTheCut",    std::u16string(63, u'n') + u"\U0001F600",   AllSaved("65", "63")},
    NoticeCase{"AllIsSaved",      std::u16string(127, u'n'),                  AllSaved("127", "64")},
    NoticeCase{"NotAllIsSaved",   std::u16string(128, u'n'),                  Cut("127")},
    NoticeCase{"PairAtTheEnd",    std::u16string(126, u'n') + u"\U0001F600",  Cut("126")},
    NoticeCase{"TooLong",         std::u16string(129, u'n'),                  u"This name has 129 characters; 128 are the most."}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on
