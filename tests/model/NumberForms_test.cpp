#include "model/NumberForms.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

std::vector<std::u16string> NamesFor(std::u16string_view number)
{
    std::vector<std::u16string> names;
    for (const NumberForm& form : FormsOfNumber(number))
        names.push_back(form.name);
    return names;
}

bool Contains(const std::vector<std::u16string>& names, std::u16string_view name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

TEST(NumberForms, ScalesAsFarAsTheWordsGo)
{
    const auto names = NamesFor(u"7");
    EXPECT_TRUE(Contains(names, u"signed 16-bit"));
    EXPECT_TRUE(Contains(names, u"signed 16-bit, 3 decimals"));
    EXPECT_FALSE(Contains(names, u"signed 16-bit, 4 decimals")) << "70000 needs more than 16 bits";
    EXPECT_TRUE(Contains(names, u"unsigned 32-bit, 8 decimals"));
    EXPECT_TRUE(Contains(names, u"double, high word first"));
}

TEST(NumberForms, ANumberWithDecimalsIsNoIntegerWithout)
{
    const auto names = NamesFor(u"24.5");
    EXPECT_FALSE(Contains(names, u"signed 16-bit"));
    EXPECT_TRUE(Contains(names, u"signed 16-bit, 1 decimal"));
}

TEST(NumberForms, ZeroIsTheSameWithAnyDecimals)
{
    EXPECT_EQ(NamesFor(u"0"),
              (std::vector<std::u16string>{u"signed 16-bit", u"unsigned 16-bit", u"signed 32-bit", u"unsigned 32-bit",
                                           u"float", u"double", u"float", u"float, high word first", u"double",
                                           u"double, high word first"}))
        << "the last four are the zeros with a sign";
}

TEST(NumberForms, ANegativeNumberIsNeverUnsigned)
{
    for (const std::u16string& name : NamesFor(u"-1"))
        EXPECT_FALSE(name.starts_with(u"unsigned")) << std::string(name.begin(), name.end());
}

TEST(NumberForms, TwoOrdersAreTwoFormsOnlyWhereTheyDiffer)
{
    EXPECT_FALSE(Contains(NamesFor(u"65537"), u"signed 32-bit, high word first"));
    EXPECT_TRUE(Contains(NamesFor(u"65538"), u"signed 32-bit, high word first"));
}

TEST(NumberForms, OtherTextsHaveNone)
{
    EXPECT_TRUE(FormsOfNumber(u"").empty());
    EXPECT_TRUE(FormsOfNumber(u"warm").empty());
    EXPECT_TRUE(FormsOfNumber(u"1e+999999").empty());
    EXPECT_EQ(NamesFor(u"1F").front(), u"hexadecimal 16-bit");
}

} // namespace
