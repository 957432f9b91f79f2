#include "tests/cli/CliTest.h"

#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

namespace {

/// Commands of a document, and what it says that they print.
struct Example {
    std::string command;
    std::string output;
};

/// What stands in the document's blocks for the console.
std::vector<Example> ExamplesOf(const fs::path& document)
{
    std::vector<Example> examples;
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

TEST(DocumentedExamples, PrintWhatTheDocumentSays)
{
    const fs::path source = VANTOR_SOURCE_DIR;
    const CTempFolder folder;
    for (const char* file : {"bakery-oven.rcp", "RecipeFile.Dat"})
        fs::copy_file(source / "examples" / file, folder / file);
    fs::copy_file(VANTOR_CLI_PROGRAM, folder / "vantor-cli");

    const std::vector<Example> examples = ExamplesOf(source / "docs/command-line.md");
    EXPECT_GE(examples.size(), 10u);
    for (const Example& example : examples) {
        const ProcessResult result =
            RunScript("cd \"$1\"; PATH=.:$PATH; eval \"$2\" 2>&1", {folder.Path().string(), example.command});
        EXPECT_EQ(result.out, example.output) << example.command;
    }
}

} // namespace
