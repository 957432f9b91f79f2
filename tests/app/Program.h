#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

/// A program that runs beside the test and tells it lines on its standard output. It is killed with the object.
class CProgram {
public:
    /// With the settings `NAME=VALUE` of `environment` in place of those of the same names. Throws when it cannot be
    /// started.
    CProgram(const std::filesystem::path& program, std::vector<std::string> arguments,
             const std::vector<std::string>& environment = {});
    ~CProgram();
    CProgram(const CProgram&) = delete;
    CProgram& operator=(const CProgram&) = delete;

    /// Waits until it has told so many lines in all; for a minute at most, and no longer than it lives.
    void ReadLines(std::size_t count);

    /// Of those that were read.
    std::string FirstLine() const { return m_told.substr(0, m_told.find('\n')); }

    /// Waits for its end, for a minute at most; all lines that it told. One that is not whole is left out.
    std::vector<std::string> ReadToTheEnd();

    void Signal(int signal) const;

private:
    bool ReadMore();
    std::size_t LineCount() const;

    pid_t m_process = 0;
    int m_out = -1;
    std::string m_told;
};
