#include "recovery/VersionMaking.h"

#include <algorithm>
#include <chrono>
#include <span>
#include <utility>

namespace fs = std::filesystem;

CVersionMaking::CVersionMaking(const CVersionFolder& folder, const VersionNote& note) : m_folder(folder)
{
    Begin(note.time);
    if (!IsBegun())
        return;
    const std::string json = NoteToJson(note);
    const bool isNoted = m_note.WriteAt(0, std::as_bytes(std::span(json)));
    const CFile part(PartPath(), CFile::Mode::CreatePrivate);
    if (isNoted && part.IsOpen())
        return;
    m_fault = isNoted ? part.LastError() : m_note.LastError();
    RemoveAll();
    m_note = CFile();
}

CVersionMaking::~CVersionMaking()
{
    if (IsBegun() && !m_isComplete)
        RemoveAll();
}

void CVersionMaking::RemoveAll()
{
    std::error_code ignored;
    fs::remove(PartPath(), ignored);
    fs::remove(m_folder.NotePath(m_stamp), ignored);
}

/// Names ascend even where the clock was set back, or two versions come in one millisecond.
void CVersionMaking::Begin(UtcTime now)
{
    constexpr std::chrono::milliseconds kNext{1};
    constexpr int kMostTries = 1000; // so many programs do not keep versions of one file at once
    const auto newest = m_folder.Newest();
    UtcTime time = newest ? std::max(now, *newest + kNext) : now;
    for (int i = 0; i < kMostTries && !Take(time); ++i, time += kNext)
        if (m_fault != std::errc::file_exists)
            return;
}

/// Another program may have the stamp, or have taken the note for a leftover before it was held.
bool CVersionMaking::Take(UtcTime time)
{
    m_stamp = UtcStamp(time);
    if (!TimeOfStamp(m_stamp)) {
        m_fault = std::make_error_code(std::errc::value_too_large);
        return false;
    }
    const fs::path path = m_folder.NotePath(m_stamp);
    CFile note;
    if (!note.Open(path, CFile::Mode::CreatePrivate)) {
        m_fault = note.LastError();
        return false;
    }
    if (note.Hold() == Holder::AnotherFile || !note.IsAt(path)) {
        m_fault = std::make_error_code(std::errc::file_exists);
        return false;
    }
    m_note = std::move(note);
    return true;
}

bool CVersionMaking::Complete(const fs::path& path)
{
    fs::rename(PartPath(), path, m_fault);
    if (m_fault)
        return false;
    m_isComplete = FlushFolderOf(path);
    if (!m_isComplete) {
        m_fault = std::make_error_code(std::errc::io_error);
        std::error_code ignored;
        fs::remove(path, ignored);
    }
    return m_isComplete;
}
