#pragma once

#include "disk/File.h"

#include <filesystem>

/// The right to write a library file, among programs that ask for it: for as long as the object lives, this one holds
/// the lock file beside the library. Where that cannot be made or held, as in a folder that takes no new file, on a
/// share without locks, or because another program keeps it for too long, the work goes on without it; nothing is
/// reported.
///
/// The lock file has the library's name with ".lock" appended, holds nothing, and may be used by whoever may use the
/// library. It is removed with the object. One that a killed program left is taken over, and no sign that anybody
/// writes: only the hold is, which ended with that program.
class CLibraryLock {
public:
    /// Waits for another's hold to end, for 200 ms at most. A `library` that is a link has the lock of the file that it
    /// leads to.
    explicit CLibraryLock(const std::filesystem::path& library);
    ~CLibraryLock();
    CLibraryLock(const CLibraryLock&) = delete;
    CLibraryLock& operator=(const CLibraryLock&) = delete;

    bool IsHeld() const { return m_file.IsOpen(); }

private:
    enum class Attempt { Held, Busy, Impossible };

    Attempt Try();
    bool Open();

    std::filesystem::path m_library; ///< what the path leads to
    std::filesystem::path m_path;
    CFile m_file;
    bool m_isMade = false; ///< by this object
};
