#include <typeinfo>

#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;

/// The counted pointers in which results come.
class SharedResult : public ClientTest {
protected:
    /// Checks that a result is held by nobody but the pointer that it came in.
    template <class T>
    static void expectFresh(const SharedPtr<T>& result, const char* what) {
        ASSERT_NE(nullptr, result.get()) << what;
        ASSERT_NE(nullptr, result.counter()) << what;
        EXPECT_EQ(1, result.counter()->count()) << what;
        EXPECT_EQ(1, result.counter()->countUse()) << what;
    }
};
LVP_ON_EACH_STORE(SharedResult);

TEST_P(SharedResult, IsFreshFromEveryOperation) {
    const auto owner = top();
    expectFresh(owner, "toplevel");
    expectFresh(owner->create(IContainer::kGroup, L"group", kNoSchema), "create a group");
    expectFresh(owner->create(IContainer::kNode, L"node", kNoSchema), "create a node");
    expectFresh(owner->create(IContainer::kLink, L"link", kNoSchema), "create a link");
    expectFresh(owner->create(L"number", metadata::kInt32), "create a primitive");
    expectFresh(find(L"top"), "find");
    expectFresh(owner->container(L"group"), "container");
    expectFresh(owner->container(kNoName), "container without a name");
    expectFresh(owner->container(L"group")->parent(), "parent");
    expectFresh(owner->property(L"number"), "property");
    expectFresh(owner->properties(), "properties");
    expectFresh(owner->properties()->current(), "current property");
    expectFresh(owner->containers(), "containers");
    expectFresh(owner->containers()->current(), "current container");
    const auto link = owner->container(L"link");
    ILink::to(link.get())->target(L"top");
    expectFresh(ILink::to(link.get())->follow(nullptr), "follow");
}

TEST_P(SharedResult, IsFreshFromEveryOperationOfATable) {
    const auto table = top()->create(L"table", kNoSchema);
    expectFresh(table, "create a table");
    table->defaults(units::kMeter, metadata::kDouble);
    expectFresh(table->create(L"inner", kNoSchema), "create a table in a table");
    expectFresh(table->create(L"number", metadata::kInt32, units::kNoUnit), "create a primitive in a table");
    expectFresh(table->create(L"length", units::group(units::kMeter)), "create a primitive of a group");
    expectFresh(table->lookup(L"number"), "lookup");
    expectFresh(table->at(0), "at");
    expectFresh(table->properties(), "properties of a table");
    expectFresh(table->properties()->current(), "current property of a table");
    expectFresh(table->lookup(L"number")->parent(), "parent");
}

TEST_P(SharedResult, CountsItsCopies) {
    const auto one = top();
    {
        const auto two = one;
        EXPECT_EQ(2, one.counter()->countUse());
        EXPECT_EQ(1, one.counter()->count());
    }
    EXPECT_EQ(1, one.counter()->countUse());
}

TEST_P(SharedResult, LivesAsLongAsItsLastCopy) {
    const auto owner = top();
    auto one = owner->create(IContainer::kGroup, L"group", kNoSchema);
    auto two = one;
    one.reset();
    EXPECT_EQ(L"group", text(two->tag()));
    EXPECT_FALSE(owner->destroy(L"group"));
    two.reset();
    EXPECT_TRUE(owner->destroy(L"group"));
}

TEST_P(SharedResult, HasNoCounterWhenItIsNull) {
    const auto owner = top();
    EXPECT_EQ(nullptr, owner->parent().counter());
    EXPECT_EQ(nullptr, owner->container(L"nothing").counter());
    EXPECT_EQ(nullptr, owner->property(L"nothing").counter());
    EXPECT_EQ(nullptr, owner->properties()->current().counter());
    EXPECT_EQ(nullptr, owner->containers()->current().counter());
    EXPECT_EQ(nullptr, find(L"nothing").counter());
    const auto table = owner->create(L"table", kNoSchema);
    EXPECT_EQ(nullptr, owner->create(L"table", kNoSchema).counter());
    EXPECT_EQ(nullptr, owner->create(L"table", metadata::kInt32).counter());
    EXPECT_EQ(nullptr, owner->create(IContainer::kNode, L"table", kNoSchema).counter());
    EXPECT_EQ(nullptr, table->lookup(L"nothing").counter());
    EXPECT_EQ(nullptr, table->at(0).counter());
    EXPECT_EQ(nullptr, table->create(L"length", units::group(units::kMeter)).counter());
    EXPECT_EQ(nullptr, table->container()->parent().counter());
}

TEST_P(SharedResult, OfAPropertyIsCountedAsAProperty) {
    using lumivard::platform::core::memory::_Private::_Counter::_CounterImp;
    const auto owner = top();
    owner->create(L"number", metadata::kInt32);
    const auto property = owner->property(L"number");
    const auto current = owner->properties()->current();
    const auto& ofProperty = *property.counter();
    const auto& ofCurrent = *current.counter();
    EXPECT_EQ(typeid(_CounterImp<IProperty>), typeid(ofProperty));
    EXPECT_EQ(typeid(_CounterImp<IProperty>), typeid(ofCurrent));
}

TEST_P(SharedResult, HoldsThePrimitiveSideWhileTheWholeObjectIsCounted) {
    auto number = top()->create(L"number", metadata::kInt32);
    const auto side = static_cast<const void*>(number.get());
    EXPECT_NE(side, static_cast<const void*>(number->container()));
    EXPECT_EQ(number.get(), IPrimitive::to(number->container()));
    number.reset();
    EXPECT_TRUE(top()->destroy(L"number"));
}

}  // namespace
