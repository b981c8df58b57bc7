#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "stores/engine/Engine.h"

namespace lumivard::platform::stores {

/// What a spy engine keeps and has seen; it outlives the store, as a disk does.
struct SpyDisk {
    struct Written {
        unsigned int offset = 0;
        std::optional<std::string> bytes;  // nothing for an erased record
        bool operator==(const Written&) const = default;
    };
    struct Commit {
        Engine::Header header;
        std::vector<Written> records;
    };

    Engine::Header header;
    std::map<unsigned int, std::string> records;

    std::vector<Commit> commits;       // those that succeeded
    std::vector<unsigned int> loads;   // offsets asked for, in order
    int guards = 0;                    // outermost ones held at this moment
    int guardsTaken = 0;               // outermost ones in all
    std::optional<Engine::News> news;  // told at the next guard
    bool lends = false;                // whether what was loaded stands, in `lent`, until a commit
    std::vector<std::unique_ptr<std::string>> lent;
    std::function<void()> beforeHeader;
    std::function<void()> beforeLoad;
    std::function<void()> beforeCommit;  // each may throw
    std::function<void()> beforeGuard;
};

/// An engine over a `SpyDisk`.
class SpyEngine final : public Engine {
public:
    explicit SpyEngine(SpyDisk& disk) : _disk(disk) {}

    Header header() override {
        if (_disk.beforeHeader) _disk.beforeHeader();
        return _disk.header;
    }

    std::optional<std::span<const std::byte>> load(unsigned int offset) override {
        _disk.loads.push_back(offset);
        if (_disk.beforeLoad) _disk.beforeLoad();
        const auto record = _disk.records.find(offset);
        if (record == _disk.records.end()) return std::nullopt;
        if (!_disk.lends) return std::as_bytes(std::span(record->second));
        return std::as_bytes(std::span(*_disk.lent.emplace_back(std::make_unique<std::string>(record->second))));
    }

    bool lends() const noexcept override { return _disk.lends; }

    void commit(const Batch& batch) override {
        endLoan();
        if (_disk.beforeCommit) _disk.beforeCommit();
        SpyDisk::Commit seen{batch.header, {}};
        for (const unsigned int offset : batch.offsets) {
            const Change change = batch.change(offset);
            if (change.erased) {
                _disk.records.erase(offset);
                seen.records.push_back({offset, std::nullopt});
            } else {
                std::string bytes(reinterpret_cast<const char*>(change.bytes.data()), change.bytes.size());
                _disk.records[offset] = bytes;
                seen.records.push_back({offset, bytes});
            }
        }
        _disk.header = batch.header;
        _disk.commits.push_back(std::move(seen));
    }

    std::optional<News> guardTaken() override {
        if (_disk.beforeGuard) _disk.beforeGuard();
        ++_disk.guards;
        ++_disk.guardsTaken;
        if (_disk.news) endLoan();
        return std::exchange(_disk.news, std::nullopt);
    }

    void guardReleased() noexcept override { --_disk.guards; }

private:
    // Who goes on looking sees something else, and the address sanitizer sees him.
    void endLoan() {
        for (const auto& bytes : _disk.lent) bytes->assign(bytes->size(), '#');
        _disk.lent.clear();
    }

    SpyDisk& _disk;
};

}  // namespace lumivard::platform::stores
