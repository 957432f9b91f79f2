#include "tests/fuzz/Targets.h"

#include <cstdint>

/// What libFuzzer calls. VANTOR_FUZZ_TARGET is the target of this program.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    VANTOR_FUZZ_TARGET(std::as_bytes(std::span(data, size)));
    return 0;
}
