#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::store_contract::LoggingStore;

/// A name without characters is no name: below the top it finds nothing, and makes and renames nothing.
class MissingName : public ClientTest {
protected:
    void SetUp() override {
        const auto owner = top();
        owner->create(L"number", metadata::kStruct);
        owner->create(L"table", kNoSchema)->create(L"item", metadata::kInt32, units::kNoUnit);
        owner->create(IContainer::kGroup, L"group", kNoSchema);
    }

    /// Runs a call through a log, and expects it to change no content of the store.
    template <class Call>
    void expectNothingWritten(Call call) {
        LoggingStore logged(*store());
        call(*IContainerFrontEnd::find(&logged, L"top"));
        EXPECT_EQ(0u, logged.count(LoggingStore::tCall::kCreate));
        EXPECT_EQ(0u, logged.count(LoggingStore::tCall::kAppend));
        EXPECT_EQ(0u, logged.count(LoggingStore::tCall::kErase));
        EXPECT_THAT(logged.updates(true), testing::IsEmpty());
    }
};
LVP_ON_EACH_STORE(MissingName);

TEST_P(MissingName, IsFoundNowhereInAContainer) {
    const auto owner = top();
    EXPECT_FALSE(owner->has(kNoName));
    EXPECT_FALSE(owner->property(kNoName));
    EXPECT_FALSE(owner->has(L""));
    EXPECT_FALSE(owner->property(nullptr));
}

TEST_P(MissingName, IsFoundNowhereInATable) {
    const auto property = top()->property(L"table");
    EXPECT_FALSE(asTable(property).lookup(kNoName));
    EXPECT_FALSE(asTable(property).lookup(L""));
}

TEST_P(MissingName, DestroysNothing) {
    expectNothingWritten([](IContainer& owner) {
        EXPECT_FALSE(owner.destroy(kNoName));
        EXPECT_FALSE(asTable(owner.property(L"table")).destroy(kNoName));
    });
}

TEST_P(MissingName, MakesNothingInAContainer) {
    expectNothingWritten([](IContainer& owner) {
        EXPECT_FALSE(owner.create(IContainer::kGroup, kNoName, kNoSchema));
        EXPECT_FALSE(owner.create(static_cast<IContainer::tType>(3), kNoName, kNoSchema));
        EXPECT_FALSE(owner.create(kNoName, metadata::kInt32));
        EXPECT_FALSE(owner.create(kNoName, kNoSchema));
    });
}

TEST_P(MissingName, MakesNothingInATable) {
    asTable(property(L"table")).defaults(units::kMeter, metadata::kDouble);
    expectNothingWritten([](IContainer& owner) {
        const auto property = owner.property(L"table");
        EXPECT_FALSE(asTable(property).create(kNoName, kNoSchema));
        EXPECT_FALSE(asTable(property).create(kNoName, metadata::kInt32, units::kMeter));
        EXPECT_FALSE(asTable(property).create(kNoName, units::group(units::kMeter)));
    });
}

TEST_P(MissingName, RenamesNothing) {
    expectNothingWritten([](IContainer& owner) {
        EXPECT_FALSE(owner.container(L"group")->rename(kNoName));
        EXPECT_FALSE(owner.property(L"number")->rename(kNoName));
        EXPECT_FALSE(owner.property(L"table.item")->rename(kNoName));
        EXPECT_FALSE(owner.property(L"table")->rename(L""));
    });
}

TEST_P(MissingName, OfALocaleDescribesNothing) {
    expectNothingWritten([](IContainer& owner) {
        owner.describe(kNoName, L"text");
        owner.property(L"number")->describe(kNoName, L"text");
    });
    EXPECT_EQ(0u, top()->locales());
    EXPECT_EQ(0u, property(L"number")->locales());
}

TEST_P(MissingName, OfALocaleHasNoText) {
    top()->describe(L"en", L"text");
    property(L"number")->describe(L"en", L"text");
    EXPECT_EQ(nullptr, top()->localize(kNoName).value());
    EXPECT_EQ(nullptr, property(L"number")->localize(kNoName).value());
}

TEST_P(MissingName, InPlaceOfATextForAnUnknownLocaleDoesNothing) {
    expectNothingWritten([](IContainer& owner) {
        owner.describe(L"en", kNoName);
        owner.property(L"number")->describe(L"en", kNoName);
    });
    EXPECT_EQ(0u, top()->locales());
}

TEST_P(MissingName, ClearsTheSchemaOfAStruct) {
    const auto property = top()->property(L"number");
    EXPECT_TRUE(asPrimitive(property).schema(L"pose"));
    EXPECT_TRUE(asPrimitive(property).schema(kNoName));
    EXPECT_EQ(nullptr, asPrimitive(property).schema().value());
    EXPECT_EQ(nullptr, asPrimitive(top()->property(L"number")).schema().value());
}

}  // namespace
