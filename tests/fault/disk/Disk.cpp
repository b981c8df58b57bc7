#include "tests/fault/disk/Disk.h"

#include <algorithm>
#include <stdexcept>

namespace lumivard::platform::stores::disk {
namespace {

bool happens(std::mt19937_64& random, double chance) {
    return std::generate_canonical<double, 32>(random) < chance;
}

}  // namespace

void Disk::take(const Event& event) {
    switch (event.kind) {
        case Event::tKind::kCreate:
        case Event::tKind::kRename:
        case Event::tKind::kLink:
        case Event::tKind::kUnlink:
            if (event.kind == Event::tKind::kCreate) _files[event.file] = {};
            rename(_names, event);
            _pendingNames.push_back(event);
            return;
        case Event::tKind::kSyncFolder:
            _durableNames = _names;
            _pendingNames.clear();
            return;
        case Event::tKind::kWrite:
            return write(_files.at(event.file), event);
        case Event::tKind::kTruncate:
            _files.at(event.file).cached.resize(event.length);
            return;
        case Event::tKind::kAllocate: {
            std::string& bytes = _files.at(event.file).cached;
            bytes.resize(std::max<std::uint64_t>(bytes.size(), event.length));
            return;
        }
        case Event::tKind::kSync: {
            File& file = _files.at(event.file);
            file.durable = file.cached;
            file.pending.clear();
            return;
        }
        case Event::tKind::kSyncRange: {
            const std::uint64_t end = event.position + event.length;
            for (std::uint64_t sector = event.position / kSector; sector * kSector < end; ++sector) {
                settle(_files.at(event.file), sector);
            }
            return;
        }
        case Event::tKind::kAcknowledged:
            return;
    }
}

void Disk::write(File& file, const Event& event) {
    const std::uint64_t end = event.position + event.bytes.size();
    if (file.cached.size() < end) file.cached.resize(end);
    file.cached.replace(event.position, event.bytes.size(), event.bytes);
    for (std::uint64_t sector = event.position / kSector; sector * kSector < end; ++sector) {
        file.pending[sector].push_back(file.cached.substr(sector * kSector, kSector));
    }
}

void Disk::settle(File& file, std::uint64_t sector) {
    const std::uint64_t at = sector * kSector;
    const std::uint64_t end = std::min<std::uint64_t>(at + kSector, file.cached.size());
    if (file.durable.size() < end) file.durable.resize(end);
    file.durable.replace(at, end - at, file.cached, at, end - at);
    file.pending.erase(sector);
}

void Disk::rename(tNames& names, const Event& event) {
    switch (event.kind) {
        case Event::tKind::kCreate:
            names[event.name] = event.file;
            return;
        case Event::tKind::kLink:
            names[event.other] = names.at(event.name);
            return;
        case Event::tKind::kRename:
            names[event.other] = names.at(event.name);
            names.erase(event.name);
            return;
        case Event::tKind::kUnlink:
            names.erase(event.name);
            return;
        default:
            throw std::logic_error("that does not change names");
    }
}

Disk::Folder Disk::contents() const {
    Folder folder{_names, {}};
    for (const auto& [name, file] : _names) folder.files[file] = _files.at(file).cached;
    return folder;
}

Disk::Folder Disk::afterPowerCut(std::mt19937_64& random, double chance, std::uint64_t unit) const {
    Folder folder{_durableNames, {}};
    for (const Event& event : _pendingNames) {
        if (!happens(random, chance)) break;
        rename(folder.names, event);
    }
    for (const auto& [name, file] : folder.names) {
        if (folder.files.contains(file)) continue;
        folder.files[file] = bytesAfterPowerCut(_files.at(file), random, chance, unit);
    }
    return folder;
}

std::string Disk::bytesAfterPowerCut(const File& file, std::mt19937_64& random, double chance,
                                     std::uint64_t unit) const {
    std::string bytes = file.durable;
    const bool resized = happens(random, chance);
    if (resized) bytes.resize(file.cached.size());
    const std::uint64_t sectors = unit / kSector;
    std::uint64_t decided = UINT64_MAX;  // the unit that the last sector lay in
    bool there = false;
    for (const auto& [sector, versions] : file.pending) {
        if (sector / sectors != decided) there = happens(random, chance);
        decided = sector / sectors;
        if (!there) continue;
        const std::string& version =
            unit == kSector && happens(random, 0.25) ? versions[random() % versions.size()] : versions.back();
        const std::uint64_t end = sector * kSector + version.size();
        if (end > bytes.size()) bytes.resize(end);
        bytes.replace(sector * kSector, version.size(), version);
    }
    if (resized) bytes.resize(file.cached.size());
    return bytes;
}

}  // namespace lumivard::platform::stores::disk
