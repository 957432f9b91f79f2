#pragma once

#include <cstddef>

/// As long as it lives, an array of more than `bytes` bytes cannot be allocated: std::bad_alloc.
class CAllocationLimit {
public:
    explicit CAllocationLimit(std::size_t bytes);
    ~CAllocationLimit();
    CAllocationLimit(const CAllocationLimit&) = delete;
    CAllocationLimit& operator=(const CAllocationLimit&) = delete;
};
