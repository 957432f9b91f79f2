#include "tests/cli/CliTest.h"
#include "tests/cli/ConsoleExamples.h"

namespace fs = std::filesystem;

namespace {

/// A copy of the samples, in which the commands of a page run one after the other, as a reader would type them. The
/// program is a copy with the sample's formats beside it, whatever lies beside the built one.
struct GuidePages : testing::TestWithParam<const char*> {
    GuidePages()
    {
        for (const char* file : {"bakery-oven.rcp", "RecipeFile.Dat", "RecipeFile.Notes.json", ".vantor.json"})
            fs::copy_file(source / "examples" / file, folder / file);
        MakeOld(folder.Path());
        fs::copy_file(VANTOR_CLI_PROGRAM, programs / "vantor-cli");
        fs::copy_file(source / "examples" / "RecipeFile.Dat", programs / "RecipeFile.Dat");
    }

    ProcessResult RunHere(const std::string& command) const
    {
        return RunScript("cd \"$1\"; unset $(git rev-parse --local-env-vars); PATH=$4:$PATH; export LC_ALL=C "
                         "HOME=$2 XDG_DATA_HOME=$2 GIT_CONFIG_NOSYSTEM=1 "
                         "GIT_AUTHOR_NAME=A GIT_AUTHOR_EMAIL=a@b GIT_COMMITTER_NAME=A GIT_COMMITTER_EMAIL=a@b; "
                         "eval \"$3\" 2>&1",
                         {folder.Path().string(), home.Path().string(), command, programs.Path().string()});
    }

    const fs::path source = VANTOR_SOURCE_DIR;
    CTempFolder folder;
    CTempFolder home;
    CTempFolder programs;
};

TEST_P(GuidePages, PrintWhatTheySay)
{
    const auto examples = ExamplesOf(source / "docs/guide" / GetParam());
    EXPECT_GE(examples.size(), 8u);
    for (const ConsoleExample& example : examples) {
        const ProcessResult result = RunHere(example.command);
        ASSERT_EQ(result.out, example.output) << "$ " << example.command << "\nended with " << result.exitCode;
    }
}

INSTANTIATE_TEST_SUITE_P(All, GuidePages, testing::Values("git.md", "many-files.md"));

} // namespace
