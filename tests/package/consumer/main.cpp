#include <lumivard/platform/core.h>
#include <lumivard/platform/data.h>
#include <lumivard/platform/stores.h>

#include <iostream>

using namespace lumivard::platform;
using namespace lumivard::platform::data;

// Writes one length into a store file, opens the file again, and reads the length back.
int main(int, char** argv) {
    const double length = 2.5;
    {
        const auto store = stores::file(argv[1], stores::tMode::kWrite);
        const auto model = structure::IContainerFrontEnd::toplevel(store.get(), L"model");
        model->create(L"length", metadata::kDouble)->set(&length, 0, 1);
        store->flush();
    }
    const auto store = stores::open(argv[1], stores::tMode::kRead);
    const auto model = structure::IContainerFrontEnd::find(store.get(), L"model");
    const auto property = model->property(L"length");
    double found = 0;
    metadata::IPrimitive::to(property.get())->get(&found, 0, 1);
    std::cout << property->path().string() << " = " << found << '\n';
    return found == length ? 0 : 1;
}
