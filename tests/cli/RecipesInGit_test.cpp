#include "tests/cli/CliTest.h"

#include <algorithm>

namespace fs = std::filesystem;

namespace {

/// A repository with the recipe as a file of each type, in which git prints recipes with `textconv`.
struct RecipesInGit : CliTest {
    RecipesInGit()
    {
        for (const char* name : {"a.erp", "a.frp", "a.csv"})
            EXPECT_EQ(Run({"convert", recipe.string(), (folder / name).string()}).exitCode, 0);
        MakeOld(folder.Path());
        EXPECT_EQ(Git("git init -q . && printf '*.%s -text diff=vantor\\n' rcp csv erp frp > .gitattributes &&"
                      "git config diff.vantor.textconv \"$cli textconv --library Any.Dat\" &&"
                      "git add . && git commit -qm First"),
                  "");
    }

    /// What `script` prints in the repository; it must not fail, or complain.
    std::string Git(const std::string& script) const
    {
        const ProcessResult result = RunScript("cd \"$1\"; unset $(git rev-parse --local-env-vars); export HOME=$1 "
                                               "GIT_CONFIG_NOSYSTEM=1 GIT_AUTHOR_NAME=A GIT_AUTHOR_EMAIL=a@b "
                                               "GIT_COMMITTER_NAME=A GIT_COMMITTER_EMAIL=a@b; " +
                                                   script,
                                               {folder.Path().string()});
        EXPECT_EQ(result.exitCode, 0) << script << '\n' << result.error;
        EXPECT_EQ(result.error, "") << script;
        return result.out;
    }

    /// What all that git shows of changes says of a file: each must say something.
    void ExpectTold(const std::string& file, const std::string& line)
    {
        const Bytes changed = ReadAll(folder / file);
        const auto time = fs::last_write_time(folder / file);
        EXPECT_NE(Git("git diff " + file).find(line), std::string::npos);
        EXPECT_EQ(fs::last_write_time(folder / file), time);
        Git("git stash -q");
        EXPECT_NE(Git("git stash show -p --textconv").find(line), std::string::npos);
        Git("git stash pop -q");
        EXPECT_EQ(ReadAll(folder / file), changed);
        Git("git commit -qam Second");
        for (const char* command : {"git log -p ", "git show HEAD -- ", "git blame ", "git diff HEAD~ HEAD -- "})
            EXPECT_NE(Git(command + file).find(line), std::string::npos) << command;
        EXPECT_EQ(Git("git status --porcelain"), "");
        EXPECT_EQ(ReadAll(folder / file), changed);
    }
};

TEST_F(RecipesInGit, AChangedValueIsALineOfEveryDifference)
{
    for (const std::string file : {"a.rcp", "a.erp", "a.frp", "a.csv"}) {
        ExpectDone({"set", (folder / file).string(), "--cell", "2", "3", "7.5", "--no-version", "--only-edited"});
        ExpectTold(file, file == "a.csv" ? "2 Temp(0) = 7.5" : "RW7 2 Temp(0) = 7.5 [004B]");
    }
}

TEST_F(RecipesInGit, WordsOutsideTheTableAreShown)
{
    Bytes bytes = ReadAll(recipe);
    bytes.back() = std::byte{0x12};
    WriteAll(recipe, bytes);
    ExpectTold("a.rcp", "RW11: 1263");
}

TEST_F(RecipesInGit, ADamagedFileStopsNothing)
{
    WriteAll(folder / "a.frp", Bytes(65536 + 4096, std::byte{0x77}));
    ExpectTold("a.frp", "Open file a.frp error! form = ");
    WriteAll(folder / "a.frp", Bytes(65536 + 4096, std::byte{0x78}));
    ExpectTold("a.frp", "Open file a.frp error! form = ");
}

TEST_F(RecipesInGit, AnUnreadableLibraryStopsNothing)
{
    Git("git config diff.vantor.textconv \"$cli textconv --library Any.Dat --format Nix\"");
    WriteAll(recipe, WordBytes({1, 2, 3}));
    ExpectTold("a.rcp", "The format Nix doesn't exist! form = ");
}

TEST_F(RecipesInGit, FilesThatComeAndGoAreShown)
{
    WriteAll(folder / "new.rcp", WordBytes({1, 2, 3}));
    EXPECT_NE(Git("git add . && git diff --cached new.rcp").find("+RW1 1 Level = 2 [0002]"), std::string::npos);
    fs::remove(folder / "a.rcp");
    EXPECT_NE(Git("git diff -- a.rcp").find("-RW1 1 Level = 5 [0005]"), std::string::npos);
}

TEST_F(RecipesInGit, NoChangedByteIsAnEmptyDifference)
{
    for (const std::string file : {"a.rcp", "a.erp", "a.frp", "a.csv"}) {
        const Bytes bytes = ReadAll(folder / file);
        const std::size_t step = std::max<std::size_t>(bytes.size() / 12, 1);
        for (std::size_t at = 0; at < bytes.size(); at += step) {
            Bytes changed = bytes;
            changed[at] ^= std::byte{0x20};
            WriteAll(folder / file, changed);
            const std::string difference = Git("git diff " + file);
            EXPECT_TRUE(difference.find("\n+") != std::string::npos && difference.find("\n-") != std::string::npos)
                << file << " byte " << at << '\n'
                << difference;
        }
    }
}

} // namespace
