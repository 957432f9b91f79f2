// Loaded before the C library, it makes every file look as if it lay on a network share of the SMB kind: while an open
// file has the lock of a file (flock), a write to that file by any other open file is refused, even one of the same
// program.

#include <cerrno>
#include <cstddef>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <sys/file.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace {

constexpr long kSmb2 = 0xFE534D42;

template <class Function>
Function* Real(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool IsLocked(int file)
{
    const int other = open(("/proc/self/fd/" + std::to_string(file)).c_str(), O_RDONLY | O_CLOEXEC);
    if (other < 0)
        return false;
    const bool isLocked = flock(other, LOCK_SH | LOCK_NB) != 0;
    close(other);
    return isLocked;
}

/// Takes the lock once more where the file has it already.
bool HasLock(int file)
{
    return flock(file, LOCK_EX | LOCK_NB) == 0;
}

bool IsKeptOut(int file)
{
    if (!IsLocked(file) || HasLock(file))
        return false;
    errno = EACCES;
    return true;
}

} // namespace

#define VANTOR_PWRITE(name)                                                                                            \
    extern "C" ssize_t name(int file, const void* bytes, std::size_t size, off_t offset)                               \
    {                                                                                                                  \
        if (IsKeptOut(file))                                                                                           \
            return -1;                                                                                                 \
        return Real<ssize_t(int, const void*, std::size_t, off_t)>(#name)(file, bytes, size, offset);                  \
    }
#define VANTOR_FSTATFS(name, State)                                                                                    \
    extern "C" int name(int file, State* system) noexcept                                                              \
    {                                                                                                                  \
        const int result = Real<int(int, State*)>(#name)(file, system);                                                \
        system->f_type = kSmb2;                                                                                        \
        return result;                                                                                                 \
    }

VANTOR_PWRITE(pwrite)
VANTOR_PWRITE(pwrite64)
VANTOR_FSTATFS(fstatfs, struct statfs)
VANTOR_FSTATFS(fstatfs64, struct statfs64)
