#include "model/DataType.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>

namespace {

struct NameCase {
    const char* name;
    std::int32_t code;
    std::u16string_view inItemTables;
    std::u16string_view inBitBrowser;
    friend void PrintTo(const NameCase& c, std::ostream* out) { *out << c.name; }
};

struct DataTypeNames : testing::TestWithParam<NameCase> {};

TEST_P(DataTypeNames, AreThoseOfTheTwoTables)
{
    const auto type = static_cast<DataType>(GetParam().code);
    EXPECT_EQ(TypeName(type), GetParam().inItemTables);
    EXPECT_EQ(BitBrowserTypeName(type), GetParam().inBitBrowser);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, DataTypeNames, testing::Values(
    NameCase{"Signed16",   0, u"16 bit signed number",          u"16 bit signed number"},
    NameCase{"Signed32",   1, u"32 bit signed number",          u"32 bit signed number"},
    NameCase{"Unsigned16", 2, u"16 bit unsigned number",        u"16 bit unsigned number"},
    NameCase{"Unsigned32", 3, u"32 bit unsigned numebr",        u"32 bit unsigned number"},   // kept: two spellings
    NameCase{"Hex16",      4, u"16 bit Hexadecimal",            u"16 bit Hexadecimal"},
    NameCase{"Hex32",      5, u"32 bit Hexadecimal",            u"32 bit Hexadecimal"},
    NameCase{"Float",      6, u"Single-precision float number", u""},
    NameCase{"Double",     7, u"Double-precision float number", u""},
    NameCase{"String",     8, u"String Data",                   u""},
    NameCase{"NotChosen", -1, u"",                              u""},
    NameCase{"Nine",       9, u"",                              u""},
    NameCase{"Lowest",  std::numeric_limits<std::int32_t>::min(), u"", u""},
    NameCase{"Highest", std::numeric_limits<std::int32_t>::max(), u"", u""}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(CodeTypeLabel, NamesTheTwoCodesOnly)
{
    EXPECT_EQ(CodeTypeLabel(CodeType::Bin), u"BIN code");
    EXPECT_EQ(CodeTypeLabel(CodeType::Bcd), u"BCD code");
    EXPECT_EQ(CodeTypeLabel(CodeType::NotChosen), u"");
    EXPECT_EQ(CodeTypeLabel(static_cast<CodeType>(2)), u"");
}

} // namespace
