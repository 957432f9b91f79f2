#pragma once

#include "files/File.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

/// A file that is written anew as a whole. It grows beside the old one and takes its place when it is complete, so that
/// work that fails or is given up leaves the old file as it was, or none where there was none.
///
/// Where the folder takes no new file but the old one may be written, that is emptied and written in place.
class CReplacement {
public:
    explicit CReplacement(const std::filesystem::path& path);
    ~CReplacement();
    CReplacement(const CReplacement&) = delete;
    CReplacement& operator=(const CReplacement&) = delete;

    /// False when neither is possible: no such folder, no regular file, a file that may not be written.
    bool IsOpen() const { return m_file.IsOpen(); }

    /// Whether the old file is still as it was.
    bool KeepsOldFile() const { return !m_fresh.empty(); }

    /// Writes `bytes` behind what was written before. False after an error.
    bool Append(std::span<const std::byte> bytes);

    /// Puts the new file in the old one's place, once everything is on the disk. False when that fails.
    bool Finish();

private:
    std::filesystem::path m_target; ///< what the path leads to
    std::filesystem::path m_fresh;  ///< the file beside it; empty when there is none
    CFile m_file;
    std::uint64_t m_written = 0;
};
