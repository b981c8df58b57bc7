#include "stores/lmdb/Examination.h"

#include "stores/lmdb/Verification.h"

namespace lumivard::platform::stores {

FileReport verifyStoreFile(const std::filesystem::path& path, bool values, LmdbEngine::Settings settings) {
    const tProgress progress = settings.progress;
    settings.verify = false;
    try {
        return LmdbEngine(realPath(path), tMode::kRead, settings).verify(values, progress);
    } catch (const lmdb::UnsoundFile& unsound) {
        return unsound.report();  // of what has to be sound before the file can be read at all
    }
}

}  // namespace lumivard::platform::stores
