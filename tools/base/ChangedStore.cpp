#include "tools/base/ChangedStore.h"

#include <filesystem>
#include <system_error>

#include "lumivard/platform/stores.h"
#include "tools/base/Files.h"

namespace lvp::tool {

namespace {

bool isThere(const std::string& name) {
    std::error_code error;
    return std::filesystem::exists(name, error);
}

}  // namespace

ChangedStore::ChangedStore(const std::string& name, bool mayMake)
    : _name(name), _isNew(!isThere(name)), _store(mayMake ? openToWrite(name) : openToChange(name)) {}

ChangedStore::~ChangedStore() {
    if (_kept) return;
    lumivard::platform::stores::discard(*_store);
    _store.reset();
    if (!_isNew) return;
    std::error_code error;
    std::filesystem::remove(_name, error);
    std::filesystem::remove(_name + "-lock", error);
}

void ChangedStore::keep() {
    _store->flush();
    _kept = true;
}

}  // namespace lvp::tool
