// A store that shows its records in place and lets the library remember what its large sets hold, and the same store
// with the operations of the contract alone: whatever clients do, with whatever objects open, and whatever others do to
// the records meanwhile, all answers are the same, and so are all bytes.
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "lumivard/platform/data.h"
#include "lumivard/platform/store_contract/ForwardingStore.h"
#include "lumivard/platform/stores.h"
#include "tests/support/Campaign.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform;
using namespace lumivard::platform::data;
using core::memory::SharedPtr;
using core::storage::datastore::IDataStore;
using core::string::WideString;
using metadata::IProperty;
using metadata::ITable;
using structure::IContainer;
using structure::IContainerFrontEnd;
namespace stored = test_support::stored;

constexpr unsigned int kNames = 150;  // of which most are there: more than a set needs to be large
constexpr unsigned int kObjects = 4;
constexpr std::array kSets{L"g0", L"g1"};

std::wstring nameOf(unsigned int number) {
    const std::wstring digits = std::to_wstring(number);
    return L"n" + std::wstring(3 - digits.size(), L'0') + digits;
}

/// What one step of the work is about, drawn once for both ways.
struct tStep {
    unsigned int deed, object, set, name, other, record;
};

/// One of the ways, with the objects that are open in it.
class Side {
public:
    explicit Side(bool plain) : _under(stores::memory()), _forwarding(*_under), _plain(plain) {
        _top = IContainerFrontEnd::toplevel(&store(), L"top");
        for (const wchar_t* set : kSets) _top->create(IContainer::kGroup, set, nullptr);
        _table = _top->create(L"t", nullptr);
        for (unsigned int number = 0; number < 2 * kNames / 3; ++number) {
            const std::wstring name = nameOf(number);
            for (const wchar_t* set : kSets) _top->container(set)->create(IContainer::kGroup, name.c_str(), nullptr);
            _table->create(name.c_str(), metadata::kInt32, units::kMeter);
        }
        for (auto& object : _objects) object = _top->container(kSets[0]);
    }

    IDataStore& store() { return _plain ? static_cast<IDataStore&>(_forwarding) : *_under; }
    std::vector<std::string> records() { return stored::contents(*_under); }

    /// Does a step and tells what came of it.
    std::string take(const tStep& step) {
        IContainer& object = *_objects[step.object];
        const std::wstring name = nameOf(step.name);
        const std::wstring other = nameOf(step.other);
        switch (step.deed) {
            case 0:
                _objects[step.object] = _top->container(kSets[step.set]);
                return "opened";
            case 1:
                return told(object.create(IContainer::kGroup, name.c_str(), nullptr));
            case 2:
                return told(object.create(name.c_str(), metadata::kDouble));
            case 3:
                return told(object.destroy(name.c_str()));
            case 4: {
                const auto child = object.container(name.c_str());
                return child ? told(child->rename(other.c_str())) : "no child";
            }
            case 5:
                return known(object);
            case 6:
                return told(IContainerFrontEnd::find(&store(),
                                                     (L"top." + std::wstring(kSets[step.set]) + L"." + name).c_str())) +
                       told(_top->has((std::wstring(kSets[step.set]) + L"." + other).c_str()));
            case 7:
                return inTable(name, other);
            case 8:
                return told(object.clone(name.c_str(), other.c_str(), false));
            case 9: {
                const auto child = object.container(name.c_str());
                const auto owner = child ? child->parent() : SharedPtr<IContainer>();
                return owner ? known(*owner) : "no owner";
            }
            case 10:
                return foreign(step);
            case 11: {
                const auto property = object.property(name.c_str());
                if (!property) return "no property";
                property->on(static_cast<unsigned char>(step.other & 0x70));
                return told(property->rename(other.c_str()));
            }
            case 12:
                return told(_top->clone((std::wstring(kSets[step.set]) + L"." + name).c_str(),
                                        (std::wstring(kSets[1 - step.set]) + L"." + other).c_str(), false));
            default:
                return step.other % 8 == 0 ? told(object.copy(_objects[(step.object + 1) % kObjects])) : known(object);
        }
    }

private:
    static std::string told(bool done) { return done ? "yes " : "no "; }
    template <class Object>
    static std::string told(const SharedPtr<Object>& object) {
        return told(static_cast<bool>(object));
    }

