#include "tests/cli/RunCli.h"

#include <gtest/gtest.h>

namespace {

TEST(CommandLine, TellsItsVersion)
{
    const ProcessResult result = RunCli({"--version"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.out, "vantor-cli " VANTOR_VERSION "\n");
    EXPECT_EQ(result.error, "");
}

TEST(CommandLine, TellsItsCommands)
{
    const ProcessResult result = RunCli({"--help"});
    EXPECT_EQ(result.exitCode, 0);
    for (const char* text : {"Usage: vantor-cli", "show", "set", "convert", "merge", "formats"})
        EXPECT_NE(result.out.find(text), std::string::npos) << text << "\n" << result.out;
    EXPECT_EQ(result.error, "");
}

struct HelpCase {
    const char* name;
    std::vector<std::string> command;
    std::vector<std::string> words; ///< of its help
    friend void PrintTo(const HelpCase& c, std::ostream* out) { *out << c.name; }
};

struct Help : testing::TestWithParam<HelpCase> {};

TEST_P(Help, TellsArgumentsAndOptions)
{
    std::vector<std::string> arguments = GetParam().command;
    arguments.emplace_back("--help");
    const ProcessResult result = RunCli(arguments);
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.error, "");
    for (const std::string& word : GetParam().words)
        EXPECT_NE(result.out.find(word), std::string::npos) << word << "\n" << result.out;
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, Help, testing::Values(
    HelpCase{"Show",    {"show"},    {"FILE", "--library PATH", "--format NAME", "--start S", "--rows N", "--json"}},
    HelpCase{"Set",     {"set"},     {"FILE", "--library PATH", "--format NAME", "--start S", "--rows N",
                                      "--cell ROW COLUMN TEXT", "--value ROWS ITEM TEXT",
                                      "--change ROWS ITEM CHANGE", "--where ITEM TEXT", "--only-edited", "--dry-run"}},
    HelpCase{"Convert", {"convert"}, {"SOURCE TARGET", "--library PATH", "--format NAME", "--start S", "--rows N"}},
    HelpCase{"Merge",   {"merge"},   {"FIRST SECOND TARGET", "--size 128K|256K", "--first-read N", "--first-length N",
                                      "--first-place N", "--second-read N", "--second-length N", "--second-place N",
                                      "--force"}},
    HelpCase{"Formats", {"formats"}, {"list", "export", "import"}},
    HelpCase{"List",    {"formats", "list"},   {"--library PATH"}},
    HelpCase{"Export",  {"formats", "export"}, {"--library PATH", "-o,--output FILE"}},
    HelpCase{"Import",  {"formats", "import"}, {"FILE", "--library PATH"}}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(CommandLine, FullOutputIsReportedForHelpAndVersion)
{
    for (const char* option : {"--help", "--version"}) {
        const ProcessResult result = RunProcess(VANTOR_CLI_PROGRAM, {option}, "/dev/full");
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.error, "Can't write the output!\n");
    }
}

TEST(CommandLine, NamesOfCommandsMayBeNamesOfFiles)
{
    EXPECT_EQ(RunCli({"show", "set"}).error, "Open error! set doesn't exit!\n");
    EXPECT_EQ(RunCli({"formats", "import", "list"}).error, "Open error! list doesn't exit!\n");
}

TEST(CommandLine, FileNamesMayBeginWithADash)
{
    EXPECT_EQ(RunCli({"show", "--", "-a.rcp"}).error, "Open error! -a.rcp doesn't exit!\n");
}

struct UsageCase {
    const char* name;
    std::vector<std::string> arguments;
    const char* usage; ///< whose usage is told
    friend void PrintTo(const UsageCase& c, std::ostream* out) { *out << c.name; }
};

struct WrongUsage : testing::TestWithParam<UsageCase> {};

TEST_P(WrongUsage, EndsWithTheUsage)
{
    const ProcessResult result = RunCli(GetParam().arguments);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_NE(result.error.find(GetParam().usage), std::string::npos) << result.error;
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, WrongUsage, testing::Values(
    UsageCase{"NoCommand",       {},                                              "Usage: vantor-cli"},
    UsageCase{"UnknownCommand",  {"shaw", "a.rcp"},                               "Usage: vantor-cli"},
    UsageCase{"NoFile",          {"show"},                                        "Usage: vantor-cli show"},
    UsageCase{"TwoFiles",        {"show", "a.rcp", "b.rcp"},                      "Usage: vantor-cli show"},
    UsageCase{"UnknownOption",   {"show", "a.rcp", "--colour"},                   "Usage: vantor-cli show"},
    UsageCase{"StartIsNoNumber", {"show", "a.rcp", "--start", "x"},               "Usage: vantor-cli show"},
    UsageCase{"StartTooLarge",   {"show", "a.rcp", "--start", "2147483648"},      "Usage: vantor-cli show"},
    UsageCase{"RowsIsNoInteger", {"show", "a.rcp", "--rows", "1.5"},              "Usage: vantor-cli show"},
    UsageCase{"RowsIsNoDecimal", {"show", "a.rcp", "--rows", "0x10"},             "Usage: vantor-cli show"},
    UsageCase{"RowsTwice",       {"show", "a.rcp", "--rows", "1", "--rows", "2"}, "Usage: vantor-cli show"},
    UsageCase{"NoCell",          {"set", "a.rcp"},                                "Usage: vantor-cli set"},
    UsageCase{"CellWithoutText", {"set", "a.rcp", "--cell", "1", "2"},            "Usage: vantor-cli set"},
    UsageCase{"RowIsNoNumber",   {"set", "a.rcp", "--cell", "a", "2", "3"},       "Usage: vantor-cli set"},
    UsageCase{"ValueWithoutText", {"set", "a.rcp", "--value", "1", "X"},          "Usage: vantor-cli set"},
    UsageCase{"WhereWithoutText", {"set", "a.rcp", "--value", "1", "X", "2", "--where", "X"}, "Usage: vantor-cli set"},
    UsageCase{"NoTarget",        {"convert", "a.rcp"},                            "Usage: vantor-cli convert"},
    UsageCase{"NoMerged",        {"merge", "a.rcp", "b.rcp"},                     "Usage: vantor-cli merge"},
    UsageCase{"UnknownSize",     {"merge", "a", "b", "c", "--size", "64K"},       "Usage: vantor-cli merge"},
    UsageCase{"PlaceIsNoNumber", {"merge", "a", "b", "c", "--first-place", "x"},  "Usage: vantor-cli merge"},
    UsageCase{"NoFormatsWork",   {"formats"},                                     "Usage: vantor-cli formats"},
    UsageCase{"FormatsUnknown",  {"formats", "remove"},                           "Usage: vantor-cli formats"},
    UsageCase{"NoImportFile",    {"formats", "import"},                           "Usage: vantor-cli formats import"},
    UsageCase{"NoValue",         {"show", "a.rcp", "--format"},                   "Usage: vantor-cli show"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

} // namespace
