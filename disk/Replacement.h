#pragma once

#include "disk/File.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

/// A file that is rewritten as a whole. It grows beside the old one and takes its place when it is complete, so that
/// work that fails or is given up leaves the old file as it was, or none where there was none. A link is followed; what
/// exists and is no regular file is refused.
///
/// Where it cannot take the old one's place, because that has other names (hard links) or another owner or lies in a
/// folder that takes no new file, it grows all the same, beside it or in the system's folder for temporary files, and
/// is copied into the old file when it is complete.
///
/// What programs that were killed in the middle left in the folder where it grows is removed first (TemporaryFile.h).
class CReplacement {
public:
    explicit CReplacement(const std::filesystem::path& path);
    ~CReplacement();
    CReplacement(const CReplacement&) = delete;
    CReplacement& operator=(const CReplacement&) = delete;

    /// False when there is nothing to write to: no such folder, no regular file, a file that may not be written.
    bool IsOpen() const { return m_file.IsOpen(); }

    /// Writes `bytes` after what was written before. False after an error.
    bool Append(std::span<const std::byte> bytes);

    /// Leaves `count` zero bytes after what was written before, which take no room where the disk has holes. False
    /// after an error.
    bool AppendZeros(std::uint64_t count);

    /// Writes what the old file holds after what was written before; nothing where there is none. False after an error.
    bool AppendOld();

    /// The same with what another file, at `path`, holds; false when there is none, too.
    bool AppendFile(const std::filesystem::path& path);

    /// Where the new file grows. It may be opened and written by this name once everything that is to be appended has
    /// been.
    const std::filesystem::path& FreshPath() const { return m_fresh; }

    /// Puts the new file in the old one's place, once everything is on the disk. False when that fails.
    bool Finish();

    /// Whether a Finish that failed may have left old and new bytes in the file. The complete new file is then kept
    /// where it grew, under its KeptName (TemporaryFile.h), as it is when the program is killed while it copies.
    bool MayHoldOldAndNew() const { return m_isMixed; }

private:
    bool GrowIn(const std::filesystem::path& folder);
    bool MakeFileIn(const std::filesystem::path& folder);
    bool IsTakenAway();
    void RemoveFresh();
    void GrowInTemporaryFolder();
    bool TakePlace();
    bool CopyIntoTarget();
    bool KeepForGood();

    std::filesystem::path m_target; ///< what the path leads to
    std::filesystem::path m_fresh;  ///< where the new file grows; empty when there is none
    CFile m_file;
    CFile m_guard; ///< holds the new file until it has its place
    std::uint64_t m_written = 0;
    bool m_takesPlace = false; ///< it may be renamed over the old file
    bool m_isMixed = false;
};
