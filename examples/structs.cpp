// Schemas as the layout of packed structs, which a document brings along. In memory alone. docs/schemas.md tells it
// step by step.
#include <lumivard/platform/core.h>
#include <lumivard/platform/data.h>
#include <lumivard/platform/data/easy.h>
#include <lumivard/platform/stores.h>

#include <array>
#include <cstring>
#include <iostream>
#include <vector>

using namespace lumivard::platform;
using namespace lumivard::platform::data;

namespace {

const char* const kPoses = R"(<root name="schemas"><table name="Pose">
  <double name="position" units="Meter">0 0 0</double><scalar name="rotation">0 0 0 1</scalar><int64 name="time">0</int64>
</table></root>)";
const char* const kArm = R"(<root name="robot"><group name="arm">
  <struct name="path" type="Pose">0 0 0.5  0 0 0 1  0   0.25 0 0.5  0 0 1 0  400</struct>
</group></root>)";

// Structs: a schema as the layout of packed values, read from a document.
bool poses() {
    // [layout]
    const auto library = stores::memory();
    const auto locator = metadata::ISchemaLocator::make(library.get());
    core::io::MemoryReader schemas(kPoses);
    format::xml::IXMLFrontEnd::parse(library.get(), &schemas, locator.get(), nullptr, nullptr);

    const auto store = stores::memory();
    core::io::MemoryReader arm(kArm);
    format::xml::IXMLFrontEnd::parse(store.get(), &arm, locator.get(), nullptr, nullptr);

    const auto bytes = easy::get<std::vector<std::byte>>(store.get(), L"arm.path").value();
    const auto pose = locator->resolve(L"Pose");
    auto& layout = *pose->layout();
    const auto* position = layout.get(L"position");  // of doubles: dim 3, offset 0, size 24
    for (std::size_t block = 0; block < bytes.size(); block += layout.stride()) {
        std::array<double, 3> at;
        std::memcpy(at.data(), bytes.data() + block + position->offset, position->size);
        std::cout << at[0] << ' ' << at[1] << ' ' << at[2] << '\n';  // one line for each pose
    }
    // [layout]
    return bytes.size() == 96;
}

}  // namespace

int main() {
    return poses() ? 0 : 1;
}
