#include <lumivard/platform/core.h>
#include <lumivard/platform/data.h>
#include <lumivard/platform/stores.h>

#include <filesystem>
#include <iostream>

using namespace lumivard::platform;
using namespace lumivard::platform::data;

namespace {

void write() {
    // [tour]
    const auto store = stores::file("model.lvp", stores::tMode::kWrite);
    const auto model = structure::IContainerFrontEnd::toplevel(store.get(), L"model");

    const double size[] = {2.5, 4.0};
    const auto table = model->create(L"sizes", nullptr);                        // a table of properties
    table->create(L"door", metadata::kDouble, units::kMeter)->set(size, 0, 2);  // two values, in metres
    model->describe(L"de-de", L"Modell");                                       // the model's name in German
    store->flush();                                                             // durable from here on
    // [tour]
}

void read() {
    const auto store = stores::file("model.lvp", stores::tMode::kRead);
    const auto model = structure::IContainerFrontEnd::find(store.get(), L"model");
    const auto property = model->property(L"sizes.door");
    auto* door = metadata::IPrimitive::to(property.get());
    double size[2] = {};
    door->get(size, 0, 2);
    std::cout << property->path().string() << ": " << size[0] << " by " << size[1] << " metres\n";
}

}  // namespace

// Writes a small model into the file model.lvp in the current folder, opens it again, and reads a value back.
int main() {
    std::filesystem::remove("model.lvp");  // of an earlier run
    write();
    read();
}
