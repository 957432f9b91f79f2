#include "disk/File.h"

#include <algorithm>
#include <csignal>
#include <limits>
#include <map>
#include <string>
#include <system_error>
#include <utility>

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX // else std::min is a macro here
#endif
#define WIN32_LEAN_AND_MEAN
#include <array>
#include <windows.h>
#else
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/xattr.h>
#endif
#endif

namespace fs = std::filesystem;

namespace {

constexpr std::intptr_t kNoFile = -1;
constexpr std::size_t kMostPerCall = std::size_t{1} << 30; // below what any system takes in one call

enum class Access {
    Read,
    Write,  ///< and read
    Create, ///< write and read a file that is not there yet
};

// The platform's calls, each once and in the same shape for both. A count is negative after an error.

#ifdef _WIN32

/// Of the call just made.
std::error_code SystemError()
{
    return {static_cast<int>(GetLastError()), std::system_category()};
}

HANDLE HandleOf(std::intptr_t file)
{
    return reinterpret_cast<HANDLE>(file);
}

/// A name as long as MAX_PATH opens only in full and behind a prefix.
std::wstring OpenableName(const fs::path& path)
{
    std::error_code error;
    const std::wstring full = fs::absolute(path, error).lexically_normal().make_preferred().native();
    if (error || full.size() < MAX_PATH || full.starts_with(LR"(\\?\)"))
        return path.native();
    return full.starts_with(LR"(\\)") ? LR"(\\?\UNC\)" + full.substr(2) : LR"(\\?\)" + full;
}

std::intptr_t OpenByName(const fs::path& path, Access access)
{
    const HANDLE handle =
        CreateFileW(OpenableName(path).c_str(), access == Access::Read ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    access == Access::Create ? CREATE_NEW : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    return reinterpret_cast<std::intptr_t>(handle);
}

bool IsRegular(std::intptr_t file)
{
    return GetFileType(HandleOf(file)) == FILE_TYPE_DISK;
}

bool SetLength(std::intptr_t file, std::uint64_t length)
{
    FILE_END_OF_FILE_INFO end{};
    end.EndOfFile.QuadPart = static_cast<LONGLONG>(length);
    return SetFileInformationByHandle(HandleOf(file), FileEndOfFileInfo, &end, sizeof end) != 0;
}

std::optional<std::uint64_t> LengthOf(std::intptr_t file)
{
    LARGE_INTEGER length{};
    if (!GetFileSizeEx(HandleOf(file), &length))
        return std::nullopt;
    return static_cast<std::uint64_t>(length.QuadPart);
}

OVERLAPPED PlaceOf(std::uint64_t offset)
{
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset & 0xFFFFFFFF);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    return place;
}

std::int64_t ReadSome(std::intptr_t file, std::uint64_t offset, std::span<std::byte> bytes)
{
    OVERLAPPED place = PlaceOf(offset);
    DWORD count = 0;
    if (ReadFile(HandleOf(file), bytes.data(), static_cast<DWORD>(bytes.size()), &count, &place))
        return count;
    return GetLastError() == ERROR_HANDLE_EOF ? 0 : -1;
}

std::int64_t WriteSome(std::intptr_t file, std::uint64_t offset, std::span<const std::byte> bytes)
{
    OVERLAPPED place = PlaceOf(offset);
    DWORD count = 0;
    if (WriteFile(HandleOf(file), bytes.data(), static_cast<DWORD>(bytes.size()), &count, &place))
        return count;
    return -1;
}

/// A longer file has its clusters from then on.
std::error_code Allocate(std::intptr_t file, std::uint64_t offset, std::uint64_t size)
{
    const auto length = LengthOf(file);
    const bool hasRoom = length && (*length >= offset + size || SetLength(file, offset + size));
    return hasRoom ? std::error_code() : SystemError();
}

/// The rights of a new file are those that its folder passes on, here as for the old one.
bool TakeAttributes(std::intptr_t, const fs::path&)
{
    return true;
}

bool FlushToDisk(std::intptr_t file)
{
    return FlushFileBuffers(HandleOf(file)) != 0;
}

/// The file system keeps its folders whole by itself.
bool FlushFolder(const fs::path&)
{
    return true;
}

bool Release(std::intptr_t file)
{
    return CloseHandle(HandleOf(file)) != 0;
}

#else

static_assert(sizeof(off_t) == sizeof(std::int64_t), "a 32-bit system needs _FILE_OFFSET_BITS=64");

/// Of the call just made.
std::error_code SystemError()
{
    return {errno, std::generic_category()};
}

template <typename Call>
auto Restarted(Call call)
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

bool Release(std::intptr_t file)
{
    return close(static_cast<int>(file)) == 0 || errno == EINTR; // the number is free again in either case
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

std::intptr_t OpenByName(const fs::path& path, Access access)
{
    const int use = access == Access::Read ? O_RDONLY : O_RDWR;
    const int create = access == Access::Create ? O_CREAT | O_EXCL : 0;
    // Without O_NONBLOCK the open of a pipe would wait for its other end.
    const int flags = use | create | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    return BehindStandardStreams(Restarted([&] { return open(path.c_str(), flags, 0666); }));
}

bool IsRegular(std::intptr_t file)
{
    struct stat status {};
    return fstat(static_cast<int>(file), &status) == 0 && S_ISREG(status.st_mode);
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

std::int64_t ReadSome(std::intptr_t file, std::uint64_t offset, std::span<std::byte> bytes)
{
    return Restarted(
        [&] { return pread(static_cast<int>(file), bytes.data(), bytes.size(), static_cast<off_t>(offset)); });
}

std::int64_t WriteSome(std::intptr_t file, std::uint64_t offset, std::span<const std::byte> bytes)
{
    return Restarted(
        [&] { return pwrite(static_cast<int>(file), bytes.data(), bytes.size(), static_cast<off_t>(offset)); });
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

fs::path EnvironmentPath(const char* name)
{
    const char* const value = std::getenv(name);
    return value != nullptr ? fs::path(value) : fs::path();
}

#ifdef __linux__

/// What a file is marked with beside its permissions, by name: the list of its further users and their rights, too.
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

#else

bool TakeMarks(int, const fs::path&)
{
    return true;
}

#endif

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

template <typename Sync>
bool IsFlushed(Sync sync)
{
    return Restarted(sync) == 0 || errno == EINVAL || errno == ENOSYS; // what cannot be flushed has nothing to refuse
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

#endif

bool IsReachable(std::uint64_t offset, std::size_t size)
{
    constexpr auto kFarthest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    return offset <= kFarthest && size <= kFarthest - offset;
}

bool HoldsZero(const fs::path& path)
{
    return path.native().find(fs::path::value_type{}) != fs::path::string_type::npos;
}

} // namespace

CFile::~CFile()
{
    if (IsOpen())
        Release(m_handle);
}

CFile::CFile(CFile&& other) noexcept
    : m_handle(std::exchange(other.m_handle, kNoFile)),
      m_changed(std::exchange(other.m_changed, false)),
      m_made(std::exchange(other.m_made, {})),
      m_lastError(std::exchange(other.m_lastError, {}))
{
}

CFile& CFile::operator=(CFile&& other) noexcept
{
    std::swap(m_handle, other.m_handle);
    std::swap(m_changed, other.m_changed);
    std::swap(m_made, other.m_made);
    std::swap(m_lastError, other.m_lastError);
    return *this;
}

bool CFile::Open(const fs::path& path, Mode mode)
{
    Close();
    if (HoldsZero(path)) // the platform would take the name up to there
        return false;

    CFile file;
    if (mode == Mode::OpenOrCreate || mode == Mode::Truncate)
        file.OpenOrMake(path);
    else if (mode == Mode::CreateNew)
        file.m_handle = OpenByName(path, Access::Create);
    else
        file.m_handle = OpenByName(path, mode == Mode::Read ? Access::Read : Access::Write);
    if (!file.IsOpen() || !IsRegular(file.m_handle))
        return false;
    if (mode == Mode::Truncate && !file.CutTo(0)) { // only now that it is known to be a file
        file.Discard();
        return false;
    }
    *this = std::move(file);
    return true;
}

void CFile::OpenOrMake(const fs::path& path)
{
    m_handle = OpenByName(path, Access::Write);
    if (IsOpen())
        return;
    m_made = LinkTarget(path);
    m_handle = OpenByName(m_made, Access::Create);
    if (IsOpen())
        return;
    m_made.clear();
    m_handle = OpenByName(path, Access::Write); // it may have been made meanwhile
}

bool CFile::IsOpen() const
{
    return m_handle != kNoFile;
}

std::optional<std::uint64_t> CFile::Size() const
{
    if (!IsOpen())
        return std::nullopt;
    const std::optional<std::uint64_t> length = LengthOf(m_handle);
    if (!length)
        m_lastError = SystemError();
    return length;
}

std::optional<std::size_t> CFile::ReadAt(std::uint64_t offset, std::span<std::byte> bytes) const
{
    if (!IsOpen() || !IsReachable(offset, bytes.size())) {
        m_lastError = std::make_error_code(std::errc::invalid_argument);
        return std::nullopt;
    }
    std::size_t done = 0;
    while (done < bytes.size()) {
        const std::size_t piece = std::min(bytes.size() - done, kMostPerCall);
        const std::int64_t count = ReadSome(m_handle, offset + done, bytes.subspan(done, piece));
        if (count < 0) {
            m_lastError = SystemError();
            return std::nullopt;
        }
        if (count == 0)
            break;
        done += static_cast<std::size_t>(count);
    }
    return done;
}

bool CFile::WriteAt(std::uint64_t offset, std::span<const std::byte> bytes)
{
    if (!IsOpen() || !IsReachable(offset, bytes.size())) {
        m_lastError = std::make_error_code(std::errc::invalid_argument);
        return false;
    }
    std::size_t done = 0;
    while (done < bytes.size()) {
        const std::size_t piece = std::min(bytes.size() - done, kMostPerCall);
        const std::int64_t count = WriteSome(m_handle, offset + done, bytes.subspan(done, piece));
        if (count <= 0) {
            m_lastError = count < 0 ? SystemError() : std::make_error_code(std::errc::no_space_on_device);
            return false;
        }
        m_changed = true; // only now: what took no byte has nothing to hand on, and may refuse to
        done += static_cast<std::size_t>(count);
    }
    return true;
}

bool CFile::Reserve(std::uint64_t offset, std::uint64_t size)
{
    const auto length = Size();
    if (!length || !IsReachable(offset, size))
        return false;
    if (size == 0)
        return true;
    m_changed = true;
    if (const std::error_code fault = Allocate(m_handle, offset, size)) {
        m_lastError = fault;
        CutTo(*length);
        return false;
    }
    return true;
}

bool CFile::CutTo(std::uint64_t length)
{
    const auto old = Size();
    if (!old)
        return false;
    if (*old <= length)
        return true;
    m_changed = true;
    if (SetLength(m_handle, length))
        return true;
    m_lastError = SystemError();
    return false;
}

bool CFile::TakeAttributesOf(const fs::path& path)
{
    return IsOpen() && TakeAttributes(m_handle, path);
}

bool CFile::Flush()
{
    if (!std::exchange(m_changed, false) || FlushToDisk(m_handle))
        return true;
    m_lastError = SystemError();
    return false;
}

bool CFile::Close()
{
    if (!IsOpen())
        return true;
    const bool flushed = Flush();
    const bool released = Release(std::exchange(m_handle, kNoFile));
    const fs::path made = std::exchange(m_made, {});
    const bool kept = released && (made.empty() || FlushFolderOf(made));
    if (flushed && !kept)
        m_lastError = SystemError();
    return flushed && kept;
}

void CFile::Discard()
{
    if (IsOpen())
        Release(std::exchange(m_handle, kNoFile));
    m_changed = false;
    std::error_code ignored;
    if (const fs::path made = std::exchange(m_made, {}); !made.empty())
        fs::remove(made, ignored);
}

bool FlushFolderOf(const fs::path& path)
{
    const fs::path folder = path.parent_path();
    return FlushFolder(folder.empty() ? fs::path(".") : folder);
}

fs::path LinkTarget(fs::path path)
{
    constexpr int kMostLinks = 40; // more are a circle
    std::error_code fault;
    for (int i = 0; i < kMostLinks && fs::is_symlink(path, fault); ++i) {
        const fs::path target = fs::read_symlink(path, fault);
        path = path.parent_path() / target; // an absolute target replaces the folder
    }
    return path;
}

void SurviveFailedWrites()
{
#ifdef SIGPIPE
    std::signal(SIGPIPE, SIG_IGN);
#endif
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN);
#endif
}

std::string ReasonUtf8(std::error_code error)
{
#ifdef _WIN32
    if (error.category() == std::system_category()) {
        std::array<wchar_t, 512> text{}; // longer than any of them
        const DWORD length =
            FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                           static_cast<DWORD>(error.value()), 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
        const std::wstring_view words(text.data(), length);
        const std::u8string utf8 = fs::path(words.substr(0, words.find_last_not_of(L" .\r\n") + 1)).u8string();
        if (length > 0)
            return {utf8.begin(), utf8.end()}; // without its full stop, as other systems word it
    }
#endif
    return error.message();
}

fs::path ExecutablePath()
{
#ifdef _WIN32
    std::wstring name(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
        if (length < name.size()) { // else it was cut
            name.resize(length);
            return name;
        }
        name.resize(2 * name.size());
    }
#else
    std::error_code none;
    return fs::read_symlink("/proc/self/exe", none);
#endif
}

fs::path UserDataFolder()
{
#ifdef _WIN32
    const wchar_t* const local = _wgetenv(L"LOCALAPPDATA");
    return local != nullptr ? fs::path(local) : fs::path();
#else
    const fs::path named = EnvironmentPath("XDG_DATA_HOME");
    if (named.is_absolute()) // a relative one counts as none
        return named;
    const fs::path home = EnvironmentPath("HOME");
    return home.is_absolute() ? home / ".local" / "share" : fs::path();
#endif
}