    /// The names that an object knows.
    static std::string known(IContainer& container) {
        std::string names;
        for (unsigned int number = 0; number < kNames; ++number) {
            names += container.has(nameOf(number).c_str()) ? '+' : '-';
        }
        const auto children = container.containers();
        unsigned int walked = 0;
        do {
            if (const auto child = children->current()) walked += 1 + static_cast<unsigned int>(child->tag().bytes());
        } while (children->next());
        return names + " " + std::to_string(walked);
    }

    std::string inTable(const std::wstring& name, const std::wstring& other) {
        std::string outcome = told(_table->create(name.c_str(), metadata::kInt32, units::kNoUnit));
        outcome += told(_table->destroy(other.c_str())) + std::to_string(_table->items());
        const auto anew = _top->property(L"t");
        if (ITable* const table = ITable::to(anew.get())) outcome += ' ' + std::to_string(table->items());
        const auto last = _table->at(_table->items() - 1);
        return outcome + (last ? last->path().string() : "nothing");
    }

    /// What somebody does who knows the store and not the library.
    std::string foreign(const tStep& step) {
        constexpr unsigned int kNameOfContainer = 32;
        const unsigned int offset = step.record % static_cast<unsigned int>(store().extent());
        std::string bytes = stored::bytes(&store(), offset);
        if (bytes.size() < kNameOfContainer + 16 || offset < 4) return "nothing";
        const auto size = static_cast<unsigned int>(bytes.size());
        switch (step.other % 4) {
            case 0:
                store().update(offset, bytes.data(), size, true);
                return "touched";
            case 1:
                store().update(offset, bytes.data(), size, false);
                return "counted";
            case 2:
                if (bytes[0] != 4) return "no container";
                bytes[kNameOfContainer + 12] = static_cast<char>('0' + step.name % 10);
                store().update(offset, bytes.data(), size, true);
                return "renamed";
            default:
                if (bytes[0] != 4 || step.name % 4 != 0) return "left";
                store().erase(offset);
                return "erased";
        }
    }

    std::unique_ptr<IDataStore> _under;
    store_contract::ForwardingStore _forwarding;
    bool _plain;
    SharedPtr<IContainer> _top;
    SharedPtr<ITable> _table;
    std::array<SharedPtr<IContainer>, kObjects> _objects;
};

class Draw {
public:
    explicit Draw(std::uint64_t seed) : _random(seed) {}
    tStep step() {
        return {below(14), below(kObjects), below(kSets.size()), below(kNames), below(kNames), below(100'000)};
    }

private:
    unsigned int below(std::size_t count) { return static_cast<unsigned int>(_random() % count); }
    std::mt19937_64 _random;
};

std::string describe(const tStep& step) {
    return "deed " + std::to_string(step.deed) + ", object " + std::to_string(step.object) + ", set " +
           std::to_string(step.set) + ", names " + std::to_string(step.name) + " and " + std::to_string(step.other);
}

TEST(BothWays, GiveTheSameAnswersAndTheSameRecords) {
    constexpr std::uint64_t kStepsOfARun = 400;
    const std::uint64_t runs = test_support::effort("LVP_BOTH_WAYS", 25);
    const std::uint64_t seed = test_support::seed();
    for (std::uint64_t run = 0; run < runs; ++run) {
        Draw draw(seed + run);
        Side shown(false);
        Side copied(true);
        ASSERT_TRUE(shown.store().access());
        ASSERT_FALSE(copied.store().access());
        for (std::uint64_t number = 0; number < kStepsOfARun; ++number) {
            const tStep step = draw.step();
            ASSERT_EQ(shown.take(step), copied.take(step))
                << "run " << run << ", step " << number << ": " << describe(step);
        }
        ASSERT_EQ(shown.records(), copied.records()) << "run " << run;
    }
}

}  // namespace
