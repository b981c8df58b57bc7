#include "bench/workloads/OursTree.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "lumivard/platform/stores.h"

namespace lvp::bench {

namespace stores = lumivard::platform::stores;
namespace units = data::units;
using data::metadata::IPrimitive;
using data::metadata::ITable;
using data::structure::IContainer;
using data::structure::IContainerFrontEnd;
using data::structure::IVisitor;

namespace {

constexpr const wchar_t* kWideTop = L"top";
constexpr std::array<units::tUnit, kRealsOfItem> kOurUnits{units::kKilogramPerCubicMeter, units::kMeter, units::kNewton,
                                                           units::kDegreeCelsius};

/// A path from the top group on.
const wchar_t* belowTop(const std::wstring& path) {
    return path.c_str() + std::char_traits<wchar_t>::length(kWideTop) + 1;
}

/// The texts of the benchmark are ASCII.
std::wstring widened(std::string_view text) {
    return {text.begin(), text.end()};
}

/// A text as characters of one byte, as the checksum takes it.
class Narrow {
public:
    explicit Narrow(std::wstring_view text) : _length(std::min(text.size(), _text.size())) {
        for (std::size_t i = 0; i < _length; ++i) _text[i] = static_cast<char>(text[i]);
    }
    std::string_view view() const { return {_text.data(), _length}; }

private:
    std::array<char, 64> _text;
    std::size_t _length = 0;
};

units::tUnit ourUnit(std::string_view name) {
    for (unsigned int i = 0; i < kRealsOfItem; ++i) {
        if (name == kUnits[i]) return kOurUnits[i];
    }
    return units::kNoUnit;
}

std::string_view nameOfUnit(units::tUnit unit) {
    for (unsigned int i = 0; i < kRealsOfItem; ++i) {
        if (unit == kOurUnits[i]) return kUnits[i];
    }
    require(unit == units::kNoUnit, "a property has a unit that was never given");
    return {};
}

/// Takes in all that a primitive is: an open one, or one that a visitor is shown.
template <class Primitive>
void takeIn(Primitive& primitive, std::wstring_view tag, data::metadata::tValue kind, units::tUnit ofValue,
            unsigned int elements, Checksum& sum) {
    const Narrow name(tag);
    const std::string_view unit = nameOfUnit(ofValue);
    bool got = false;
    switch (kind) {
        case data::metadata::kDouble: {
            double value = 0;
            got = elements == 1 && primitive.get(&value, 0, 1);
            sum.real(name.view(), unit, value);
            break;
        }
        case data::metadata::kVec3: {
            std::array<double, 3> value{};
            got = elements == value.size() && primitive.get(value.data(), 0, elements);
            sum.vector(name.view(), unit, tVector(value));
            break;
        }
        case data::metadata::kString: {
            std::array<wchar_t, kTextLength + 1> value{};
            got = elements == value.size() && primitive.get(value.data(), 0, elements);
            sum.text(name.view(), unit, Narrow({value.data(), kTextLength}).view());
            break;
        }
        case data::metadata::kInt32: {
            std::array<std::int32_t, 8> value{};
            got = elements == value.size() && primitive.get(value.data(), 0, elements);
            sum.integers(name.view(), unit, tIntegers(value));
            break;
        }
        case data::metadata::kBool: {
            bool value = false;
            got = elements == 1 && primitive.get(&value, 0, 1);
            sum.flag(name.view(), unit, value);
            break;
        }
        default:
            break;
    }
    require(got, "a property has no value of its kind");
}

/// Takes in all primitives that it is shown.
class Reading final : public IVisitor {
public:
    explicit Reading(Checksum& sum) : _sum(sum) {}

