#include "stores/lmdb/Examination.h"

#include "stores/lmdb/Verification.h"

namespace lumivard::platform::stores {
namespace {

// What a file says that cannot be mapped, or nothing for one that can: a writer may then go on while it is examined.
std::optional<FileReport> examineUnmapped(const std::filesystem::path& path, bool values,
                                          const LmdbEngine::Settings& settings) {
    const FileHandle file(path, tMode::kRead, settings.fileSystem);
    FileReport report = lmdb::verifyHeader(file.descriptor());
    if (report.faultCount != 0) return report;
    if (!lmdb::isShort(report)) return std::nullopt;
    report = lmdb::verifyNewest(file.descriptor(), values);
    return report.faultCount != 0 ? std::optional(report) : std::nullopt;
}

}  // namespace

FileReport verifyStoreFile(const std::filesystem::path& path, bool values, LmdbEngine::Settings settings) {
    const std::filesystem::path real = realPath(path);
    if (const auto report = examineUnmapped(real, values, settings)) return *report;
    settings.verify = false;
    return LmdbEngine(real, tMode::kRead, settings).verify(values);
}

}  // namespace lumivard::platform::stores
