#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;

/// A schema of nothing, which no operation may ask anything.
class NoSchema final : public ISchema {
public:
    WideString path() const override {
        ADD_FAILURE() << "a schema was asked for its path";
        return {};
    }
    metadata::IStructLayout* layout() override {
        ADD_FAILURE() << "a schema was asked for its layout";
        return nullptr;
    }
};

/// Operations whose slots stand, and which refuse in this version.
class LaterOperations : public ClientTest {
protected:
    void SetUp() override {
        const auto owner = top();
        owner->create(IContainer::kGroup, L"group", kNoSchema)->create(L"number", metadata::kInt32);
        owner->create(L"table", kNoSchema);
        _extent = store()->extent();
    }

    void TearDown() override { EXPECT_EQ(_extent, store()->extent()) << "something was made"; }

    NoSchema& schema() { return _schema; }

private:
    NoSchema _schema;
    unsigned long long _extent = 0;
};
LVP_ON_EACH_STORE(LaterOperations);

TEST_P(LaterOperations, CopyNothing) {
    EXPECT_FALSE(top()->copy(find(L"top.group")));
    EXPECT_FALSE(top()->copy(SharedPtr<IContainer>()));
    EXPECT_FALSE(top()->has(L"number"));
}

TEST_P(LaterOperations, CloneNothing) {
    const auto owner = top();
    EXPECT_FALSE(owner->clone(find(L"top.group")));
    EXPECT_FALSE(find(L"top.group")->clone(find(L"top")));
    EXPECT_FALSE(owner->clone(owner->property(L"group.number")));
    EXPECT_FALSE(owner->clone(L"group.number", L"copy", false));
    EXPECT_FALSE(owner->clone(L"top.group.number", L"copy", true));
    EXPECT_FALSE(find(L"top.group")->clone(store(), L"top.copy"));
    EXPECT_FALSE(find(L"top.group")->clone(other(), L"top.copy"));
    EXPECT_EQ(0u, other()->extent());
    EXPECT_FALSE(top()->has(L"copy"));
}

TEST_P(LaterOperations, ValidateNothing) {
    const auto owner = top();
    EXPECT_FALSE(owner->validates(&schema(), true));
    EXPECT_FALSE(owner->validates(&schema(), false));
    EXPECT_FALSE(owner->validates(kNoSchema, false));
    EXPECT_FALSE(owner->validates(L"group", &schema(), true));
    EXPECT_FALSE(owner->validates(L"table", &schema(), false));
    EXPECT_FALSE(asTable(owner->property(L"table")).validates(&schema()));
}

TEST_P(LaterOperations, MakeNothingWithASchema) {
    const auto owner = top();
    const auto none = owner->create(IContainer::kGroup, L"new", &schema());
    EXPECT_FALSE(none);
    EXPECT_EQ(nullptr, none.counter());
    EXPECT_FALSE(owner->create(L"new", &schema()));
    EXPECT_FALSE(asTable(owner->property(L"table")).create(L"new", &schema()));
    EXPECT_FALSE(owner->has(L"new"));
    EXPECT_TRUE(stored::children(store(), stored::children(store(), stored::children(store(), 0).at(0)).at(1)).empty());
}

TEST_P(LaterOperations, MakeNoLocator) {
    const auto none = metadata::ISchemaLocator::make(store());
    EXPECT_FALSE(none);
    EXPECT_EQ(nullptr, none.counter());
    EXPECT_FALSE(metadata::ISchemaLocator::make(nullptr));
}

TEST_P(LaterOperations, MakeNoListOfStrings) {
    EXPECT_EQ(nullptr, metadata::IStringArray::to(L"a\0b", 4));
    EXPECT_EQ(nullptr, metadata::IStringArray::to(nullptr, 0));
}

}  // namespace
