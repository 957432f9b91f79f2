#include "disk/File.h"
#include "disk/FileNames.h"
#include "disk/PlatformFile.h"
#include "disk/Program.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <map>
#include <spawn.h>
#include <string>
#include <string_view>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#ifdef __linux__
#include <sys/vfs.h>
#include <sys/xattr.h>
#endif

namespace fs = std::filesystem;

namespace platform {

namespace {

static_assert(sizeof(off_t) == sizeof(std::int64_t), "a 32-bit system needs _FILE_OFFSET_BITS=64");

template <typename Call>
auto Restarted(Call call)
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

/// The same file under a number that is not that of a standard stream.
std::intptr_t BehindStandardStreams(std::intptr_t file)
{
    if (file < 0 || file > STDERR_FILENO)
        return file;
    const int moved = fcntl(static_cast<int>(file), F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    Release(file);
    return moved;
}

#ifdef __linux__

/// What a file is marked with besides its permissions, by name: the list of its further users and their rights, too.
using Marks = std::map<std::string, std::string>;

/// Asks `call` for the size, then for the bytes; none where the file system knows no marks, nothing after an error.
template <typename Call>
std::optional<std::string> BytesFrom(Call call)
{
    const ssize_t size = call(nullptr, 0);
    if (size <= 0)
        return size == 0 || errno == ENOTSUP ? std::optional<std::string>("") : std::nullopt;
    std::string bytes(static_cast<std::size_t>(size), '\0');
    const ssize_t length = call(bytes.data(), bytes.size());
    if (length < 0)
        return std::nullopt;
    bytes.resize(static_cast<std::size_t>(length));
    return bytes;
}

template <typename List, typename Get>
std::optional<Marks> MarksBy(List list, Get get)
{
    const auto names = BytesFrom(list);
    if (!names)
        return std::nullopt;
    Marks marks;
    for (std::size_t begin = 0; begin < names->size();) {
        const std::string name = names->c_str() + begin; // each ends with a zero
        const auto value = BytesFrom([&](char* bytes, std::size_t size) { return get(name.c_str(), bytes, size); });
        if (!value)
            return std::nullopt;
        marks[name] = *value;
        begin += name.size() + 1;
    }
    return marks;
}

bool TakeMarks(int file, const fs::path& path)
{
    const auto from = MarksBy(
        [&](char* names, std::size_t size) { return listxattr(path.c_str(), names, size); },
        [&](const char* name, char* value, std::size_t size) { return getxattr(path.c_str(), name, value, size); });
    const auto to =
        MarksBy([&](char* names, std::size_t size) { return flistxattr(file, names, size); },
                [&](const char* name, char* value, std::size_t size) { return fgetxattr(file, name, value, size); });
    if (!from || !to)
        return false;
    for (const auto& [name, value] : *to)
        if (!from->contains(name) && fremovexattr(file, name.c_str()) != 0)
            return false;
    for (const auto& [name, value] : *from) {
        const auto held = to->find(name);
        const bool isHeld = held != to->end() && held->second == value;
        if (!isHeld && fsetxattr(file, name.c_str(), value.data(), value.size(), 0) != 0)
            return false;
    }
    return true;
}

/// Whether the file lies on a share of the kind whose locks keep out everything but the open file that has the lock:
/// even our own writes through another one.
bool LocksKeepWritesOut(int file)
{
    struct statfs system {};
    if (fstatfs(file, &system) != 0)
        return true; // it cannot be told
    switch (static_cast<std::uint32_t>(system.f_type)) {
    case 0x517B: // the three generations of SMB
    case 0xFF534D42:
    case 0xFE534D42:
        return true;
    default:
        return false;
    }
}

#else

bool TakeMarks(int, const fs::path&)
{
    return true;
}

bool LocksKeepWritesOut(int)
{
    return false;
}

#endif

/// How many bytes a call moved; nothing when it answers -1.
std::optional<std::size_t> CountOf(ssize_t answer)
{
    if (answer < 0)
        return std::nullopt;
    return static_cast<std::size_t>(answer);
}

template <typename Sync>
bool IsFlushed(Sync sync)
{
    return Restarted(sync) == 0 || errno == EINVAL || errno == ENOSYS; // what cannot be flushed has nothing to refuse
}

} // namespace

std::error_code SystemError()
{
    return {errno, std::generic_category()};
}

bool Release(std::intptr_t file)
{
    return close(static_cast<int>(file)) == 0 || errno == EINTR; // the number is free again in either case
}

std::intptr_t OpenByName(const fs::path& path, Access access)
{
    const int use = access == Access::Read ? O_RDONLY : O_RDWR;
    const bool isNew = access == Access::Create || access == Access::CreatePrivate;
    const int create = isNew ? O_CREAT | O_EXCL : 0;
    const mode_t rights = access == Access::CreatePrivate ? 0600 : 0666;
    // Without O_NONBLOCK the open of a pipe would wait for its other end.
    const int flags = use | create | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    return BehindStandardStreams(Restarted([&] { return open(path.c_str(), flags, rights); }));
}

bool MakePrivateFolder(const fs::path& path)
{
    return mkdir(path.c_str(), 0700) == 0;
}

bool MakePrivate(const fs::path& path)
{
    struct stat status {};
    if (stat(path.c_str(), &status) != 0 || !S_ISDIR(status.st_mode) || status.st_uid != geteuid())
        return false;
    return (status.st_mode & 0077) == 0 || chmod(path.c_str(), status.st_mode & 0700) == 0;
}

std::error_code NoFileFault(std::intptr_t file)
{
    struct stat status {};
    if (fstat(static_cast<int>(file), &status) != 0)
        return SystemError();
    if (S_ISDIR(status.st_mode))
        return std::make_error_code(std::errc::is_a_directory);
    return S_ISREG(status.st_mode) ? std::error_code() : std::make_error_code(std::errc::invalid_argument);
}

bool SetLength(std::intptr_t file, std::uint64_t length)
{
    return Restarted([&] { return ftruncate(static_cast<int>(file), static_cast<off_t>(length)); }) == 0;
}

std::optional<std::uint64_t> LengthOf(std::intptr_t file)
{
    struct stat status {};
    if (fstat(static_cast<int>(file), &status) != 0)
        return std::nullopt;
    return static_cast<std::uint64_t>(status.st_size);
}

std::optional<std::size_t> ReadSome(std::intptr_t file, std::uint64_t offset, std::span<std::byte> bytes)
{
    return CountOf(Restarted(
        [&] { return pread(static_cast<int>(file), bytes.data(), bytes.size(), static_cast<off_t>(offset)); }));
}

std::optional<std::size_t> WriteSome(std::intptr_t file, std::uint64_t offset, std::span<const std::byte> bytes)
{
    return CountOf(Restarted(
        [&] { return pwrite(static_cast<int>(file), bytes.data(), bytes.size(), static_cast<off_t>(offset)); }));
}

/// Where the file system knows no such call, the C library writes into each block instead.
std::error_code Allocate(std::intptr_t file, std::uint64_t offset, std::uint64_t size)
{
    int fault = 0;
    do
        fault = posix_fallocate(static_cast<int>(file), static_cast<off_t>(offset), static_cast<off_t>(size));
    while (fault == EINTR);
    return {fault, std::generic_category()};
}

bool TakeAttributes(std::intptr_t file, const fs::path& path)
{
    struct stat from {};
    struct stat to {};
    const int number = static_cast<int>(file);
    if (stat(path.c_str(), &from) != 0 || fstat(number, &to) != 0)
        return false;
    const bool sameOwner = from.st_uid == to.st_uid && from.st_gid == to.st_gid;
    const bool owned = sameOwner || fchown(number, from.st_uid, from.st_gid) == 0;
    const bool permitted = (sameOwner && from.st_mode == to.st_mode) || fchmod(number, from.st_mode & 07777) == 0;
    return owned && permitted && TakeMarks(number, path); // last: a change of the owner takes some away
}

Holder TakeHold(std::intptr_t file)
{
    if (LocksKeepWritesOut(static_cast<int>(file)))
        return Holder::Unknown;
    if (Restarted([&] { return flock(static_cast<int>(file), LOCK_EX | LOCK_NB); }) == 0)
        return Holder::ThisFile;
    return errno == EWOULDBLOCK ? Holder::AnotherFile : Holder::Unknown;
}

bool IsAt(std::intptr_t file, const fs::path& path)
{
    struct stat open {};
    struct stat named {};
    return fstat(static_cast<int>(file), &open) == 0 && lstat(path.c_str(), &named) == 0 &&
           open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

bool IsOwn(std::intptr_t file)
{
    struct stat status {};
    return fstat(static_cast<int>(file), &status) == 0 && status.st_uid == geteuid();
}

bool FlushToDisk(std::intptr_t file)
{
    return IsFlushed([&] { return fdatasync(static_cast<int>(file)); });
}

bool FlushFolder(const fs::path& folder)
{
    const std::intptr_t handle = OpenByName(folder, Access::Read);
    if (handle == kNoFile)
        return true; // one may use a folder and yet not open it
    const bool flushed = IsFlushed([&] { return fsync(static_cast<int>(handle)); });
    Release(handle);
    return flushed;
}

} // namespace platform

namespace {

fs::path EnvironmentPath(const char* name)
{
    const char* const value = std::getenv(name);
    return value != nullptr ? fs::path(value) : fs::path();
}

} // namespace

bool IsCaseIgnored()
{
    return false;
}

void SurviveFailedWrites()
{
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

bool IsTerminal(std::FILE* stream)
{
    const int number = fileno(stream); // none of a stream in memory
    return number >= 0 && isatty(number) == 1;
}

bool WriteText(std::FILE* stream, std::string_view text)
{
    return std::fwrite(text.data(), 1, text.size(), stream) == text.size();
}

std::string ReasonUtf8(std::error_code error)
{
    return error.message();
}

fs::path ExecutablePath()
{
    std::error_code none;
    return fs::read_symlink("/proc/self/exe", none);
}

fs::path UserDataFolder()
{
    fs::path named = EnvironmentPath("XDG_DATA_HOME");
    if (named.is_absolute()) // a relative one counts as none
        return named;
    const fs::path home = EnvironmentPath("HOME");
    return home.is_absolute() ? home / ".local" / "share" : fs::path();
}

std::vector<std::string> ProgramArguments(int argc, const char* const* argv)
{
    return argc > 1 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

void UseStreamsForBytes()
{
    // Here streams carry nothing else.
}

std::optional<int> RunProgram(const fs::path& path, const std::vector<std::string>& arguments)
{
    std::vector<std::string> texts = arguments;
    texts.insert(texts.begin(), path.string());
    std::vector<char*> values;
    values.reserve(texts.size() + 1);
    for (std::string& text : texts)
        values.push_back(text.data());
    values.push_back(nullptr);
    pid_t program = 0;
    if (posix_spawn(&program, path.c_str(), nullptr, nullptr, values.data(), environ) != 0)
        return std::nullopt;
    int status = 0;
    while (waitpid(program, &status, 0) == -1)
        if (errno != EINTR)
            return std::nullopt;
    return WIFEXITED(status) ? std::optional(WEXITSTATUS(status)) : std::nullopt;
}

fs::path SiblingProgram(const std::string& name)
{
    return ExecutablePath().parent_path() / name;
}
