#include "controls/TabbedText.h"

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

namespace {

struct FieldCase {
    const char* name;
    const char16_t* text;
    const char16_t* field;
    friend void PrintTo(const FieldCase& c, std::ostream* out) { *out << c.name; }
};

struct TabbedField : testing::TestWithParam<FieldCase> {};

TEST_P(TabbedField, IsQuotedWhereItMustBe)
{
    QString out;
    AppendTabbedField(out, QString::fromUtf16(GetParam().text));
    EXPECT_EQ(out.toStdU16String(), GetParam().field);
}

TEST_P(TabbedField, IsReadBackAsItWas)
{
    const QString all = QStringLiteral("x\t%1\ty\n").arg(QString::fromUtf16(GetParam().field));
    CTabbedTextReader reader(all);
    QString field;
    ASSERT_TRUE(reader.Next(field) && reader.Next(field));
    EXPECT_EQ(field.toStdU16String(), GetParam().text);
    ASSERT_TRUE(reader.Next(field));
    EXPECT_EQ(field.toStdU16String(), u"y");
    EXPECT_FALSE(reader.Next(field));
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, TabbedField, testing::Values(
    //        name             text           field
    FieldCase{"Plain",         u"12.5",       u"12.5"           },
    FieldCase{"Empty",         u"",           u""               },
    FieldCase{"Blanks",        u" a b ",      u" a b "          },
    FieldCase{"Tab",           u"a\tb",       u"\"a\tb\""       },
    FieldCase{"LineFeed",      u"a\nb",       u"\"a\nb\""       },
    FieldCase{"CarriageReturn",u"a\r\nb",     u"\"a\r\nb\""     },
    FieldCase{"Quote",         u"5\" pipe",   u"\"5\"\" pipe\"" },
    FieldCase{"OnlyAQuote",    u"\"",         u"\"\"\"\""       },
    FieldCase{"Chinese",       u"配方",        u"配方"            }),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

using Rows = std::vector<std::vector<std::u16string>>;

Rows ReadRows(const char16_t* text)
{
    const QString all = QString::fromUtf16(text);
    CTabbedTextReader reader(all);
    Rows rows;
    QString field;
    while (reader.Next(field)) {
        rows.resize(static_cast<std::size_t>(reader.Row()) + 1);
        EXPECT_EQ(rows.back().size(), static_cast<std::size_t>(reader.Column()));
        rows.back().push_back(field.toStdU16String());
    }
    return rows;
}

struct TextCase {
    const char* name;
    const char16_t* text;
    Rows rows;
    friend void PrintTo(const TextCase& c, std::ostream* out) { *out << c.name; }
};

struct TabbedText : testing::TestWithParam<TextCase> {};

TEST_P(TabbedText, IsReadRowByRow)
{
    EXPECT_EQ(ReadRows(GetParam().text), GetParam().rows);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, TabbedText, testing::Values(
    //       name                     text                     rows
    TextCase{"Nothing",               u"",                     {}                                },
    TextCase{"OneField",              u"1",                    {{u"1"}}                          },
    TextCase{"TwoRows",               u"1\t2\n3\t4\n",         {{u"1", u"2"}, {u"3", u"4"}}      },
    TextCase{"NoLineEndAtTheEnd",     u"1\t2\n3\t4",           {{u"1", u"2"}, {u"3", u"4"}}      },
    TextCase{"WindowsLineEnds",       u"1\r\n2\r\n",           {{u"1"}, {u"2"}}                  },
    TextCase{"OldMacLineEnds",        u"1\r2\r",               {{u"1"}, {u"2"}}                  },
    TextCase{"EmptyFieldAtTheEnd",    u"1\t",                  {{u"1", u""}}                     },
    TextCase{"EmptyFields",           u"\t\t\n\t",             {{u"", u"", u""}, {u"", u""}}     },
    TextCase{"EmptyRowBetween",       u"1\n\n2",               {{u"1"}, {u""}, {u"2"}}           },
    TextCase{"EmptyRowAtTheEnd",      u"1\n\n",                {{u"1"}, {u""}}                   },
    TextCase{"EmptyQuotedField",      u"\"\"\t1",              {{u"", u"1"}}                     },
    TextCase{"TextAfterTheQuotes",    u"\"a\"b\tc",            {{u"ab", u"c"}}                   },
    TextCase{"QuoteInTheMiddle",      u"5\" pipe\tx",          {{u"5\" pipe", u"x"}}             },
    TextCase{"QuotedOverLineEnds",    u"\"a\tb\n\"c\td",       {{u"a\tb\nc", u"d"}}              },
    TextCase{"LoneQuote",             u"\"a\tb\nc",            {{u"\"a", u"b"}, {u"c"}}          },
    TextCase{"AllAfterALoneQuote",    u"\"a\t\"\"\tb",         {{u"\"a", u"\"\"", u"b"}}         }),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

} // namespace
