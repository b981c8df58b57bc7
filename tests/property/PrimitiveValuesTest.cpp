#include <numeric>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::store_contract::LoggingStore;

/// The values of a primitive.
class PrimitiveValues : public ClientTest {
protected:
    SharedPtr<IPrimitive> made(metadata::tValue kind) { return top()->create(L"value", kind); }
    SharedPtr<IProperty> reopened() { return property(L"value"); }

    /// `count` bytes, none like its neighbours.
    static std::vector<char> pattern(std::size_t count) {
        std::vector<char> bytes(count);
        for (std::size_t index = 0; index < count; ++index) bytes[index] = static_cast<char>(index + 1);
        return bytes;
    }

    static std::vector<int> ints(IPrimitive& primitive) { return values<int>(primitive); }
};
LVP_ON_EACH_STORE(PrimitiveValues);

struct KindRow {
    metadata::tValue kind;
    unsigned int number;
    unsigned int stride;
    unsigned int elements;  ///< of one whole value: the components of a vector or a matrix
};

constexpr KindRow kKinds[] = {
    {metadata::kBinary, 1, 1, 1},  {metadata::kUUID, 2, 4, 1},     {metadata::kString, 3, 4, 1},
    {metadata::kTime, 4, 4, 1},    {metadata::kURI, 5, 4, 1},      {metadata::kVersion, 6, 4, 1},
    {metadata::kBool, 7, 1, 1},    {metadata::kInt8, 8, 1, 1},     {metadata::kUInt8, 9, 1, 1},
    {metadata::kInt16, 10, 2, 1},  {metadata::kUInt16, 11, 2, 1},  {metadata::kInt32, 12, 4, 1},
    {metadata::kUInt32, 13, 4, 1}, {metadata::kInt64, 14, 8, 1},   {metadata::kUInt64, 15, 8, 1},
    {metadata::kScalar, 16, 4, 1}, {metadata::kDouble, 17, 8, 1},  {metadata::kVec2, 18, 8, 2},
    {metadata::kVec3, 19, 8, 3},   {metadata::kVec4, 20, 8, 4},    {metadata::kMtx2x2, 21, 8, 4},
    {metadata::kMtx3x3, 22, 8, 9}, {metadata::kMtx4x4, 23, 8, 16}, {metadata::kStruct, 24, 1, 1},
};

TEST_P(PrimitiveValues, AreWrittenAndReadInEveryKind) {
    for (const KindRow& row : kKinds) {
        SCOPED_TRACE("kind " + std::to_string(row.number));
        ASSERT_EQ(row.number, row.kind);
        const std::wstring name = L"value" + std::to_wstring(row.number);
        const unsigned int count = 2 * row.elements;
        const std::vector<char> written = pattern(std::size_t{count} * row.stride);
        EXPECT_TRUE(top()->create(name.c_str(), row.kind)->set(written.data(), 0, count));

        const auto again = property(name.c_str());
        IPrimitive& value = asPrimitive(again);
        EXPECT_EQ(row.kind, value.valuetype());
        EXPECT_EQ(row.stride, value.stride());
        EXPECT_EQ(count, value.dimension());
        EXPECT_EQ(count * row.stride, value.bytes());
        std::vector<char> read(written.size());
        EXPECT_TRUE(value.get(read.data(), 0, count));
        EXPECT_EQ(written, read);
        std::vector<char> last(row.stride);
        EXPECT_TRUE(value.get(last.data(), count - 1, 1));
        EXPECT_EQ(std::vector<char>(written.end() - row.stride, written.end()), last);
        EXPECT_FALSE(value.get(last.data(), count, 1));
    }
}

TEST_P(PrimitiveValues, AreTextInTheTextKinds) {
    const std::wstring words(L"one\0two\0", 8);
    for (const auto kind : {metadata::kUUID, metadata::kString, metadata::kTime, metadata::kURI, metadata::kVersion}) {
        const std::wstring name = L"value" + std::to_wstring(kind);
        EXPECT_TRUE(top()->create(name.c_str(), kind)->set(words.data(), 0, 8));
        const auto read = values<wchar_t>(asPrimitive(property(name.c_str())));
        EXPECT_EQ(words, std::wstring(read.begin(), read.end()));
    }
}

TEST_P(PrimitiveValues, AreNoneAtFirst) {
    const auto value = made(metadata::kInt32);
    int room = 7;
    EXPECT_EQ(0u, value->dimension());
    EXPECT_EQ(0u, value->bytes());
    EXPECT_FALSE(value->get(&room, 0, 1));
    EXPECT_EQ(7, room);
}

