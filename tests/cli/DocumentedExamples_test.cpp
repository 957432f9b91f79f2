#include "tests/cli/CliTest.h"
#include "tests/cli/ConsoleExamples.h"

#include <nlohmann/json.hpp>

#include <fstream>
#include <regex>

namespace fs = std::filesystem;

namespace {

/// The commands in the examples of a man page.
std::vector<std::string> ManExamplesOf(const fs::path& page)
{
    std::vector<std::string> commands;
    std::ifstream file(page);
    bool isExample = false;
    for (std::string line; std::getline(file, line);) {
        if (line == ".EX" || line == ".EE")
            isExample = line == ".EX";
        else if (isExample)
            commands.push_back(std::regex_replace(line, std::regex(R"(\\-)"), "-"));
    }
    return commands;
}

/// A folder with the program and the samples in it.
struct DocumentedExamples : testing::Test {
    DocumentedExamples()
    {
        for (const char* file : {"bakery-oven.rcp", "RecipeFile.Dat", "RecipeFile.Notes.json", ".vantor.json"})
            fs::copy_file(source / "examples" / file, folder / file);
        fs::copy_file(VANTOR_CLI_PROGRAM, folder / "vantor-cli");
    }

    ProcessResult RunHere(const std::string& command) const
    {
        return RunScript("cd \"$1\"; PATH=.:$PATH; eval \"$2\" 2>&1", {folder.Path().string(), command});
    }

    /// As `show` tells it, of the row and column that `set` counts.
    std::string Cell(const std::string& file, int row, int column) const
    {
        const auto shown = nlohmann::json::parse(RunHere("vantor-cli show --json " + file).out);
        return shown.at("rows")
            .at(static_cast<std::size_t>(row - 1))
            .at("cells")
            .at(static_cast<std::size_t>(column - 2));
    }

    const fs::path source = VANTOR_SOURCE_DIR;
    CTempFolder folder;
};

TEST_F(DocumentedExamples, PrintWhatTheDocumentSays)
{
    const std::vector<ConsoleExample> examples = ExamplesOf(source / "docs/command-line.md");
    EXPECT_GE(examples.size(), 10u);
    for (const ConsoleExample& example : examples)
        EXPECT_EQ(RunHere(example.command).out, example.output) << example.command;
}

/// What was printed without the one sentence that a save of all cells of the sample is told of.
std::string WithoutWarning(const std::string& out)
{
    static const std::regex warning("oven\\.rcp: [0-9]+ values? that (was|were) not set (was|were) stored as shown\\. "
                                    "With --only-edited (it stays as it is|they stay as they are)\\.\n");
    return std::regex_replace(out, warning, "", std::regex_constants::format_first_only);
}

TEST_F(DocumentedExamples, OfTheManPagesRun)
{
    fs::rename(folder / "bakery-oven.rcp", folder / "oven.rcp");
    for (const char* file : {"left.rcp", "right.rcp"})
        WriteAll(folder / file, Bytes(130560));
    std::vector<std::string> commands;
    for (const char* page : {"vantor-cli.1", "vantor.1"})
        for (const std::string& command : ManExamplesOf(source / "packaging/share/man/man1" / page))
            commands.push_back(command);
    EXPECT_GE(commands.size(), 5u);
    for (const std::string& command : commands) {
        ASSERT_TRUE(command.starts_with("vantor-cli ")) << command << " is not to be run here";
        const ProcessResult result = RunHere(command);
        EXPECT_EQ(result.exitCode, 0) << command << result.out;
        EXPECT_TRUE(WithoutWarning(result.out).empty() || !command.starts_with("vantor-cli set "))
            << command << result.out;
    }
}

/// An example that puts a number into the name of a product runs, too.
TEST_F(DocumentedExamples, OfTheManPagePutNumbersWhereNumbersAre)
{
    fs::rename(folder / "bakery-oven.rcp", folder / "oven.rcp");
    const std::regex number("-?[0-9]+([.][0-9]+)?");
    const std::regex cell("--cell ([0-9]+) ([0-9]+) ([^ ]+)");
    int cells = 0;
    for (const std::string& command : ManExamplesOf(source / "packaging/share/man/man1/vantor-cli.1")) {
        if (!command.starts_with("vantor-cli set oven.rcp"))
            continue;
        for (std::sregex_iterator found(command.begin(), command.end(), cell), end; found != end; ++found, ++cells) {
            const auto text = [&] { return Cell("oven.rcp", std::stoi((*found)[1]), std::stoi((*found)[2])); };
            EXPECT_TRUE(std::regex_match(text(), number)) << found->str() << " over " << text();
            EXPECT_NE(text(), (*found)[3]) << "changes nothing";
            EXPECT_EQ(RunHere("vantor-cli set oven.rcp " + found->str()).exitCode, 0);
            EXPECT_EQ(text(), (*found)[3]) << command;
        }
    }
    EXPECT_GE(cells, 1);
}

} // namespace
