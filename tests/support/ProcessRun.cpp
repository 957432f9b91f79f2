#include "tests/support/ProcessRun.h"

#include "tests/support/TestFiles.h"

#include <fcntl.h>
#include <spawn.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

/// The files that stand for a process's standard input, output and error.
class CRedirection {
public:
    CRedirection(const fs::path& out, const fs::path& error)
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&m_actions, STDOUT_FILENO, out.c_str(), O_WRONLY | O_CREAT, 0600);
        posix_spawn_file_actions_addopen(&m_actions, STDERR_FILENO, error.c_str(), O_WRONLY | O_CREAT, 0600);
    }
    ~CRedirection() { posix_spawn_file_actions_destroy(&m_actions); }
    CRedirection(const CRedirection&) = delete;
    CRedirection& operator=(const CRedirection&) = delete;

    const posix_spawn_file_actions_t* Actions() const { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions{};
};

std::string TextIn(const fs::path& file)
{
    std::string text;
    for (const std::byte b : ReadAll(file))
        text += static_cast<char>(b);
    return text;
}

int RunRedirected(const fs::path& program, std::vector<std::string> arguments, const fs::path& out,
                  const fs::path& error)
{
    arguments.insert(arguments.begin(), program.string());
    std::vector<char*> argv;
    for (std::string& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);

    const CRedirection redirection(out, error);
    pid_t process = 0;
    if (posix_spawn(&process, program.c_str(), redirection.Actions(), nullptr, argv.data(), environ) != 0)
        throw std::runtime_error("cannot start " + program.string());
    int status = 0;
    if (waitpid(process, &status, 0) != process)
        throw std::runtime_error("lost " + program.string());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

ProcessResult RunProcess(const fs::path& program, const std::vector<std::string>& arguments)
{
    const CTempFolder folder;
    ProcessResult result;
    result.exitCode = RunRedirected(program, arguments, folder / "out", folder / "error");
    result.out = TextIn(folder / "out");
    result.error = TextIn(folder / "error");
    return result;
}

ProcessResult RunProcess(const fs::path& program, const std::vector<std::string>& arguments, const fs::path& outputFile)
{
    const CTempFolder folder;
    ProcessResult result;
    result.exitCode = RunRedirected(program, arguments, outputFile, folder / "error");
    result.error = TextIn(folder / "error");
    return result;
}
