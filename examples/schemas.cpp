// Schemas: made, inherited from, and validated against. In memory alone.
// docs/schemas.md tells it step by step.
#include <lumivard/platform/data.h>
#include <lumivard/platform/data/easy.h>
#include <lumivard/platform/stores.h>

#include <iostream>

using namespace lumivard::platform;
using namespace lumivard::platform::data;
using structure::IContainer;
using structure::IContainerFrontEnd;

namespace {

// A schema, made through the interfaces, and what it does for the containers that are made with it.
bool walls() {
    // [define]
    const auto library = stores::memory();
    const auto schemas = IContainerFrontEnd::toplevel(library.get(), L"schemas");

    const auto wall = schemas->create(L"Wall", nullptr);  // the schema: a table, with the URI "schemas.Wall"
    wall->create(L"height", metadata::kDouble, units::kMeter);
    easy::set(*schemas, L"Wall.thickness", 0.2, units::kMeter);  // with a default
    // [define]

    // [inherit]
    const auto locator = metadata::ISchemaLocator::make(library.get());
    const auto schema = locator->resolve(L"schemas.Wall");

    const auto store = stores::memory();
    const auto house = IContainerFrontEnd::toplevel(store.get(), L"house");
    const auto north = house->create(IContainer::kNode, L"north", schema.get());

    easy::set(*north, L"height", 2.8);                               // there already, and hidden: shown from here on
    const auto height = easy::get<double>(*north, L"height");        // 2.8
    const auto thickness = easy::get<double>(*north, L"thickness");  // 0.2, and still hidden
    // [inherit]
    std::cout << north->base().string() << ": height " << *height << ", thickness " << *thickness << '\n';

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
    return says && !same && now;
}

}  // namespace

int main() {
    std::cout << std::boolalpha;
    return walls() ? 0 : 1;
}
