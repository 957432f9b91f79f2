#pragma once

#include "document/EditOutcome.h"

#include <new>
#include <stdexcept>

/// Runs `work`, which changes nothing when there is no memory for it.
template <class Work>
EditOutcome WithMemoryFor(Work work)
try {
    work();
    return EditOutcome::Made;
} catch (const std::bad_alloc&) {
    return EditOutcome::OutOfMemory;
} catch (const std::length_error&) {
    return EditOutcome::OutOfMemory;
}
