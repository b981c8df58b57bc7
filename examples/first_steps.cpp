// First steps: a store file, values in it with their units, and the same values when the file is opened again.
// Works in a new folder among the system's temporary files, and removes it. docs/first-steps.md tells it step by step.
#include <lumivard/platform/data.h>
#include <lumivard/platform/data/easy.h>
#include <lumivard/platform/stores.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <iostream>

using namespace lumivard::platform;
using namespace lumivard::platform::data;

namespace {

// [write]
bool write(const std::filesystem::path& file) {
    const auto store = stores::file(file, stores::tMode::kWrite);
    const auto model = easy::make(store.get(), L"model");  // a container at the top of the store
    easy::makeTable(*model, L"sizes");                     // a table in it, since values in tables have units
    const bool done = easy::set(*model, L"title", "Carport") &&
                      easy::set(*model, L"sizes.door", std::array{2.5, 4.0}, units::kMeter) &&
                      easy::set(*model, L"sizes.posts", 6);
    store->flush();  // durable from here on
    return done;
}
// [write]

// [read]
bool read(const std::filesystem::path& file) {
    const auto store = stores::file(file, stores::tMode::kRead);
    const auto title = easy::get<std::string>(store.get(), L"model.title");
    const auto door = easy::get<std::array<double, 2>>(store.get(), L"model.sizes.door");
    const auto windows = easy::get<int>(store.get(), L"model.sizes.windows");  // nothing there: no value
    if (!title || !door || windows) return false;
    std::cout << *title << ": the door is " << (*door)[0] << " by " << (*door)[1] << " metres\n";
    return easy::visit(store.get(), L"", [](const easy::tPrimitive& item, const easy::tAt& at) {
        std::cout << core::string::WideString(std::wstring(at.path).c_str()).string() << ": " << item.dimension
                  << (item.units == units::kMeter ? " elements in metres\n" : " elements\n");
    });
}
// [read]

}  // namespace

// [main]
int main() {
    std::string folder = (std::filesystem::temp_directory_path() / "lvp-first-steps-XXXXXX").string();
    if (!::mkdtemp(folder.data())) return 1;
    const auto file = std::filesystem::path(folder) / "model.lvp";
    const bool done = write(file) && read(file);
    std::filesystem::remove_all(folder);
    return done ? 0 : 1;
}
// [main]
