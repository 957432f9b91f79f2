#include "disk/File.h"
#include "tests/support/Variable.h"

#include <gtest/gtest.h>

namespace {

struct FolderCase {
    const char* name;
    const char* dataHome;
    const char* home;
    const char* folder;
    friend void PrintTo(const FolderCase& c, std::ostream* out) { *out << c.name; }
};
struct UserDataFolderRule : testing::TestWithParam<FolderCase> {};

TEST_P(UserDataFolderRule, NamesTheFolder)
{
    const CVariable dataHome("XDG_DATA_HOME", GetParam().dataHome);
    const CVariable home("HOME", GetParam().home);
    EXPECT_EQ(UserDataFolder(), GetParam().folder);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, UserDataFolderRule, testing::Values(
    //         name                    XDG_DATA_HOME  HOME         folder
    FolderCase{"DataHomeComesFirst",   "/data",       "/home/ina", "/data"},
    FolderCase{"ElseInTheHomeFolder",  nullptr,       "/home/ina", "/home/ina/.local/share"},
    FolderCase{"EmptyCountsAsNone",    "",            "/home/ina", "/home/ina/.local/share"},
    FolderCase{"RelativeCountsAsNone", "data",        "/home/ina", "/home/ina/.local/share"},
    FolderCase{"RelativeHomeIsNone",   nullptr,       "ina",       ""},
    FolderCase{"NothingIsKnown",       nullptr,       nullptr,     ""}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

} // namespace
