// Links to other places, and copies within a store and between two: of a file in a new folder among the system's
// temporary files, which is removed, and of one in memory.
#include <lumivard/platform/core.h>
#include <lumivard/platform/data.h>
#include <lumivard/platform/data/easy.h>
#include <lumivard/platform/stores.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>

using namespace lumivard::platform;
using namespace lumivard::platform::data;

namespace {

void make() {
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

/// A way in that leads to the north wing, which stands once more beside it.
bool link(structure::IContainer& model) {
    // [link]
    easy::set(*easy::make(model, L"wings.north"), L"floors", 3);
    const auto entrance = model.create(structure::IContainer::kLink, L"entrance", nullptr);
    auto* const way = structure::ILink::to(entrance.get());
    way->target(L"model.wings.north");                   // by its path from the top, whether anything is there or not
    const auto wing = way->follow(nullptr);              // a container in this store; null when nothing is there
    model.clone(L"wings.north", L"wings.south", false);  // a copy, with all that it holds
    easy::set(wing, L"floors", 4);                       // which does not reach the copy
    // [link]
    std::cout << "north " << easy::get<int>(model, L"wings.north.floors").value_or(0) << ", south "
              << easy::get<int>(model, L"wings.south.floors").value_or(0) << " floors\n";
    const bool refused = !model.container(L"wings")->destroy(L"north");
    std::cout << (refused ? "what is open stays\n" : "what is open is gone\n");
    return wing && refused;
}

/// The wings, once more in another store, where the same link leads to the copy.
bool keep(structure::IContainer& model) {
    // [copy]
    const auto archive = stores::memory();
    const auto kept = easy::make(archive.get(), L"model");
    const bool copied = kept->clone(model.container(L"wings"));  // false where the name is taken there
    const auto entrance = model.container(L"entrance");
    const auto there = structure::ILink::to(entrance.get())->follow(archive.get());
    // [copy]
    if (!copied || !there) return false;
    std::cout << "kept " << there->path().string() << ": " << easy::get<int>(there, L"floors").value_or(0)
              << " floors\n";
    return true;
}

}  // namespace

int main() {
    std::string folder = (std::filesystem::temp_directory_path() / "lvp-links-XXXXXX").string();
    if (!::mkdtemp(folder.data())) return 1;
    std::filesystem::current_path(folder);
    make();
    const auto store = stores::file("model.lvp", stores::tMode::kWrite);
    const auto model = structure::IContainerFrontEnd::find(store.get(), L"model");
    const bool done = link(*model) && keep(*model) && easy::get<std::vector<double>>(model, L"sizes.door");
    std::filesystem::current_path("/");
    std::filesystem::remove_all(folder);
    return done ? 0 : 1;
}
