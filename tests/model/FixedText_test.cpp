#include "model/FixedText.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <string_view>

namespace {

struct CutCase {
    const char* name;
    std::u16string_view text;
    std::u16string_view stored; ///< in a field of 4 units
    friend void PrintTo(const CutCase& c, std::ostream* out) { *out << c.name; }
};

struct FixedTextOf : testing::TestWithParam<CutCase> {};

TEST_P(FixedTextOf, HoldsWholeCharacters)
{
    FixedText<4> field;
    field.fill(u'x');
    SetText(field, GetParam().text);
    EXPECT_EQ(TextOf(field), GetParam().stored);
    std::u16string units(GetParam().stored);
    units.resize(field.size());
    EXPECT_EQ(std::u16string_view(field.data(), field.size()), units) << "zeros after it";
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, FixedTextOf, testing::Values(
    //      name                   text                         stored
    CutCase{"Short",               u"ab",                       u"ab"},
    CutCase{"Full",                u"abc",                      u"abc"},
    CutCase{"Long",                u"abcd",                     u"abc"},
    CutCase{"PairAtTheEnd",        u"a\U0001F600",              u"a\U0001F600"},
    CutCase{"PairAcrossTheEnd",    u"ab\U0001F600",             u"ab"},
    CutCase{"PairAcrossAndMore",   u"ab\U0001F600\U0001F600",   u"ab"},
    CutCase{"PairAfterTheEnd",     u"abc\U0001F600",            u"abc"},
    CutCase{"HalfBeforeTheEnd",    u"ab\xD83D" u"c",            u"ab\xD83D"},  // no pair: it stands as it is
    CutCase{"SecondHalfAlone",     u"ab\xDE00\xDE00",           u"ab\xDE00"},
    CutCase{"FirstHalfTwice",      u"ab\xD83D\xD83D\xDE00",     u"ab\xD83D"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

} // namespace
