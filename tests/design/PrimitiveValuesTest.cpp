// The values of a primitive.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "design/Primitive.h"
#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TreeHelpers.h"

namespace {

namespace data = lumivard::platform::data;
namespace metadata = data::metadata;
namespace stored = lumivard::platform::test_support::stored;
namespace tree = lumivard::platform::test_support::tree;
using data::Design::Primitive;
using lumivard::platform::store_contract::LoggingStore;
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::StoreTest;
using testing::ElementsAre;
using testing::IsEmpty;

using tInts = std::vector<int>;

/// A primitive "p" of int32.
class Values : public StoreTest {
protected:
    static bool set(Primitive& item, const tInts& values, unsigned int start) {
        return item.set(reinterpret_cast<const char*>(values.data()), start, static_cast<unsigned int>(values.size()));
    }

    /// Hands in a block that is longer than what is to be set.
    static bool set(Primitive& item, const tInts& block, unsigned int start, unsigned int count) {
        return item.set(reinterpret_cast<const char*>(block.data()), start, count);
    }

    static unsigned int get(const Primitive& item, tInts& values, unsigned int start, unsigned int count) {
        return item.get(reinterpret_cast<char*>(values.data()), start, count);
    }

    static tInts all(const Primitive& item) {
        tInts values(item.dimension(), -1);
        EXPECT_EQ(get(item, values, 0, item.dimension()), item.dimension());
        return values;
    }

    /// What an object that is opened now reads.
    tInts reopened() { return all(Primitive(store(), _offset)); }

