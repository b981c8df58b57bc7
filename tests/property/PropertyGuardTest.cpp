#include <functional>
#include <string>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/support/ClientFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::store_contract::LoggingStore;

/// Each operation of a property holds the store's guard from its beginning to its end.
class PropertyGuard : public ClientTest {
protected:
    using tCall = LoggingStore::tCall;

    /// A call and its name.
    template <class Face>
    struct tOperation {
        const char* name;
        std::function<void(Face&)> call;
    };

    void SetUp() override {
        const auto owner = top();
        const auto table = owner->create(L"table", kNoSchema);
        table->create(L"number", metadata::kInt32, units::kNoUnit);
        table->create(L"second", metadata::kInt32, units::kNoUnit);
        table->defaults(units::kMeter, metadata::kDouble);
    }

    SharedPtr<IProperty> open(const wchar_t* path) {
        return IContainerFrontEnd::find(&_logged, L"top")->property(path);
    }

    /// Begins to watch what is called.
    void watch() {
        _logged.clearLog();
        _unguarded = _logged.unguarded();
    }

    /// Expects that what was called since then began with a guard, ended with it, and held it throughout.
    void expectGuarded(const char* what) {
        ASSERT_FALSE(_logged.log().empty()) << what;
        EXPECT_EQ(tCall::kLock, _logged.log().front().call) << what;
        EXPECT_EQ(tCall::kUnlock, _logged.log().back().call) << what;
        EXPECT_EQ(_unguarded, _logged.unguarded()) << what;
        EXPECT_EQ(0, _logged.guards()) << what;
    }

    template <class Face>
    void expectGuarded(Face& face, const std::vector<tOperation<Face>>& operations) {
        for (const auto& operation : operations) {
            watch();
            operation.call(face);
            expectGuarded(operation.name);
        }
    }

    LoggingStore& logged() { return _logged; }

private:
    LoggingStore _logged{*store()};
    std::size_t _unguarded = 0;
};
LVP_ON_EACH_STORE(PropertyGuard);

TEST_P(PropertyGuard, IsHeldByTheOperationsOfAProperty) {
    for (const wchar_t* path : {L"table.number", L"table"}) {
        const auto property = open(path);
        expectGuarded<IProperty>(*property, {
                                                {"tag", [](IProperty& p) { p.tag(); }},
                                                {"path", [](IProperty& p) { p.path(); }},
                                                {"type", [](IProperty& p) { p.type(); }},
                                                {"parent", [](IProperty& p) { p.parent(); }},
                                                {"locales", [](IProperty& p) { p.locales(); }},
                                                {"locale", [](IProperty& p) { p.locale(0); }},
                                                {"describe", [](IProperty& p) { p.describe(L"en", L"text"); }},
                                                {"localize", [](IProperty& p) { p.localize(L"en"); }},
                                                {"flags", [](IProperty& p) { p.flags(); }},
                                                {"on", [](IProperty& p) { p.on(1); }},
                                                {"off", [](IProperty& p) { p.off(1); }},
                                                {"rename", [](IProperty& p) { p.rename(L"new"); }},
                                            });
    }
}

TEST_P(PropertyGuard, IsHeldByTheOperationsOfAPrimitive) {
    const auto property = open(L"table.number");
    int room[2] = {1, 2};
    expectGuarded<IPrimitive>(asPrimitive(property),
                              {
                                  {"set", [&](IPrimitive& p) { p.set(room, 0, 2); }},
                                  {"set nothing", [&](IPrimitive& p) { p.set(room, 0, 0); }},
                                  {"get", [&](IPrimitive& p) { p.get(room, 0, 2); }},
                                  {"get too many", [&](IPrimitive& p) { p.get(room, 0, 3); }},
                                  {"dimension", [](IPrimitive& p) { p.dimension(); }},
                                  {"stride", [](IPrimitive& p) { p.stride(); }},
                                  {"bytes", [](IPrimitive& p) { p.bytes(); }},
                                  {"valuetype", [](IPrimitive& p) { p.valuetype(); }},
                                  {"units", [](IPrimitive& p) { p.units(); }},
                                  {"schema", [](IPrimitive& p) { p.schema(); }},
                                  {"set the schema", [](IPrimitive& p) { p.schema(L"pose"); }},
                                  {"uri", [](IPrimitive& p) { p.uri(); }},
                                  {"set the uri", [](IPrimitive& p) { p.uri(L"x"); }},
                                  {"valuelocale", [](IPrimitive& p) { p.valuelocale(); }},
                                  {"set the valuelocale", [](IPrimitive& p) { p.valuelocale(L"en"); }},
                                  {"reset", [](IPrimitive& p) { p.reset(1); }},
                              });
}

