#include "text/DelimitedText.h"

#include <gtest/gtest.h>

#include <random>

namespace {

using Rows = std::vector<std::vector<std::u16string>>;

Rows Cut(std::u16string_view text, FieldSeparator separator)
{
    const CDelimitedText cut(text, separator);
    Rows rows(cut.RowCount());
    for (std::size_t row = 0; row < rows.size(); ++row)
        for (std::size_t column = 0; column < cut.FieldCount(row); ++column)
            rows[row].emplace_back(cut.Field(row, column));
    return rows;
}

} // namespace

TEST(DelimitedText, IsCutIntoLinesAndFields)
{
    EXPECT_EQ(Cut(u"a;b\n\r\nc;\r\n;d;", FieldSeparator::Semicolon),
              (Rows{{u"a", u"b"}, {u""}, {u"c", u""}, {u"", u"d", u""}}));
    EXPECT_EQ(Cut(u"a;b\n\n\n", FieldSeparator::None), Rows{{u"a;b"}});
    EXPECT_EQ(Cut(u"", FieldSeparator::Tab), Rows{});
    EXPECT_EQ(Cut(u"\"a\tb\"\"\nc\"d\te\n\"open\tf", FieldSeparator::Tab),
              (Rows{{u"a\tb\"\ncd", u"e"}, {u"\"open", u"f"}}));
    const CDelimitedText cut(u"a,b,c\nd", FieldSeparator::Comma);
    EXPECT_EQ(cut.MostFields(), 3U);
    EXPECT_EQ(cut.Field(1, 2), u"");
    EXPECT_EQ(cut.Field(9, 0), u"");
}

TEST(DelimitedText, GivesBackWhatWasQuoted)
{
    std::mt19937 random(3);
    const std::u16string units = u"ab;\"\n\r ";
    for (int round = 0; round < 3000; ++round) {
        Rows rows(1 + random() % 4, std::vector<std::u16string>(2 + random() % 3));
        std::u16string text;
        for (auto& row : rows) {
            for (auto& field : row) {
                for (std::size_t i = random() % 6; i > 0; --i)
                    field += units[random() % units.size()];
                text += &field == row.data() ? u"\"" : u";\"";
                for (const char16_t unit : field)
                    text += unit == u'"' ? std::u16string(u"\"\"") : std::u16string(1, unit);
                text += u'"';
            }
            text += u'\n';
        }
        ASSERT_EQ(Cut(text, FieldSeparator::Semicolon), rows) << "round " << round;
    }
}

TEST(DelimitedText, TellsItsSeparator)
{
    EXPECT_EQ(SeparatorOf(u"1,5\t2,5\n3,5\t4,5"), FieldSeparator::Tab);
    EXPECT_EQ(SeparatorOf(u"1,5;2,5\n3,5;4,5\n"), FieldSeparator::Semicolon);
    EXPECT_EQ(SeparatorOf(u"Belt,Name\n1.5,a;b\n"), FieldSeparator::Comma);
    EXPECT_EQ(SeparatorOf(u"a|b\nc|d"), FieldSeparator::Bar);
    EXPECT_EQ(SeparatorOf(u"a,\"x;y\"\nb,\"z\"\n"), FieldSeparator::Comma);
    EXPECT_EQ(SeparatorOf(u"12\n13\n"), FieldSeparator::None);
    EXPECT_EQ(SeparatorOf(u""), FieldSeparator::None);
    EXPECT_EQ(SeparatorOf(u"1,5\n2,25\n"), std::nullopt); // two columns, or one with a decimal comma
    EXPECT_EQ(SeparatorOf(u"1,5,7\n2,25,8\n"), FieldSeparator::Comma);
}
