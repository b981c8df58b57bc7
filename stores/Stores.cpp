#include "lumivard/platform/stores/Stores.h"

#include <algorithm>

#include "stores/core/Core.h"
#include "stores/core/Failure.h"
#include "stores/engine/EngineError.h"
#include "stores/lmdb/LmdbEngine.h"

namespace lumivard::platform::stores {
namespace {

constexpr char kMemory[] = "memory:";
constexpr char kDatabase[] = "postgresql://";

// The location of a database without what may be a user's name and password.
std::string withoutSecrets(std::string location) {
    const std::size_t at = location.rfind('@');
    if (at != std::string::npos) location.erase(sizeof kDatabase - 1, at + 1 - (sizeof kDatabase - 1));
    location.resize(std::min(location.size(), location.find('?')));
    return location;
}

}  // namespace

std::unique_ptr<IDataStore> memory() {
    return std::make_unique<Core>(kMemory, nullptr, tMode::kWrite);
}

std::unique_ptr<IDataStore> file(const std::filesystem::path& path, tMode mode) {
    try {
        auto engine = std::make_unique<LmdbEngine>(path, mode, LmdbEngine::Settings{});
        return std::make_unique<Core>(path.string(), std::move(engine), mode);
    } catch (const EngineError& error) {
        throw failure("open", path.string(), error.what());
    }
}

std::unique_ptr<IDataStore> open(const std::string& location, tMode mode) {
    if (location == kMemory) return memory();
    if (location.starts_with(kDatabase)) {
        throw failure("open", withoutSecrets(location), "this version has no stores in databases");
    }
    return file(location, mode);
}

}  // namespace lumivard::platform::stores
