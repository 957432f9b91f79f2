#pragma once

#include "disk/File.h"

#include <filesystem>

/// Where a save writes: the file of that name, through the open file that holds it (CFileLock) while that still has the
/// name.
struct WriteTarget {
    // NOLINTNEXTLINE(google-explicit-constructor): a path alone is a target
    WriteTarget(const std::filesystem::path& name, CFile* holding = nullptr) : path(name), held(holding) {}

    /// The open file to write through; null where none holds the file that has the name now.
    CFile* Holding() const { return held != nullptr && held->IsAt(LinkTarget(path)) ? held : nullptr; }

    const std::filesystem::path& path;
    CFile* held; ///< open for reading and writing; null for none
};

/// The file of a target, open for writing in place: that which holds it, else one of its own.
class CFileToWrite {
public:
    CFileToWrite(const WriteTarget& target, CFile::Mode mode) : m_held(target.Holding())
    {
        if (m_held == nullptr)
            m_own.Open(target.path, mode);
    }

    CFile& operator*() { return m_held != nullptr ? *m_held : m_own; }
    CFile* operator->() { return &**this; }

    /// Hands what was written to the disk. False when it refuses it. What holds the file stays open.
    bool Finish() { return m_held != nullptr ? m_held->Flush() : m_own.Close(); }

    /// A file of its own that was made goes again.
    void Discard()
    {
        if (m_held == nullptr)
            m_own.Discard();
    }

private:
    CFile m_own;
    CFile* m_held;
};
