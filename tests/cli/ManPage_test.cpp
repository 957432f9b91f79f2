#include "tests/cli/HelpTexts.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>

namespace {

std::string TextOfFile(const std::string& name)
{
    std::ifstream file(std::filesystem::path(VANTOR_SOURCE_DIR) / name);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The man page as text, without the backslashes before its dashes.
std::string ManPage()
{
    const std::string source = TextOfFile("packaging/share/man/man1/vantor-cli.1");
    return std::regex_replace(source, std::regex(R"(\\-)"), "-");
}

TEST(ManPage, TellsOfEveryCommandAndOption)
{
    const std::string page = ManPage();
    for (const auto& command : AllCommands()) {
        const std::string help = HelpOf(command);
        for (const std::string& name : CommandsIn(help))
            EXPECT_NE(page.find("vantor-cli " + (command.empty() ? name : command.front() + ' ' + name)),
                      std::string::npos)
                << name;
        for (const std::string& option : OptionsIn(help))
            EXPECT_NE(page.find(option), std::string::npos) << option;
    }
}

TEST(ManPage, DocumentTellsOfEveryCommandAndOption)
{
    const std::string document = TextOfFile("docs/command-line.md");
    for (const auto& command : AllCommands()) {
        const std::string help = HelpOf(command);
        for (const std::string& name : CommandsIn(help))
            EXPECT_NE(document.find(name), std::string::npos) << name;
        for (const std::string& option : OptionsIn(help))
            EXPECT_TRUE(document.find(option) != std::string::npos || option == "--output") << option;
    }
}

} // namespace
