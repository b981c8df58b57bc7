#include "lumivard/platform/stores/Stores.h"

#include <algorithm>

#include "stores/core/Core.h"
#include "stores/core/Failure.h"
#include "stores/engine/EngineError.h"
#include "stores/lmdb/Compaction.h"
#include "stores/lmdb/Examination.h"
#include "stores/lmdb/LmdbEngine.h"

namespace lumivard::platform::stores {
namespace {

namespace fs = std::filesystem;

constexpr long kNoFileSystem = 0;  // what statfs says of none that is refused
constexpr char kMemory[] = "memory:";
constexpr char kDatabase[] = "postgresql://";

LmdbEngine::Settings settingsOf(const FileOptions& options) {
    LmdbEngine::Settings settings;
    settings.verify = options.verify;
    settings.progress = options.progress;
    if (options.network) settings.fileSystem = kNoFileSystem;
    return settings;
}

// Does something with a file, and puts the reason of its failure into a sentence.
template <class Work>
auto attempt(const char* what, const fs::path& path, Work work) {
    try {
        return work();
    } catch (const EngineError& error) {
        throw failure(what, path.string(), error.what());
    }
}

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

std::unique_ptr<IDataStore> file(const fs::path& path, tMode mode) {
    return file(path, mode, {});
}

std::unique_ptr<IDataStore> file(const fs::path& path, tMode mode, const FileOptions& options) {
    return attempt("open", path, [&]() -> std::unique_ptr<IDataStore> {
        auto engine = std::make_unique<LmdbEngine>(path, mode, settingsOf(options));
        return std::make_unique<Core>(path.string(), std::move(engine), mode);
    });
}

bool discard(IDataStore& store) {
    Core* const core = dynamic_cast<Core*>(&store);
    if (core) core->discard();
    return core != nullptr;
}

FileReport verify(const fs::path& path, bool values, const FileOptions& options) {
    return attempt("examine", path, [&] { return verifyStoreFile(path, values, settingsOf(options)); });
}

void compact(const fs::path& path, const FileOptions& options) {
    attempt("compact", path, [&] { compactStoreFile(path, settingsOf(options)); });
}

std::unique_ptr<IDataStore> open(const std::string& location, tMode mode) {
    return open(location, mode, {});
}

std::unique_ptr<IDataStore> open(const std::string& location, tMode mode, const FileOptions& options) {
    if (location == kMemory) return memory();
    if (location.starts_with(kDatabase)) {
        throw failure("open", withoutSecrets(location), "this version has no stores in databases");
    }
    return file(location, mode, options);
}

}  // namespace lumivard::platform::stores
