#include "app/FileDialogs.h"

#include <gtest/gtest.h>

namespace {

struct FilterCase {
    const char* name;
    const char* pattern;
    QStringList filters;
    friend void PrintTo(const FilterCase& c, std::ostream* out) { *out << c.name; }
};

struct OpenFilter : testing::TestWithParam<FilterCase> {};

} // namespace

TEST_P(OpenFilter, PutsThePatternsTypeFirst)
{
    EXPECT_EQ(OpenFilters(GetParam().pattern), GetParam().filters);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, OpenFilter, testing::Values(
    FilterCase{"Rcp",         "*.rcp", {"(*.rcp)", "(*.csv)", "(*.erp)", "(*.frp)"}},
    FilterCase{"Csv",         "*.csv", {"(*.csv)", "(*.rcp)", "(*.erp)", "(*.frp)"}},
    FilterCase{"Erp",         "*.erp", {"(*.erp)", "(*.csv)", "(*.rcp)", "(*.frp)"}},
    FilterCase{"Frp",         "*.frp", {"(*.frp)", "(*.erp)", "(*.csv)", "(*.rcp)"}},
    FilterCase{"UnknownType", "*.txt", {}},
    FilterCase{"NoExtension", "*.",    {}}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(SaveFilter, StartsWithTheFlatFile)
{
    EXPECT_EQ(SaveFilters(), (QStringList{"(*.rcp)", "(*.csv)", "(*.erp)", "(*.frp)"}));
}