    void primitive(const tPrimitive& item) override {
        takeIn(item, item.name, item.valuetype, item.units, item.dimension, _sum);
        ++_seen;
    }
    unsigned int seen() const { return _seen; }

private:
    Checksum& _sum;
    unsigned int _seen = 0;
};

void readPrimitive(IPrimitive& primitive, Checksum& sum) {
    const data::WideString tag = primitive.container()->tag();
    takeIn(primitive, static_cast<const wchar_t*>(tag), primitive.valuetype(), primitive.units(), primitive.dimension(),
           sum);
}

}  // namespace

OursTree::tPath OursTree::pathOf(Place place) {
    return std::wstring(kWideTop) + L"." + widened(itemName(place.item)) + L"." + widened(kNames[place.property]);
}

OursTree::tName OursTree::nameOf(unsigned int number) {
    return widened(itemName(number));
}

void OursTree::begin(std::unique_ptr<data::IDataStore> store, tAccess access) {
    _store = std::move(store);
    _guard.reset(_store->lock());
    if (access == tAccess::kRead) return;
    _top = IContainerFrontEnd::toplevel(_store.get(), kWideTop);
    require(static_cast<bool>(_top), "the store has no top");
}

void OursTree::index() {
    require(static_cast<bool>(IContainerFrontEnd::find(_store.get(), kWideTop)), "the store has no top");
}

void OursTree::item(const std::string& name) {
    _item = _top->create(widened(name).c_str(), nullptr);
    require(static_cast<bool>(_item), "an item was not made");
}

void OursTree::real(std::string_view name, std::string_view unit, double value) {
    add(name, data::metadata::kDouble, unit, &value, 1);
}

void OursTree::vector(std::string_view name, std::string_view unit, tVector value) {
    add(name, data::metadata::kVec3, unit, value.data(), static_cast<unsigned int>(value.size()));
}

void OursTree::text(std::string_view name, std::string_view unit, std::string_view value) {
    std::array<wchar_t, kTextLength + 1> wide{};
    for (std::size_t i = 0; i < kTextLength; ++i) wide[i] = value[i];
    add(name, data::metadata::kString, unit, wide.data(), kTextLength + 1);
}

void OursTree::integers(std::string_view name, std::string_view unit, tIntegers value) {
    add(name, data::metadata::kInt32, unit, value.data(), static_cast<unsigned int>(value.size()));
}

void OursTree::flag(std::string_view name, std::string_view unit, bool value) {
    add(name, data::metadata::kBool, unit, &value, 1);
}

void OursTree::add(std::string_view name, data::metadata::tValue kind, std::string_view unit, const void* value,
                   unsigned int elements) {
    const auto primitive = _item->create(widened(name).c_str(), kind, ourUnit(unit));
    require(primitive && primitive->set(value, 0, elements), "a property was not made");
}

void OursTree::child(const tName& name) {
    require(static_cast<bool>(_top->create(IContainer::kGroup, name.c_str(), nullptr)), "a child was not made");
}

void OursTree::close() {
    _item.reset();
    _top.reset();
    _guard.reset();
    _store.reset();
}

void OursTree::readTree(Checksum& sum) {
    Reading reading(sum);
    IVisitor::visit(_store.get(), {}, reading);
}

void OursTree::read(const tPath& path, Checksum& sum) {
    Reading reading(sum);
    IVisitor::visit(_store.get(), path, reading);
    require(reading.seen() == 1, "a property was not found");
}

void OursObjects::readTree(Checksum& sum) {
    const auto top = IContainerFrontEnd::find(&store(), kWideTop);
    const auto items = top->properties();
    do {
        const auto item = items->current();
        ITable* const table = ITable::to(item.get());
        if (!table) continue;
        const unsigned int count = table->items();
        for (unsigned int i = 0; i < count; ++i) {
            const auto property = table->at(i);
            if (auto* primitive = IPrimitive::to(property.get())) readPrimitive(*primitive, sum);
        }
    } while (items->next());
}

void OursObjects::read(const tPath& path, Checksum& sum) {
    const auto group = IContainerFrontEnd::find(&store(), kWideTop);
    require(static_cast<bool>(group), "the top was not found");
    const auto property = group->property(belowTop(path));
    auto* const primitive = IPrimitive::to(property.get());
    require(primitive, "a property was not found");
    readPrimitive(*primitive, sum);
}

void OursTree::overwrite(const tPath& path, double value) {
    const auto property = _top->property(belowTop(path));
    auto* const primitive = IPrimitive::to(property.get());
    require(primitive && primitive->set(&value, 0, 1), "a property was not overwritten");
}

bool OursTree::find(const tName& name) {
    return static_cast<bool>(_top->container(name.c_str()));
}

std::size_t OursTree::walk() {
    std::size_t length = 0;
    const auto children = _top->containers();
    do {
        if (const auto child = children->current()) length += child->tag().length();
    } while (children->next());
    return length;
}

std::vector<std::filesystem::path> OursFile::files(const std::filesystem::path& file) {
    return {file, file.string() + "-lock"};
}

void OursFile::open(const std::filesystem::path& file, tAccess access) {
    const bool writes = access == tAccess::kWrite;
    begin(stores::file(file, writes ? stores::tMode::kWrite : stores::tMode::kRead), access);
}

void OursMemory::create(const std::filesystem::path&) {
    begin(stores::memory(), tAccess::kWrite);
}

void OursMemory::parse(lumivard::platform::core::io::IDataReader& reader,
                       data::format::xml::IXMLFrontEnd::IErrorReporter& reporter) {
    auto store = stores::memory();
    data::format::xml::IXMLFrontEnd::parse(store.get(), &reader, nullptr, nullptr, &reporter);
    begin(std::move(store), tAccess::kRead);
}

}  // namespace lvp::bench
