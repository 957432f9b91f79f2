#pragma once

// What the tests use of POSIX that Windows lacks, so that they compile; each call fails. Included ahead of every test
// file in a build for Windows. Tests that cannot do without are named in LeftOut.cmake.

#include <cerrno>
#include <cstdlib>
#include <sys/stat.h>
#include <sys/types.h>

#define st_blocks st_size // what a file takes is not told

using uid_t = unsigned;

constexpr int SIGXFSZ = 25;

constexpr int F_GETFD = 1;

inline int fcntl(int /*file*/, int /*command*/)
{
    errno = ENOSYS;
    return -1;
}

constexpr uid_t geteuid()
{
    return 1000; // an ordinary user
}

inline int setresuid(uid_t /*real*/, uid_t /*effective*/, uid_t /*saved*/)
{
    errno = ENOSYS;
    return -1;
}

template <class Character>
int mkfifo(const Character* /*path*/, unsigned /*mode*/)
{
    errno = ENOSYS;
    return -1;
}

inline int setenv(const char* name, const char* value, int /*overwrite*/)
{
    return _putenv_s(name, value);
}

inline int unsetenv(const char* name)
{
    return _putenv_s(name, "");
}
