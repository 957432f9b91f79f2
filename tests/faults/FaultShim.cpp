// Loaded before the C library, it makes one call that writes to a folder fail, cut short or the last that the program
// makes, or one that reads there fail: a disk that breaks where a test wants it to.
//
//   VANTOR_FAULT_FOLDER  counts only calls on this folder, whose name ends with a slash, and on files in it
//   VANTOR_FAULT_LOG     gets a line a counted call: its name, and "!" after it when it was made to fail
//   VANTOR_FAULT_AT      the call that fails, counted from 1; without it none does
//   VANTOR_FAULT_TIMES   how many of the calls from there on fail; 0 for all
//   VANTOR_FAULT_ERROR   with this error number
//   VANTOR_FAULT_KIND    "error"; "short": a write takes half of its bytes, other calls do not fail; "break": a write
//                        takes half of its bytes and the calls after it fail with the error; "kill": the program ends
//                        before the call; "none": a write takes no byte and says so; "lose": a write takes no
//                        byte and says that it took all; "read": an error, of the calls that read or ask for a
//                        file's state, which are then counted instead; "attribute": the same of those that ask for or
//                        set an extended attribute; "lock": the same of those that lock a file

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

namespace {

enum class Kind { Error, Short, Break, Kill, None, Lose, Read, Attribute, Lock };
enum class Verdict { Goes, Fails, IsCutShort, TakesNothing, IsLost };

enum Tracked : char { kOther, kReadOnly, kWritten };
std::array<Tracked, 4096> tracked{};

const char* Setting(const char* name)
{
    const char* value = std::getenv(name);
    return value ? value : "";
}

long NumberIn(const char* name)
{
    return std::atol(Setting(name));
}

Kind ChosenKind()
{
    const std::string_view kind = Setting("VANTOR_FAULT_KIND");
    if (kind == "short")
        return Kind::Short;
    if (kind == "break")
        return Kind::Break;
    if (kind == "none")
        return Kind::None;
    if (kind == "lose")
        return Kind::Lose;
    if (kind == "read")
        return Kind::Read;
    if (kind == "attribute")
        return Kind::Attribute;
    if (kind == "lock")
        return Kind::Lock;
    return kind == "kill" ? Kind::Kill : Kind::Error;
}

bool IsInFolder(const char* path)
{
    const std::string_view folder = Setting("VANTOR_FAULT_FOLDER");
    if (folder.empty() || path == nullptr)
        return false;
    return std::string_view(path).starts_with(folder) || folder.substr(0, folder.size() - 1) == path;
}

Tracked TrackedAs(int file)
{
    return file >= 0 && static_cast<std::size_t>(file) < tracked.size() ? tracked[static_cast<std::size_t>(file)]
                                                                        : kOther;
}

void Track(int file, Tracked as)
{
    if (file >= 0 && static_cast<std::size_t>(file) < tracked.size())
        tracked[static_cast<std::size_t>(file)] = as;
}

/// By the system's own calls, which this file does not replace.
void Log(const char* call, bool fails)
{
    const long log = syscall(SYS_openat, AT_FDCWD, Setting("VANTOR_FAULT_LOG"), O_WRONLY | O_APPEND | O_CREAT, 0600);
    if (log < 0)
        return;
    std::array<char, 64> line{};
    const int length = std::snprintf(line.data(), line.size(), "%s%s\n", call, fails ? "!" : "");
    syscall(SYS_write, log, line.data(), length);
    syscall(SYS_close, log);
}

/// A signal ends no other call without having done its work.
bool MayBeInterrupted(std::string_view call)
{
    constexpr std::array kCalls = {"open",      "write",           "pwrite", "writev",    "ftruncate", "truncate",
                                   "fallocate", "posix_fallocate", "fsync",  "fdatasync", "close"};
    return std::find(kCalls.begin(), kCalls.end(), call) != kCalls.end();
}

bool Reads(std::string_view call)
{
    constexpr std::array kCalls = {"read", "readv", "pread", "lseek", "stat", "lstat", "fstat"};
    return std::find(kCalls.begin(), kCalls.end(), call) != kCalls.end();
}

/// Whether faults of `kind` are for `call`.
bool IsCounted(std::string_view call, Kind kind)
{
    if (call.ends_with("xattr"))
        return kind == Kind::Attribute;
    if (call == "flock" || kind == Kind::Lock)
        return call == "flock" && kind == Kind::Lock;
    return kind != Kind::Attribute && Reads(call) == (kind == Kind::Read);
}

/// Counts the call; what is to become of it.
Verdict Judge(const char* call, bool writes = false)
{
    static long count = 0;
    static bool broken = false;
    const long at = NumberIn("VANTOR_FAULT_AT");
    const long times = NumberIn("VANTOR_FAULT_TIMES");
    const Kind kind = ChosenKind();
    if (!IsCounted(call, kind))
        return Verdict::Goes;
    ++count;
    const bool isHit = at > 0 && count >= at && (times == 0 || count < at + times);
    Verdict verdict = Verdict::Goes;
    if (kind == Kind::Error && isHit && (NumberIn("VANTOR_FAULT_ERROR") != EINTR || MayBeInterrupted(call)))
        verdict = Verdict::Fails;
    if ((kind == Kind::Read || kind == Kind::Attribute || kind == Kind::Lock) && isHit)
        verdict = Verdict::Fails;
    if (kind == Kind::Short && isHit && writes)
        verdict = Verdict::IsCutShort;
    if (kind == Kind::None && isHit && writes)
        verdict = Verdict::TakesNothing;
    if (kind == Kind::Lose && isHit && writes)
        verdict = Verdict::IsLost;
    if (kind == Kind::Break && broken)
        verdict = Verdict::Fails;
    else if (kind == Kind::Break && count == at && writes) {
        verdict = Verdict::IsCutShort;
        broken = true;
    }
    const bool ends = kind == Kind::Kill && count == at;
    Log(call, ends || verdict != Verdict::Goes);
    if (ends)
        kill(getpid(), SIGKILL);
    if (verdict == Verdict::Fails)
        errno = static_cast<int>(NumberIn("VANTOR_FAULT_ERROR"));
    return verdict;
}

bool Fails(const char* call)
{
    return Judge(call) == Verdict::Fails;
}

template <class Function>
Function* Real(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool Writes(int flags)
{
    return (flags & O_ACCMODE) != O_RDONLY || (flags & (O_CREAT | O_TRUNC)) != 0;
}

Tracked TrackedWhenOpened(const char* path, bool writes)
{
    if (!IsInFolder(path))
        return kOther;
    return writes ? kWritten : kReadOnly;
}

template <class Open>
int Opened(const char* path, int flags, Open open)
{
    const Tracked as = TrackedWhenOpened(path, Writes(flags));
    if (as == kWritten && Fails("open"))
        return -1;
    const int file = open();
    Track(file, as);
    return file;
}

/// The C++ library's streams open their files so, and read them by number.
template <class Open>
FILE* OpenedStream(const char* path, const char* mode, Open open)
{
    const Tracked as = TrackedWhenOpened(path, std::strpbrk(mode, "wa+") != nullptr);
    if (as == kWritten && Fails("fopen"))
        return nullptr;
    FILE* const stream = open();
    if (stream != nullptr)
        Track(fileno(stream), as);
    return stream;
}

template <class Call>
ssize_t Written(const char* call, int file, std::size_t size, Call write)
{
    if (TrackedAs(file) != kWritten)
        return write(size);
    switch (Judge(call, true)) {
    case Verdict::Fails:
        return -1;
    case Verdict::IsCutShort:
        return write((size + 1) / 2);
    case Verdict::TakesNothing:
        return 0;
    case Verdict::IsLost:
        return static_cast<ssize_t>(size);
    case Verdict::Goes:
        break;
    }
    return write(size);
}

mode_t ModeIn(int flags, va_list arguments)
{
    return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
}

} // namespace

// Each of the C library's calls under all of its names.
#define VANTOR_OPEN(name)                                                                                              \
    extern "C" int name(const char* path, int flags, ...)                                                              \
    {                                                                                                                  \
        va_list arguments;                                                                                             \
        va_start(arguments, flags);                                                                                    \
        const mode_t mode = ModeIn(flags, arguments);                                                                  \
        va_end(arguments);                                                                                             \
        return Opened(path, flags, [&] { return Real<int(const char*, int, ...)>(#name)(path, flags, mode); });        \
    }
#define VANTOR_OPENAT(name)                                                                                            \
    extern "C" int name(int folder, const char* path, int flags, ...)                                                  \
    {                                                                                                                  \
        va_list arguments;                                                                                             \
        va_start(arguments, flags);                                                                                    \
        const mode_t mode = ModeIn(flags, arguments);                                                                  \
        va_end(arguments);                                                                                             \
        return Opened(path, flags,                                                                                     \
                      [&] { return Real<int(int, const char*, int, ...)>(#name)(folder, path, flags, mode); });        \
    }
#define VANTOR_CREAT(name)                                                                                             \
    extern "C" int name(const char* path, mode_t mode)                                                                 \
    {                                                                                                                  \
        return Opened(path, O_CREAT, [&] { return Real<int(const char*, mode_t)>(#name)(path, mode); });               \
    }
#define VANTOR_PWRITE(name)                                                                                            \
    extern "C" ssize_t name(int file, const void* bytes, std::size_t size, off_t offset)                               \
    {                                                                                                                  \
        return Written("pwrite", file, size, [&](std::size_t part) {                                                   \
            return Real<ssize_t(int, const void*, std::size_t, off_t)>(#name)(file, bytes, part, offset);              \
        });                                                                                                            \
    }
#define VANTOR_FTRUNCATE(name)                                                                                         \
    extern "C" int name(int file, off_t length) noexcept                                                               \
    {                                                                                                                  \
        return TrackedAs(file) == kWritten && Fails("ftruncate") ? -1 : Real<int(int, off_t)>(#name)(file, length);    \
    }
#define VANTOR_TRUNCATE(name)                                                                                          \
    extern "C" int name(const char* path, off_t length) noexcept                                                       \
    {                                                                                                                  \
        return IsInFolder(path) && Fails("truncate") ? -1 : Real<int(const char*, off_t)>(#name)(path, length);        \
    }
#define VANTOR_FALLOCATE(name)                                                                                         \
    extern "C" int name(int file, int mode, off_t offset, off_t size)                                                  \
    {                                                                                                                  \
        if (TrackedAs(file) == kWritten && Fails("fallocate"))                                                         \
            return -1;                                                                                                 \
        return Real<int(int, int, off_t, off_t)>(#name)(file, mode, offset, size);                                     \
    }
#define VANTOR_POSIX_FALLOCATE(name)                                                                                   \
    extern "C" int name(int file, off_t offset, off_t size)                                                            \
    {                                                                                                                  \
        if (TrackedAs(file) == kWritten && Fails("posix_fallocate"))                                                   \
            return errno;                                                                                              \
        return Real<int(int, off_t, off_t)>(#name)(file, offset, size);                                                \
    }
#define VANTOR_SYNC(name)                                                                                              \
    extern "C" int name(int file)                                                                                      \
    {                                                                                                                  \
        return TrackedAs(file) != kOther && Fails(#name) ? -1 : Real<int(int)>(#name)(file);                           \
    }
#define VANTOR_PATH_CALL(name, noexceptness)                                                                           \
    extern "C" int name(const char* path) noexceptness                                                                 \
    {                                                                                                                  \
        return IsInFolder(path) && Fails(#name) ? -1 : Real<int(const char*)>(#name)(path);                            \
    }

#define VANTOR_PREAD(name)                                                                                             \
    extern "C" ssize_t name(int file, void* bytes, std::size_t size, off_t offset)                                     \
    {                                                                                                                  \
        if (TrackedAs(file) != kOther && Fails("pread"))                                                               \
            return -1;                                                                                                 \
        return Real<ssize_t(int, void*, std::size_t, off_t)>(#name)(file, bytes, size, offset);                        \
    }
#define VANTOR_SEEK(name)                                                                                              \
    extern "C" off_t name(int file, off_t offset, int from) noexcept                                                   \
    {                                                                                                                  \
        if (TrackedAs(file) != kOther && Fails("lseek"))                                                               \
            return -1;                                                                                                 \
        return Real<off_t(int, off_t, int)>(#name)(file, offset, from);                                                \
    }
#define VANTOR_STATE(name)                                                                                             \
    extern "C" int name(const char* path, struct stat* state) noexcept                                                 \
    {                                                                                                                  \
        return IsInFolder(path) && Fails(#name) ? -1 : Real<int(const char*, struct stat*)>(#name)(path, state);       \
    }

VANTOR_OPEN(open)
VANTOR_OPEN(open64)
VANTOR_OPENAT(openat)
VANTOR_OPENAT(openat64)
VANTOR_CREAT(creat)
VANTOR_CREAT(creat64)
VANTOR_PWRITE(pwrite)
VANTOR_PWRITE(pwrite64)
VANTOR_FTRUNCATE(ftruncate)
VANTOR_FTRUNCATE(ftruncate64)
VANTOR_TRUNCATE(truncate)
VANTOR_TRUNCATE(truncate64)
VANTOR_FALLOCATE(fallocate)
VANTOR_FALLOCATE(fallocate64)
VANTOR_POSIX_FALLOCATE(posix_fallocate)
VANTOR_POSIX_FALLOCATE(posix_fallocate64)
VANTOR_SYNC(fsync)
VANTOR_SYNC(fdatasync)
VANTOR_PREAD(pread)
VANTOR_PREAD(pread64)
VANTOR_SEEK(lseek)
VANTOR_SEEK(lseek64)
VANTOR_STATE(stat)
VANTOR_STATE(lstat)
VANTOR_PATH_CALL(unlink, noexcept)
VANTOR_PATH_CALL(remove, noexcept)

extern "C" int fstat(int file, struct stat* state) noexcept
{
    if (TrackedAs(file) != kOther && Fails("fstat"))
        return -1;
    return Real<int(int, struct stat*)>("fstat")(file, state);
}

extern "C" ssize_t read(int file, void* bytes, std::size_t size)
{
    if (TrackedAs(file) != kOther && Fails("read"))
        return -1;
    return Real<ssize_t(int, void*, std::size_t)>("read")(file, bytes, size);
}

extern "C" ssize_t readv(int file, const iovec* pieces, int count)
{
    if (TrackedAs(file) != kOther && Fails("readv"))
        return -1;
    return Real<ssize_t(int, const iovec*, int)>("readv")(file, pieces, count);
}

extern "C" ssize_t write(int file, const void* bytes, std::size_t size)
{
    return Written("write", file, size, [&](std::size_t part) {
        return Real<ssize_t(int, const void*, std::size_t)>("write")(file, bytes, part);
    });
}

/// A short one is short by whole pieces.
extern "C" ssize_t writev(int file, const iovec* pieces, int count)
{
    return Written("writev", file, static_cast<std::size_t>(count), [&](std::size_t part) {
        return Real<ssize_t(int, const iovec*, int)>("writev")(file, pieces, static_cast<int>(part));
    });
}

/// The number is free again, whatever is said of it.
extern "C" int close(int file)
{
    const bool fails = TrackedAs(file) == kWritten && Fails("close");
    const int error = errno;
    Track(file, kOther);
    const int closed = Real<int(int)>("close")(file);
    if (!fails)
        return closed;
    errno = error;
    return -1;
}

extern "C" FILE* fopen(const char* path, const char* mode)
{
    return OpenedStream(path, mode, [&] { return Real<FILE*(const char*, const char*)>("fopen")(path, mode); });
}

extern "C" FILE* fopen64(const char* path, const char* mode)
{
    return OpenedStream(path, mode, [&] { return Real<FILE*(const char*, const char*)>("fopen64")(path, mode); });
}

/// It closes the number by a call that is the library's own.
extern "C" int fclose(FILE* stream)
{
    Track(fileno(stream), kOther);
    return Real<int(FILE*)>("fclose")(stream);
}

extern "C" int rename(const char* from, const char* to) noexcept
{
    return IsInFolder(from) && Fails("rename") ? -1 : Real<int(const char*, const char*)>("rename")(from, to);
}

extern "C" int unlinkat(int folder, const char* path, int flags) noexcept
{
    return IsInFolder(path) && Fails("unlink") ? -1 : Real<int(int, const char*, int)>("unlinkat")(folder, path, flags);
}

extern "C" int chmod(const char* path, mode_t mode) noexcept
{
    return IsInFolder(path) && Fails("chmod") ? -1 : Real<int(const char*, mode_t)>("chmod")(path, mode);
}

extern "C" int fchmodat(int folder, const char* path, mode_t mode, int flags) noexcept
{
    return IsInFolder(path) && Fails("chmod")
               ? -1
               : Real<int(int, const char*, mode_t, int)>("fchmodat")(folder, path, mode, flags);
}

extern "C" int fchmod(int file, mode_t mode) noexcept
{
    return TrackedAs(file) == kWritten && Fails("chmod") ? -1 : Real<int(int, mode_t)>("fchmod")(file, mode);
}

extern "C" int fchown(int file, uid_t owner, gid_t group) noexcept
{
    return TrackedAs(file) == kWritten && Fails("chown") ? -1
                                                         : Real<int(int, uid_t, gid_t)>("fchown")(file, owner, group);
}

extern "C" int mkdir(const char* path, mode_t mode) noexcept
{
    return IsInFolder(path) && Fails("mkdir") ? -1 : Real<int(const char*, mode_t)>("mkdir")(path, mode);
}

extern "C" int flock(int file, int operation) noexcept
{
    return TrackedAs(file) != kOther && Fails("flock") ? -1 : Real<int(int, int)>("flock")(file, operation);
}

// Extended attributes, of a file by its name or of an open one.

extern "C" ssize_t listxattr(const char* path, char* names, std::size_t size) noexcept
{
    if (IsInFolder(path) && Fails("listxattr"))
        return -1;
    return Real<ssize_t(const char*, char*, std::size_t)>("listxattr")(path, names, size);
}

extern "C" ssize_t getxattr(const char* path, const char* name, void* value, std::size_t size) noexcept
{
    if (IsInFolder(path) && Fails("getxattr"))
        return -1;
    return Real<ssize_t(const char*, const char*, void*, std::size_t)>("getxattr")(path, name, value, size);
}

extern "C" ssize_t flistxattr(int file, char* names, std::size_t size) noexcept
{
    if (TrackedAs(file) != kOther && Fails("flistxattr"))
        return -1;
    return Real<ssize_t(int, char*, std::size_t)>("flistxattr")(file, names, size);
}

extern "C" ssize_t fgetxattr(int file, const char* name, void* value, std::size_t size) noexcept
{
    if (TrackedAs(file) != kOther && Fails("fgetxattr"))
        return -1;
    return Real<ssize_t(int, const char*, void*, std::size_t)>("fgetxattr")(file, name, value, size);
}

extern "C" int fsetxattr(int file, const char* name, const void* value, std::size_t size, int flags) noexcept
{
    if (TrackedAs(file) == kWritten && Fails("fsetxattr"))
        return -1;
    return Real<int(int, const char*, const void*, std::size_t, int)>("fsetxattr")(file, name, value, size, flags);
}

extern "C" int fremovexattr(int file, const char* name) noexcept
{
    if (TrackedAs(file) == kWritten && Fails("fremovexattr"))
        return -1;
    return Real<int(int, const char*)>("fremovexattr")(file, name);
}
