#include "changes/WordViews.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using Kind = WordView::Kind;

struct ViewCase {
    const char* name;
    WordView view;
    Bytes bytes;
    std::u16string text;
    friend void PrintTo(const ViewCase& c, std::ostream* out) { *out << c.name; }
};

struct WordViewOf : testing::TestWithParam<ViewCase> {};

WordView Number(DataType type, bool isHighFirst = false)
{
    return {Kind::Number, type, isHighFirst};
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(All, WordViewOf, testing::Values(
    ViewCase{"Words", {Kind::Words}, WordBytes({0x0992, 0xFF}), u"0992 00FF"},
    ViewCase{"Bits", {Kind::Bits}, WordBytes({0x0992}), u"0000 1001 1001 0010"},
    ViewCase{"BitsOfTwo", {Kind::Bits}, WordBytes({1, 0x8000}), u"0000 0000 0000 0001 1000 0000 0000 0000"},
    ViewCase{"Ansi", {Kind::Ansi}, WordBytes({0x4241, 0x0043}), u"ABC"},
    ViewCase{"Utf16", {Kind::Utf16}, WordBytes({0x7089, 0x0041}), u"\u7089A"},
    ViewCase{"Signed16", Number(DataType::Signed16), WordBytes({0xFFFE}), u"-2"},
    ViewCase{"Unsigned16", Number(DataType::Unsigned16), WordBytes({0xFFFE}), u"65534"},
    ViewCase{"Signed32", Number(DataType::Signed32), WordBytes({1, 0x8000}), u"-2147483647"},
    ViewCase{"Unsigned32", Number(DataType::Unsigned32), WordBytes({1, 0x8000}), u"2147483649"},
    ViewCase{"Float", Number(DataType::Float), WordBytes({0, 0x4148}), u"12.5"},
    ViewCase{"Double", Number(DataType::Double), WordBytes({0, 0, 0x8400, 0x4073}), u"312.25"},
    ViewCase{"Signed32HighFirst", Number(DataType::Signed32, true), WordBytes({0x8000, 1}), u"-2147483647"},
    ViewCase{"Unsigned32HighFirst", Number(DataType::Unsigned32, true), WordBytes({0x8000, 1}), u"2147483649"},
    ViewCase{"FloatHighFirst", Number(DataType::Float, true), WordBytes({0x4148, 0}), u"12.5"},
    ViewCase{"DoubleHighFirst", Number(DataType::Double, true), WordBytes({0x4073, 0x8400, 0, 0}), u"312.25"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

} // namespace

TEST_P(WordViewOf, ShowsTheWords)
{
    EXPECT_EQ(TextIn(GetParam().view, GetParam().bytes), GetParam().text);
}

TEST_P(WordViewOf, TakesWhatItShows)
{
    const Bytes zeros(GetParam().bytes.size());
    EXPECT_EQ(BytesWith(GetParam().view, GetParam().text, zeros), GetParam().bytes);
}

TEST(WordViews, StandAllInTheList)
{
    for (const WordView& view : WordViews())
        EXPECT_EQ(std::count(WordViews().begin(), WordViews().end(), view), 1);
    EXPECT_EQ(WordViews().size(), 14u);
}

TEST(WordViews, ShowNoNumberOfTooFewWords)
{
    EXPECT_EQ(TextIn(Number(DataType::Float), WordBytes({1})), u"");
    EXPECT_EQ(TextIn(Number(DataType::Double, true), WordBytes({1, 2, 3})), u"");
    EXPECT_EQ(BytesWith(Number(DataType::Float), u"1.5", WordBytes({1})), std::nullopt);
}

TEST(WordViews, ShowANumberOfTheFirstWordsAndLeaveTheOthers)
{
    const Bytes bytes = WordBytes({5, 6, 7});
    EXPECT_EQ(TextIn(Number(DataType::Signed16), bytes), u"5");
    EXPECT_EQ(BytesWith(Number(DataType::Signed16), u"-1", bytes), WordBytes({0xFFFF, 6, 7}));
    EXPECT_EQ(BytesWith(Number(DataType::Signed32, true), u"65538", bytes), WordBytes({1, 2, 7}));
}

TEST(WordViews, TellOfAFloatThatIsNoNumber)
{
    EXPECT_EQ(TextIn(Number(DataType::Float), WordBytes({0, 0x7FC0})), u"nan");
    EXPECT_EQ(TextIn(Number(DataType::Float), WordBytes({0, 0xFF80})), u"-inf");
}

TEST(WordViews, ShowControlCharactersAsEscapes)
{
    EXPECT_EQ(TextIn({Kind::Ansi}, BytesOf({'A', 9, 'B', 0})), u"A\\tB");
}

TEST(WordViews, TakeNoTextThatTheyCannotShow)
{
    const Bytes bytes = WordBytes({1, 2});
    for (const auto* text : {u"0001", u"0001 000G", u"0001 0002 0003", u""})
        EXPECT_EQ(BytesWith({Kind::Words}, text, bytes), std::nullopt);
    for (const auto* text : {u"0101", u"0000 0000 0000 0002 0000 0000 0000 0000", u""})
        EXPECT_EQ(BytesWith({Kind::Bits}, text, bytes), std::nullopt);
    for (const auto* text : {u"65536", u"1.5", u"x", u""})
        EXPECT_EQ(BytesWith(Number(DataType::Unsigned16), text, bytes), std::nullopt);
    EXPECT_EQ(BytesWith({Kind::Utf16}, u"abc", bytes), std::nullopt);
    EXPECT_EQ(BytesWith({Kind::Ansi}, u"\u7089", bytes), std::nullopt); // the code page has no such character
}

TEST(WordViews, TakeBitsWithoutBlanks)
{
    EXPECT_EQ(BytesWith({Kind::Bits}, u"1000000000000001", WordBytes({0})), WordBytes({0x8001}));
}

TEST(WordViews, GiveAnyWordsBackButTheNumbersThatAreNone)
{
    std::mt19937 random(19);
    for (int i = 0; i < 20000; ++i) {
        Bytes bytes(8);
        for (std::byte& byte : bytes)
            byte = static_cast<std::byte>(random());
        for (const WordView& view : WordViews()) {
            if (view.kind == Kind::Ansi || view.kind == Kind::Utf16)
                continue;
            const std::u16string text = TextIn(view, bytes);
            if (text.find(u'n') == std::u16string::npos) { // "nan", "inf"
                const Bytes zeros(bytes.size());
                auto expected = bytes;
                if (BytesTaken(view) > 0)
                    std::fill(expected.begin() + static_cast<std::ptrdiff_t>(BytesTaken(view)), expected.end(),
                              std::byte{0});
                EXPECT_EQ(BytesWith(view, text, zeros), expected);
            }
        }
    }
}
