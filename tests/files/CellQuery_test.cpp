#include "files/CellQuery.h"
#include "model/WordCodec.h"
#include "tests/files/TestColumns.h"
#include "text/Utf8Text.h"

#include <gtest/gtest.h>

#include <random>

namespace {

ColumnCoding TextColumn()
{
    return {.title = u"Text", .dataType = DataType::String, .dataLength = 16, .unicode = 1};
}

using Kind = CellQuery::Kind;

struct QueryCase {
    const char* name;
    ColumnCoding column;
    CellQuery query;
    const char16_t* text;
    bool isFound;
    friend void PrintTo(const QueryCase& c, std::ostream* out) { *out << c.name; }
};

struct Query : testing::TestWithParam<QueryCase> {};

TEST_P(Query, FindsWhatItAsksFor)
{
    const CCellMatcher matcher(GetParam().query, std::vector{GetParam().column});
    EXPECT_EQ(matcher.IsFor(0) && matcher.Matches(0, GetParam().text), GetParam().isFound);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Texts, Query, testing::Values(
    QueryCase{"PartOfAText",        TextColumn(), {u"ead"},                              u"Bread",  true},
    QueryCase{"CapitalsDoNotCount", TextColumn(), {u"bREAD"},                            u"Bread",  true},
    QueryCase{"CapitalsCount",      TextColumn(), {u"bread", Kind::Text, true},          u"Bread",  false},
    QueryCase{"OtherAlphabets",     TextColumn(), {u"\u00FC\u0436"},                     u"x\u00DC\u0416", true},
    QueryCase{"WholeCell",          TextColumn(), {u"Bread", Kind::Text, false, true},   u"bread",  true},
    QueryCase{"WholeCellIsMore",    TextColumn(), {u"Brea", Kind::Text, false, true},    u"Bread",  false},
    QueryCase{"LongerThanTheCell",  TextColumn(), {u"Breads"},                           u"Bread",  false},
    QueryCase{"AtTheEnd",           TextColumn(), {u"aab"},                              u"aaab",   true},
    QueryCase{"EmptyCell",          TextColumn(), {u"a"},                                u"",       false},
    QueryCase{"EmptyQuery",         TextColumn(), {u""},                                 u"a",      false},
    QueryCase{"DigitsOfANumber",    Signed16Column(), {u"-1"},                           u"-12",    true},
    QueryCase{"GivenToAnInteger",   Signed16Column(), {u"x"},                            u"-12x",   true}),
    [](const auto& c) { return std::string(c.param.name); });

INSTANTIATE_TEST_SUITE_P(Numbers, Query, testing::Values(
    QueryCase{"OtherForm",          FloatColumn(),    {u"7.5", Kind::Number},            u"7.50",   true},
    QueryCase{"OtherFormAsked",     FloatColumn(),    {u"+07.500", Kind::Number},        u"7.5",    true},
    QueryCase{"WithExponent",       FloatColumn(),    {u"75e-1", Kind::Number},          u"7.5",    true},
    QueryCase{"ExponentInTheCell",  FloatColumn(),    {u"1500", Kind::Number},           u"1.5e+3", true},
    QueryCase{"NoPart",             FloatColumn(),    {u"7", Kind::Number},              u"7.5",    false},
    QueryCase{"Negative",           FloatColumn(),    {u"-7.5", Kind::Number},           u"-7.50",  true},
    QueryCase{"OtherSign",          FloatColumn(),    {u"7.5", Kind::Number},            u"-7.5",   false},
    QueryCase{"ZeroHasNoSign",      FloatColumn(),    {u"0", Kind::Number},              u"-0.00",  true},
    QueryCase{"NotANumber",         FloatColumn(),    {u"0", Kind::Number},              u"nan",    false},
    QueryCase{"BlanksInTheCell",    FloatColumn(),    {u"7.5", Kind::Number},            u" 7.5 ",  true},
    QueryCase{"SignInTheFraction",  Signed16Column(), {u"-0.5", Kind::Number},           u"0.-5",   false},
    QueryCase{"PointAlone",         FloatColumn(),    {u"5", Kind::Number},              u"5.",     true},
    QueryCase{"EmptyCell",          FloatColumn(),    {u"0", Kind::Number},              u"",       false},
    QueryCase{"Hexadecimal",        Hex16Column(),    {u"1f", Kind::Number},             u"001F",   true},
    QueryCase{"HexadecimalZero",    Hex16Column(),    {u"0", Kind::Number},              u"0000",   true},
    QueryCase{"HexadecimalLonger",  Hex16Column(),    {u"1f", Kind::Number},             u"01F0",   false},
    QueryCase{"HexIsNoDecimal",     Signed16Column(), {u"1f", Kind::Number},             u"31",     false},
    QueryCase{"TextsHaveNone",      TextColumn(),     {u"7", Kind::Number},              u"7",      false},
    QueryCase{"CommaIsNone",        FloatColumn(),    {u"7,5", Kind::Number},            u"7.5",    false}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

struct FaultCase {
    const char* name;
    CellQuery query;
    std::optional<std::u16string> fault;
    friend void PrintTo(const FaultCase& c, std::ostream* out) { *out << c.name; }
};

struct QueryFaults : testing::TestWithParam<FaultCase> {};

TEST_P(QueryFaults, SayWhy)
{
    EXPECT_EQ(QueryFault(GetParam().query), GetParam().fault);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, QueryFaults, testing::Values(
    FaultCase{"NothingTyped", {u""},                   u""},
    FaultCase{"Number",       {u"7.5", Kind::Number},  std::nullopt},
    FaultCase{"Hexadecimal",  {u"1F", Kind::Number},   std::nullopt},
    FaultCase{"Comma",        {u"7,5", Kind::Number},  u"7,5 is no number: decimals come after a point."},
    FaultCase{"Word",         {u"high", Kind::Number}, u"high is no number."},
    FaultCase{"Text",         {u"7,5", Kind::Text},    std::nullopt}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(QueryReplacement, TakesEachPlaceThatWasFound)
{
    const std::vector columns{TextColumn()};
    EXPECT_EQ(CCellMatcher({u"an"}, columns).Replaced(u"Banana", u"on"), u"Bonona");
    EXPECT_EQ(CCellMatcher({u"AA"}, columns).Replaced(u"aaaaa", u"a"), u"aaa") << "what was put in is not looked at";
    EXPECT_EQ(CCellMatcher({u"a"}, columns).Replaced(u"Banana", u""), u"Bnn");
    EXPECT_EQ(CCellMatcher({u"b", Kind::Text, true}, columns).Replaced(u"Bob", u"x"), u"Box");
}

TEST(QueryReplacement, TakesTheWholeOfANumberOrCell)
{
    EXPECT_EQ(CCellMatcher({u"7.5", Kind::Number}, std::vector{FloatColumn()}).Replaced(u"7.50", u"8"), u"8");
    EXPECT_EQ(CCellMatcher({u"ab", Kind::Text, false, true}, std::vector{TextColumn()}).Replaced(u"AB", u"c"), u"c");
}

TEST(QueryMatcher, LeavesOutWordsThatCannotShowTheText)
{
    const std::vector columns{Signed16Column(), Hex16Column(), FloatColumn(), TextColumn()};
    const CCellMatcher letters({u"g"}, columns);
    EXPECT_FALSE(letters.IsForWords(0) || letters.IsForWords(1) || letters.IsForWords(2));
    EXPECT_TRUE(letters.IsFor(0)) << "what was typed may be anything";
    EXPECT_TRUE(letters.IsForWords(3));
    EXPECT_TRUE(CCellMatcher({u"1.5"}, columns).IsForWords(0));
    EXPECT_TRUE(CCellMatcher({u"c"}, columns).IsForWords(1));
    EXPECT_TRUE(CCellMatcher({u"NaN"}, columns).IsForWords(2));
}

TEST(QueryMatcher, LeavesOutNoWordsThatShowTheText)
{
    std::mt19937 random(7);
    const auto below = [&](unsigned count) { return static_cast<std::int32_t>(random() % count); };
    for (int round = 0; round < 20000; ++round) {
        ColumnCoding coding;
        coding.dataType = static_cast<DataType>(below(8));
        coding.dataLength = static_cast<std::int32_t>(WordsOfType(coding.dataType));
        coding.integerDigits = 1 + below(10);
        coding.decimalDigits = below(6);
        std::vector<std::byte> bytes(static_cast<std::size_t>(coding.dataLength) * 2);
        for (std::byte& byte : bytes)
            byte = static_cast<std::byte>(random() % 3 == 0 ? 0 : random());
        std::size_t pos = 0;
        const auto kind = round % 2 == 0 ? RecipeKind::Flat : RecipeKind::Paged;
        const std::u16string text = FormatValue(coding, bytes, pos, kind);
        ASSERT_FALSE(text.empty());
        EXPECT_TRUE(CCellMatcher({text}, std::vector{coding}).IsForWords(0))
            << ToUtf8(text) << " of type " << static_cast<int>(coding.dataType);
    }
}

} // namespace
