#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "stores/engine/Engine.h"
#include "stores/engine/EngineError.h"

namespace lumivard::platform::stores {

/// What several processes share, as a database server has it: one transaction at a time, and a log of what was changed.
struct SharedServer {
    /// Where a record was said to differ from what is stored.
    struct tRange {
        unsigned long long from;
        unsigned long long to;
        bool operator==(const tRange&) const = default;
    };

    Engine::Header header{};
    std::map<unsigned int, std::string> records{};
    std::vector<std::vector<unsigned int>> log{};        // what each commit has changed
    const void* holder = nullptr;                        // who has a transaction under way
    int transactions = 0;                                // in all
    bool forgetful = false;                              // the log is lost: anything may have changed
    std::function<void()> beforeCommit{};                // may throw
    std::vector<unsigned int> loads{};                   // offsets asked for, in order
    std::vector<std::vector<unsigned int>> bringings{};  // likewise, together
    bool tellsRecords = false;                           // whether news come with the records that they name
    std::map<unsigned int, tRange> ranges{};             // of the last commit
};

/// The engine of one process.
class SharedEngine final : public Engine {
public:
    explicit SharedEngine(SharedServer& server) : _server(server), _known(server.log.size()) {}

    bool isShared() const noexcept override { return true; }
    Header header() override { return _server.header; }

    std::optional<std::span<const std::byte>> load(unsigned int offset) override {
        EXPECT_EQ(_server.holder, this) << "records come within a transaction alone";
        _server.loads.push_back(offset);
        const auto record = _server.records.find(offset);
        if (record == _server.records.end()) return std::nullopt;
        return std::as_bytes(std::span(record->second));
    }

    void bring(std::span<const unsigned int> offsets, const std::function<void(const Record&)>& take) override {
        _server.bringings.emplace_back(offsets.begin(), offsets.end());
        Engine::bring(offsets, take);
    }

    void commit(const Batch& batch) override {
        EXPECT_EQ(_server.holder, this);
        _server.holder = nullptr;
        if (_server.beforeCommit) _server.beforeCommit();
        _server.ranges.clear();
        for (const unsigned int offset : batch.offsets) {
            const Change change = batch.change(offset);
            _server.ranges.insert_or_assign(offset, SharedServer::tRange{change.from, change.to});
            if (change.erased) {
                _server.records.erase(offset);
            } else {
                _server.records[offset].assign(reinterpret_cast<const char*>(change.bytes.data()), change.bytes.size());
            }
        }
        _server.header = batch.header;
        _server.log.emplace_back(batch.offsets.begin(), batch.offsets.end());
        _known = _server.log.size();
    }

    std::optional<News> guardTaken() override {
        EXPECT_EQ(_server.holder, nullptr) << "there is one transaction at a time";
        _server.holder = this;
        ++_server.transactions;
        if (_known == _server.log.size()) return std::nullopt;
        News news{_server.header, _server.forgetful, {}};
        for (; _known < _server.log.size(); ++_known) {
            const auto& offsets = _server.log[_known];
            if (!_server.forgetful) news.offsets.insert(news.offsets.end(), offsets.begin(), offsets.end());
        }
        for (const unsigned int offset : news.offsets) {
            const auto record = _server.records.find(offset);
            if (!_server.tellsRecords || record == _server.records.end()) continue;
            news.records.push_back({offset, std::as_bytes(std::span(record->second))});
        }
        return news;
    }

    void guardReleased() noexcept override {
        if (_server.holder == this) _server.holder = nullptr;
    }

private:
    SharedServer& _server;
    std::size_t _known;
};

}  // namespace lumivard::platform::stores
