#include "tests/support/RedirectedRun.h"
#include "text/PathText.h"

#include <cctype>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <stdexcept>

#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace fs = std::filesystem;

namespace {

/// A file, or what is in place of one, that a program inherits as a standard stream.
class CStream {
public:
    CStream(const fs::path& path, DWORD access, DWORD disposition)
    {
        SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
        m_handle = CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, disposition,
                               FILE_ATTRIBUTE_NORMAL, nullptr);
    }
    ~CStream()
    {
        if (m_handle != INVALID_HANDLE_VALUE)
            CloseHandle(m_handle);
    }
    CStream(const CStream&) = delete;
    CStream& operator=(const CStream&) = delete;

    HANDLE Handle() const { return m_handle; }

private:
    HANDLE m_handle = INVALID_HANDLE_VALUE;
};

/// A setting of this process that is another one while the object lives.
class CSetting {
public:
    explicit CSetting(const std::string& setting) : m_name(setting.substr(0, setting.find('=')))
    {
        const char* const before = std::getenv(m_name.c_str());
        m_before = before != nullptr ? before : "";
        Set(setting.substr(m_name.size() + 1));
    }
    ~CSetting() { Set(m_before); }
    CSetting(const CSetting&) = delete;
    CSetting& operator=(const CSetting&) = delete;

private:
    void Set(const std::string& value) const
    {
        _putenv_s(m_name.c_str(), value.c_str());
        SetEnvironmentVariableA(m_name.c_str(), value.empty() ? nullptr : value.c_str());
    }

    std::string m_name;
    std::string m_before;
};

/// Starts the program and gives its handle, which is the caller's. Arguments stand in quotes: the tests' have none
/// themselves, and end in no backslash.
HANDLE Start(const fs::path& program, const std::vector<std::string>& arguments, STARTUPINFOW start)
{
    std::wstring line = L'"' + program.native() + L'"';
    for (const std::string& argument : arguments)
        line += L" \"" + PathOfUtf8(argument).native() + L'"';
    start.cb = sizeof start;
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &process))
        throw std::runtime_error("cannot start " + program.string());
    CloseHandle(process.hThread);
    return process.hProcess;
}

int RunHere(const fs::path& program, const std::vector<std::string>& arguments, const RunStreams& streams)
{
    const CStream in("NUL", GENERIC_READ, OPEN_EXISTING);
    const CStream out(streams.out, GENERIC_WRITE, OPEN_ALWAYS);
    const CStream error(streams.error, GENERIC_WRITE, OPEN_ALWAYS);
    STARTUPINFOW start{};
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = in.Handle();
    start.hStdOutput = out.Handle();
    start.hStdError = error.Handle();
    const HANDLE process = Start(program, arguments, start);
    WaitForSingleObject(process, INFINITE);
    DWORD status = 0;
    GetExitCodeProcess(process, &status);
    CloseHandle(process);
    return static_cast<int>(status);
}

/// `text` as one word of the machine's shell. A path loses its drive, which programs of that machine do not know.
std::string ShellWord(const std::string& text)
{
    const bool isPath = text.size() > 2 && text[1] == ':' && (text[2] == '\\' || text[2] == '/');
    if (!isPath)
        return '\'' + text + '\'';
    const auto drive = static_cast<char>(std::tolower(static_cast<unsigned char>(text[0])));
    return std::string("'" VANTOR_DRIVES "/") + drive + fs::path(text.substr(1)).generic_string() + '\'';
}

/// Runs a program of the machine that wine stands on, such as those that read PDF. Its end cannot be waited for here,
/// so its shell leaves the exit code in a file.
int RunOnTheMachine(const fs::path& program, const std::vector<std::string>& arguments, const RunStreams& streams)
{
    std::string line = ShellWord(program.generic_string());
    for (const std::string& argument : arguments)
        line += ' ' + ShellWord(argument);
    const fs::path end = fs::path(streams.error) += ".end";
    const std::string part = ShellWord(end.string() + ".part");
    line += " >" + ShellWord(streams.out.string()) + " 2>" + ShellWord(streams.error.string()) +
            " </dev/null; echo $? >" + part + "; mv " + part + ' ' + ShellWord(end.string());
    CloseHandle(Start("Z:\\bin\\sh", {"-c", line}, {}));
    constexpr int kTries = 3000; // 30 seconds
    for (int i = 0; i < kTries && !fs::exists(end); ++i)
        Sleep(10);
    int status = -1;
    std::ifstream(end) >> status;
    return status;
}

} // namespace

int RunRedirected(const fs::path& program, const std::vector<std::string>& arguments, const RunStreams& streams,
                  const std::vector<std::string>& environment)
{
    std::vector<std::unique_ptr<CSetting>> settings;
    for (const std::string& setting : environment)
        settings.push_back(std::make_unique<CSetting>(setting));
    if (program.generic_string().starts_with("/usr/"))
        return RunOnTheMachine(program, arguments, streams);
    return RunHere(program.has_root_name() ? program : fs::path("Z:" + program.string()), arguments, streams);
}
