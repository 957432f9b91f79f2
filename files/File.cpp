#include "files/File.h"

#include "files/Utf8Text.h"

#include <algorithm>
#include <limits>
#include <string_view>
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
#endif

namespace fs = std::filesystem;

namespace {

constexpr std::intptr_t kNoFile = -1;
constexpr std::size_t kMostPerCall = std::size_t{1} << 30; // below what any system takes in one call

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

std::intptr_t OpenByName(const fs::path& path, bool write, bool create)
{
    const HANDLE handle = CreateFileW(OpenableName(path).c_str(), write ? GENERIC_READ | GENERIC_WRITE : GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      create ? OPEN_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    return reinterpret_cast<std::intptr_t>(handle);
}

bool IsRegular(std::intptr_t file)
{
    return GetFileType(HandleOf(file)) == FILE_TYPE_DISK;
}

bool CutToNothing(std::intptr_t file)
{
    return SetEndOfFile(HandleOf(file)) != 0; // the position of a file just opened is its start
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

bool FlushToDisk(std::intptr_t file)
{
    return FlushFileBuffers(HandleOf(file)) != 0;
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

std::intptr_t OpenByName(const fs::path& path, bool write, bool create)
{
    // Without O_NONBLOCK the open of a pipe would wait for its other end.
    const int flags = (write ? O_RDWR : O_RDONLY) | (create ? O_CREAT : 0) | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    return Restarted([&] { return open(path.c_str(), flags, 0666); });
}

bool IsRegular(std::intptr_t file)
{
    struct stat status {};
    return fstat(static_cast<int>(file), &status) == 0 && S_ISREG(status.st_mode);
}

bool CutToNothing(std::intptr_t file)
{
    return Restarted([&] { return ftruncate(static_cast<int>(file), 0); }) == 0;
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

bool FlushToDisk(std::intptr_t file)
{
    if (Restarted([&] { return fdatasync(static_cast<int>(file)); }) == 0)
        return true;
    return errno == EINVAL || errno == ENOSYS; // a file system that knows no flushing has nothing to refuse
}

fs::path EnvironmentPath(const char* name)
{
    const char* const value = std::getenv(name);
    return value != nullptr ? fs::path(value) : fs::path();
}

bool Release(std::intptr_t file)
{
    return close(static_cast<int>(file)) == 0 || errno == EINTR; // the number is free again in either case
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
      m_lastError(std::exchange(other.m_lastError, {}))
{
}

CFile& CFile::operator=(CFile&& other) noexcept
{
    std::swap(m_handle, other.m_handle);
    std::swap(m_changed, other.m_changed);
    std::swap(m_lastError, other.m_lastError);
    return *this;
}

bool CFile::Open(const fs::path& path, Mode mode)
{
    Close();
    if (HoldsZero(path)) // the platform would take the name up to there
        return false;

    const bool create = mode == Mode::OpenOrCreate || mode == Mode::Truncate;
    CFile file;
    file.m_handle = OpenByName(path, mode != Mode::Read, create);
    if (!file.IsOpen() || !IsRegular(file.m_handle))
        return false;
    if (mode == Mode::Truncate) { // only now that it is known to be a file
        file.m_changed = true;
        if (!CutToNothing(file.m_handle))
            return false;
    }
    *this = std::move(file);
    return true;
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

bool CFile::Close()
{
    if (!IsOpen())
        return true;
    const bool flushed = !std::exchange(m_changed, false) || FlushToDisk(m_handle);
    if (!flushed)
        m_lastError = SystemError();
    const bool released = Release(std::exchange(m_handle, kNoFile));
    if (flushed && !released)
        m_lastError = SystemError();
    return flushed && released;
}

std::u16string ReasonText(std::error_code error)
{
#ifdef _WIN32
    if (error.category() == std::system_category()) {
        std::array<wchar_t, 512> text{}; // longer than any of them
        const DWORD length =
            FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                           static_cast<DWORD>(error.value()), 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
        const std::u16string units(text.begin(), text.begin() + length);
        if (length > 0)
            return units.substr(0, units.find_last_not_of(u" .\r\n") + 1); // as other systems word it
    }
#endif
    return FromUtf8(error.message());
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

std::u16string PathText(const fs::path& path)
{
#ifdef _WIN32
    const std::u16string units(path.native().begin(), path.native().end());
    return FromUtf8(ToUtf8(units)); // for the halves of surrogate pairs that a name may hold
#else
    return FromUtf8(path.native());
#endif
}
