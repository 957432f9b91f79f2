#pragma once

#include "disk/File.h"

#include <chrono>
#include <filesystem>
#include <functional>

/// How long another program that writes a file is waited for, before the file is changed all the same or left alone.
inline constexpr std::chrono::seconds kLongestLockWait{5};

/// The right to change a file, from the look at what it holds until the last byte is written: others who ask for it
/// wait that long. It ends with the object, or with the program, however that ends; it keeps nobody from reading, nor
/// those who do not ask.
class CFileLock {
public:
    enum class State {
        None, ///< there is nothing to hold: no such file, one that may not be written, or a disk without locks
        Held,
        Busy,    ///< another program has it
        GivenUp, ///< by the wish of `goesOn`
    };

    CFileLock() = default;
    CFileLock(const CFileLock&) = delete;
    CFileLock& operator=(const CFileLock&) = delete;

    /// Waits for so long at most, and asks `goesOn` some times a second meanwhile. What is held is the file that has
    /// the name when this returns, not one that another took its place of.
    State Take(
        const std::filesystem::path& path, std::chrono::milliseconds most,
        const std::function<bool()>& goesOn = [] { return true; });

    State Now() const { return m_state; }

    /// The open file, for reading and writing, while it is held; else null.
    CFile* File() { return m_state == State::Held ? &m_file : nullptr; }

    void Release();

private:
    State TryToTake(const std::filesystem::path& path);

    CFile m_file;
    State m_state = State::None;
};
