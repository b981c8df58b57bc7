#include "bench/workloads/Data.h"

#include <utility>

namespace lvp::bench {

namespace {

constexpr std::uint64_t kLookupSeed = 1u << 20;
constexpr std::uint64_t kEditSeed = 2u << 20;
constexpr std::uint64_t kEditValueSeed = 3u << 20;

/// Numbers below a bound, one after the other.
class Random {
public:
    explicit Random(std::uint64_t seed) : _state(seed) {}
    unsigned int below(std::uint64_t bound) {
        return static_cast<unsigned int>((scramble(_state++) >> 32) * bound >> 32);
    }

private:
    std::uint64_t _state;
};

std::vector<Place> places(unsigned int properties, unsigned int count, unsigned int kinds, std::uint64_t seed) {
    Random random(seed);
    std::vector<Place> places(count);
    for (Place& place : places) {
        place.item = random.below(properties / kPropertiesOfItem);
        place.property = random.below(kinds);
    }
    return places;
}

}  // namespace

Path pathOf(Place place) {
    const std::string item = itemName(place.item);
    const std::string_view property = kNames[place.property];
    std::string whole(kTop);
    whole.append(".").append(item).append(".").append(property);
    return {std::move(whole), item, property};
}

std::vector<Path> pathsOf(const std::vector<Place>& places) {
    std::vector<Path> paths;
    paths.reserve(places.size());
    for (const Place place : places) paths.push_back(pathOf(place));
    return paths;
}

std::vector<Place> lookupsIn(unsigned int properties, unsigned int count) {
    return places(properties, count, kPropertiesOfItem, kLookupSeed);
}

std::vector<Place> editsIn(unsigned int properties, unsigned int count) {
    return places(properties, count, kRealsOfItem, kEditSeed);
}

double editOf(unsigned int number) {
    return longReal(scramble(kEditValueSeed + number));
}

std::vector<std::string> childNames(unsigned int count) {
    std::vector<std::string> names;
    names.reserve(count);
    for (unsigned int i = 0; i < count; ++i) names.push_back(itemName(i));
    return names;
}

std::vector<unsigned int> shuffled(unsigned int count, std::uint64_t seed) {
    std::vector<unsigned int> numbers(count);
    for (unsigned int i = 0; i < count; ++i) numbers[i] = i;
    Random random(seed);
    for (unsigned int i = count; i > 1; --i) std::swap(numbers[i - 1], numbers[random.below(i)]);
    return numbers;
}

}  // namespace lvp::bench
