#include "tests/support/RedirectedRun.h"

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

} // namespace

int RunRedirected(const fs::path& program, const std::vector<std::string>& arguments, const RunStreams& streams,
                  const std::vector<std::string>& environment)
{
    std::vector<std::string> words{program.string()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> settings = EnvironmentWith(environment);
    const CRedirection redirection(streams.out, streams.error);
    pid_t process = 0;
    if (posix_spawn(&process, program.c_str(), redirection.Actions(), nullptr, PointersTo(words).data(),
                    PointersTo(settings).data()) != 0)
        throw std::runtime_error("cannot start " + program.string());
    int status = 0;
    if (waitpid(process, &status, 0) != process)
        throw std::runtime_error("lost " + program.string());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
