#include <stdexcept>

#include "lumivard/platform/store_contract/FailingStore.h"
#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/container/CopyFixture.h"
#include "tests/container/NotingStore.h"
#include "tests/container/SchemaClientFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::store_contract::FailingStore;
using lumivard::platform::store_contract::LoggingStore;
using tLog = std::vector<std::string>;

/// The guards of `create` with a schema, and what a failing store leaves of it.
class CreateWithSchema : public SchemaClientTest {
protected:
    using tCreate = std::function<bool(IContainer& owner, const wchar_t* name, ISchema* schema)>;

    static bool createContainer(IContainer& owner, const wchar_t* name, ISchema* schema) {
        return static_cast<bool>(owner.create(IContainer::kGroup, name, schema));
    }
    static bool createTable(IContainer& owner, const wchar_t* name, ISchema* schema) {
        return static_cast<bool>(owner.create(name, schema));
    }

    /// Runs a creation in a new store that fails at its first change of content, its second, and so on until it gets
    /// through. Each time no guard and no count may be left, the name may be taken or free, and another one is free.
    void failAtEachChange(const tCreate& create) {
        for (int changes = 0;; ++changes) {
            ASSERT_LT(changes, 200);
            SCOPED_TRACE("failing after " + std::to_string(changes));
            const auto real = GetParam().make();
            LoggingStore logged(*real);
            FailingStore failing(logged);
            auto owner = IContainerFrontEnd::toplevel(&failing, L"top");
            LoggingStore schemas(*other());
            auto locator = ISchemaLocator::make(&schemas);
            auto both = locator->resolve(L"kits.part;kits.extra");
            failing.failAfter(changes);
            bool failed = false;
            try {
                EXPECT_TRUE(create(*owner, L"made", both.get()));
            } catch (const std::runtime_error&) {
                failed = true;
            }
            failing.goOn();
            EXPECT_EQ(0, logged.guards());
            EXPECT_EQ(0u, logged.unguarded());
            EXPECT_EQ(0, schemas.guards());
            EXPECT_TRUE(create(*owner, L"another", both.get()));
            owner.reset();
            for (const unsigned int each : subtree(real.get(), 0)) EXPECT_EQ(0u, stored::refs(real.get(), each));
            EXPECT_TRUE(IContainerFrontEnd::find(real.get(), L"top")->has(L"another.rest.deep.leaf"));
            if (!failed) {
                EXPECT_GT(changes, 0);
                return;
            }
        }
    }
};
LVP_ON_EACH_STORE(CreateWithSchema);

TEST_P(CreateWithSchema, OfAContainerHoldsTheGuardOfEachSchemasStoreWithinItsOwn) {
    tLog log;
    NotingStore own(*store(), "own", log);
    NotingStore schemas(*other(), "schemas", log);
    const auto locator = ISchemaLocator::make(&schemas);
    const auto one = locator->resolve(L"kits.part");
    const auto two = locator->resolve(L"kits.part;kits.extra");
    const auto owner = IContainerFrontEnd::toplevel(&own, L"top");
    log.clear();
    const auto first = owner->create(IContainer::kNode, L"first", one.get());
    EXPECT_EQ((tLog{"+own", "+schemas", "-schemas", "-own"}), log);
    log.clear();
    const auto second = owner->create(IContainer::kNode, L"second", two.get());
    EXPECT_EQ((tLog{"+own", "+schemas", "-schemas", "+schemas", "-schemas", "-own"}), log);
}

TEST_P(CreateWithSchema, OfATableHoldsItsOwnGuardAlone) {
    tLog log;
    NotingStore own(*store(), "own", log);
    NotingStore schemas(*other(), "schemas", log);
    const auto locator = ISchemaLocator::make(&schemas);
    const auto part = locator->resolve(L"kits.part");
    const auto owner = IContainerFrontEnd::toplevel(&own, L"top");
    log.clear();
    const auto table = owner->create(L"table", part.get());
    EXPECT_EQ((tLog{"+own", "-own"}), log);
    log.clear();
    const auto inner = table->create(L"inner", part.get());
    EXPECT_EQ((tLog{"+own", "-own"}), log);
}

TEST_P(CreateWithSchema, IsGuardedThroughout) {
    LoggingStore logged(*store());
    const auto owner = IContainerFrontEnd::toplevel(&logged, L"top");
    ISchema* part = schema(L"kits.part");
    EXPECT_TRUE(owner->create(IContainer::kLink, L"link", part));
    EXPECT_TRUE(owner->create(L"table", part)->create(L"inner", part));
    EXPECT_EQ(0u, logged.unguarded());
    EXPECT_EQ(0, logged.guards());
}

TEST_P(CreateWithSchema, OfAContainerLeavesNothingHeldWhenTheStoreFails) {
    failAtEachChange(createContainer);
}

TEST_P(CreateWithSchema, OfATableLeavesNothingHeldWhenTheStoreFails) {
    failAtEachChange(createTable);
}

}  // namespace
