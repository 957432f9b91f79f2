#pragma once

#include <csignal>
#include <sys/resource.h>

/// As long as it lives, this process cannot make a file longer than `bytes`: a disk that is full.
class CFileSizeLimit {
public:
    explicit CFileSizeLimit(rlim_t bytes) : m_oldHandler(std::signal(SIGXFSZ, SIG_IGN))
    {
        getrlimit(RLIMIT_FSIZE, &m_oldLimit);
        rlimit limit = m_oldLimit;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~CFileSizeLimit()
    {
        setrlimit(RLIMIT_FSIZE, &m_oldLimit);
        std::signal(SIGXFSZ, m_oldHandler);
    }
    CFileSizeLimit(const CFileSizeLimit&) = delete;
    CFileSizeLimit& operator=(const CFileSizeLimit&) = delete;

private:
    void (*m_oldHandler)(int);
    rlimit m_oldLimit{};
};
