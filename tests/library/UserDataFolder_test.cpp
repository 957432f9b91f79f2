#include "disk/File.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

namespace {

/// As long as this lives, the environment variable `name` has another value, or none.
class CVariable {
public:
    CVariable(std::string name, const char* value) : m_name(std::move(name))
    {
        if (const char* const old = std::getenv(m_name.c_str()))
            m_old = old;
        Set(value);
    }
    ~CVariable() { Set(m_old ? m_old->c_str() : nullptr); }
    CVariable(const CVariable&) = delete;
    CVariable& operator=(const CVariable&) = delete;

private:
    void Set(const char* value)
    {
        if (value != nullptr)
            setenv(m_name.c_str(), value, 1);
        else
            unsetenv(m_name.c_str());
    }

    std::string m_name;
    std::optional<std::string> m_old;
};

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
