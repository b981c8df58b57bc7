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
    Engine::Header header{};
    std::map<unsigned int, std::string> records{};
    std::vector<std::vector<unsigned int>> log{};  // what each commit has changed
    const void* holder = nullptr;                  // who has a transaction under way
    int transactions = 0;                          // in all
    bool forgetful = false;                        // the log is lost: anything may have changed
    std::function<void()> beforeCommit{};          // may throw
};

/// The engine of one process.
class SharedEngine final : public Engine {
public:
    explicit SharedEngine(SharedServer& server) : _server(server), _known(server.log.size()) {}

    bool isShared() const noexcept override { return true; }
    Header header() override { return _server.header; }

    std::optional<std::span<const std::byte>> load(unsigned int offset) override {
        EXPECT_EQ(_server.holder, this) << "records come within a transaction alone";
        const auto record = _server.records.find(offset);
        if (record == _server.records.end()) return std::nullopt;
        return std::as_bytes(std::span(record->second));
    }

    void commit(const Batch& batch) override {
        EXPECT_EQ(_server.holder, this);
        _server.holder = nullptr;
        if (_server.beforeCommit) _server.beforeCommit();
        for (const unsigned int offset : batch.offsets) {
            const Change change = batch.change(offset);
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