TEST_P(PropertyGuard, IsHeldByTheOperationsOfATable) {
    const auto property = open(L"table");
    const units::tUnitGroup length = units::group(units::kMeter);
    expectGuarded<ITable>(
        asTable(property),
        {
            {"lookup", [](ITable& t) { t.lookup(L"number"); }},
            {"properties", [](ITable& t) { t.properties(); }},
            {"create a table", [](ITable& t) { t.create(L"inner", kNoSchema); }},
            {"create a primitive", [](ITable& t) { t.create(L"third", metadata::kInt32, units::kMeter); }},
            {"create of a group", [&](ITable& t) { t.create(L"length", length); }},
            {"create of no group", [](ITable& t) { t.create(L"time", units::group(units::kSecond)); }},
            {"create what is there", [](ITable& t) { t.create(L"number", kNoSchema); }},
            {"destroy", [](ITable& t) { t.destroy(L"number"); }},
            {"items", [](ITable& t) { t.items(); }},
            {"at", [](ITable& t) { t.at(0); }},
            {"at nothing", [](ITable& t) { t.at(99); }},
            {"defaults", [](ITable& t) { t.defaults(units::kSecond, metadata::kInt32); }},
            {"groups", [](ITable& t) { t.groups(); }},
            {"group", [](ITable& t) { t.group(0); }},
            {"valuetype", [&](ITable& t) { t.valuetype(length); }},
            {"units", [&](ITable& t) { t.units(length); }},
            {"base", [](ITable& t) { t.base(); }},
        });
}

TEST_P(PropertyGuard, IsHeldByACursor) {
    const auto filter = asTable(open(L"table")).properties();
    expectGuarded<IPropertyFilter>(*filter, {
                                                {"current", [](IPropertyFilter& f) { f.current(); }},
                                                {"next", [](IPropertyFilter& f) { f.next(); }},
                                                {"prev", [](IPropertyFilter& f) { f.prev(); }},
                                            });
}

TEST_P(PropertyGuard, IsNotTakenByACursorThatHasNowhereToGo) {
    const auto filter = asTable(open(L"table")).properties();
    watch();
    EXPECT_FALSE(filter->prev());
    EXPECT_THAT(logged().log(), testing::IsEmpty());
    while (filter->next()) {
    }
    watch();
    EXPECT_FALSE(filter->next());
    EXPECT_THAT(logged().log(), testing::IsEmpty());
}

TEST_P(PropertyGuard, IsNotTakenByStoreAndContainer) {
    const auto number = open(L"table.number");
    const auto table = open(L"table");
    IPrimitive& primitive = asPrimitive(number);
    ITable& face = asTable(table);
    watch();
    number->store();
    table->store();
    primitive.container();
    face.container();
    EXPECT_THAT(logged().log(), testing::IsEmpty());
}

TEST_P(PropertyGuard, IsTakenByToForTheTypeOnly) {
    const auto number = open(L"table.number");
    watch();
    IPrimitive::to(number.get());
    EXPECT_EQ(1u, logged().count(tCall::kLock));
    ITable::to(number.get());
    EXPECT_EQ(2u, logged().count(tCall::kLock));
    EXPECT_EQ(0u, logged().unguarded());
}

TEST_P(PropertyGuard, IsHeldWhenAnObjectGoes) {
    auto number = open(L"table.number");
    auto table = open(L"table");
    auto filter = asTable(table).properties();
    number->describe(L"en", L"text");
    watch();
    number.reset();
    expectGuarded("the end of a primitive");
    watch();
    filter.reset();
    expectGuarded("the end of a cursor");
    watch();
    table.reset();
    expectGuarded("the end of a table");
}

}  // namespace
