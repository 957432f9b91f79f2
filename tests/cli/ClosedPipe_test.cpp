#include "tests/cli/CliTest.h"

#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

/// A reader that goes before it has read anything, of more than a pipe holds.
struct ClosedPipe : CliTest {
    ClosedPipe()
    {
        WriteAll(large, {});
        fs::resize_file(large, std::uintmax_t{8} << 20);
    }

    /// `ignored` runs before the program: what it does to SIGPIPE the program takes over.
    void ExpectQuiet(int code, const std::string& arguments, const std::string& ignored) const
    {
        const ProcessResult result = RunScript("{ " + ignored + " sleep 0.05; \"$cli\" " + arguments +
                                                   " --library \"$2\"; echo $? > \"$3\"; } | true; cat \"$3\"",
                                               {large.string(), libraryPath.string(), (folder / "status").string()});
        EXPECT_EQ(result.error, "") << arguments;
        EXPECT_EQ(result.out, std::to_string(code) + "\n") << arguments;
    }

    fs::path large = folder / "large.rcp";
};

TEST_F(ClosedPipe, EndsEveryCommandWithoutAWord)
{
    for (const char* ignored : {"", "trap '' PIPE;"}) {
        ExpectQuiet(1, "show \"$1\" --rows 100000", ignored);
        ExpectQuiet(1, "show \"$1\" --rows 100000 --json", ignored);
        ExpectQuiet(1, "formats list", ignored);
        ExpectQuiet(1, "formats export", ignored);
        ExpectQuiet(1, "set \"$1\" --cell 1 2 5 --dry-run", ignored);
        ExpectQuiet(2, "check \"$1\" --rows 1000000", ignored);
        ExpectQuiet(2, "values \"$1\" --rows 100000", ignored);
    }
}

TEST_F(ClosedPipe, EndsLongWorkAtOnce)
{
    const ProcessResult result = RunScript(
        "\"$cli\" values \"$1\" --rows 16777216 --library \"$2\" | head -n 1 | wc -l", // minutes, if all were printed
        {large.string(), libraryPath.string()});
    EXPECT_EQ(result.out, "1\n");
    EXPECT_EQ(result.error, "");
}

TEST_F(ClosedPipe, FullDiskIsToldAllTheSame)
{
    for (const char* command : {"check", "values"}) {
        const ProcessResult result =
            RunProcess(VANTOR_CLI_PROGRAM, {command, "--library", libraryPath.string(), recipe.string(), "--rows", "9"},
                       "/dev/full");
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.error, "Can't write the output!\n");
    }
}

} // namespace
