#include "bench/workloads/Checksum.h"

#include <stdexcept>
#include <unordered_map>

#include "bench/workloads/Document.h"

namespace lvp::bench {

namespace {

unsigned int numberOf(Place place) {
    return place.item * kPropertiesOfItem + place.property;
}

/// Passes on what a document keeps of a property.
class Documented {
public:
    explicit Documented(Checksum& sum) : _sum(sum) {}

    void real(std::string_view name, std::string_view unit, double value) {
        _sum.real(name, unit, documentedReal(value));
    }
    void vector(std::string_view name, std::string_view unit, tVector value) {
        const double kept[] = {documentedReal(value[0]), documentedReal(value[1]), documentedReal(value[2])};
        _sum.vector(name, unit, kept);
    }
    void text(std::string_view name, std::string_view unit, std::string_view value) { _sum.text(name, unit, value); }
    void integers(std::string_view name, std::string_view unit, tIntegers value) { _sum.integers(name, unit, value); }
    void flag(std::string_view name, std::string_view unit, bool value) { _sum.flag(name, unit, value); }

private:
    Checksum& _sum;
};

}  // namespace

Checksum checksumOfTree(unsigned int properties) {
    Checksum sum;
    for (unsigned int item = 0; item < properties / kPropertiesOfItem; ++item) giveItem(item, sum);
    return sum;
}

Checksum checksumOfPlaces(const std::vector<Place>& places, std::size_t count) {
    Checksum sum;
    for (std::size_t i = 0; i < count; ++i) give(places[i], sum);
    return sum;
}

Checksum checksumAfterEdits(unsigned int properties, const std::vector<Place>& edits, std::size_t count) {
    std::unordered_map<unsigned int, double> edited;
    for (std::size_t i = 0; i < count; ++i) edited[numberOf(edits[i])] = editOf(static_cast<unsigned int>(i));
    Checksum sum;
    for (unsigned int item = 0; item < properties / kPropertiesOfItem; ++item) {
        for (unsigned int property = 0; property < kPropertiesOfItem; ++property) {
            const auto edit = edited.find(numberOf({item, property}));
            if (edit == edited.end()) {
                give({item, property}, sum);
            } else {
                sum.real(kNames[property], unitOf(property), edit->second);
            }
        }
    }
    return sum;
}

Checksum checksumOfDocument(unsigned int properties) {
    Checksum sum;
    Documented documented(sum);
    for (unsigned int item = 0; item < properties / kPropertiesOfItem; ++item) giveItem(item, documented);
    return sum;
}

void verify(const Checksum& read, const Checksum& expected) {
    if (read != expected) throw std::runtime_error("what was read is not what was written");
}

}  // namespace lvp::bench
