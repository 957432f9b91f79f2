#include "files/Replacement.h"

#include <chrono>
#include <string>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPieceBytes = std::size_t{1} << 20;

bool IsThere(const fs::path& path)
{
    std::error_code ignored;
    return fs::exists(path, ignored);
}

/// The file that `path` names when all links are followed; `path` itself when there is none.
fs::path Resolved(const fs::path& path)
{
    std::error_code fault;
    fs::path target = fs::canonical(path, fault);
    return fault ? path : target;
}

/// A name in the folder of `path` that no file has.
fs::path UnusedNameBeside(const fs::path& path)
{
    fs::path name;
    do {
        name = path;
        name += "." + std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()) + ".new";
    } while (IsThere(name));
    return name;
}

/// A link that leads nowhere is to lead to the new file, so nothing may take its place.
bool IsDanglingLink(const fs::path& path)
{
    std::error_code ignored;
    return !IsThere(path) && fs::is_symlink(path, ignored);
}

bool MayBeWritten(const fs::path& path)
{
    return IsThere(path) ? CFile(path, CFile::Mode::ReadWrite).IsOpen() : path.has_filename();
}

void CopyPermissions(const fs::path& from, const fs::path& to)
{
    std::error_code fault;
    const fs::perms permissions = fs::status(from, fault).permissions();
    if (!fault && IsThere(from))
        fs::permissions(to, permissions, fault);
}

/// Writes what `from` holds over the file `to` and cuts it to that length. A folder may take new files and yet not let
/// go of those of others, which may be written all the same.
bool WriteInto(const fs::path& from, const fs::path& to)
{
    std::vector<std::byte> piece(kPieceBytes); // before anything is touched: there may be no memory for it
    const CFile source(from, CFile::Mode::Read);
    CFile target(to, CFile::Mode::ReadWrite);
    if (!source.IsOpen() || !target.IsOpen())
        return false;
    std::uint64_t done = 0;
    for (;;) {
        const auto count = source.ReadAt(done, piece);
        if (!count || !target.WriteAt(done, std::span(piece).first(*count)))
            return false;
        if (*count == 0)
            break;
        done += *count;
    }
    std::error_code fault;
    if (!target.Close())
        return false;
    fs::resize_file(to, done, fault);
    return !fault;
}

} // namespace

CReplacement::CReplacement(const fs::path& path) : m_target(Resolved(path))
{
    if (!MayBeWritten(path))
        return;
    if (!IsDanglingLink(path)) {
        m_fresh = UnusedNameBeside(m_target);
        if (m_file.Open(m_fresh, CFile::Mode::Truncate)) {
            CopyPermissions(m_target, m_fresh);
            return;
        }
        m_fresh.clear();
    }
    m_file.Open(m_target, CFile::Mode::Truncate);
}

CReplacement::~CReplacement()
{
    m_file.Close();
    std::error_code ignored;
    if (!m_fresh.empty())
        fs::remove(m_fresh, ignored);
}

bool CReplacement::Append(std::span<const std::byte> bytes)
{
    if (!m_file.WriteAt(m_written, bytes))
        return false;
    m_written += bytes.size();
    return true;
}

bool CReplacement::Finish()
{
    if (!m_file.Close())
        return false;
    if (m_fresh.empty())
        return true;
    std::error_code fault;
    fs::rename(m_fresh, m_target, fault);
    if (!fault || !WriteInto(m_fresh, m_target)) {
        m_fresh.clear(); // it is the file now, or the only whole one that is left
        return !fault;
    }
    return true;
}
