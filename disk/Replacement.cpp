#include "disk/Replacement.h"

#include "disk/Content.h"
#include "disk/TemporaryFile.h"

#include <algorithm>
#include <array>
#include <system_error>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPieceBytes = std::size_t{1} << 20;

/// What has the name, even a link that leads nowhere.
fs::file_type TypeOf(const fs::path& path)
{
    std::error_code ignored;
    return fs::symlink_status(path, ignored).type();
}

bool MayBeWritten(const fs::path& target)
{
    switch (TypeOf(target)) {
    case fs::file_type::not_found:
        return target.has_filename();
    case fs::file_type::regular:
        return CFile(target, CFile::Mode::ReadWrite).IsOpen();
    default:
        return false;
    }
}

/// Whether a rename over `target` takes nothing away: it is a file with this one name, or there is none.
bool MayBeReplaced(const fs::path& target)
{
    std::error_code ignored; // no count is 1 then
    const fs::file_type type = TypeOf(target);
    return type == fs::file_type::not_found ||
           (type == fs::file_type::regular && fs::hard_link_count(target, ignored) == 1);
}

bool IsZero(std::span<const std::byte> bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](std::byte b) { return b == std::byte{0}; });
}

} // namespace

CReplacement::CReplacement(const fs::path& path) : m_target(LinkTarget(path))
{
    if (!MayBeWritten(m_target))
        return;
    const bool isNew = TypeOf(m_target) == fs::file_type::not_found;
    const bool isBeside = GrowIn(m_target.parent_path());
    if (!isBeside && !isNew)
        GrowInTemporaryFolder();
    const bool hasAttributes = isNew || m_file.TakeAttributesOf(m_target); // before there is anything to read in it
    m_takesPlace = isBeside && hasAttributes;
}

CReplacement::~CReplacement()
{
    m_file.Close();
    if (!m_fresh.empty())
        RemoveFresh();
}

bool CReplacement::GrowIn(const fs::path& folder)
{
    RemoveLeftOvers(folder);
    int tries = 10; // where the disk cannot tell whether it is there, the last one has to do
    while (MakeFileIn(folder) && IsTakenAway() && --tries > 0)
        RemoveFresh();
    return IsOpen();
}

bool CReplacement::MakeFileIn(const fs::path& folder)
{
    do
        m_fresh = folder / TemporaryName();
    while (!m_file.Open(m_fresh, CFile::Mode::CreateNew) && TypeOf(m_fresh) != fs::file_type::not_found &&
           TypeOf(m_fresh) != fs::file_type::none);
    if (!IsOpen())
        m_fresh.clear();
    return IsOpen();
}

/// Holds the new file. Before that another program may have taken it for a leftover.
bool CReplacement::IsTakenAway()
{
    if (!m_guard.Open(m_fresh, CFile::Mode::Read))
        return IsMissing(m_fresh);
    return m_guard.Hold() == Holder::AnotherFile || !m_guard.IsAt(m_fresh);
}

void CReplacement::RemoveFresh()
{
    std::error_code ignored;
    fs::remove(m_fresh, ignored);
}

void CReplacement::GrowInTemporaryFolder()
{
    std::error_code fault;
    const fs::path folder = fs::temp_directory_path(fault);
    if (!fault)
        GrowIn(folder);
}

bool CReplacement::Append(std::span<const std::byte> bytes)
{
    if (!m_file.WriteAt(m_written, bytes))
        return false;
    m_written += bytes.size();
    return true;
}

bool CReplacement::AppendZeros(std::uint64_t count)
{
    const std::array lastZero = {std::byte{0}}; // those before it are a gap, which reads as zeros
    if (count > 0 && !m_file.WriteAt(m_written + count - 1, lastZero))
        return false;
    m_written += count;
    return true;
}

bool CReplacement::AppendOld()
{
    return TypeOf(m_target) == fs::file_type::not_found || AppendFile(m_target);
}

bool CReplacement::AppendFile(const fs::path& path)
{
    std::array<std::byte, 65536> piece;
    const CFile file(path, CFile::Mode::Read);
    for (std::uint64_t done = 0;;) {
        const auto length = file.ReadAt(done, piece);
        if (!length)
            return false;
        if (*length == 0)
            return true;
        const auto bytes = std::span(piece).first(*length);
        if (IsZero(bytes) ? !AppendZeros(*length) : !Append(bytes)) // what was a hole stays one
            return false;
        done += *length;
    }
}

bool CReplacement::Finish()
{
    return m_file.Close() && (TakePlace() ? FlushFolderOf(m_target) : CopyIntoTarget());
}

bool CReplacement::TakePlace()
{
    std::error_code fault;
    if (!m_takesPlace || !MayBeReplaced(m_target)) // it may have become something else meanwhile
        return false;
    fs::rename(m_fresh, m_target, fault);
    if (fault)
        return false;
    m_fresh.clear(); // it is the file now
    return true;
}

/// The room comes first, then the bytes, then the cut: a full disk is no reason to lose what the file held.
bool CReplacement::CopyIntoTarget()
{
    std::vector<std::byte> piece(kPieceBytes); // before anything is touched: there may be no memory for it
    const CFile source(m_fresh, CFile::Mode::Read);
    CFile target(m_target, CFile::Mode::ReadWrite);
    const auto oldSize = target.Size();
    const auto newSize = source.Size();
    if (!newSize || !oldSize || !KeepForGood() || !target.Reserve(0, *newSize))
        return false;
    if (CopyContent(source, target, *newSize, piece) && target.CutTo(*newSize) && target.Close())
        return true;
    target.CutTo(*oldSize);
    m_isMixed = true;
    m_fresh.clear(); // the only whole one that is left
    return false;
}

/// From now on it may be the only whole one: nobody is to take it for a leftover, should the program end here.
bool CReplacement::KeepForGood()
{
    std::error_code fault;
    const fs::path kept = KeptName(m_fresh);
    fs::rename(m_fresh, kept, fault);
    if (fault)
        return false;
    m_fresh = kept;
    return true;
}
