#include "disk/File.h"

#include "disk/PlatformFile.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr std::intptr_t kNoFile = platform::kNoFile;
constexpr std::size_t kMostPerCall = std::size_t{1} << 30; // below what any system takes in one call

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
        platform::Release(m_handle);
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
    if (HoldsZero(path)) { // the platform would take the name up to there
        m_lastError = std::make_error_code(std::errc::invalid_argument);
        return false;
    }

    CFile file;
    if (mode == Mode::OpenOrCreate || mode == Mode::Truncate)
        file.OpenOrMake(path);
    else if (mode == Mode::CreateNew || mode == Mode::CreatePrivate)
        file.m_handle = platform::OpenByName(path, mode == Mode::CreateNew ? platform::Access::Create
                                                                           : platform::Access::CreatePrivate);
    else
        file.m_handle =
            platform::OpenByName(path, mode == Mode::Read ? platform::Access::Read : platform::Access::Write);
    if (!file.IsOpen()) {
        m_lastError = platform::SystemError();
        return false;
    }
    std::error_code fault = platform::NoFileFault(file.m_handle);
    if (!fault && mode == Mode::Truncate && !file.CutTo(0)) // cut only now that it is known to be a file
        fault = file.LastError();
    if (fault) {
        if (mode == Mode::CreateNew || mode == Mode::CreatePrivate)
            file.m_made = path; // to go with it
        file.Discard();
        m_lastError = fault;
        return false;
    }
    *this = std::move(file);
    return true;
}

void CFile::OpenOrMake(const fs::path& path)
{
    m_handle = platform::OpenByName(path, platform::Access::Write);
    if (IsOpen())
        return;
    m_made = LinkTarget(path);
    m_handle = platform::OpenByName(m_made, platform::Access::Create);
    if (IsOpen())
        return;
    m_made.clear();
    m_handle = platform::OpenByName(path, platform::Access::Write); // it may have been made meanwhile
}

bool CFile::IsOpen() const
{
    return m_handle != kNoFile;
}

std::optional<std::uint64_t> CFile::Size() const
{
    if (!IsOpen())
        return std::nullopt;
    const std::optional<std::uint64_t> length = platform::LengthOf(m_handle);
    if (!length)
        m_lastError = platform::SystemError();
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
        const auto count = platform::ReadSome(m_handle, offset + done, bytes.subspan(done, piece));
        if (!count) {
            m_lastError = platform::SystemError();
            return std::nullopt;
        }
        if (*count == 0)
            break;
        done += *count;
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
        const auto count = platform::WriteSome(m_handle, offset + done, bytes.subspan(done, piece));
        if (!count || *count == 0) {
            m_lastError = count ? std::make_error_code(std::errc::no_space_on_device) : platform::SystemError();
            return false;
        }
        m_changed = true; // only now: what took no byte has nothing to hand on, and may refuse to
        done += *count;
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
    if (const std::error_code fault = platform::Allocate(m_handle, offset, size)) {
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
    if (platform::SetLength(m_handle, length))
        return true;
    m_lastError = platform::SystemError();
    return false;
}

bool CFile::TakeAttributesOf(const fs::path& path)
{
    return IsOpen() && platform::TakeAttributes(m_handle, path);
}

Holder CFile::Hold()
{
    return IsOpen() ? platform::TakeHold(m_handle) : Holder::Unknown;
}

bool CFile::IsAt(const fs::path& path) const
{
    return IsOpen() && platform::IsAt(m_handle, path);
}

bool CFile::IsOwn() const
{
    return IsOpen() && platform::IsOwn(m_handle);
}

bool CFile::Flush()
{
    if (!std::exchange(m_changed, false) || platform::FlushToDisk(m_handle))
        return true;
    m_lastError = platform::SystemError();
    return false;
}

bool CFile::Close()
{
    if (!IsOpen())
        return true;
    const bool flushed = Flush();
    const bool released = platform::Release(std::exchange(m_handle, kNoFile));
    const fs::path made = std::exchange(m_made, {});
    const bool kept = released && (made.empty() || FlushFolderOf(made));
    if (flushed && !kept)
        m_lastError = platform::SystemError();
    return flushed && kept;
}

void CFile::Discard()
{
    if (IsOpen())
        platform::Release(std::exchange(m_handle, kNoFile));
    m_changed = false;
    std::error_code ignored;
    if (const fs::path made = std::exchange(m_made, {}); !made.empty())
        fs::remove(made, ignored);
}

bool FlushFolderOf(const fs::path& path)
{
    const fs::path folder = path.parent_path();
    return platform::FlushFolder(folder.empty() ? fs::path(".") : folder);
}

bool MakePrivateFolder(const fs::path& path)
{
    if (path.empty())
        return false;
    if (!platform::MakePrivateFolder(path)) {
        std::error_code ignored;
        const bool hasFolder = fs::exists(path.parent_path(), ignored) || MakePrivateFolder(path.parent_path());
        if (hasFolder)
            platform::MakePrivateFolder(path); // another program may have made it
    }
    return platform::MakePrivate(path);
}

bool IsMissing(const fs::path& path)
{
    std::error_code ignored;
    return fs::status(path, ignored).type() == fs::file_type::not_found;
}

bool IsSameFile(const fs::path& one, const fs::path& other)
{
    std::error_code missing; // a file that is not there is no other's
    return fs::equivalent(one, other, missing);
}

bool IsMissingOrProtected(std::error_code fault)
{
    constexpr std::array kFaults = {std::errc::no_such_file_or_directory, std::errc::not_a_directory,
                                    std::errc::permission_denied, std::errc::operation_not_permitted,
                                    std::errc::read_only_file_system};
    return std::any_of(kFaults.begin(), kFaults.end(), [&fault](std::errc known) { return fault == known; });
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