    const unsigned int _root = tree::root(store());
    const unsigned int _offset = tree::primitive(store(), L"p");
};
LVP_ON_EACH_STORE(Values);

TEST_P(Values, AreNoneInANewPrimitive) {
    Primitive item(store(), _offset);
    tInts values{7};
    EXPECT_EQ(item.dimension(), 0u);
    EXPECT_EQ(item.valuesize(), 0u);
    EXPECT_EQ(get(item, values, 0, 1), 0u);
    EXPECT_THAT(values, ElementsAre(7));
}

TEST_P(Values, AreZeroAfterReset) {
    Primitive item(store(), _offset);
    EXPECT_TRUE(item.reset(3));
    EXPECT_EQ(item.valuesize(), 12u);
    EXPECT_EQ(item.dimension(), 3u);
    EXPECT_THAT(all(item), ElementsAre(0, 0, 0));
    EXPECT_EQ(stored::word(store(), _offset, 38), 12u);
    EXPECT_THAT(reopened(), ElementsAre(0, 0, 0));
}

TEST_P(Values, AreZeroAfterASecondResetAndAsManyAsItSays) {
    Primitive item(store(), _offset);
    set(item, {1, 2, 3}, 0);
    EXPECT_TRUE(item.reset(2));
    EXPECT_THAT(all(item), ElementsAre(0, 0));
    EXPECT_TRUE(item.reset(0));
    EXPECT_EQ(item.dimension(), 0u);
    EXPECT_EQ(stored::bytes(store(), _offset).size(), 52u);
}

TEST_P(Values, ReplaceThoseInside) {
    Primitive item(store(), _offset);
    item.reset(3);
    EXPECT_TRUE(set(item, {7, 8}, 1));
    EXPECT_EQ(item.valuesize(), 12u);
    EXPECT_THAT(all(item), ElementsAre(0, 7, 8));
    EXPECT_TRUE(set(item, {9}, 0));
    EXPECT_THAT(reopened(), ElementsAre(9, 7, 8));
}

TEST_P(Values, GrowTheArrayPastItsEnd) {
    Primitive item(store(), _offset);
    set(item, {1, 2, 3}, 0);
    EXPECT_TRUE(set(item, {8, 9}, 2));
    EXPECT_EQ(item.dimension(), 4u);
    EXPECT_THAT(reopened(), ElementsAre(1, 2, 8, 9));
    EXPECT_TRUE(set(item, {7}, 4));
    EXPECT_THAT(reopened(), ElementsAre(1, 2, 8, 9, 7));
}

TEST_P(Values, LeaveZerosInAGap) {
    Primitive item(store(), _offset);
    set(item, {1}, 0);
    EXPECT_TRUE(set(item, {9}, 3));
    EXPECT_EQ(item.valuesize(), 16u);
    EXPECT_THAT(reopened(), ElementsAre(1, 0, 0, 9));
}

TEST_P(Values, NeverShrinkTheArray) {
    Primitive item(store(), _offset);
    set(item, {1, 2, 3}, 0);
    EXPECT_TRUE(set(item, {9}, 0));
    EXPECT_THAT(reopened(), ElementsAre(9, 2, 3));
}

TEST_P(Values, FillAnEmptyArrayAsTheyAre) {
    Primitive item(store(), _offset);
    EXPECT_TRUE(set(item, {1, 2}, 0));
    EXPECT_THAT(reopened(), ElementsAre(1, 2));
}

TEST_P(Values, AreTakenFromTheirPlaceInTheBlockWhereTheArrayIsEmpty) {
    Primitive item(store(), _offset);
    EXPECT_TRUE(set(item, {10, 11, 12, 13}, 2, 2));
    EXPECT_EQ(item.valuesize(), 16u);
    EXPECT_THAT(reopened(), ElementsAre(0, 0, 12, 13));
}

TEST_P(Values, AreTakenFromTheStartOfTheBlockWhereTheArrayIsNotEmpty) {
    Primitive item(store(), _offset);
    item.reset(1);
    EXPECT_TRUE(set(item, {10, 11, 12, 13}, 2, 2));
    EXPECT_THAT(reopened(), ElementsAre(0, 0, 10, 11));
}

TEST_P(Values, OfNoNumberAreRefused) {
    Primitive item(store(), _offset);
    EXPECT_FALSE(set(item, {1}, 0, 0));
    item.reset(2);
    EXPECT_FALSE(set(item, {1}, 1, 0));
    EXPECT_FALSE(set(item, {1}, 5, 0));
    EXPECT_THAT(reopened(), ElementsAre(0, 0));
}

TEST_P(Values, AreReadWhereTheyAreAllThere) {
    Primitive item(store(), _offset);
    set(item, {1, 2, 3, 4}, 0);
    tInts values(4, -1);
    EXPECT_EQ(get(item, values, 2, 2), 2u);
    EXPECT_THAT(values, ElementsAre(3, 4, -1, -1));
    EXPECT_EQ(get(item, values, 0, 4), 4u);
    EXPECT_THAT(values, ElementsAre(1, 2, 3, 4));
}

TEST_P(Values, AreNotReadInPart) {
    Primitive item(store(), _offset);
    set(item, {1, 2, 3, 4}, 0);
    tInts values(5, -1);
    EXPECT_EQ(get(item, values, 2, 3), 0u);
    EXPECT_EQ(get(item, values, 4, 1), 0u);
    EXPECT_EQ(get(item, values, 0, 5), 0u);
    EXPECT_EQ(get(item, values, 0, 0), 0u);
    EXPECT_EQ(get(item, values, 0xFFFFFFFFu, 1), 0u);
    EXPECT_EQ(get(item, values, 1, 0xFFFFFFFFu), 0u);
    EXPECT_EQ(get(item, values, 0xFFFFFFFFu, 0xFFFFFFFFu), 0u);
    EXPECT_THAT(values, ElementsAre(-1, -1, -1, -1, -1));
}

TEST_P(Values, AreReplacedInsideByOneWriteOfTheWholeRecord) {
    Primitive(store(), _offset).reset(3);
    LoggingStore log(*store());
    Primitive item(&log, _offset);
    log.clearLog();
    set(item, {7}, 1);
    EXPECT_THAT(log.updates(true), ElementsAre(LoggingStore::Entry{LoggingStore::tCall::kUpdate, _offset, 64, true}));
    EXPECT_THAT(log.updates(false), IsEmpty());
}

TEST_P(Values, OfOneByteDoNotStandInTheWayOfTheNext) {
    Primitive item(store(), metadata::kUInt8, L"b");
    EXPECT_TRUE(item.set("abc", 0, 3));
    EXPECT_TRUE(item.set("XY", 2, 2));
    char bytes[4];
    EXPECT_EQ(item.get(bytes, 0, 4), 4u);
    EXPECT_EQ(std::string(bytes, 4), "abXY");
}

TEST_P(Values, OfEachKindAreCountedInItsStride) {
    const std::string block(64, 'v');
    for (unsigned int number = 1; number <= 24; ++number) {
        const auto kind = static_cast<metadata::tValue>(number);
        const unsigned int stride = Primitive::stride(kind);
        Primitive item(store(), kind, L"p");
        EXPECT_TRUE(item.set(block.data(), 0, 3)) << number;
        EXPECT_EQ(item.dimension(), 3u) << number;
        EXPECT_EQ(item.valuesize(), 3 * stride) << number;
        EXPECT_EQ(stored::bytes(store(), item.offset()).substr(52), block.substr(0, 3 * std::size_t{stride})) << number;
    }
}

TEST_P(Values, SharedByTwoObjectsAreCountedAsEachFoundThem) {
    Primitive first(store(), _offset);
    set(first, {1, 2}, 0);
    Primitive second(store(), _offset);
    set(second, {3, 4}, 2);
    EXPECT_EQ(first.dimension(), 2u);
    EXPECT_EQ(second.dimension(), 4u);
    EXPECT_TRUE(set(first, {9}, 1));
    EXPECT_THAT(reopened(), ElementsAre(1, 9, 3, 4)) << "inside what the first object knows";
    EXPECT_TRUE(set(first, {8}, 3));
    EXPECT_THAT(reopened(), ElementsAre(1, 9, 0, 8)) << "past what the first object knows";
}

TEST_P(Values, ThatAreGoneMeanwhileAreNeitherReadNorOverwritten) {
    Primitive first(store(), _offset);
    set(first, {1, 2, 3}, 0);
    Primitive(store(), _offset).reset(1);
    tInts values(3, -1);
    EXPECT_EQ(get(first, values, 0, 3), 0u);
    EXPECT_THAT(values, ElementsAre(-1, -1, -1));
    EXPECT_TRUE(set(first, {9}, 2));
    EXPECT_THAT(reopened(), ElementsAre(0, 0, 9));
}

TEST_P(Values, ThatDoNotFillTheirLastElementLeaveItOut) {
    Primitive(store(), _offset).reset(3);
    std::string bytes = stored::bytes(store(), _offset).substr(0, 52 + 10);
    bytes[38] = 10;
    store()->update(_offset, bytes.data(), static_cast<unsigned int>(bytes.size()), true);
    Primitive item(store(), _offset);
    EXPECT_EQ(item.valuesize(), 10u);
    EXPECT_EQ(item.dimension(), 2u);
    tInts values(3, -1);
    EXPECT_EQ(get(item, values, 0, 3), 0u);
    EXPECT_TRUE(set(item, {9}, 2));
    EXPECT_THAT(reopened(), ElementsAre(0, 0, 9));
}

/// Refusals of what does not fit in 32 bits: nothing of that size is ever allocated.
class HugeValues : public Values {
protected:
    /// Makes the values 1 and 2 of a kind's bytes, and refuses what the test does to them.
    template <class Attempt>
    void refuses(metadata::tValue kind, Attempt attempt) {
        Primitive item(store(), kind, L"p");
        item.set("\1\2\3\4\5\6\7\x8\x9\xA\xB\xC\xD\xE\xF\x10", 0, 2);
        const std::string before = hex(store(), item.offset());
        const unsigned int size = item.valuesize();
        EXPECT_FALSE(attempt(item));
        EXPECT_EQ(hex(store(), item.offset()), before);
        EXPECT_EQ(item.valuesize(), size);
    }
};
LVP_ON_EACH_STORE(HugeValues);

TEST_P(HugeValues, AreNotMadeByReset) {
    refuses(metadata::kDouble, [](Primitive& item) { return item.reset(0xFFFFFFFFu); });
    refuses(metadata::kDouble, [](Primitive& item) { return item.reset(0x20000000u); });
    refuses(metadata::kInt32, [](Primitive& item) { return item.reset(0x40000000u); });
    refuses(metadata::kInt16, [](Primitive& item) { return item.reset(0x80000001u); });
}

TEST_P(HugeValues, AreNotMadeByResetWhereOnlyTheHeaderIsTooMuch) {
    refuses(metadata::kUInt8, [](Primitive& item) { return item.reset(0xFFFFFFFFu); });
    refuses(metadata::kInt32, [](Primitive& item) { return item.reset(0x3FFFFFFFu); });
    refuses(metadata::kDouble, [](Primitive& item) { return item.reset(0x1FFFFFFFu); });
}

TEST_P(HugeValues, AreNotMadeBySet) {
    const char value[8] = {};
    refuses(metadata::kDouble, [&](Primitive& item) { return item.set(value, 0x20000000u, 1); });
    refuses(metadata::kInt32, [&](Primitive& item) { return item.set(value, 0x3FFFFFFFu, 1); });
    refuses(metadata::kInt32, [&](Primitive& item) { return item.set(value, 0xFFFFFFFFu, 1); });
    refuses(metadata::kInt16, [&](Primitive& item) { return item.set(value, 0x7FFFFFFFu, 1); });
    refuses(metadata::kInt32, [&](Primitive& item) { return item.set(value, 1, 0xFFFFFFFFu); });
    refuses(metadata::kDouble, [&](Primitive& item) { return item.set(value, 0xFFFFFFFFu, 0xFFFFFFFFu); });
}

TEST_P(HugeValues, AreNotMadeBySetInAnEmptyArray) {
    const char value[8] = {};
    Primitive item(store(), metadata::kDouble, L"p");
    const std::string before = hex(store(), item.offset());
    EXPECT_FALSE(item.set(value, 0x20000000u, 1));
    EXPECT_FALSE(item.set(value, 0, 0x20000000u));
    EXPECT_FALSE(item.set(value, 0, 0x1FFFFFFFu));
    EXPECT_EQ(hex(store(), item.offset()), before);
    EXPECT_EQ(item.dimension(), 0u);
}

}  // namespace
