#include <filesystem>
#include <iostream>

#include "lumivard/platform/stores.h"
#include "tools/Commands.h"
#include "tools/Files.h"

namespace lvp::tool {

namespace stores = lumivard::platform::stores;

tExitStatus compactStore(const std::string& store) {
    openToChange(store).reset();  // what cannot be opened is refused as by every other command
    const auto before = std::filesystem::file_size(store);
    try {
        stores::compact(store);
    } catch (const stores::StoreError& error) {
        throw Failure(kCannotFinish, error.what());
    }
    std::cout << before << " bytes before, " << std::filesystem::file_size(store) << " bytes now\n";
    flushOutput();
    return kDone;
}

}  // namespace lvp::tool
