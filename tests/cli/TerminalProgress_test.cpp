#include "cli/StandardStreams.h"
#include "disk/File.h"
#include "tests/cli/CliTest.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using namespace std::chrono_literals;

/// A terminal, and what was written to it.
class CPseudoTerminal {
public:
    CPseudoTerminal() : m_master(posix_openpt(O_RDWR | O_NOCTTY))
    {
        if (m_master < 0 || grantpt(m_master) != 0 || unlockpt(m_master) != 0)
            throw "no terminal";
        m_stream = std::fopen(ptsname(m_master), "w");
        termios settings{};
        tcgetattr(fileno(m_stream), &settings);
        cfmakeraw(&settings);
        tcsetattr(fileno(m_stream), TCSANOW, &settings);
    }
    ~CPseudoTerminal()
    {
        std::fclose(m_stream);
        close(m_master);
    }
    CPseudoTerminal(const CPseudoTerminal&) = delete;
    CPseudoTerminal& operator=(const CPseudoTerminal&) = delete;

    std::FILE* Stream() { return m_stream; }

    std::string Written()
    {
        std::fflush(m_stream);
        std::string text;
        pollfd ready{m_master, POLLIN, 0};
        while (poll(&ready, 1, 50) == 1 && (ready.revents & POLLIN) != 0) {
            char piece[256];
            const ssize_t count = read(m_master, piece, sizeof piece);
            if (count <= 0)
                break;
            text.append(piece, static_cast<std::size_t>(count));
        }
        return text;
    }

private:
    int m_master;
    std::FILE* m_stream = nullptr;
};

TEST(TerminalProgress, TellsHowFarWorkHasComeAndGoes)
{
    CPseudoTerminal terminal;
    {
        CTerminalProgress progress(terminal.Stream(), 0ms, 1h);
        EXPECT_TRUE(progress.Advance(1, 8));
        EXPECT_EQ(terminal.Written(), "\r 12 %");
        EXPECT_TRUE(progress.Advance(8, 8)); // it is too soon
    }
    EXPECT_EQ(terminal.Written(), "\r     \r");
}

TEST(TerminalProgress, IsSilentWhereWorkIsShort)
{
    CPseudoTerminal terminal;
    {
        CTerminalProgress progress(terminal.Stream(), 1h);
        progress.Advance(1, 2);
    }
    EXPECT_EQ(terminal.Written(), "");
}

TEST(TerminalProgress, IsSilentWhereNobodyWatches)
{
    const CTempFolder folder;
    std::FILE* const file = std::fopen((folder / "error").c_str(), "w");
    EXPECT_FALSE(IsTerminal(file));
    {
        CTerminalProgress progress(file, 0ms);
        progress.Advance(1, 2);
    }
    std::fclose(file);
    EXPECT_EQ(fs::file_size(folder / "error"), 0u);
}

TEST(TerminalProgress, MakesWayForMessagesAndOutput)
{
    CPseudoTerminal terminal;
    EXPECT_TRUE(IsTerminal(terminal.Stream()));
    CTerminalProgress progress(terminal.Stream(), 0ms);
    CStandardError error(terminal.Stream(), progress);
    progress.Advance(0, 0);
    error.ShowError(u"Trouble!");
    EXPECT_EQ(terminal.Written(), "\r  0 %\r     \rTrouble!\n");

    CTerminalProgress more(terminal.Stream(), 0ms);
    CStandardOutput output(terminal.Stream(), more);
    more.Advance(9, 8);
    output.Write("row\n");
    EXPECT_TRUE(output.Finish(error));
    EXPECT_EQ(terminal.Written(), "\r100 %\r     \rrow\n");
}

/// Runs a program with standard error on a terminal and stops it for a moment, so that its work takes long.
constexpr const char* kOnATerminal = R"(
import os, pty, signal, sys, time
pid, terminal = pty.fork()
if pid == 0:
    os.dup2(os.open("/dev/null", os.O_WRONLY), 1)
    os.execv(sys.argv[1], sys.argv[1:])
time.sleep(0.2)
os.kill(pid, signal.SIGSTOP)
time.sleep(1.1)
os.kill(pid, signal.SIGCONT)
try:
    while piece := os.read(terminal, 4096):
        sys.stdout.write(piece.decode())
except OSError:
    pass # the program has ended
)";

/// A command, and for how many rows of one word it works long enough.
struct LongCommand {
    std::string name;
    std::size_t rows;
    std::vector<std::string> further; ///< what comes after the file
    friend void PrintTo(const LongCommand& command, std::ostream* out) { *out << command.name; }
};
struct LongWork : CliTest, testing::WithParamInterface<LongCommand> {};

TEST_P(LongWork, IsToldOnATerminal)
{
    const fs::path large = folder / "large.rcp";
    WriteAll(large, Bytes(2 * GetParam().rows));
    WriteAll(folder / "other.rcp", Bytes(2 * GetParam().rows, std::byte{1}));
    std::vector<std::string> arguments{"python3",       "-c",          kOnATerminal, VANTOR_CLI_PROGRAM,
                                       GetParam().name, large.string()};
    for (const std::string& argument : GetParam().further)
        arguments.push_back(argument.ends_with(".rcp") ? (folder / argument).string() : argument);
    for (const char* option : {"--format", "W\xC3\xB6rter", "--start", "0", "--rows"})
        arguments.push_back(option);
    arguments.insert(arguments.end(), {std::to_string(GetParam().rows), "--library", libraryPath.string()});
    const std::string told = RunProcess("/usr/bin/env", arguments).out;
    EXPECT_NE(told.find(" %"), std::string::npos) << told;
    EXPECT_TRUE(told.ends_with("\r     \r")) << told;
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Commands, LongWork, testing::Values(
    LongCommand{"check",    std::size_t{1} << 24, {}},
    LongCommand{"find",     std::size_t{1} << 24, {"7"}},
    LongCommand{"diff",     std::size_t{1} << 21, {"other.rcp"}},
    LongCommand{"textconv", std::size_t{1} << 21, {}}),
    [](const auto& command) { return command.param.name; });
// clang-format on

} // namespace
