// Stores whose records name each other at random.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "tests/design/Exercise.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TreeHelpers.h"

namespace {

namespace data = lumivard::platform::data;
namespace exercise = lumivard::platform::test_support::exercise;
namespace stored = lumivard::platform::test_support::stored;
namespace tree = lumivard::platform::test_support::tree;
using lumivard::platform::test_support::makeRecord;
using lumivard::platform::test_support::StoreKind;
using lumivard::platform::test_support::StoreTest;
using lumivard::platform::test_support::wide;

constexpr unsigned int kRecords = 24;
constexpr unsigned int kSeeds = 400;

/// A store that is made of chance alone, each seed another.
class Chaos {
public:
    Chaos(const StoreKind& kind, unsigned int seed) : _random(seed), _store(kind.make()) {
        tree::root(_store.get());
        _offsets.push_back(0);
        while (_offsets.size() < kRecords) _offsets.push_back(makeEntity());
        for (const unsigned int offset : _offsets) connect(offset);
    }

    tree::IDataStore* store() { return _store.get(); }
    const std::vector<unsigned int>& offsets() const { return _offsets; }

private:
    unsigned int below(unsigned int limit) { return static_cast<unsigned int>(_random() % limit); }

    const wchar_t* name() {
        static const wchar_t* const kNames[] = {L"a", L"b", L"added", L""};
        return kNames[below(4)];
    }

    unsigned int makeEntity() {
        switch (below(5)) {
            case 0:
                return tree::table(_store.get(), name());
            case 1:
                return tree::primitive(_store.get(), name(), static_cast<data::metadata::tValue>(below(27)));
            case 2:
                return makeLocale();
            default:
                return tree::container(_store.get(), name());
        }
    }

    unsigned int makeLocale() {
        std::string payload(3, '\0');
        for (unsigned int i = below(5); i > 0; --i) payload += wide(name());
        return makeRecord(_store.get(),
                          "\5" + std::string(1, static_cast<char>(below(100))) + std::string(6, '\0') + payload);
    }

    unsigned int makeList() {
        const unsigned int list = stored::makeList(_store.get());
        for (unsigned int i = below(6); i > 0; --i) {
            const unsigned int entry = anything();
            _store->append(list, &entry, sizeof(entry));
        }
        return list;
    }

    /// Any record, or none.
    unsigned int anything() {
        switch (below(10)) {
            case 0:
                return 0xFFFFFFFFu;
            case 1:
                return below(100);
            default:
                return _offsets[below(kRecords)];
        }
    }

    void put(unsigned int offset, unsigned int position, unsigned int value) {
        if (position + sizeof(value) <= _store->size(offset)) stored::putWord(_store.get(), offset, position, value);
    }

    /// Fills a record's fields, and now and then damages the record itself.
    void connect(unsigned int offset) {
        const auto kind = data::Record::peek(_store.get(), offset);
        if (kind == data::Record::kLocale) return;
        put(offset, 1, anything());
        put(offset, 9, anything());
        stored::putByte(_store.get(), offset, 13, static_cast<unsigned char>(below(16)));
        if (kind != data::Record::kPrimitive) put(offset, 14, below(4) == 0 ? anything() : makeList());
        if (kind == data::Record::kTable) put(offset, 22, below(4) == 0 ? anything() : makeList());
        if (below(8) == 0) put(offset, below(44), below(2) == 0 ? 0xFFFFFFFFu : below(100));
        if (below(8) == 0) cut(offset);
    }

    void cut(unsigned int offset) {
        const std::string bytes = stored::bytes(_store.get(), offset);
        _store->update(offset, bytes.data(), below(static_cast<unsigned int>(bytes.size())), true);
    }

    std::mt19937 _random;
    std::unique_ptr<tree::IDataStore> _store;
    std::vector<unsigned int> _offsets;
};

class DamagedStore : public StoreTest {
protected:
    template <class Use>
    void withEachSeed(Use use) {
        for (unsigned int seed = 0; seed < kSeeds && !HasFailure(); ++seed) {
            SCOPED_TRACE("seed " + std::to_string(seed));
            Chaos chaos(GetParam(), seed);
            EXPECT_NO_THROW(use(chaos));
        }
    }
};
LVP_ON_EACH_STORE(DamagedStore);

TEST_P(DamagedStore, IsReadAndStaysAsItIs) {
    withEachSeed([](Chaos& chaos) {
        std::vector<std::string> before;
        for (const unsigned int offset : chaos.offsets()) before.push_back(stored::bytes(chaos.store(), offset));
        for (const unsigned int offset : chaos.offsets()) exercise::readAsEach(chaos.store(), offset);
        for (std::size_t i = 0; i < before.size(); ++i) {
            EXPECT_EQ(stored::bytes(chaos.store(), chaos.offsets()[i]), before[i]);
        }
    });
}

TEST_P(DamagedStore, IsChangedToAnEnd) {
    withEachSeed([](Chaos& chaos) {
        const auto copies = GetParam().make();
        for (const unsigned int offset : chaos.offsets()) {
            exercise::asItself(chaos.store(), offset, [&](auto& item) { exercise::change(item, copies.get()); });
        }
        EXPECT_LT(stored::bytes(chaos.store(), 0).size(), 1000u);
    });
}

TEST_P(DamagedStore, IsCopiedIntoItselfToAnEnd) {
    withEachSeed([](Chaos& chaos) {
        unsigned int copies = 0;
        for (const unsigned int offset : chaos.offsets()) {
            exercise::asItself(chaos.store(), offset, [&](auto& item) {
                if (item.clone(chaos.store()) != item.BADOFF) ++copies;
            });
        }
        EXPECT_GT(copies, 0u);
    });
}

TEST_P(DamagedStore, IsEmptiedToAnEnd) {
    withEachSeed([](Chaos& chaos) {
        for (const unsigned int offset : chaos.offsets()) {
            exercise::asItself(chaos.store(), offset, [](auto& item) { item.clear(); });
        }
        data::Metadata::Root(chaos.store(), 0u).clear();
        EXPECT_EQ(data::Metadata::Root(chaos.store(), 0u).items(), 0u);
    });
}

}  // namespace
