#include "disk/File.h"
#include "disk/FileNames.h"
#include "disk/PlatformFile.h"
#include "disk/Program.h"

#include <array>
#include <cerrno>
#include <string>
#include <string_view>
#include <vector>

#ifndef NOMINMAX
#define NOMINMAX // else std::min is a macro here
#endif
#include <fcntl.h>
#include <io.h>
#include <windows.h>

namespace fs = std::filesystem;

namespace platform {

namespace {

HANDLE HandleOf(std::intptr_t file)
{
    return reinterpret_cast<HANDLE>(file);
}

/// A name as long as MAX_PATH opens only in full and with a prefix.
std::wstring OpenableName(const fs::path& path)
{
    std::error_code error;
    const std::wstring full = fs::absolute(path, error).lexically_normal().make_preferred().native();
    if (error || full.size() < MAX_PATH || full.starts_with(LR"(\\?\)"))
        return path.native();
    return full.starts_with(LR"(\\)") ? LR"(\\?\UNC\)" + full.substr(2) : LR"(\\?\)" + full;
}

/// The numbers by which the system knows the file; nothing after an error.
std::optional<BY_HANDLE_FILE_INFORMATION> IdentityOf(HANDLE file)
{
    BY_HANDLE_FILE_INFORMATION identity{};
    if (!GetFileInformationByHandle(file, &identity))
        return std::nullopt;
    return identity;
}

/// A volume without a number may be any, as long as the file has one: wine tells no volume of a file that was renamed
/// while it was open.
bool AreSame(const BY_HANDLE_FILE_INFORMATION& one, const BY_HANDLE_FILE_INFORMATION& other)
{
    const bool areVolumesKnown = one.dwVolumeSerialNumber != 0 && other.dwVolumeSerialNumber != 0;
    if (areVolumesKnown && one.dwVolumeSerialNumber != other.dwVolumeSerialNumber)
        return false;
    if (!areVolumesKnown && one.nFileIndexHigh == 0 && one.nFileIndexLow == 0)
        return false;
    return one.nFileIndexHigh == other.nFileIndexHigh && one.nFileIndexLow == other.nFileIndexLow;
}

/// Access to a folder is denied, too, as if it were a file that may not be used.
DWORD FaultOfDenied(const std::wstring& name)
{
    const DWORD attributes = GetFileAttributesW(name.c_str());
    const bool isFolder = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    return isFolder ? ERROR_NOT_SUPPORTED : ERROR_ACCESS_DENIED;
}

OVERLAPPED PlaceOf(std::uint64_t offset)
{
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset & 0xFFFFFFFF);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    return place;
}

} // namespace

std::error_code SystemError()
{
    return {static_cast<int>(GetLastError()), std::system_category()};
}

std::intptr_t OpenByName(const fs::path& path, Access access)
{
    const std::wstring name = OpenableName(path);
    const bool isNew = access == Access::Create || access == Access::CreatePrivate;
    const HANDLE handle =
        CreateFileW(name.c_str(), access == Access::Read ? GENERIC_READ : GENERIC_READ | GENERIC_WRITE,
                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, isNew ? CREATE_NEW : OPEN_EXISTING,
                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE && GetLastError() == ERROR_ACCESS_DENIED)
        SetLastError(FaultOfDenied(name));
    return reinterpret_cast<std::intptr_t>(handle);
}

/// The folders of a user's own data are closed to others, and pass that on.
bool MakePrivateFolder(const fs::path& path)
{
    return CreateDirectoryW(OpenableName(path).c_str(), nullptr) != 0;
}