TEST_P(PrimitiveValues, AreZeroAfterAReset) {
    const auto value = made(metadata::kInt32);
    const int numbers[] = {1, 2};
    value->set(numbers, 0, 2);
    EXPECT_TRUE(value->reset(3));
    EXPECT_EQ(12u, value->bytes());
    EXPECT_EQ((std::vector<int>{0, 0, 0}), ints(*value));
    EXPECT_EQ((std::vector<int>{0, 0, 0}), ints(asPrimitive(reopened())));
    EXPECT_TRUE(value->reset(0));
    EXPECT_EQ(0u, value->dimension());
    EXPECT_EQ(0u, asPrimitive(reopened()).dimension());
}

TEST_P(PrimitiveValues, AreReplacedWithinTheArray) {
    const auto value = made(metadata::kInt32);
    const int numbers[] = {1, 2};
    value->reset(3);
    EXPECT_TRUE(value->set(numbers, 1, 2));
    EXPECT_EQ((std::vector<int>{0, 1, 2}), ints(*value));
    EXPECT_TRUE(value->set(numbers, 0, 1));
    EXPECT_EQ((std::vector<int>{1, 1, 2}), ints(asPrimitive(reopened())));
}

TEST_P(PrimitiveValues, GrowWhereTheyRunPastTheEnd) {
    const auto value = made(metadata::kInt32);
    const int numbers[] = {1, 2};
    value->reset(3);
    EXPECT_TRUE(value->set(numbers, 2, 2));
    EXPECT_EQ((std::vector<int>{0, 0, 1, 2}), ints(*value));
    EXPECT_EQ((std::vector<int>{0, 0, 1, 2}), ints(asPrimitive(reopened())));
}

TEST_P(PrimitiveValues, HaveZerosInAGap) {
    const auto value = made(metadata::kInt32);
    const int numbers[] = {1, 2};
    value->set(numbers, 0, 2);
    EXPECT_TRUE(value->set(numbers, 4, 1));
    EXPECT_EQ((std::vector<int>{1, 2, 0, 0, 1}), ints(asPrimitive(reopened())));
}

TEST_P(PrimitiveValues, NeverShrinkBySet) {
    const auto value = made(metadata::kInt32);
    const int numbers[] = {1, 2, 3};
    value->set(numbers, 0, 3);
    EXPECT_TRUE(value->set(numbers + 2, 0, 1));
    EXPECT_EQ((std::vector<int>{3, 2, 3}), ints(asPrimitive(reopened())));
}

TEST_P(PrimitiveValues, AreTakenFromTheirPositionInTheSourceInAnEmptyArray) {
    const auto value = made(metadata::kInt32);
    const int numbers[] = {1, 2, 3, 4};
    EXPECT_TRUE(value->set(numbers, 2, 2));
    EXPECT_EQ((std::vector<int>{0, 0, 3, 4}), ints(*value));
    EXPECT_EQ((std::vector<int>{0, 0, 3, 4}), ints(asPrimitive(reopened())));
    // Once there are elements they are taken from the beginning of the source.
    EXPECT_TRUE(value->set(numbers, 4, 1));
    EXPECT_EQ((std::vector<int>{0, 0, 3, 4, 1}), ints(*value));
}

TEST_P(PrimitiveValues, AreNotSetWithoutACount) {
    const auto value = made(metadata::kInt32);
    const int number = 1;
    EXPECT_FALSE(value->set(&number, 0, 0));
    EXPECT_FALSE(value->set(nullptr, 3, 0));
    EXPECT_EQ(0u, value->dimension());
}

TEST_P(PrimitiveValues, AreReadAllOrNotAtAll) {
    const auto value = made(metadata::kInt32);
    const int numbers[] = {1, 2, 3, 4};
    value->set(numbers, 0, 4);
    const std::vector<int> untouched{7, 7, 7, 7, 7};
    std::vector<int> room = untouched;
    EXPECT_FALSE(value->get(room.data(), 2, 3));
    EXPECT_FALSE(value->get(room.data(), 0, 5));
    EXPECT_FALSE(value->get(room.data(), 4, 1));
    EXPECT_FALSE(value->get(room.data(), 0xFFFFFFFFu, 1));
    EXPECT_FALSE(value->get(room.data(), 0xFFFFFFFFu, 2));
    EXPECT_FALSE(value->get(room.data(), 2, 0xFFFFFFFFu));
    EXPECT_EQ(untouched, room);
    EXPECT_TRUE(value->get(room.data(), 2, 2));
    EXPECT_EQ((std::vector<int>{3, 4, 7, 7, 7}), room);
}

