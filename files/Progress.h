#pragma once

#include <cstdint>

/// What long work tells of itself, and where it hears that the user has had enough.
class CProgress {
public:
    virtual ~CProgress() = default;

    /// `done` of `total` units are through; false when the work is to be given up. Called between pieces of work that
    /// take a small part of a second.
    virtual bool Advance(std::uint64_t done, std::uint64_t total) = 0;
};

/// For work that nobody watches.
class CNoProgress final : public CProgress {
public:
    bool Advance(std::uint64_t, std::uint64_t) override { return true; }
};
