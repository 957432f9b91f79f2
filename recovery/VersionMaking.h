#pragma once

#include "disk/File.h"
#include "recovery/VersionFolder.h"
#include "recovery/VersionNote.h"

#include <filesystem>
#include <string>
#include <system_error>

/// A version on its way into its folder. Its note comes first: that takes the stamp, for there can be only one of that
/// name, and holds it (CFile::Hold). Then what was kept grows under a name of its own, and gets its proper one when it
/// is complete. A version that is not completed leaves nothing.
class CVersionMaking {
public:
    /// Takes a stamp after all that `folder` has, now at the earliest. Check IsBegun.
    CVersionMaking(const CVersionFolder& folder, const VersionNote& note);
    ~CVersionMaking();
    CVersionMaking(const CVersionMaking&) = delete;
    CVersionMaking& operator=(const CVersionMaking&) = delete;

    bool IsBegun() const { return m_note.IsOpen(); }
    const std::string& Stamp() const { return m_stamp; }

    /// Where it grows: the user's own file, empty at first.
    std::filesystem::path PartPath() const { return m_folder.PartPath(m_stamp); }

    /// The part has been flushed to the disk: it becomes the file at `path`, with its note. False after a failure.
    bool Complete(const std::filesystem::path& path);

    /// Why it was not begun or completed.
    std::error_code Fault() const { return m_fault; }

private:
    bool Take(UtcTime time);
    void Begin(UtcTime now);
    void RemoveAll();

    const CVersionFolder& m_folder;
    CFile m_note;
    std::string m_stamp;
    std::error_code m_fault;
    bool m_isComplete = false;
};
