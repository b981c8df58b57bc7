#include <lumivard/platform/core.h>
#include <lumivard/platform/data.h>
#include <lumivard/platform/stores.h>

#include <array>
#include <cstring>
#include <iostream>

using namespace lumivard::platform;
using namespace lumivard::platform::data;
using structure::IContainer;
using structure::IContainerFrontEnd;

namespace {

// A schema, made through the interfaces, and what it does for the containers that are made with it.
void walls() {
    // [define]
    const auto library = stores::memory();
    const auto schemas = IContainerFrontEnd::toplevel(library.get(), L"schemas");

    const auto wall = schemas->create(L"Wall", nullptr);  // the schema: a table, with the URI "schemas.Wall"
    const double thickness = 0.2;
    wall->create(L"height", metadata::kDouble, units::kMeter);
    wall->create(L"thickness", metadata::kDouble, units::kMeter)->set(&thickness, 0, 1);  // with a default
    // [define]

    // [inherit]
    const auto locator = metadata::ISchemaLocator::make(library.get());
    const auto schema = locator->resolve(L"schemas.Wall");

    const auto store = stores::memory();
    const auto house = IContainerFrontEnd::toplevel(store.get(), L"house");
    const auto north = house->create(IContainer::kNode, L"north", schema.get());

    const double height = 2.8;
    const auto property = north->property(L"height");              // there already, and hidden
    metadata::IPrimitive::to(property.get())->set(&height, 0, 1);  // shown from here on
    const auto other = north->property(L"thickness");              // still hidden, and readable:
    double usual = 0;
    metadata::IPrimitive::to(other.get())->get(&usual, 0, 1);  // 0.2
    // [inherit]
    std::cout << north->base().string() << ": height " << height << ", thickness " << usual << '\n';

    // [validate]
    const bool says = north->validates(schema.get(), true);  // true: its base names the schema
    const auto fence = house->create(IContainer::kNode, L"fence", nullptr);
    fence->create(L"height", metadata::kDouble);
    fence->create(L"colour", metadata::kString);
    const bool same = fence->validates(schema.get(), false);  // false: it has no thickness
    fence->create(L"thickness", metadata::kDouble);
    const bool now = fence->validates(schema.get(), false);  // true: all there, in the schema's order
    // [validate]
    std::cout << "north says so: " << says << ", fence: " << same << ", then " << now << '\n';
}

// Structs: a schema as the layout of packed values, read from a document.
void poses(const char* schemaFile, const char* file) {
    // [layout]
    const auto library = stores::memory();
    const auto locator = metadata::ISchemaLocator::make(library.get());
    core::io::FileReader schemaReader(schemaFile);
    format::xml::IXMLFrontEnd::parse(library.get(), &schemaReader, locator.get(), nullptr, nullptr);

    const auto store = stores::memory();
    core::io::FileReader reader(file);
    format::xml::IXMLFrontEnd::parse(store.get(), &reader, locator.get(), nullptr, nullptr);

    const auto path = IContainerFrontEnd::find(store.get(), L"arm")->property(L"path");
    auto* value = metadata::IPrimitive::to(path.get());
    std::vector<char> bytes(value->bytes());
    value->get(bytes.data(), 0, value->dimension());

    const auto pose = locator->resolve(value->schema());
    auto& layout = *pose->layout();
    const auto* position = layout.get(L"position");  // of doubles: dim 3, offset 0, size 24
    for (std::size_t block = 0; block < bytes.size(); block += layout.stride()) {
        std::array<double, 3> at;
        std::memcpy(at.data(), bytes.data() + block + position->offset, position->size);
        std::cout << at[0] << ' ' << at[1] << ' ' << at[2] << '\n';  // one line for each pose
    }
    // [layout]
}

}  // namespace

// Shows what schemas do: `schemas SCHEMAS DOCUMENT`, with motion-schemas.xml and motion.xml.
int main(int argc, char** argv) {
    std::cout << std::boolalpha;
    walls();
    if (argc == 3) poses(argv[1], argv[2]);
}
