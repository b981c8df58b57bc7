// What containers and tables take in from schemas.
#include <stdexcept>

#include "design/Container.h"
#include "design/Table.h"
#include "lumivard/platform/store_contract/FailingStore.h"
#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/schema/SchemaFixture.h"
#include "tests/support/Offsets.h"

namespace {

using namespace lumivard::platform::test_support;
using data::Design::Primitive;
using data::Design::Table;
using data::Structural::Container;
using lumivard::platform::store_contract::FailingStore;
using lumivard::platform::store_contract::LoggingStore;
using testing::ElementsAre;
using tCall = LoggingStore::tCall;

using lumivard::platform::test_support::BADOFF;

/// An implementation of the interface that is none of ours.
class ForeignSchema final : public ISchema {
public:
    WideString path() const override { return L"a"; }
    IStructLayout* layout() override { return nullptr; }
};

/// Schemas in the one store, and in the other a container and a table without items.
class Inherit : public SchemaTest {
protected:
    /// The container or the table takes in a schema; each call opens it anew, in a store over its own.
    bool inherit(unsigned int heir, ISchema* schema, IDataStore* through) {
        if (heir == _container) return Container(through, heir, false).inherit(schema);
        return Table(through, heir, false).inherit(schema);
    }
    bool inherit(unsigned int heir, const wchar_t* uri) { return inherit(heir, resolve(uri).get(), other()); }

    tNames items(unsigned int heir) { return childNames(other(), heir); }

    /// The base list of a container or table, and the length of its section in the record.
    std::wstring base(unsigned int heir) {
        const wchar_t* text = nullptr;
        if (heir == _container) {
            const Container container(other(), heir, true);
            text = container.base();
            return text ? text : L"(none)";
        }
        const Table table(other(), heir, true);
        text = table.base();
        return text ? text : L"(none)";
    }
    unsigned int baseLength(unsigned int heir) { return stored::word(other(), heir, heir == _container ? 23 : 30); }

