#include "tests/files/AllocationLimit.h"

#include <limits>
#include <new>

namespace {

constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();
std::size_t largestArray = kNoLimit;

} // namespace

void* operator new[](std::size_t size)
{
    if (size > largestArray)
        throw std::bad_alloc();
    return ::operator new(size);
}

void operator delete[](void* memory) noexcept
{
    ::operator delete(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    ::operator delete(memory);
}

CAllocationLimit::CAllocationLimit(std::size_t bytes)
{
    largestArray = bytes;
}

CAllocationLimit::~CAllocationLimit()
{
    largestArray = kNoLimit;
}
