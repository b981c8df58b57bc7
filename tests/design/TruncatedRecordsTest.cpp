// Records that end too early, and records whose fields claim too much.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "tests/design/Exercise.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TreeHelpers.h"

namespace {

namespace data = lumivard::platform::data;
namespace exercise = lumivard::platform::test_support::exercise;
namespace stored = lumivard::platform::test_support::stored;
namespace tree = lumivard::platform::test_support::tree;
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::makeRecord;
using lumivard::platform::test_support::StoreKind;
using lumivard::platform::test_support::StoreTest;

/// A store with one damaged record in a list below the root, beside a container that must come to no harm.
struct tDamage {
    tDamage(const StoreKind& kind, const std::string& bytes) : owned(kind.make()), copies(kind.make()) {
        tree::root(copies.get());
        tree::root(owned.get());
        sibling = tree::addContainer(owned.get(), 0, L"sibling");
        tree::addPrimitive(owned.get(), sibling, L"p");
        damaged = makeRecord(owned.get(), bytes);
        stored::enlist(owned.get(), 0, damaged);
        intact = image();
    }

    std::string image() const {
        return hex(owned.get(), 0) + hex(owned.get(), sibling) +
               hex(owned.get(), stored::children(owned.get(), sibling)[0]);
    }

    std::unique_ptr<tree::IDataStore> owned;
    std::unique_ptr<tree::IDataStore> copies;
    unsigned int sibling = 0;
    unsigned int damaged = 0;
    std::string intact;
};

constexpr unsigned char kFills[] = {0x00, 0x01, 0x04, 0x7F, 0xFF};
constexpr unsigned char kKinds[] = {0, 1, 2, 3, 4, 5, 6, 255};

std::string filled(unsigned char kind, unsigned char fill, unsigned int size) {
    std::string bytes(size, static_cast<char>(fill));
    if (size != 0) bytes[0] = static_cast<char>(kind);
    return bytes;
}

class TruncatedRecords : public StoreTest {
protected:
    /// Does something to a record of each kind and each size up to 60 bytes, in a store of its own.
    template <class Use>
    void withEach(Use use) {
        for (const unsigned char kind : kKinds) {
            for (const unsigned char fill : kFills) {
                for (unsigned int size = 0; size <= 60; ++size) {
                    SCOPED_TRACE("kind " + std::to_string(kind) + " filled with " + std::to_string(fill) + " up to " +
                                 std::to_string(size));
                    tDamage damage(GetParam(), filled(kind, fill, size));
                    use(damage);
                    if (HasFailure()) return;
                }
            }
        }
    }
};
LVP_ON_EACH_STORE(TruncatedRecords);

TEST_P(TruncatedRecords, AreReadAsEachClassAndStayAsTheyAre) {
    withEach([](tDamage& damage) {
        const std::string before = hex(damage.owned.get(), damage.damaged);
        exercise::readAsEach(damage.owned.get(), damage.damaged);
        EXPECT_EQ(hex(damage.owned.get(), damage.damaged), before);
        EXPECT_EQ(damage.image(), damage.intact);
    });
}

TEST_P(TruncatedRecords, AreChangedWithoutHarmToOthers) {
    withEach([](tDamage& damage) {
        exercise::asItself(damage.owned.get(), damage.damaged,
                           [&](auto& item) { exercise::change(item, damage.copies.get()); });
        EXPECT_EQ(damage.image(), damage.intact);
    });
}

TEST_P(TruncatedRecords, AreClearedWithoutHarmToOthers) {
    withEach([](tDamage& damage) {
        exercise::asItself(damage.owned.get(), damage.damaged, [](auto& item) { item.clear(); });
        EXPECT_EQ(damage.image(), damage.intact);
    });
}

TEST_P(TruncatedRecords, AreWalkedOverFromAbove) {
    withEach([](tDamage& damage) {
        data::Metadata::Root root(damage.owned.get(), 0u);
        exercise::read(root);
        EXPECT_NE(root.find(L"sibling"), root.BADOFF);
        root.Set::duplicate(damage.copies.get(), 0);
        root.clear();
        EXPECT_EQ(root.items(), 0u);
    });
}

/// Section lengths, and the list that a set names.
class ClaimingRecords : public StoreTest {
protected:
    const unsigned int _root = tree::root(store());
    const unsigned int _copies = tree::root(other());
};
LVP_ON_EACH_STORE(ClaimingRecords);

TEST_P(ClaimingRecords, AreReadUpToTheirEnd) {
    for (const unsigned int length : {0u, 1u, 3u, 5u, 0x7FFFFFFFu, 0xFFFFFFFCu, 0xFFFFFFFFu}) {
        SCOPED_TRACE(length);
        const unsigned int c = tree::container(store(), L"c");
        for (const unsigned int field : {19u, 23u, 27u}) stored::putWord(store(), c, field, length);
        exercise::readAsEach(store(), c);
        exercise::asItself(store(), c, [&](auto& item) { exercise::change(item, other()); });
        EXPECT_STREQ(data::Structural::Container(store(), c, false).info(), L"target");

        const unsigned int t = tree::table(store(), L"t");
        for (const unsigned int field : {26u, 30u}) stored::putWord(store(), t, field, length);
        exercise::readAsEach(store(), t);
        exercise::asItself(store(), t, [&](auto& item) { exercise::change(item, other()); });
        EXPECT_EQ(data::Design::Table(store(), t, false).groups().size(), 1u);

        const unsigned int p = tree::primitive(store(), L"p");
        for (const unsigned int field : {26u, 30u, 34u, 38u}) stored::putWord(store(), p, field, length);
        exercise::readAsEach(store(), p);
        exercise::asItself(store(), p, [&](auto& item) { exercise::change(item, other()); });
        EXPECT_EQ(data::Design::Primitive(store(), p).dimension(), 4u);
    }
}

TEST_P(ClaimingRecords, OfListsHoldWhatIsWhollyThere) {
    for (const unsigned int size : {1u, 2u, 3u, 5u, 7u}) {
        const unsigned int c = tree::container(store(), L"c");
        const unsigned int list = makeRecord(store(), std::string("\3\0\0\0\0\0\0", 7).substr(0, size));
        stored::putWord(store(), c, 14, list);
        exercise::readAsEach(store(), c);
        data::Structural::Container item(store(), c, false);
        EXPECT_EQ(item.items(), 0u);
        EXPECT_EQ(item.at(0), item.BADOFF);
        item.clear();
        EXPECT_EQ(store()->size(list), 0u);
    }
}

}  // namespace
