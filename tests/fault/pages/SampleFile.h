#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "lumivard/platform/stores.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::stores {

/// What a store holds, read through its interface.
struct Contents {
    unsigned long long extent = 0;
    unsigned int version = 0;
    std::map<unsigned int, std::string> records;  // those that are not empty
    bool operator==(const Contents&) const = default;
};

inline std::string recordOf(IDataStore& store, unsigned int offset) {
    std::string bytes(store.size(offset), '\0');
    if (!bytes.empty()) store.read(offset, bytes.data(), static_cast<unsigned int>(bytes.size()));
    return bytes;
}

inline Contents contentsOf(IDataStore& store) {
    Contents contents{store.extent(), store.version(), {}};
    for (unsigned int offset = 0; offset < contents.extent; ++offset) {
        std::string bytes = recordOf(store, offset);
        if (!bytes.empty()) contents.records.emplace(offset, std::move(bytes));
    }
    return contents;
}

inline void writeFile(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

/// Random changes of a store: records that come, grow, shrink and go, some of them many pages long.
class Changes {
public:
    explicit Changes(std::uint64_t seed) : _random(seed) {}

    void make(IDataStore& store, int count) {
        for (int done = 0; done < count; ++done) make(store);
    }

    /// Erases most of the records.
    void thinOut(IDataStore& store) {
        std::erase_if(_live, [&](unsigned int offset) {
            const bool goes = below(5) != 0;
            if (goes) store.erase(offset);
            return goes;
        });
    }

    std::uint64_t below(std::uint64_t end) { return std::uniform_int_distribution<std::uint64_t>(0, end - 1)(_random); }

private:
    void make(IDataStore& store) {
        const std::string bytes = some();
        const auto size = static_cast<unsigned int>(bytes.size());
        if (_live.empty() || below(3) == 0) {
            _live.push_back(store.create(bytes.data(), size));
            return;
        }
        const std::size_t which = below(_live.size());
        switch (below(3)) {
            case 0:
                store.update(_live[which], bytes.data(), size, true);
                break;
            case 1:
                store.append(_live[which], bytes.data(), std::min(size, 200U));
                break;
            default:
                store.erase(_live[which]);
                _live.erase(_live.begin() + static_cast<std::ptrdiff_t>(which));
        }
    }

    // Most records are short, some are as long as a page or several.
    std::string some() {
        const std::uint64_t longest = below(20) == 0 ? 20000 : below(4) == 0 ? 2500 : 120;
        std::string bytes(below(longest), '\0');
        for (char& byte : bytes) byte = static_cast<char>(below(256));
        return bytes;
    }

    std::mt19937_64 _random;
    std::vector<unsigned int> _live;
};

/// A file that has seen many flushes: long and short records, pages that are free, several levels of pages.
inline std::string sampleBytes(const std::filesystem::path& path, std::uint64_t seed) {
    {
        const auto store = file(path, tMode::kWrite);
        Changes changes(seed);
        for (int flush = 0; flush < 12; ++flush) {
            changes.make(*store, 60);
            if (flush == 6) changes.thinOut(*store);
            store->version(static_cast<unsigned int>(flush));
            store->flush();
        }
    }
    return bytesOf(path);
}

/// Opens the file, reads all of it and writes to it; a `StoreError` ends that. Whether it could be opened.
inline bool exercise(const std::filesystem::path& path, const FileOptions& options) {
    bool opened = false;
    try {
        const auto store = file(path, tMode::kWrite, options);
        opened = true;
        for (unsigned int round = 0; round < 3; ++round) {
            for (unsigned int offset = 0; offset < std::min(store->extent(), 2000ULL); ++offset) {
                try {
                    const std::string bytes = recordOf(*store, offset);
                    if (offset % 7 == round && !bytes.empty()) store->append(offset, "more", 4);
                    if (offset % 11 == round && !bytes.empty()) store->erase(offset);
                } catch (const StoreError&) {
                    // this record is damaged; others need not be
                }
            }
            store->create(std::string(9000, 'n').data(), 9000);
            store->flush();
        }
    } catch (const StoreError&) {
    }
    return opened;
}

}  // namespace lumivard::platform::stores
