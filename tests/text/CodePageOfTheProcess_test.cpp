#include "text/AnsiText.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ostream>
#include <string>

namespace {

struct EnvironmentCase {
    const char* name;
    const char* wanted; ///< VANTOR_ANSI_CODEPAGE; null where a variable is not set
    const char* all;
    const char* characters;
    const char* language;
    int codePage;
    friend void PrintTo(const EnvironmentCase& c, std::ostream* out) { *out << c.name; }
};

struct CodePageOfTheProcess : testing::TestWithParam<EnvironmentCase> {};

void SetVariable(const char* name, const char* value)
{
    if (value != nullptr)
        setenv(name, value, 1);
    else
        unsetenv(name);
}

/// What a program that starts in the environment `c` reads ANSI texts by.
int CodePageIn(const EnvironmentCase& c)
{
    SetVariable("VANTOR_ANSI_CODEPAGE", c.wanted);
    SetVariable("LC_ALL", c.all);
    SetVariable("LC_CTYPE", c.characters);
    SetVariable("LANG", c.language);
    return AnsiCodePage();
}

// It is chosen once a process, so each row has a process of its own.
TEST_P(CodePageOfTheProcess, IsThatOfItsEnvironment)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::exit(CodePageIn(GetParam()) == GetParam().codePage ? 0 : 1), testing::ExitedWithCode(0), "");
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, CodePageOfTheProcess, testing::Values(
    //              name              wanted   LC_ALL         LC_CTYPE       LANG           code page
    EnvironmentCase{"NothingSet",     nullptr, nullptr,       nullptr,       nullptr,       1252},
    EnvironmentCase{"Language",       nullptr, nullptr,       nullptr,       "zh_CN.UTF-8", 936},
    EnvironmentCase{"Characters",     nullptr, nullptr,       "ja_JP.UTF-8", "zh_CN.UTF-8", 932},
    EnvironmentCase{"AllComesFirst",  nullptr, "ru_RU.UTF-8", "ja_JP.UTF-8", "zh_CN.UTF-8", 1251},
    EnvironmentCase{"EmptyIsNotSet",  nullptr, "",            "",            "ko_KR.UTF-8", 949},
    EnvironmentCase{"WishComesFirst", "950",   "ru_RU.UTF-8", nullptr,       nullptr,       950}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

} // namespace
