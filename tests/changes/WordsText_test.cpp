#include "changes/WordsText.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

namespace {

struct WordsCase {
    const char* name;
    Bytes bytes;
    std::string text;
    friend void PrintTo(const WordsCase& c, std::ostream* out) { *out << c.name; }
};

struct WordsText : testing::TestWithParam<WordsCase> {};

TEST_P(WordsText, GoesBothWays)
{
    const WordsCase& c = GetParam();
    std::string text = "=";
    AppendWordsText(c.bytes, text);
    EXPECT_EQ(text, "=" + c.text);
    EXPECT_EQ(WordsFromText(std::u16string(c.text.begin(), c.text.end())), c.bytes);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, WordsText, testing::Values(
    WordsCase{"None",             {},                                      ""},
    WordsCase{"LowByteFirst",     BytesOf({0x92, 0x09}),                   "0992"},
    WordsCase{"Capitals",         BytesOf({0xEF, 0xCD, 0xAB, 0x90}),       "CDEF 90AB"},
    WordsCase{"OneByte",          BytesOf({0x0A}),                         "0A"},
    WordsCase{"LastOddByte",      BytesOf({1, 0, 2, 0, 0xFF}),             "0001 0002 FF"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(WordsFromText, TakesSmallLetters)
{
    EXPECT_EQ(WordsFromText(u"abcd ef"), BytesOf({0xCD, 0xAB, 0xEF}));
}

struct NoWords : testing::TestWithParam<std::u16string> {};

TEST_P(NoWords, AreRefused)
{
    EXPECT_EQ(WordsFromText(GetParam()), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Table, NoWords,
                         testing::Values(u" ", u"0", u"001", u"00001", u"000G", u"G000", u"00/0", u"00:0", u"00@0",
                                         u"00`0", u"00g0", u" 0001", u"0001 ", u"0001  0002", u"0001\t0002",
                                         u"00010002", u"01 0002", u"0001 02 0003", u"0x01", u"-001", u"０００１",
                                         std::u16string(u"00\0001", 5)));

} // namespace
