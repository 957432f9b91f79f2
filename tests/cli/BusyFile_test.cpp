#include "disk/FileLock.h"
#include "tests/cli/CliTest.h"

#include <sys/wait.h>
#include <unistd.h>

// Several programs that write one recipe file.

namespace fs = std::filesystem;

namespace {

using BusyFile = CliTest;

constexpr int kRounds = 60;

/// Starts the program in a process of its own, and says which.
pid_t Start(const std::vector<std::string>& arguments)
{
    const pid_t process = fork();
    if (process != 0)
        return process;
    std::vector<char*> values;
    std::string program = VANTOR_CLI_PROGRAM;
    values.push_back(program.data());
    std::vector<std::string> kept = arguments;
    for (std::string& argument : kept)
        values.push_back(argument.data());
    values.push_back(nullptr);
    const bool isQuiet = freopen("/dev/null", "w", stderr) != nullptr;
    static_cast<void>(isQuiet);
    execv(program.c_str(), values.data());
    _exit(127);
}

bool HasDone(pid_t process)
{
    int status = 0;
    return waitpid(process, &status, 0) == process && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

/// A file of each type.
struct OfEachType : CliTest, testing::WithParamInterface<const char*> {};

} // namespace

TEST_F(BusyFile, IsRefusedAfterAWhile)
{
    const Bytes before = ReadAll(recipe);
    CFileLock lock;
    ASSERT_EQ(lock.Take(recipe, std::chrono::seconds(0)), CFileLock::State::Held);
    ExpectRefused({"set", recipe.string(), "--value", "1", "Level", "5"},
                  "File " + recipe.string() + " is being written by another program!");
    WriteAll(folder / "p.jsonl",
             TextBytes("{\"vantor\":\"changes\",\"version\":1}\n{\"row\":1,\"item\":\"Level\",\"new\":\"6\"}\n"));
    const ProcessResult patch = Run({"patch", recipe.string(), (folder / "p.jsonl").string()});
    EXPECT_EQ(patch.exitCode, 2);
    EXPECT_EQ(patch.error, "File " + recipe.string() + " is being written by another program!\n");
    EXPECT_EQ(ReadAll(recipe), before);
    EXPECT_EQ(Run({"patch", recipe.string(), (folder / "p.jsonl").string(), "--dry-run"}).exitCode, 0);
    EXPECT_EQ(Run({"set", recipe.string(), "--value", "1", "Level", "5", "--dry-run"}).exitCode, 0) << "it only reads";
}

/// What both report as saved is in the file: each sets a cell of its own.
TEST_P(OfEachType, LosesNoEditOfTwoThatSetAtOnce)
{
    const fs::path file = folder / (std::string("busy.") + GetParam());
    if (file.extension() == ".erp" || file.extension() == ".frp")
        WriteAll(file, Bytes(64));
    ExpectDone({"convert", recipe.string(), file.string()});
    for (int round = 1; round <= kRounds; ++round) {
        const std::string value = std::to_string(round % 10);
        const auto set = [&](const char* row) {
            return Start({"set", file.string(), "--library", libraryPath.string(), "--value", row, "Level", value});
        };
        const pid_t first = set("1");
        const pid_t second = set("2");
        ASSERT_TRUE(HasDone(first));
        ASSERT_TRUE(HasDone(second));
        const std::string rows = Run({"show", file.string(), "--json"}).out;
        const std::string cells = "\"cells\": [\"" + value + "\"";
        const std::size_t row = rows.find(cells);
        ASSERT_NE(row, std::string::npos) << "round " << round << "\n" << rows;
        ASSERT_NE(rows.find(cells, row + 1), std::string::npos) << "round " << round << "\n" << rows;
    }
}

INSTANTIATE_TEST_SUITE_P(Types, OfEachType, testing::Values("rcp", "csv", "erp", "frp"),
                         [](const auto& type) { return std::string(type.param); });
