#pragma once

#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "bench/workloads/Data.h"

namespace lvp::bench {

/// A sum over properties, each by its name, kind, unit and value, in whatever order they come. A sink (see `give`).
///
/// Every program takes it of what it has read and compares: a wrong or missing property is noticed, one that stands
/// under another item than it should is not.
class Checksum {
public:
    void real(std::string_view name, std::string_view unit, double value) {
        add(head(name, tKind::kReal, unit), bits(value));
    }
    void vector(std::string_view name, std::string_view unit, tVector value) {
        add(head(name, tKind::kVector, unit), bits(value[0]) + 3 * bits(value[1]) + 7 * bits(value[2]));
    }
    void text(std::string_view name, std::string_view unit, std::string_view value) {
        add(head(name, tKind::kText, unit), bytes(value.data(), value.size()));
    }
    void integers(std::string_view name, std::string_view unit, tIntegers value) {
        add(head(name, tKind::kIntegers, unit), bytes(reinterpret_cast<const char*>(value.data()), value.size_bytes()));
    }
    void flag(std::string_view name, std::string_view unit, bool value) {
        add(head(name, tKind::kFlag, unit), value ? 1 : 0);
    }

    bool operator==(const Checksum&) const = default;

private:
    static std::uint64_t mix(std::uint64_t word) {
        word *= 0x9E3779B97F4A7C15ull;
        return word ^ (word >> 31);
    }

    static std::uint64_t bits(double value) {
        std::uint64_t word;
        std::memcpy(&word, &value, sizeof(word));
        return word;
    }

    static std::uint64_t bytes(const char* data, std::size_t size) {
        std::uint64_t sum = size;
        for (; size >= sizeof(sum); data += sizeof(sum), size -= sizeof(sum)) {
            std::uint64_t word;
            std::memcpy(&word, data, sizeof(word));
            sum = mix(sum ^ word);
        }
        std::uint64_t rest = 0;
        if (size != 0) std::memcpy(&rest, data, size);
        return mix(sum ^ rest);
    }

    static std::uint64_t head(std::string_view name, tKind kind, std::string_view unit) {
        return bytes(name.data(), name.size()) + 3 * bytes(unit.data(), unit.size()) + static_cast<std::uint64_t>(kind);
    }

    void add(std::uint64_t head, std::uint64_t value) {
        _sum += mix(mix(head) ^ value);
        ++_count;
    }

    std::uint64_t _sum = 0;
    std::uint64_t _count = 0;
};

/// What reading a tree has to give: the whole of it; the first `count` of some places; and the whole after the first
/// `count` of some edits.
Checksum checksumOfTree(unsigned int properties);
Checksum checksumOfPlaces(const std::vector<Place>& places, std::size_t count);
Checksum checksumAfterEdits(unsigned int properties, const std::vector<Place>& edits, std::size_t count);

/// What reading a document of a tree has to give: there, reals have seven digits.
Checksum checksumOfDocument(unsigned int properties);

/// Throws where a sum is not what it has to be.
void verify(const Checksum& read, const Checksum& expected);

}  // namespace lvp::bench
