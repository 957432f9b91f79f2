#include "tests/cli/ConsoleExamples.h"

#include <fstream>

std::vector<ConsoleExample> ExamplesOf(const std::filesystem::path& document)
{
    std::vector<ConsoleExample> examples;
    std::ifstream file(document);
    bool isConsole = false;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("```"))
            isConsole = line == "```console";
        else if (isConsole && line.starts_with("$ "))
            examples.push_back({line.substr(2), ""});
        else if (isConsole && !examples.empty())
            examples.back().output += line + "\n";
    }
    return examples;
}
