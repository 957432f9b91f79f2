#pragma once

#include <set>
#include <string>
#include <vector>

/// The words of every command, the program itself first.
std::vector<std::vector<std::string>> AllCommands();

std::string HelpOf(std::vector<std::string> command);

/// The long options that a help text tells of.
std::set<std::string> OptionsIn(const std::string& help);

/// The commands that a help text lists.
std::set<std::string> CommandsIn(const std::string& help);
