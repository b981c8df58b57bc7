// A store and a plain map, driven by the same random operations.
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "lumivard/platform/stores.h"
#include "tests/stores/Records.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::stores {
namespace {

/// What to do, on which of the offsets handed out so far (and one beyond), with how many bytes.
using Operation = std::tuple<std::uint8_t, std::uint8_t, std::uint16_t>;

class Model {
public:
    explicit Model(std::unique_ptr<IDataStore> store) : _store(std::move(store)) {}

    IDataStore& store() { return *_store; }

    void run(const Operation& operation) {
        const auto [kind, which, size] = operation;
        const unsigned int offset = which % (_next + 1);
        const std::string bytes(size, static_cast<char>(kind ^ which));
        switch (kind % 7) {
            case 0:
            case 1:
                RC_ASSERT(create(*_store, bytes) == _next);
                _records[_next++] = bytes;
                break;
            case 2:
                change(
                    offset, [&] { update(*_store, offset, bytes); }, [&](std::string& all) { all = bytes; });
                break;
            case 3:
                change(
                    offset, [&] { append(*_store, offset, bytes); }, [&](std::string& all) { all += bytes; });
                break;
            case 4:
                change(
                    offset, [&] { update(*_store, offset, bytes, false); }, [&](std::string& all) { all = bytes; });
                break;
            case 5:
                change(
                    offset, [&] { _store->erase(offset); }, nullptr);
                break;
            case 6:
                _store->flush();
                _store->version(_version = size);
                break;
        }
    }

    void check() {
        RC_ASSERT(_store->extent() == _next);
        RC_ASSERT(_store->version() == _version);
        for (unsigned int offset = 0; offset <= _next; ++offset) {
            const auto record = _records.find(offset);
            RC_ASSERT(contents(*_store, offset) == (record == _records.end() ? std::string() : record->second));
        }
    }

    void reopen(const std::filesystem::path& path) {
        _store.reset();
        _store = file(path, tMode::kWrite);
    }

private:
    template <class Work, class Expected>
    void change(unsigned int offset, Work work, Expected expected) {
        const auto record = _records.find(offset);
        if (record == _records.end()) {
            RC_ASSERT_THROWS_AS(work(), StoreError);
            return;
        }
        work();
        if constexpr (std::is_null_pointer_v<Expected>) {
            _records.erase(record);
        } else {
            expected(record->second);
        }
    }

    std::unique_ptr<IDataStore> _store;
    std::map<unsigned int, std::string> _records;
    unsigned int _next = 0;
    unsigned int _version = 0;
};

TEST(StoreModel, AStoreInMemoryIsAMap) {
    EXPECT_TRUE(rc::check("memory", [](const std::vector<Operation>& operations) {
        Model model(memory());
        for (const Operation& operation : operations) model.run(operation);
        model.check();
    }));
}

TEST(StoreModel, AStoreInAFileIsAMapThatOutlivesItsClosing) {
    EXPECT_TRUE(rc::check("file", [] {
        const auto sessions = *rc::gen::resize(25, rc::gen::arbitrary<std::vector<std::vector<Operation>>>());
        TemporaryFolder folder;
        Model model(file(folder / "a.lvp", tMode::kWrite));
        for (const auto& session : sessions) {
            for (const Operation& operation : session) model.run(operation);
            model.check();
            model.reopen(folder / "a.lvp");
            model.check();
        }
    }));
}

}  // namespace
}  // namespace lumivard::platform::stores
