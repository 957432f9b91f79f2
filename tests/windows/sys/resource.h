#pragma once

// Windows has no limit on the length or the number of the files of a process; each call fails.

using rlim_t = unsigned long long;

struct rlimit {
    rlim_t rlim_cur = 0;
    rlim_t rlim_max = 0;
};

constexpr int RLIMIT_FSIZE = 1;
constexpr int RLIMIT_NOFILE = 7;

constexpr int getrlimit(int /*resource*/, rlimit* /*limit*/)
{
    return -1;
}

constexpr int setrlimit(int /*resource*/, const rlimit* /*limit*/)
{
    return -1;
}
