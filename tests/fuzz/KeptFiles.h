#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace lumivard::platform::fuzz {

/// The inputs of a target that its fuzzer kept, and those that ever made it fail, in a fixed order.
inline std::vector<std::filesystem::path> kept(const std::string& target) {
    std::vector<std::filesystem::path> files;
    for (const char* const folder : {"corpus", "crashes"}) {
        const auto first = static_cast<std::ptrdiff_t>(files.size());
        const auto path = std::filesystem::path(LVP_SOURCE_DIR) / "tests" / "fuzz" / folder / target;
        if (!std::filesystem::is_directory(path)) continue;
        for (const auto& entry : std::filesystem::directory_iterator(path)) files.push_back(entry.path());
        std::sort(files.begin() + first, files.end());
    }
    return files;
}

/// The bytes of one of them, as targets take them.
inline std::vector<std::uint8_t> inputIn(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace lumivard::platform::fuzz
