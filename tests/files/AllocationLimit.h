#pragma once

#include <cstddef>
#include <limits>

/// As long as it lives, neither an array of more than `bytes` bytes can be allocated nor anything else of more than
/// `otherBytes`, such as what a string or a vector holds: std::bad_alloc.
class CAllocationLimit {
public:
    static constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();

    explicit CAllocationLimit(std::size_t bytes, std::size_t otherBytes = kNone);
    ~CAllocationLimit();
    CAllocationLimit(const CAllocationLimit&) = delete;
    CAllocationLimit& operator=(const CAllocationLimit&) = delete;
};
