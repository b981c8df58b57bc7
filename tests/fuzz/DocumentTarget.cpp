#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

#include "tests/fuzz/RoundTrip.h"
#include "tests/fuzz/Targets.h"

namespace lumivard::platform::fuzz {

using data::structure::IContainer;
using data::structure::IContainerFrontEnd;

namespace {

// What the first byte of the input says.
constexpr unsigned int kWithSchemas = 1;
constexpr unsigned int kIntoContainer = 2;
constexpr unsigned int kInPieces = 4;

/// Schemas for documents of the kind that `examples/data` has, and a few that are odd. None gives a text, since each
/// reading would add to it, and none has a single element, since a struct of that which is written without a text is
/// read as one of zeros: these two do not come back the same.
constexpr const char* kSchemas =
    "<root name='schemas'><table name='Mechanical'><default unit='MegaPascal' type='double'/><name>Mechanical</name>"
    "<double name='Density' units='KilogramPerCubicMeter'>0</double><double name='PoissonRatio'>0</double></table>"
    "<table name='Thermal'><double name='SpecificHeat'>0</double><table name='t'><int8 "
    "name='i'>1</int8></table></table>"
    "<table name='Pose'><double name='position'>0 0 0</double><scalar name='rotation'>0 0 0 1</scalar>"
    "<int64 name='time'>0</int64></table>"
    "<table name='Gripper'><struct name='palm' type='Pose' dim='1'/><struct name='finger' type='Pose' dim='2'/>"
    "<bool name='closed'>0</bool></table>"
    "<table name='Odd'><string name='label'><name>n</name></string><binary name='bytes' dim='3'/><int16 name='number' "
    "dim='2'/></table>"
    "<table name='Empty'/><table name='Own'><struct name='self' type='Own' dim='2'/><int8 name='a' dim='2'/></table>"
    "</root>";

/// Gives what it holds, some of it at a time.
class Reader final : public core::io::IDataReader {
public:
    Reader(const std::uint8_t* data, std::size_t size, std::size_t piece) : _data(data), _left(size), _piece(piece) {}
    bool open() override { return true; }
    void close() override {}
    unsigned long read(void* buffer, unsigned long size) override {
        const std::size_t count = std::min({_left, _piece, static_cast<std::size_t>(size)});
        if (count != 0) std::memcpy(buffer, _data, count);
        _data += count;
        _left -= count;
        return count;
    }

private:
    const std::uint8_t* _data;
    std::size_t _left;
    std::size_t _piece;
};

void readInto(IDataStore* store, core::io::IDataReader& reader, ISchemaLocator* locator) {
    Listener listener;
    IXMLFrontEnd::parse(store, &reader, locator, nullptr, &listener);
    if (!listener.broken.empty())
        require(listener.broken.starts_with("line "), "a document that breaks off says where: " + listener.broken);
}

void readIntoContainer(IDataStore* store, core::io::IDataReader& reader, ISchemaLocator* locator) {
    const auto top = IContainerFrontEnd::toplevel(store, L"top");
    Listener listener;
    try {
        IXMLFrontEnd::parse(top.get(), &reader, locator, nullptr, &listener);
    } catch (const std::runtime_error& error) {
        require(listener.broken == error.what(), "what is thrown was told before");
        return;
    }
    require(listener.broken.empty(), "a document that broke off ends in an exception");
}

/// Whether a store holds so much that to write and read it takes long: few bytes of a document are some megabytes of
/// zeros, where `dim` says so, and each is a number for itself.
bool isLarge(IDataStore& store) {
    std::uint64_t bytes = 0;
    for (unsigned int offset = 0; offset < store.extent(); ++offset) bytes += store.size(offset);
    return bytes > 200'000;
}

}  // namespace

int fuzzDocument(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const unsigned int how = data[0];
    // The stores outlive the locator.
    const auto schemas = stores::memory();
    core::memory::SharedPtr<ISchemaLocator> locator;
    if (how & kWithSchemas) {
        core::io::MemoryReader reader(kSchemas);
        const auto own = ISchemaLocator::make(schemas.get());
        IXMLFrontEnd::parse(schemas.get(), &reader, own.get(), nullptr, nullptr);
        locator = ISchemaLocator::make(schemas.get());
    }
    const auto store = stores::memory();
    Reader reader(data + 1, size - 1, how & kInPieces ? 7 : size);
    if (how & kIntoContainer)
        readIntoContainer(store.get(), reader, locator.get());
    else
        readInto(store.get(), reader, locator.get());
    if (!isLarge(*store)) checkRoundTrip(store.get(), locator.get(), written);
    return 0;
}

}  // namespace lumivard::platform::fuzz
