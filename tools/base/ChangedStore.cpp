#include "tools/base/ChangedStore.h"

#include <filesystem>
#include <system_error>

#include "lumivard/platform/stores.h"
#include "tools/base/Files.h"

namespace lvp::tool {

ChangedStore::ChangedStore(const std::string& name, bool mayMake)
    : _name(name), _isNew(!isThere(name)), _store(mayMake ? openToWrite(name) : openToChange(name)) {
    // Somebody else may have made it in between, and filled it. From here on nobody else does.
    if (_store->extent() != 0) _isNew = false;
}

ChangedStore::~ChangedStore() {
    if (_kept) return;
    lumivard::platform::stores::discard(*_store);
    if (!_isNew) return;
    // While it is held: what has these names afterwards may be somebody else's.
    std::error_code error;
    std::filesystem::remove(_name, error);
    std::filesystem::remove(_name + "-lock", error);
}

// What is done in a database is stored when the guard is given back, which cannot throw: that it was not is told by the
// flush behind it.
void ChangedStore::keep() {
    _store.letGo();
    _store->flush();
    _kept = true;
}

}  // namespace lvp::tool
