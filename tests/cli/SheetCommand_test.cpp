#include "recovery/VersionStore.h"
#include "tests/cli/CliTest.h"

#include <nlohmann/json.hpp>

#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace {

struct SheetCommand : CliTest {
    ProcessResult Sheet(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), {"sheet", recipe.string(), "-o", html.string()});
        return Run(std::move(arguments));
    }

    std::string Html(const std::vector<std::string>& arguments = {}) const
    {
        const ProcessResult result = Sheet(arguments);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.error, "");
        return TextOfFile(html);
    }

    static std::string TextOfFile(const fs::path& path)
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    fs::path html = folder / "sheet.html";
};

bool Has(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

/// How often `part` stands in `text`.
int CountOf(const std::string& text, const std::string& part)
{
    int count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

TEST_F(SheetCommand, HasWhatShowPrints)
{
    const std::string sheet = Html();
    const auto shown = nlohmann::json::parse(Run({"show", "--json", recipe.string()}).out);
    for (const auto& row : shown.at("rows")) {
        EXPECT_TRUE(Has(sheet, "<caption>Row " + std::to_string(row.at("id").get<int>()) + " (" +
                                   row.at("address").get<std::string>() + ")</caption>"));
        for (std::size_t column = 0; column < row.at("cells").size(); ++column) {
            EXPECT_TRUE(Has(sheet, "<th scope=\"row\" dir=\"auto\">" + shown.at("titles")[column].get<std::string>() +
                                       "</th>\n<td dir=\"auto\">" + row.at("cells")[column].get<std::string>() +
                                       "</td>"))
                << column << sheet;
        }
    }
    EXPECT_EQ(shown.at("rows").size(), 2u);
}

TEST_F(SheetCommand, SaysOfWhichFileItIs)
{
    const CVariable user("USER", "m<i>a");
    const std::string sheet = Html({"--title", "Oven & <2>"});
    const ProcessResult sum = RunScript("sha256sum <\"$1\"", {recipe.string()});
    EXPECT_TRUE(Has(sheet, "<td dir=\"auto\">" + sum.out.substr(0, 64) + "</td>")) << sheet;
    EXPECT_TRUE(Has(sheet, "<title>Oven &amp; &lt;2&gt;</title>"));
    EXPECT_TRUE(Has(sheet, "<td dir=\"auto\">m&lt;i&gt;a</td>"));
    EXPECT_TRUE(Has(sheet, "<td dir=\"auto\">RW1</td>"));
    EXPECT_TRUE(Has(Html(), "<title>Recipe sheet of a.rcp</title>"));
}

TEST_F(SheetCommand, ChosenRows)
{
    EXPECT_EQ(CountOf(Html({"--only-rows", "2"}), "<caption>Row "), 1);
    EXPECT_TRUE(Has(TextOfFile(html), "<td dir=\"auto\">2 of 2</td>"));
    EXPECT_EQ(CountOf(Html({"--only-rows", "*"}), "<caption>Row "), 2);
    ProcessResult result = Sheet({"--only-rows", "3"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "There is no row 3! The rows are 1 to 2!\n");
    result = Sheet({"--only-rows", "2-1"});
    EXPECT_EQ(result.exitCode, 2);
}

TEST_F(SheetCommand, ChangesSinceAFile)
{
    const fs::path old = folder / "old.rcp";
    fs::copy_file(recipe, old);
    ExpectDone({"set", recipe.string(), "--only-edited", "--cell", "1", "2", "7"});
    const std::string sheet = Html({"--since", old.string()});
    EXPECT_TRUE(Has(sheet, "<h2 dir=\"auto\">Changes since old.rcp</h2>"));
    EXPECT_TRUE(Has(sheet, "<td>1</td>\n<th scope=\"row\" dir=\"auto\">Level</th>\n<td dir=\"auto\">5</td>\n"
                           "<td dir=\"auto\">7</td>"))
        << sheet;
    EXPECT_FALSE(Has(Html({"--since", old.string(), "--only-rows", "2"}), "<td dir=\"auto\">7</td>"));
    EXPECT_TRUE(Has(TextOfFile(html), "<p>Further: 1 change in other rows.</p>"));
    EXPECT_FALSE(Has(Html(), "Changes since"));
}

TEST_F(SheetCommand, ChangesSinceAVersion)
{
    ExpectDone({"set", recipe.string(), "--only-edited", "--cell", "1", "2", "7"});
    EXPECT_TRUE(Has(Html({"--since", ""}), "Changes since the version of 20"));
    EXPECT_TRUE(Has(TextOfFile(html), "<td dir=\"auto\">5</td>\n<td dir=\"auto\">7</td>"));
    const std::string stamp = RunCli({"versions", "list", recipe.string()}).out.substr(0, 4);
    ASSERT_EQ(stamp.size(), 4u);
    EXPECT_TRUE(Has(Html({"--since", stamp}), "<td dir=\"auto\">5</td>\n<td dir=\"auto\">7</td>"));
    const ProcessResult result = Sheet({"--since", "1999"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "File " + recipe.string() + " has no version 1999!\n");
}

TEST_F(SheetCommand, NeverWritesTheRecipe)
{
    const Bytes before = ReadAll(recipe);
    const auto time = fs::last_write_time(recipe);
    Html();
    EXPECT_EQ(ReadAll(recipe), before);
    EXPECT_EQ(fs::last_write_time(recipe), time);
    fs::remove(html);
    fs::create_hard_link(recipe, html);
    ProcessResult result = Sheet({});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "The file " + html.string() + " is the recipe itself! The sheet needs another name!\n");
    EXPECT_EQ(ReadAll(recipe), before);
    result = Run({"sheet", recipe.string(), "-o", (folder / "b.csv").string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error,
              "The type of file " + (folder / "b.csv").string() + " is unknown! A sheet must be .pdf or .html!\n");
}

TEST_F(SheetCommand, WithoutAFileThereIsNoSheet)
{
    fs::remove(recipe);
    const ProcessResult result = Sheet({});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "Open error! " + recipe.string() + " doesn't exit!\n");
    EXPECT_FALSE(fs::exists(html));
}

TEST_F(SheetCommand, FailsWhereTheSheetCannotBeWritten)
{
    const fs::path nowhere = folder / "no" / "x.html";
    const ProcessResult result = Run({"sheet", recipe.string(), "-o", nowhere.string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "Can't save file " + nowhere.string() + ",please check file or your disk!\n");
}

TEST_F(SheetCommand, TablesOfTextsAndPagedFilesHaveSheets)
{
    for (const char* name : {"b.csv", "b.frp"}) {
        ExpectDone({"convert", recipe.string(), (folder / name).string()});
        const ProcessResult result = Run({"sheet", (folder / name).string(), "-o", html.string()});
        EXPECT_EQ(result.exitCode, 0) << result.error;
        EXPECT_TRUE(Has(TextOfFile(html), "<td dir=\"auto\">12.3</td>")) << name;
    }
}

TEST_F(SheetCommand, MoreValuesThanASheetHasAreRefused)
{
    const ProcessResult result = Sheet({"--rows", "60000"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "60000 rows of 4 values are too many for a sheet, which has 200000 values at most. "
                            "Choose fewer rows!\n");
    EXPECT_EQ(CountOf(Html({"--rows", "60000", "--only-rows", "1-1000"}), "<caption>Row "), 1000);
}

TEST_F(SheetCommand, IsTidy)
{
    const fs::path old = folder / "old.rcp";
    fs::copy_file(recipe, old);
    ExpectDone({"set", recipe.string(), "--only-edited", "--cell", "1", "2", "7"});
    Html({"--since", old.string(), "--title", "<&>\"' \xE5\x90\x8D"});
    const ProcessResult result = RunScript("tidy -quiet -errors \"$1\"", {html.string()});
    EXPECT_EQ(result.exitCode, 0); // neither warnings nor errors
    EXPECT_EQ(result.error, "");
}

TEST_F(SheetCommand, WithoutItsProgramThereIsNoPdf)
{
    const fs::path alone = folder / "vantor-cli";
    fs::copy_file(VANTOR_CLI_PROGRAM, alone);
    const fs::path pdf = folder / "x.pdf";
    const ProcessResult result = RunProcess(alone, {"sheet", recipe.string(), "-o", pdf.string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "PDF is made by the program " + (folder / "vantor-sheet").string() +
                                ", which can't be run! HTML needs no other program!\n");
    EXPECT_FALSE(fs::exists(pdf));
}

/// The program beside the command line gets what the command line got, and its status is the command's.
TEST_F(SheetCommand, ProgramForPdfGetsTheArguments)
{
    const fs::path alone = folder / "vantor-cli";
    fs::copy_file(VANTOR_CLI_PROGRAM, alone);
    const std::string script = "#!/bin/sh\nprintf '%s|' \"$@\"\nexit 1\n";
    WriteAll(folder / "vantor-sheet", TextBytes(script));
    fs::permissions(folder / "vantor-sheet", fs::perms::owner_all);
    const ProcessResult result =
        RunProcess(alone, {"sheet", "a b.rcp", "-o", "x.pdf", "--title", "", "--since", "\xC3\xA4 'x'"});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.out, "sheet|a b.rcp|-o|x.pdf|--title||--since|\xC3\xA4 'x'|");
    EXPECT_EQ(result.error, "");
}

} // namespace
