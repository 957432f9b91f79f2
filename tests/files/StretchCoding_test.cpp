#include "files/StretchCoding.h"
#include "tests/files/TestColumns.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

// A stretch is coded as its texts are, one by one. The short way for plain numbers must not show.

namespace {

constexpr const char16_t* kTexts[] = {
    u"0",
    u"7",
    u"-7",
    u"32767",
    u"32768",
    u"-32768",
    u"65535",
    u"70000",
    u"-70000",
    u"999999999",
    u"-999999999",
    u"1000000000",
    u"2147483647",
    u"-2147483648",
    u"4294967295",
    u"99999999999",
    u"000000000000000000000000007",
    u"-",
    u"",
    u"--7",
    u"-0",
    u"+7",
    u" 7",
    u"7 ",
    u"7x",
    u"x7",
    u"1.99",
    u"-1.99",
    u".5",
    u"1e3",
    u"12345678901234567890",
    u"\"7\"",
    u"AB",
    u"1G",
    u"\uFF17",
    u"7\u0667",
    u"+",
    u"/.",
    u"7/",
    u"7:",
};

struct TextCase {
    const char* name;
    DataType dataType;
    std::int32_t dataLength;
    CodeType codeType;
    std::int32_t decimalDigits;
    friend void PrintTo(const TextCase& c, std::ostream* out) { *out << c.name; }
};

struct StretchOfTexts : testing::TestWithParam<TextCase> {
    StretchOfTexts()
    {
        coding.dataType = GetParam().dataType;
        coding.dataLength = GetParam().dataLength;
        coding.codeType = GetParam().codeType;
        coding.decimalDigits = GetParam().decimalDigits;
        CFieldTable fields;
        for (const auto* text : kTexts) {
            fields.AddField(text);
            fields.EndLine();
        }
        rows.LayOut({coding}, 0, static_cast<std::int32_t>(std::size(kTexts)));
        rows.ShowFields(std::move(fields));
    }

    Bytes Coded(RecipeKind kind)
    {
        CNoProgress progress;
        Bytes image(rows.StretchBytes());
        EXPECT_EQ(CodeStretch(rows, kind, image, progress), Outcome::Done);
        return image;
    }

    ColumnCoding coding = Signed16Column();
    CRecipeRows rows;
};

TEST_P(StretchOfTexts, IsCodedForAFlatFileAsOneByOne)
{
    Bytes expected(rows.StretchBytes());
    std::size_t pos = 0;
    for (const auto* text : kTexts)
        CodeValue(coding, text, expected, pos, RecipeKind::Flat);
    EXPECT_EQ(Coded(RecipeKind::Flat), expected);
}

TEST_P(StretchOfTexts, IsCodedForAPagedFileAsOneByOne)
{
    Bytes expected(rows.StretchBytes());
    std::size_t pos = 0;
    for (const auto* text : kTexts)
        CodeValue(coding, NormaliseForPagedFile(coding, text), expected, pos, RecipeKind::Paged);
    EXPECT_EQ(Coded(RecipeKind::Paged), expected);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, StretchOfTexts, testing::Values(
    //       name                      type                  words  code           decimals
    TextCase{"Signed16",               DataType::Signed16,   1,     CodeType::Bin, 0},
    TextCase{"Signed16Bcd",            DataType::Signed16,   1,     CodeType::Bcd, 0},
    TextCase{"Signed16Decimals",       DataType::Signed16,   1,     CodeType::Bin, 2},
    TextCase{"Signed16OneDecimal",     DataType::Signed16,   1,     CodeType::Bin, 1},
    TextCase{"Signed16DecimalsBcd",    DataType::Signed16,   1,     CodeType::Bcd, 2},
    TextCase{"Signed16InTwoWords",     DataType::Signed16,   2,     CodeType::Bin, 0},
    TextCase{"Signed32",               DataType::Signed32,   2,     CodeType::Bin, 0},
    TextCase{"Signed32InThreeWords",   DataType::Signed32,   3,     CodeType::Bin, 0},
    TextCase{"Signed32NegativeDigits", DataType::Signed32,   2,     CodeType::Bin, -3},
    TextCase{"Unsigned16",             DataType::Unsigned16, 1,     CodeType::Bin, 0},
    TextCase{"Unsigned32Bcd",          DataType::Unsigned32, 2,     CodeType::Bcd, 0},
    TextCase{"Hex16",                  DataType::Hex16,      1,     CodeType::Bin, 0},
    TextCase{"Hex16Bcd",               DataType::Hex16,      1,     CodeType::Bcd, 0},
    TextCase{"Hex32",                  DataType::Hex32,      2,     CodeType::Bin, 0},
    TextCase{"Float",                  DataType::Float,      2,     CodeType::Bin, 0},
    TextCase{"String",                 DataType::String,     2,     CodeType::Bin, 0}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

} // namespace
