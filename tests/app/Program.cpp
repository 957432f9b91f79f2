#include "tests/app/Program.h"

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int kLongestSilence = 60'000; // milliseconds

std::vector<char*> PointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> EnvironmentWith(std::vector<std::string> settings)
{
    const auto changes = settings;
    for (char** setting = environ; *setting != nullptr; ++setting) {
        const std::string text = *setting;
        const std::string name = text.substr(0, text.find('=') + 1);
        if (std::none_of(changes.begin(), changes.end(), [&](const auto& change) { return change.starts_with(name); }))
            settings.push_back(text);
    }
    return settings;
}

} // namespace

CProgram::CProgram(const std::filesystem::path& program, std::vector<std::string> arguments,
                   const std::vector<std::string>& environment)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe");
    arguments.insert(arguments.begin(), program.string());
    std::vector<std::string> settings = EnvironmentWith(environment);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
    const int error = posix_spawn(&m_process, program.c_str(), &actions, nullptr, PointersTo(arguments).data(),
                                  PointersTo(settings).data());
    posix_spawn_file_actions_destroy(&actions);
    close(ends[1]);
    m_out = ends[0];
    if (error != 0) {
        close(m_out);
        throw std::runtime_error("cannot start " + program.string());
    }
}

CProgram::~CProgram()
{
    Signal(SIGKILL);
    waitpid(m_process, nullptr, 0);
    close(m_out);
}

/// False at its end, or after a long silence.
bool CProgram::ReadMore()
{
    pollfd waiting{m_out, POLLIN, 0};
    if (poll(&waiting, 1, kLongestSilence) <= 0)
        return false;
    char bytes[4096];
    const ssize_t count = read(m_out, bytes, sizeof bytes);
    m_told.append(bytes, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return count > 0;
}

std::size_t CProgram::LineCount() const
{
    return static_cast<std::size_t>(std::count(m_told.begin(), m_told.end(), '\n'));
}

void CProgram::ReadLines(std::size_t count)
{
    while (LineCount() < count && ReadMore())
        continue;
}

std::vector<std::string> CProgram::ReadToTheEnd()
{
    while (ReadMore())
        continue;
    std::vector<std::string> lines;
    std::istringstream told(m_told.substr(0, m_told.rfind('\n') + 1));
    for (std::string line; std::getline(told, line);)
        lines.push_back(line);
    return lines;
}

void CProgram::Signal(int signal) const
{
    kill(m_process, signal);
}
