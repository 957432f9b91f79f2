#include "tests/support/ProcessRun.h"

#include "tests/support/TestFiles.h"

#include <algorithm>
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

/// The form in which a process takes its texts; it lives as long as `texts`.
std::vector<char*> PointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// This process's settings, but for those that `changes` has.
std::vector<std::string> EnvironmentWith(const std::vector<std::string>& changes)
{
    std::vector<std::string> settings = changes;
    for (char** setting = environ; *setting != nullptr; ++setting) {
        const std::string text = *setting;
        const std::string name = text.substr(0, text.find('=') + 1);
        if (std::none_of(changes.begin(), changes.end(), [&](const auto& change) { return change.starts_with(name); }))
            settings.push_back(text);
    }
    return settings;
}

int RunRedirected(const fs::path& program, std::vector<std::string> arguments, const fs::path& out,
                  const fs::path& error, const std::vector<std::string>& environment = {})
{
    arguments.insert(arguments.begin(), program.string());
    std::vector<std::string> settings = EnvironmentWith(environment);
    const CRedirection redirection(out, error);
    pid_t process = 0;
    if (posix_spawn(&process, program.c_str(), redirection.Actions(), nullptr, PointersTo(arguments).data(),
                    PointersTo(settings).data()) != 0)
        throw std::runtime_error("cannot start " + program.string());
    int status = 0;
    if (waitpid(process, &status, 0) != process)
        throw std::runtime_error("lost " + program.string());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace

ProcessResult RunProcess(const fs::path& program, const std::vector<std::string>& arguments)
{
    return RunProcessIn({}, program, arguments);
}

ProcessResult RunProcessIn(const std::vector<std::string>& environment, const fs::path& program,
                           const std::vector<std::string>& arguments)
{
    const CTempFolder folder;
    ProcessResult result;
    result.exitCode = RunRedirected(program, arguments, folder / "out", folder / "error", environment);
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
