// PDF as the command line makes it.

#include "tests/support/ProcessRun.h"
#include "tests/support/TestFiles.h"
#include "tests/support/Variable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

/// The sample recipe, and a PDF that is made of it.
struct SheetPdf : testing::Test {
    SheetPdf() { fs::copy_file(fs::path(VANTOR_EXAMPLES) / "bakery-oven.rcp", recipe); }

    ProcessResult Run(std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.end(), {"--library", VANTOR_EXAMPLES "/RecipeFile.Dat"});
        return RunProcess(VANTOR_CLI_PROGRAM, arguments);
    }

    void Make(std::vector<std::string> arguments = {}) const
    {
        arguments.insert(arguments.begin(), {"sheet", recipe.string(), "-o", pdf.string()});
        const ProcessResult result = Run(std::move(arguments));
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.error, "");
    }

    std::string Tool(const std::string& tool, std::vector<std::string> arguments) const
    {
        arguments.insert(arguments.begin(), tool);
        return RunProcess("/usr/bin/env", arguments).out;
    }

    std::string Text() const { return Tool("pdftotext", {"-layout", pdf.string(), "-"}); }

    std::string Attachment(const std::string& name) const
    {
        Tool("pdfdetach", {"-savefile", name, "-o", (folder / "attached").string(), pdf.string()});
        std::ifstream file(folder / "attached", std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    CTempFolder folder;
    CVariable usersData{"XDG_DATA_HOME", folder.Path().string().c_str()};
    fs::path recipe = folder / "bakery-oven.rcp";
    fs::path pdf = folder / "oven.pdf";
};

/// The words of a text, without those that are nothing but blanks.
std::vector<std::string> Words(const std::string& text)
{
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

/// The lines from one that begins so, without the blanks that lie between their words.
std::vector<std::string> LinesFrom(const std::string& text, const std::string& begin)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        std::string joined;
        for (const std::string& word : Words(line))
            joined += (joined.empty() ? "" : " ") + word;
        if (!joined.empty() && (!lines.empty() || joined.starts_with(begin)))
            lines.push_back(joined);
    }
    return lines;
}

} // namespace

TEST_F(SheetPdf, TextIsThatOfShow)
{
    Make();
    const std::vector<std::string> sheet = LinesFrom(Text(), "Row 1 ");
    const auto shown = RunProcess(VANTOR_CLI_PROGRAM,
                                  {"show", "--json", recipe.string(), "--library", VANTOR_EXAMPLES "/RecipeFile.Dat"})
                           .out;
    // Of JSON that has a line a row, texts alone: the titles in the first line, then ID, address and cells.
    std::vector<std::vector<std::string>> rows;
    const std::regex text("\"((?:[^\"\\\\]|\\\\.)*)\"");
    std::istringstream lines(shown);
    for (std::string line; std::getline(lines, line);) {
        rows.emplace_back();
        for (std::sregex_iterator found(line.begin(), line.end(), text), end; found != end; ++found)
            rows.back().push_back((*found)[1]);
    }
    const std::vector<std::string> titles(rows[0].begin() + 1, rows[0].end() - 1);
    ASSERT_EQ(titles.size(), 15u);
    auto line = sheet.begin();
    for (std::size_t row = 1; row <= 12; ++row) {
        const std::vector<std::string>& texts = rows[row];
        const auto address = std::find(texts.begin(), texts.end(), "address") + 1;
        line = std::find(line, sheet.end(), "Row " + std::to_string(row) + " (" + *address + ")");
        ASSERT_NE(line, sheet.end()) << row;
        EXPECT_EQ(*++line, "Item Value Unit Sensible range Remark");
        for (std::size_t column = 0; column < titles.size(); ++column) {
            const std::string value = titles[column] + " " + *(address + 2 + static_cast<std::ptrdiff_t>(column));
            line = std::find_if(line + 1, sheet.end(), [&value](const std::string& one) { // long remarks are wrapped
                return (one + " ").starts_with(value + " "); // unit, range and names follow
            });
            ASSERT_NE(line, sheet.end()) << value;
        }
    }
}

TEST_F(SheetPdf, TextHasEachLetterByItself)
{
    Make({"--title", "Profile of the office flour, final offer"});
    EXPECT_NE(Text().find("Profile of the office flour, final offer"), std::string::npos) << Text();
}

TEST_F(SheetPdf, AttachmentIsWhatValuesPrints)
{
    Make();
    EXPECT_NE(Tool("pdfdetach", {"-list", pdf.string()}).find("1: values.jsonl\n"), std::string::npos);
    const std::string values = Run({"values", recipe.string()}).out;
    EXPECT_EQ(Attachment("values.jsonl"), values);
    Make({"--only-rows", "2"});
    const std::size_t begin = values.find('\n') + 1;
    EXPECT_EQ(Attachment("values.jsonl"), values.substr(begin, values.find('\n', begin) + 1 - begin));
}

TEST_F(SheetPdf, AttachmentIsWhatDiffPrints)
{
    const fs::path old = folder / "old.rcp";
    fs::copy_file(recipe, old);
    EXPECT_EQ(Run({"set", recipe.string(), "--cell", "2", "5", "240"}).exitCode, 0); // and values that it rewrites
    Make({"--since", old.string()});
    EXPECT_EQ(Attachment("changes.jsonl"), Run({"diff", "--json", old.string(), recipe.string()}).out);
    EXPECT_NE(Text().find("Changes since old.rcp"), std::string::npos);
}

TEST_F(SheetPdf, FontsAreEmbedded)
{
    Make({"--title", "Öfen – επιμέλεια"});
    std::istringstream fonts(Tool("pdffonts", {pdf.string()}));
    std::string line;
    std::getline(fonts, line);
    const std::size_t embedded = line.find("emb");
    std::getline(fonts, line);
    int count = 0;
    for (; std::getline(fonts, line); ++count)
        EXPECT_EQ(line.substr(embedded, 3), "yes") << line;
    EXPECT_GE(count, 2);
    EXPECT_NE(Text().find("Öfen – επιμέλεια"), std::string::npos);
}

TEST_F(SheetPdf, NeedsNoDisplayAndNoHome)
{
    const ProcessResult result =
        RunProcessIn({"DISPLAY=", "WAYLAND_DISPLAY=", "HOME=/nonexistent", "QT_QPA_PLATFORM=xcb", "XDG_RUNTIME_DIR="},
                     VANTOR_CLI_PROGRAM, {"sheet", recipe.string(), "-o", pdf.string()});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(result.error, "");
    EXPECT_TRUE(fs::exists(pdf));
}

TEST_F(SheetPdf, FailuresAreToldOnceAndLeaveTheOldSheet)
{
    WriteAll(pdf, BytesOf({1, 2, 3}));
    ProcessResult result = Run({"sheet", (folder / "no.rcp").string(), "-o", pdf.string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "Open error! " + (folder / "no.rcp").string() + " doesn't exit!\n");
    EXPECT_EQ(ReadAll(pdf), BytesOf({1, 2, 3}));
    const fs::path nowhere = folder / "no" / "x.pdf";
    result = Run({"sheet", recipe.string(), "-o", nowhere.string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "Can't save file " + nowhere.string() + ",please check file or your disk!\n");
    result = Run({"sheet", recipe.string(), "-o", pdf.string(), "--paper", "a5"});
    EXPECT_EQ(result.exitCode, 2);
}

TEST_F(SheetPdf, ThousandRows)
{
    Make({"--rows", "1000", "--start", "0"});
    const std::string text = Text();
    EXPECT_NE(text.find("Row 1000 (RW39960)"), std::string::npos);
}
