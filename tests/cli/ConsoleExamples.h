#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// Commands of a document, and what it says that they print.
struct ConsoleExample {
    std::string command;
    std::string output;
};

/// What stands in the document's blocks for the console.
std::vector<ConsoleExample> ExamplesOf(const std::filesystem::path& document);
