#pragma once

#include "files/Progress.h"

#include <chrono>
#include <cstdint>
#include <cstdio>

/// Tells on a terminal how far long work has come, in one line of its own. Where the stream is none it writes nothing.
class CTerminalProgress final : public CProgress {
public:
    /// Begins to tell when work has gone on for `delay`, and tells no more often than each `interval`.
    explicit CTerminalProgress(std::FILE* stream, std::chrono::milliseconds delay = std::chrono::seconds(1),
                               std::chrono::milliseconds interval = std::chrono::milliseconds(100));
    ~CTerminalProgress() override { Erase(); }
    CTerminalProgress(const CTerminalProgress&) = delete;
    CTerminalProgress& operator=(const CTerminalProgress&) = delete;

    bool Advance(std::uint64_t done, std::uint64_t total) override;

    /// Takes the line away; to be called before anything else is written to a terminal. Work that goes on tells again.
    void Erase();

private:
    using Clock = std::chrono::steady_clock;

    std::FILE* m_stream; ///< null where nobody watches
    Clock::time_point m_next;
    std::chrono::milliseconds m_interval;
    bool m_isShown = false;
};
