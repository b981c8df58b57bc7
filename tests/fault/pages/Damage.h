#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <random>
#include <string>

namespace lumivard::platform::stores {

/// Does to the bytes of a file what disks, programs and people do to files.
class Damage {
public:
    explicit Damage(std::uint64_t seed) : _random(seed) {}

    /// Changes one bit of `bytes`.
    void flip(std::string& bytes) {
        const std::size_t at = below(bytes.size());
        bytes[at] = static_cast<char>(bytes[at] ^ (1 << below(8)));
    }

    /// One to four damages of any kind.
    void strike(std::string& bytes) {
        for (std::uint64_t left = 1 + below(4); left != 0 && bytes.size() > kPage; --left) one(bytes);
    }

private:
    static constexpr std::size_t kPage = 4096;

    std::size_t below(std::size_t end) { return std::uniform_int_distribution<std::size_t>(0, end - 1)(_random); }
    std::size_t page(const std::string& bytes) { return below(bytes.size() / kPage) * kPage; }

    void one(std::string& bytes) {
        switch (below(9)) {
            case 0:
                return flip(bytes);
            case 1:  // a page that was never written
                return void(bytes.replace(page(bytes), kPage, kPage, '\0'));
            case 2:  // a page in the place of another
                return void(bytes.replace(page(bytes), kPage, bytes.substr(page(bytes), kPage)));
            case 3:  // a file that was cut
                return bytes.resize(below(bytes.size()));
            case 4:  // a sector of something else
                return noise(bytes, page(bytes) + 512 * below(8), 512);
            case 5:  // a few bytes of something else
                return noise(bytes, below(bytes.size()), 1 + below(16));
            default:  // a number of a page's header, its pointers or its nodes, or of the metas
                return number(bytes, page(bytes) + (below(2) == 0 ? below(160) : below(kPage)));
        }
    }

    void noise(std::string& bytes, std::size_t at, std::size_t count) {
        for (; count != 0 && at < bytes.size(); --count, ++at) bytes[at] = static_cast<char>(below(256));
    }

    void number(std::string& bytes, std::size_t at) {
        static constexpr std::array<std::uint64_t, 12> kNumbers = {
            0, 1, 2, 3, 0x7F, 0xFF, 0x7FFF, 0xFFFF, 0x7FFFFFFF, 0xFFFFFFFF, 1ULL << 44, ~0ULL};
        const std::size_t width = std::size_t{1} << below(4);
        std::uint64_t value = below(2) == 0 ? kNumbers[below(kNumbers.size())] : below(300);
        if (at + width <= bytes.size()) std::memcpy(bytes.data() + at, &value, width);
    }

    std::mt19937_64 _random;
};

}  // namespace lumivard::platform::stores
