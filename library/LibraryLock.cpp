#include "library/LibraryLock.h"

#include <chrono>
#include <system_error>
#include <thread>

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kMostWait{200};
constexpr std::chrono::microseconds kPause{
    100}; // short, so that one that writes again and again leaves a gap to others

} // namespace

CLibraryLock::CLibraryLock(const fs::path& library) : m_library(LinkTarget(library)), m_path(m_library)
{
    m_path += ".lock";
    const auto end = Clock::now() + kMostWait;
    Attempt attempt = Try();
    while (attempt == Attempt::Busy && Clock::now() < end) {
        std::this_thread::sleep_for(kPause);
        attempt = Try();
    }
    if (attempt != Attempt::Held)
        m_file = CFile();
}

/// It goes while it is held: whoever waits for it sees that its name is free or another file's, and tries again.
CLibraryLock::~CLibraryLock()
{
    std::error_code ignored;
    if (IsHeld() && m_file.IsAt(m_path))
        fs::remove(m_path, ignored);
}

CLibraryLock::Attempt CLibraryLock::Try()
{
    if (!m_file.IsOpen() && !Open())
        return Attempt::Impossible;
    const Holder holder = m_file.Hold();
    if (holder == Holder::AnotherFile)
        return Attempt::Busy;
    if (holder == Holder::ThisFile && m_file.IsAt(m_path))
        return Attempt::Held;
    std::error_code ignored;
    if (holder == Holder::Unknown && m_isMade)
        fs::remove(m_path, ignored); // it is of use to nobody
    m_file = CFile();
    return holder == Holder::Unknown ? Attempt::Impossible : Attempt::Busy; // who had it before has removed it
}

/// Some systems give a hold only to those who may write. Between the calls it may have come or gone.
bool CLibraryLock::Open()
{
    for (int tries = 3; tries > 0; --tries) {
        m_isMade = false;
        if (m_file.Open(m_path, CFile::Mode::ReadWrite) || m_file.Open(m_path, CFile::Mode::Read))
            return true;
        m_isMade = m_file.Open(m_path, CFile::Mode::CreateNew);
        if (m_isMade) {
            m_file.TakeAttributesOf(m_library); // as far as it goes
            return true;
        }
        if (m_file.LastError() != std::errc::file_exists)
            return false;
    }
    return false;
}
