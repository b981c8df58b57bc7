#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// The data that all programs work on: a tree of N properties, and the places in it that are looked up and changed.
//
// The tree is one top group, `top`, with N / 10 items below it (`item_000000`, ...), each of ten properties:
//
//     prop_0 .. prop_3   a double with a unit
//     prop_4, prop_5     a vector of three doubles
//     prop_6, prop_7     a text of 20 characters
//     prop_8             eight 32-bit integers
//     prop_9             a bool
//
// Values come from one seed and the property's place, so that every program, and every check, makes them for itself in
// any order. Nothing here measures, and nothing keeps a tree.

namespace lvp::bench {

using tVector = std::span<const double, 3>;
using tIntegers = std::span<const std::int32_t, 8>;

/// What a property holds.
enum class tKind : std::uint8_t { kReal = 1, kVector, kText, kIntegers, kFlag };

constexpr unsigned int kPropertiesOfItem = 10;
constexpr unsigned int kRealsOfItem = 4;
constexpr unsigned int kTextLength = 20;
constexpr unsigned int kItemNameLength = 11;
constexpr std::string_view kTop = "top";

/// The names of an item's properties, and the units of its first four; the others have none.
constexpr std::array<std::string_view, kPropertiesOfItem> kNames{"prop_0", "prop_1", "prop_2", "prop_3", "prop_4",
                                                                 "prop_5", "prop_6", "prop_7", "prop_8", "prop_9"};
constexpr std::array<std::string_view, kRealsOfItem> kUnits{"KilogramPerCubicMeter", "Meter", "Newton",
                                                            "DegreeCelsius"};

/// Where a property stands in the tree.
struct Place {
    unsigned int item;
    unsigned int property;
};

constexpr tKind kindOf(unsigned int property) {
    if (property < 4) return tKind::kReal;
    if (property < 6) return tKind::kVector;
    if (property < 8) return tKind::kText;
    return property == 8 ? tKind::kIntegers : tKind::kFlag;
}

/// Empty where there is none, with a zero behind it like the others.
constexpr std::string_view unitOf(unsigned int property) {
    return property < kRealsOfItem ? kUnits[property] : "";
}

/// The finalizer of SplitMix64: 64 bits that look random, out of any that differ.
constexpr std::uint64_t scramble(std::uint64_t bits) {
    bits = (bits + 0x9E3779B97F4A7C15ull);
    bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9ull;
    bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBull;
    return bits ^ (bits >> 31);
}

/// The random bits of one component of a value.
constexpr std::uint64_t draw(Place place, unsigned int component) {
    constexpr std::uint64_t kSeed = 0x6C76702D62656E63ull;
    return scramble(kSeed + (std::uint64_t{place.item} * kPropertiesOfItem + place.property) * 8 + component);
}

/// Half of the reals are such as people type in, three decimals and seven digits at most; half use all 53 bits.
constexpr double shortReal(std::uint64_t bits) {
    return static_cast<double>(static_cast<std::int64_t>(bits % 2'000'001) - 1'000'000) / 1000.0;
}
constexpr double longReal(std::uint64_t bits) {
    return static_cast<double>(bits >> 11) * 0x1p-53 * 1000.0;
}

/// Gives the property at `place` to a sink, by the one of its members that takes what the property holds: `real`,
/// `vector`, `text`, `integers` or `flag`, each with name, unit and value. What writes a tree, sums one up or turns it
/// into text is such a sink.
template <class Sink>
void give(Place place, Sink& sink) {
    const std::string_view name = kNames[place.property];
    const std::string_view unit = unitOf(place.property);
    switch (kindOf(place.property)) {
        case tKind::kReal: {
            const std::uint64_t bits = draw(place, 0);
            sink.real(name, unit, place.property < 2 ? shortReal(bits) : longReal(bits));
            return;
        }
        case tKind::kVector: {
            std::array<double, 3> value;
            for (unsigned int i = 0; i < value.size(); ++i) {
                value[i] = place.property == 4 ? shortReal(draw(place, i)) : longReal(draw(place, i));
            }
            sink.vector(name, unit, tVector(value));
            return;
        }
        case tKind::kText: {
            constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz012345";
            std::array<char, kTextLength> value;
            std::uint64_t first = draw(place, 0);
            std::uint64_t second = draw(place, 1);
            for (unsigned int i = 0; i < kTextLength / 2; ++i, first >>= 5, second >>= 5) {
                value[i] = kLetters[first & 31];
                value[kTextLength / 2 + i] = kLetters[second & 31];
            }
            sink.text(name, unit, std::string_view(value.data(), value.size()));
            return;
        }
        case tKind::kIntegers: {
            std::array<std::int32_t, 8> value;
            for (unsigned int i = 0; i < value.size(); i += 2) {
                const std::uint64_t bits = draw(place, i);
                value[i] = static_cast<std::int32_t>(bits % 200'001) - 100'000;
                value[i + 1] = static_cast<std::int32_t>((bits >> 32) % 1000);
            }
            sink.integers(name, unit, tIntegers(value));
            return;
        }
        case tKind::kFlag:
            sink.flag(name, unit, (draw(place, 0) >> 40 & 1) != 0);
    }
}

/// Gives all properties of an item, in their order.
template <class Sink>
void giveItem(unsigned int item, Sink& sink) {
    for (unsigned int property = 0; property < kPropertiesOfItem; ++property) give({item, property}, sink);
}

/// `item_000123`; with seven digits from a million on.
inline std::string itemName(unsigned int item) {
    char name[24];
    const int length = std::snprintf(name, sizeof(name), "item_%06u", item);
    return {name, static_cast<std::size_t>(length)};
}

/// The path of a property, `top.item_000123.prop_3`, and the two names in it that differ.
struct Path {
    std::string whole;
    std::string item;
    std::string_view property;
};
Path pathOf(Place place);
std::vector<Path> pathsOf(const std::vector<Place>& places);

/// The places that are looked up: `count` random ones in a tree of `properties`.
std::vector<Place> lookupsIn(unsigned int properties, unsigned int count);

/// The places that are overwritten, all of them doubles, some more than once; and what the edit of a number writes.
std::vector<Place> editsIn(unsigned int properties, unsigned int count);
double editOf(unsigned int number);

/// The names of `count` children of one wide set, and the numbers from 0 to `count` in a random order.
std::vector<std::string> childNames(unsigned int count);
std::vector<unsigned int> shuffled(unsigned int count, std::uint64_t seed);

}  // namespace lvp::bench