bool MakePrivate(const fs::path& path)
{
    const DWORD attributes = GetFileAttributesW(OpenableName(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

std::error_code NoFileFault(std::intptr_t file)
{
    return GetFileType(HandleOf(file)) == FILE_TYPE_DISK ? std::error_code()
                                                         : std::make_error_code(std::errc::invalid_argument);
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

std::optional<std::size_t> ReadSome(std::intptr_t file, std::uint64_t offset, std::span<std::byte> bytes)
{
    OVERLAPPED place = PlaceOf(offset);
    DWORD count = 0;
    if (ReadFile(HandleOf(file), bytes.data(), static_cast<DWORD>(bytes.size()), &count, &place))
        return count;
    if (GetLastError() == ERROR_HANDLE_EOF)
        return 0;
    return std::nullopt;
}

std::optional<std::size_t> WriteSome(std::intptr_t file, std::uint64_t offset, std::span<const std::byte> bytes)
{
    OVERLAPPED place = PlaceOf(offset);
    DWORD count = 0;
    if (WriteFile(HandleOf(file), bytes.data(), static_cast<DWORD>(bytes.size()), &count, &place))
        return count;
    return std::nullopt;
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

/// A lock keeps others from the bytes it is on: it is on one past all that a file can hold.
Holder TakeHold(std::intptr_t file)
{
    constexpr std::uint64_t kBehindAll = (std::uint64_t{1} << 63) - 2;
    OVERLAPPED place = PlaceOf(kBehindAll);
    if (LockFileEx(HandleOf(file), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place))
        return Holder::ThisFile;
    const DWORD error = GetLastError();
    return error == ERROR_LOCK_VIOLATION || error == ERROR_IO_PENDING ? Holder::AnotherFile : Holder::Unknown;
}

bool IsAt(std::intptr_t file, const fs::path& path)
{
    const HANDLE named = CreateFileW(OpenableName(path).c_str(), FILE_READ_ATTRIBUTES,
                                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                     FILE_FLAG_OPEN_REPARSE_POINT | FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (named == INVALID_HANDLE_VALUE)
        return false;
    const auto there = IdentityOf(named);
    CloseHandle(named);
    const auto here = IdentityOf(HandleOf(file));
    return here && there && AreSame(*here, *there);
}

/// Here a folder that one may remove files from is one's own.
bool IsOwn(std::intptr_t)
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

} // namespace platform

bool IsCaseIgnored()
{
    return true;
}

void SurviveFailedWrites()
{
    // Here a write that fails ends no program.
}

bool IsTerminal(std::FILE* stream)
{
    const int number = _fileno(stream);
    return number >= 0 && _isatty(number) != 0;
}

namespace {

/// Half a surrogate pair becomes U+FFFD.
std::string Utf8Of(std::wstring_view text)
{
    const int units = static_cast<int>(text.size());
    const int bytes = WideCharToMultiByte(CP_UTF8, 0, text.data(), units, nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(bytes), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), units, utf8.data(), bytes, nullptr, nullptr);
    return utf8;
}

/// What is no valid UTF-8 becomes U+FFFD.
std::wstring WideOf(std::string_view utf8)
{
    const int bytes = static_cast<int>(utf8.size());
    const int units = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, nullptr, 0);
    std::wstring text(static_cast<std::size_t>(units), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, text.data(), units);
    return text;
}

/// The console that `stream` writes to; nullptr when that is none.
HANDLE ConsoleOf(std::FILE* stream)
{
    const int number = _fileno(stream);
    if (number < 0)
        return nullptr;
    const auto handle = reinterpret_cast<HANDLE>(_get_osfhandle(number));
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) ? handle : nullptr;
}

/// As much of the beginning of `text` as a console takes at once, and no half of a surrogate pair.
std::wstring_view ConsolePiece(std::wstring_view text)
{
    constexpr std::size_t kMostUnits = 8192;
    if (text.size() <= kMostUnits)
        return text;
    const bool isInsidePair = IS_HIGH_SURROGATE(text[kMostUnits - 1]) && IS_LOW_SURROGATE(text[kMostUnits]);
    return text.substr(0, isInsidePair ? kMostUnits - 1 : kMostUnits);
}

} // namespace

bool WriteText(std::FILE* stream, std::string_view text)
{
    const HANDLE console = ConsoleOf(stream);
    if (console == nullptr)
        return std::fwrite(text.data(), 1, text.size(), stream) == text.size();
    if (std::fflush(stream) != 0)
        return false;
    const std::wstring units = WideOf(text);
    for (std::wstring_view rest = units; !rest.empty();) {
        const std::wstring_view piece = ConsolePiece(rest);
        DWORD count = 0;
        if (!WriteConsoleW(console, piece.data(), static_cast<DWORD>(piece.size()), &count, nullptr) || count == 0) {
            errno = EIO;
            return false;
        }
        rest.remove_prefix(count);
    }
    return true;
}

std::string ReasonUtf8(std::error_code error)
{
    if (error.category() != std::system_category())
        return error.message();
    std::array<wchar_t, 512> text{}; // longer than any of them
    const DWORD length =
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                       static_cast<DWORD>(error.value()), 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
    if (length == 0)
        return error.message();
    const std::wstring_view words(text.data(), length); // without its full stop, as other systems word it
    return Utf8Of(words.substr(0, words.find_last_not_of(L" .\r\n") + 1));
}

fs::path ExecutablePath()
{
    std::wstring name(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
        if (length < name.size()) { // else it was cut
            name.resize(length);
            return name;
        }
        name.resize(2 * name.size());
    }
}

fs::path UserDataFolder()
{
    const wchar_t* const local = _wgetenv(L"LOCALAPPDATA");
    return local != nullptr ? fs::path(local) : fs::path();
}

namespace {

/// One argument of a command line as programs take command lines apart: in quotes, a quote in it after a backslash, and
/// the backslashes before a quote doubled.
std::wstring Quoted(const std::wstring& argument)
{
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t unit : argument) {
        if (unit == L'"')
            quoted.append(backslashes + 1, L'\\');
        backslashes = unit == L'\\' ? backslashes + 1 : 0;
        quoted += unit;
    }
    return quoted.append(backslashes, L'\\') + L'"';
}

} // namespace

std::vector<std::string> ProgramArguments(int /*argc*/, const char* const* /*argv*/)
{
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i)
        arguments.push_back(Utf8Of(words[i]));
    LocalFree(words);
    return arguments;
}

void UseStreamsForBytes()
{
    for (std::FILE* const stream : {stdin, stdout, stderr})
        if (const int number = _fileno(stream); number >= 0) // it may have been closed
            _setmode(number, _O_BINARY);
}

std::optional<int> RunProgram(const fs::path& path, const std::vector<std::string>& arguments)
{
    std::wstring line = Quoted(path.native());
    for (const std::string& argument : arguments)
        line += L' ' + Quoted(fs::path(std::u8string(argument.begin(), argument.end())).native());
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION program{};
    if (!CreateProcessW(path.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &program))
        return std::nullopt;
    WaitForSingleObject(program.hProcess, INFINITE);
    DWORD status = 0;
    const bool isKnown = GetExitCodeProcess(program.hProcess, &status) != 0;
    CloseHandle(program.hThread);
    CloseHandle(program.hProcess);
    return isKnown ? std::optional(static_cast<int>(status)) : std::nullopt;
}

fs::path SiblingProgram(const std::string& name)
{
    return ExecutablePath().parent_path() / (name + ".exe");
}