TEST_P(PrimitiveValues, AreNotReadWithoutACountNorIsTheGuardTaken) {
    const int number = 1;
    made(metadata::kInt32)->set(&number, 0, 1);
    LoggingStore logged(*store());
    const auto value = IContainerFrontEnd::find(&logged, L"top")->property(L"value");
    IPrimitive& primitive = asPrimitive(value);
    logged.clearLog();
    int room = 7;
    EXPECT_FALSE(primitive.get(&room, 0, 0));
    EXPECT_EQ(7, room);
    EXPECT_THAT(logged.log(), testing::IsEmpty());
}

TEST_P(PrimitiveValues, ThatDoNotFitIntoARecordAreRefused) {
    const auto value = made(metadata::kDouble);
    const double numbers[] = {1, 2};
    value->set(numbers, 0, 2);
    const unsigned int offset = stored::children(store(), stored::children(store(), 0).at(0)).at(0);
    const std::string before = stored::bytes(store(), offset);
    // These counts of bytes are small once they are cut to 32 bits.
    EXPECT_FALSE(value->reset(0x20000000u));
    EXPECT_FALSE(value->reset(0x20000001u));
    EXPECT_FALSE(value->reset(0xFFFFFFFFu));
    EXPECT_FALSE(value->set(numbers, 0x20000000u, 1));
    EXPECT_FALSE(value->set(numbers, 0xFFFFFFFFu, 2));
    EXPECT_EQ(before, stored::bytes(store(), offset));
    EXPECT_EQ((std::vector<double>{1, 2}), values<double>(*value));
}

TEST_P(PrimitiveValues, ShowAHiddenPropertyAndTheOwnersAroundIt) {
    const auto group = top()->create(IContainer::kGroup, L"group", kNoSchema);
    const auto table = group->create(L"table", kNoSchema);
    const auto item = table->create(L"item", metadata::kInt32, units::kNoUnit);
    const unsigned int offset = stored::children(store(), stored::children(store(), 0).at(0)).at(0);
    stored::putByte(store(), offset, stored::kFlags, 0x04);
    table->container()->on(0x06);
    item->container()->on(0x06);
    const int number = 1;
    EXPECT_TRUE(item->set(&number, 0, 1));
    EXPECT_EQ(0x02, item->container()->flags());
    EXPECT_EQ(0x02, table->container()->flags());
    EXPECT_EQ(0x00, stored::byte(store(), offset, stored::kFlags));
}

TEST_P(PrimitiveValues, ShowOwnersUpToTheFirstThatIsNotHidden) {
    const auto group = top()->create(IContainer::kGroup, L"group", kNoSchema);
    const auto item = group->create(L"table", kNoSchema)->create(L"item", metadata::kInt32, units::kNoUnit);
    const unsigned int offset = stored::children(store(), stored::children(store(), 0).at(0)).at(0);
    stored::putByte(store(), offset, stored::kFlags, 0x04);
    item->container()->on(0x04);
    const int number = 1;
    EXPECT_TRUE(item->set(&number, 0, 1));
    EXPECT_EQ(0x00, item->container()->flags());
    EXPECT_EQ(0x04, stored::byte(store(), offset, stored::kFlags));
}

TEST_P(PrimitiveValues, ShowTheOwnerOfAPropertyThatIsNotHiddenItself) {
    const auto table = top()->create(L"table", kNoSchema);
    const auto item = table->create(L"item", metadata::kInt32, units::kNoUnit);
    table->container()->on(0x04);
    const int number = 1;
    EXPECT_TRUE(item->set(&number, 0, 1));
    EXPECT_EQ(0x00, table->container()->flags());
}

TEST_P(PrimitiveValues, ShowNothingByResetOrByARefusedSet) {
    const auto value = made(metadata::kInt32);
    value->container()->on(0x04);
    const int number = 1;
    EXPECT_TRUE(value->reset(2));
    EXPECT_FALSE(value->set(&number, 0, 0));
    EXPECT_TRUE(value->uri(L"x"));
    EXPECT_FALSE(value->set(&number, 0, 1));
    EXPECT_EQ(0x0C, value->container()->flags());
}

TEST_P(PrimitiveValues, ShowOnlyOnce) {
    const auto value = made(metadata::kInt32);
    const int number = 1;
    value->set(&number, 0, 1);
    value->container()->on(0x04);
    EXPECT_EQ(0x04, value->container()->flags());
    value->set(&number, 0, 1);
    EXPECT_EQ(0x00, value->container()->flags());
}

TEST_P(PrimitiveValues, MayBeMany) {
    const auto value = made(metadata::kInt32);
    std::vector<int> numbers(100000);
    std::iota(numbers.begin(), numbers.end(), 0);
    EXPECT_TRUE(value->set(numbers.data(), 0, 100000));
    EXPECT_EQ(numbers, ints(asPrimitive(reopened())));
}

}  // namespace
