#include "tests/fuzz/Targets.h"

// The fuzzer's way into a target. What the target throws ends the process, and so is a find.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return lumivard::platform::fuzz::LVP_FUZZ_TARGET(data, size);
}
