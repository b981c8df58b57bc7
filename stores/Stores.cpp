#include "lumivard/platform/stores/Stores.h"

#include <map>
#include <mutex>
#include <utility>

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
constexpr char kShortForm[] = "postgres://";  // which is no file, and may hold a password

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

/// What `open` knows of locations.
struct tOpeners {
    std::mutex mutex;
    std::map<std::string, tOpener> byPrefix;
};

// Made when it is first needed: other libraries tell of themselves when they are loaded.
tOpeners& openers() {
    static tOpeners all;
    return all;
}

tOpener openerOf(const std::string& location) {
    tOpeners& all = openers();
    const std::lock_guard lock(all.mutex);
    tOpener found;
    for (const auto& [prefix, opener] : all.byPrefix) {
        if (location.starts_with(prefix)) found = opener;  // longer ones come later
    }
    return found;
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
    if (const tOpener opener = openerOf(location)) return opener(location, mode);
    if (location.starts_with(kShortForm)) {
        throw failure("open", kShortForm, "locations of databases begin with postgresql:// here");
    }
    if (location.starts_with(kDatabase)) {
        // Not the location, which may hold a password.
        throw failure("open", kDatabase, "this program is not linked with lvp_data::stores_postgres");
    }
    return file(location, mode, options);
}

void provide(const std::string& prefix, tOpener opener) {
    tOpeners& all = openers();
    const std::lock_guard lock(all.mutex);
    if (opener) {
        all.byPrefix.insert_or_assign(prefix, std::move(opener));
    } else {
        all.byPrefix.erase(prefix);
    }
}

}  // namespace lumivard::platform::stores
