#include <vector>

#include "tests/fuzz/Targets.h"

namespace lumivard::platform::fuzz {

int fuzzPlanted(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::uint8_t> bytes(data, data + size);
    if (size < 2 || bytes[0] != 'l' || bytes[1] != 'v') return 0;
    unsigned int sum = 0;
    for (std::size_t i = 0; i <= bytes.size(); ++i) sum += bytes.data()[i];  // the fault: one too many
    return sum == 0 ? -1 : 0;
}

}  // namespace lumivard::platform::fuzz
