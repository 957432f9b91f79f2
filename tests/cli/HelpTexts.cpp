#include "tests/cli/HelpTexts.h"

#include "tests/cli/RunCli.h"

#include <algorithm>
#include <regex>
#include <sstream>

std::vector<std::vector<std::string>> AllCommands()
{
    return {{},
            {"show"},
            {"diff"},
            {"patch"},
            {"set"},
            {"convert"},
            {"merge"},
            {"check"},
            {"values"},
            {"sheet"},
            {"formats"},
            {"formats", "list"},
            {"formats", "export"},
            {"formats", "import"},
            {"unsaved"},
            {"unsaved", "list"},
            {"unsaved", "show"},
            {"unsaved", "drop"},
            {"versions"},
            {"versions", "list"},
            {"versions", "show"},
            {"versions", "restore"},
            {"versions", "forget"}};
}

std::string HelpOf(std::vector<std::string> command)
{
    command.emplace_back("--help");
    return RunCli(command).out;
}

std::set<std::string> OptionsIn(const std::string& help)
{
    const std::regex option("--[a-z][a-z-]+");
    std::set<std::string> options;
    for (std::sregex_iterator match(help.begin(), help.end(), option), end; match != end; ++match)
        options.insert(match->str());
    return options;
}

std::set<std::string> CommandsIn(const std::string& help)
{
    std::set<std::string> commands;
    std::istringstream lines(help.substr(std::min(help.find("Subcommands:\n"), help.size())));
    std::string line;
    for (std::getline(lines, line); std::getline(lines, line) && line.starts_with("  ");)
        commands.insert(line.substr(2, line.find(' ', 2) - 2));
    return commands;
}
