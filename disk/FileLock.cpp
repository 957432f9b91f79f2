#include "disk/FileLock.h"

#include <thread>

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::milliseconds kPause{10}; // between two tries: no system waits for a lock for a limited time

} // namespace

CFileLock::State CFileLock::Take(const fs::path& path, std::chrono::milliseconds most,
                                 const std::function<bool()>& goesOn)
{
    Release();
    const auto end = std::chrono::steady_clock::now() + most;
    m_state = TryToTake(path);
    while (m_state == State::Busy && std::chrono::steady_clock::now() < end) {
        if (!goesOn()) {
            m_state = State::GivenUp;
            break;
        }
        std::this_thread::sleep_for(kPause);
        m_state = TryToTake(path);
    }
    if (m_state != State::Held)
        m_file = CFile();
    return m_state;
}

/// A file that another has taken the place of is none that anybody waits for.
CFileLock::State CFileLock::TryToTake(const fs::path& path)
{
    const fs::path target = LinkTarget(path);
    for (int tries = 0; tries < 100; ++tries) {
        if (!m_file.IsAt(target) && !m_file.Open(target, CFile::Mode::ReadWrite))
            return State::None;
        const Holder holder = m_file.Hold();
        if (holder != Holder::ThisFile)
            return holder == Holder::AnotherFile ? State::Busy : State::None;
        if (m_file.IsAt(target))
            return State::Held;
    }
    return State::Busy;
}

void CFileLock::Release()
{
    m_file = CFile();
    m_state = State::None;
}