    const unsigned int _container = tree::addContainer(other(), 0, L"container");
    const unsigned int _table = tree::addTable(other(), 0, L"table");
    const unsigned int _heirs[2] = {_container, _table};
};
LVP_ON_EACH_STORE(Inherit);

TEST_P(Inherit, TakesInTheItemsInTheirOrder) {
    const unsigned int a = schema(L"a");
    for (const wchar_t* name : {L"z", L"b", L"y"}) addValues(store(), a, name, metadata::kInt32, 1);
    for (const unsigned int heir : _heirs) {
        EXPECT_TRUE(inherit(heir, L"a"));
        EXPECT_THAT(items(heir), ElementsAre(L"z", L"b", L"y"));
        for (const unsigned int item : stored::children(other(), heir)) {
            EXPECT_EQ(stored::word(other(), item, stored::kParent), heir);
            EXPECT_EQ(stored::refs(other(), item), 0u);
        }
    }
}

TEST_P(Inherit, CopiesWhatAnItemHolds) {
    const unsigned int a = schema(L"a");
    const unsigned int source = addStruct(store(), a, L"p", L"pose", 5);
    Primitive(store(), source).units(data::units::kMeter);
    Primitive(store(), source).set("12345", 0, 5);
    Primitive(store(), source).localize(L"Name", L"de");
    for (const unsigned int heir : _heirs) {
        inherit(heir, L"a");
        const unsigned int copy = stored::children(other(), heir).at(0);
        EXPECT_EQ(stored::bytes(other(), copy).substr(14), stored::bytes(store(), source).substr(14));
        EXPECT_EQ(Primitive(other(), copy).locales(), 1u);
    }
}

TEST_P(Inherit, MarksTheCopyAndEverythingBelowIt) {
    const unsigned int t = tree::addTable(store(), schema(L"a"), L"t");
    tree::addPrimitive(store(), tree::addTable(store(), t, L"u"), L"p");
    tree::addPrimitive(store(), t, L"q");
    for (const unsigned int heir : _heirs) {
        inherit(heir, L"a");
        const unsigned int copy = stored::children(other(), heir).at(0);
        const auto inner = stored::children(other(), copy);
        ASSERT_THAT(childNames(other(), copy), ElementsAre(L"u", L"q"));
        const unsigned int p = stored::children(other(), inner[0]).at(0);
        for (const unsigned int offset : {copy, inner[0], inner[1], p}) {
            EXPECT_EQ(stored::byte(other(), offset, stored::kFlags), kFromASchema);
        }
        EXPECT_EQ(stored::word(other(), inner[0], stored::kParent), copy);
        EXPECT_EQ(stored::word(other(), p, stored::kParent), inner[0]);
        EXPECT_EQ(stored::byte(other(), heir, stored::kFlags), 0) << "but not the heir";
    }
}

TEST_P(Inherit, KeepsTheOtherFlagsOfAnItem) {
    const unsigned int a = schema(L"a");
    Primitive(store(), addValues(store(), a, L"p", metadata::kInt32, 0)).uri(L"far");
    Primitive(store(), stored::children(store(), a)[0]).on(0x01);
    for (const unsigned int heir : _heirs) {
        inherit(heir, L"a");
        EXPECT_EQ(stored::byte(other(), stored::children(other(), heir).at(0), stored::kFlags), 0x0f);
    }
}

TEST_P(Inherit, LeavesWhatTheSetHoldsAsItIsAndMakesNoRecord) {
    const unsigned int a = schema(L"a");
    tree::addPrimitive(store(), tree::addTable(store(), a, L"mine"), L"inner");
    for (const unsigned int heir : _heirs) {
        const unsigned int mine = tree::add(other(), heir, tree::primitive(other(), L"mine", metadata::kDouble));
        const std::string before = hex(other(), mine);
        LoggingStore log(*other());
        EXPECT_TRUE(inherit(heir, resolve(L"a").get(), &log));
        EXPECT_EQ(log.count(tCall::kCreate), 0u);
        EXPECT_THAT(stored::children(other(), heir), ElementsAre(mine));
        EXPECT_EQ(hex(other(), mine), before);
        EXPECT_EQ(base(heir), L"a");
    }
}

TEST_P(Inherit, TakesTheFirstOfTwoSchemasForANameThatBothHave) {
    schemaOf(L"a", L"x");
    tree::addTable(store(), schema(L"b"), L"x");
    for (const unsigned int heir : _heirs) {
        EXPECT_TRUE(inherit(heir, L"a;b"));
        EXPECT_THAT(items(heir), ElementsAre(L"x"));
        EXPECT_EQ(data::Record::peek(other(), stored::children(other(), heir)[0]), data::Record::kPrimitive);
    }
}

TEST_P(Inherit, RecordsTheNamesOfTheSchemas) {
    schema(L"a");
    schema(L"b");
    for (const unsigned int heir : _heirs) {
        EXPECT_EQ(base(heir), L"(none)");
        EXPECT_TRUE(inherit(heir, L"a;unknown;b"));
        EXPECT_EQ(base(heir), L"a;b");
        EXPECT_EQ(baseLength(heir), 16u);
    }
}

TEST_P(Inherit, AddsToTheNamesEachTimeAndToTheItemsOnce) {
    schemaOf(L"a", L"x");
    schemaOf(L"b", L"y");
    for (const unsigned int heir : _heirs) {
        inherit(heir, L"a");
        const auto taken = stored::children(other(), heir);
        inherit(heir, L"a;a");
        EXPECT_EQ(base(heir), L"a;a;a");
        EXPECT_EQ(stored::children(other(), heir), taken);
        inherit(heir, L"b");
        EXPECT_EQ(base(heir), L"a;a;a;b");
        EXPECT_EQ(baseLength(heir), 32u);
        EXPECT_THAT(items(heir), ElementsAre(L"x", L"y"));
    }
}

TEST_P(Inherit, ShowsTheNewNamesAndItemsInTheObjectThatInherits) {
    schemaOf(L"a", L"x");
    const auto found = resolve(L"a");
    Container container(other(), _container, false);
    EXPECT_TRUE(container.inherit(found.get()));
    EXPECT_STREQ(container.base(), L"a");
    EXPECT_NE(container.find(L"x"), BADOFF);
    Table table(other(), _table, false);
    EXPECT_TRUE(table.inherit(found.get()));
    EXPECT_STREQ(table.base(), L"a");
    EXPECT_NE(table.find(L"x"), BADOFF);
}

TEST_P(Inherit, KeepsTheItemsFromBeingRemovedAndRenamed) {
    schemaOf(L"a", L"x");
    for (const unsigned int heir : _heirs) inherit(heir, L"a");
    EXPECT_FALSE(Container(other(), _container, false).remove(L"x"));
    EXPECT_FALSE(Container(other(), _container, false).rename(L"x", L"y"));
    EXPECT_FALSE(Table(other(), _table, false).remove(L"x"));
    EXPECT_FALSE(Table(other(), _table, false).rename(L"x", L"y"));
}

TEST_P(Inherit, TakesInContainersThatASchemaHas) {
    const unsigned int c = tree::addContainer(store(), schema(L"a"), L"c");
    tree::addPrimitive(store(), c, L"p");
    for (const unsigned int heir : _heirs) {
        inherit(heir, L"a");
        ASSERT_THAT(items(heir), ElementsAre(L"c"));
        EXPECT_THAT(childNames(other(), stored::children(other(), heir)[0]), ElementsAre(L"p"));
    }
}

TEST_P(Inherit, FromTheSameStoreSharesNothingWithTheSchema) {
    const unsigned int a = schema(L"a");
    const unsigned int t = tree::addTable(store(), a, L"t");
    const unsigned int p = tree::addPrimitive(store(), t, L"p");
    const unsigned int heir = tree::addContainer(store(), 0, L"heir");
    const std::string before[] = {hex(store(), t), hex(store(), p)};
    EXPECT_TRUE(Container(store(), heir, false).inherit(resolve(L"a").get()));
    const unsigned int copy = stored::children(store(), heir).at(0);
    EXPECT_NE(copy, t);
    EXPECT_NE(stored::word(store(), copy, stored::kChildren), stored::word(store(), t, stored::kChildren));
    EXPECT_NE(stored::children(store(), copy).at(0), p);
    EXPECT_EQ(hex(store(), t), before[0]);
    EXPECT_EQ(hex(store(), p), before[1]);
}

TEST_P(Inherit, OfATableFromItselfAddsItsNameAlone) {
    const unsigned int a = schemaOf(L"a", L"x");
    EXPECT_TRUE(Table(store(), a, false).inherit(resolve(L"a").get()));
    EXPECT_STREQ(Table(store(), a, true).base(), L"a");
    EXPECT_THAT(childNames(store(), a), ElementsAre(L"x"));
}

TEST_P(Inherit, LeavesTheSchemaAsItIsAndItsItemsClosed) {
    const unsigned int a = schemaOf(L"a", L"x");
    const auto found = resolve(L"a");
    const unsigned int x = stored::children(store(), a).at(0);
    const std::string before[] = {hex(store(), a), hex(store(), x)};
    for (const unsigned int heir : _heirs) inherit(heir, found.get(), other());
    EXPECT_EQ(hex(store(), a), before[0]);
    EXPECT_EQ(hex(store(), x), before[1]);
}

TEST_P(Inherit, TakesInTheFirstItemsAsManyAsTheLocatorHasSeen) {
    const unsigned int a = schemaOf(L"a", L"x");
    const auto found = resolve(L"a");
    tree::addPrimitive(store(), a, L"late");
    for (const unsigned int heir : _heirs) {
        EXPECT_TRUE(inherit(heir, found.get(), other()));
        EXPECT_THAT(items(heir), ElementsAre(L"x"));
    }
}

TEST_P(Inherit, PassesOverEntriesThatAreNoItems) {
    const unsigned int a = schema(L"a");
    stored::enlist(store(), a, stored::makeList(store()));
    stored::enlist(store(), a, 777);
    for (const wchar_t* name : {L"x", L"y", L"z"}) tree::addPrimitive(store(), a, name);
    for (const unsigned int heir : _heirs) {
        EXPECT_TRUE(inherit(heir, L"a"));
        EXPECT_THAT(items(heir), ElementsAre(L"x")) << "three names: the first three entries are looked at";
    }
}

TEST_P(Inherit, FromNothingOfOursIsRefusedAndWritesNothing) {
    ForeignSchema foreign;
    for (const unsigned int heir : _heirs) {
        for (ISchema* schema : {static_cast<ISchema*>(&foreign), static_cast<ISchema*>(nullptr)}) {
            LoggingStore log(*other());
            EXPECT_FALSE(inherit(heir, schema, &log));
            EXPECT_TRUE(log.updates(true).empty());
            EXPECT_EQ(log.count(tCall::kCreate), 0u);
            EXPECT_EQ(base(heir), L"(none)");
        }
    }
}

TEST_P(Inherit, HoldsTheGuardOfTheSchemasStoreForAContainerOnceForEachSchema) {
    schemaOf(L"a", L"x");
    schemaOf(L"b", L"y");
    LoggingStore log(*store());
    const auto locator = ISchemaLocator::make(&log);
    const auto found = locator->resolve(L"a;b");
    log.clearLog();
    const std::size_t unguarded = log.unguarded();
    EXPECT_TRUE(inherit(_container, found.get(), other()));
    EXPECT_EQ(log.count(tCall::kLock), 2u);
    EXPECT_EQ(log.guards(), 0);
    EXPECT_GT(log.count(tCall::kRead), 0u);
    EXPECT_EQ(log.unguarded(), unguarded);
}

TEST_P(Inherit, TakesNoGuardForATable) {
    schemaOf(L"a", L"x");
    LoggingStore log(*store());
    const auto locator = ISchemaLocator::make(&log);
    const auto found = locator->resolve(L"a");
    log.clearLog();
    EXPECT_TRUE(inherit(_table, found.get(), other()));
    EXPECT_GT(log.count(tCall::kRead), 0u);
    EXPECT_EQ(log.count(tCall::kLock), 0u);
}

TEST_P(Inherit, TakesNoGuardOfTheHeirsStore) {
    schemaOf(L"a", L"x");
    const auto found = resolve(L"a");
    for (const unsigned int heir : _heirs) {
        LoggingStore log(*other());
        EXPECT_TRUE(inherit(heir, found.get(), &log));
        EXPECT_EQ(log.count(tCall::kLock), 0u);
    }
}

TEST_P(Inherit, GivesTheGuardBackWhenTheHeirsStoreFails) {
    const unsigned int a = schemaOf(L"a", L"x");
    tree::addPrimitive(store(), tree::addTable(store(), a, L"t"), L"y");
    LoggingStore log(*store());
    const auto locator = ISchemaLocator::make(&log);
    const auto found = locator->resolve(L"a");
    FailingStore failing(*other());
    bool failed = true;
    for (int changes = 0; failed; ++changes) {
        failing.failAfter(changes);
        try {
            failed = false;
            EXPECT_TRUE(inherit(_container, found.get(), &failing));
        } catch (const std::runtime_error&) {
            failed = true;
        }
        failing.goOn();
        EXPECT_EQ(log.guards(), 0);
        EXPECT_EQ(stored::refs(other(), _container), 0u);
    }
    EXPECT_EQ(base(_container), L"a");
}

}  // namespace
