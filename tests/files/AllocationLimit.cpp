#include "tests/files/AllocationLimit.h"

#include <cstdlib>
#include <new>

namespace {

std::size_t largestArray = CAllocationLimit::kNone;
std::size_t largestOther = CAllocationLimit::kNone;

void* Allocated(std::size_t size)
{
    return std::malloc(size > 0 ? size : 1);
}

} // namespace

// All that may meet one another, so that memory goes back to where it came from.

void* operator new(std::size_t size)
{
    void* const memory = size > largestOther ? nullptr : Allocated(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return size > largestOther ? nullptr : Allocated(size);
}

void* operator new[](std::size_t size)
{
    void* const memory = size > largestArray ? nullptr : Allocated(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return size > largestArray ? nullptr : Allocated(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, std::size_t) noexcept
{
    std::free(memory);
}

void operator delete[](void* memory, const std::nothrow_t&) noexcept
{
    std::free(memory);
}

CAllocationLimit::CAllocationLimit(std::size_t bytes, std::size_t otherBytes)
{
    largestArray = bytes;
    largestOther = otherBytes;
}

CAllocationLimit::~CAllocationLimit()
{
    largestArray = kNone;
    largestOther = kNone;
}
