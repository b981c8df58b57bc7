// Seeing what a store holds without opening it.
#include "lumivard/platform/data/structure/IVisitor.h"

#include <algorithm>
#include <functional>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::data::structure::IVisitor;
using testing::ElementsAre;
using testing::IsEmpty;

std::wstring told(std::wstring_view text) {
    return std::wstring(text);
}

/// Notes what it is shown, a word for each event, and does something at each name when it is told to.
class Noting : public IVisitor {
public:
    void primitive(const tPrimitive& item) override {
        events.push_back(told(item.name));
        if (act) act(told(item.name));
    }
    bool table(const tTable& item) override { return enterSet(L"[" + told(item.name)); }
    bool container(const tContainer& item) override { return enterSet(L"{" + told(item.name)); }
    void leave() override { events.push_back(L"."); }

    tNames events;
    std::wstring closed;  // a set that is not entered, as it is noted
    std::function<void(const std::wstring& name)> act;

private:
    bool enterSet(const std::wstring& event) {
        events.push_back(event);
        if (act) act(event);
        return event != closed;
    }
};

class Visitor : public ClientTest {
protected:
    /// A top with one item of each kind, and some below.
    void fill() {
        const auto all = top();
        all->create(L"first", metadata::kInt32);
        const auto table = all->create(L"table", kNoSchema);
        table->create(L"value", metadata::kDouble, units::kMeter);
        table->create(L"inner", kNoSchema)->create(L"deep", metadata::kBool, units::kNoUnit);
        all->create(IContainer::kNode, L"node", kNoSchema)->create(L"own", metadata::kInt8);
        all->create(IContainer::kLink, L"link", kNoSchema);
        all->create(L"last", metadata::kString);
    }

    tNames shown(std::wstring_view path) {
        Noting noting;
        found = IVisitor::visit(store(), path, noting);
        return noting.events;
    }

    unsigned int offsetOfTop() { return stored::children(store(), 0).at(0); }

    bool found = false;
};
LVP_ON_EACH_STORE(Visitor);

const tNames kTable{L"[table", L"value", L"[inner", L"deep", L".", L"."};

TEST_P(Visitor, IsShownEveryItemOnceInTheOrderInWhichItWasAdded) {
    fill();
    const tNames all{L"{top",  L"first", L"[table", L"value", L"[inner", L"deep", L".", L".",
                     L"{node", L"own",   L".",      L"{link", L".",      L"last", L"."};
    EXPECT_EQ(shown(L"top"), all);
    EXPECT_EQ(shown(L""), all);
    EXPECT_TRUE(found);
}

TEST_P(Visitor, IsShownWhatLiesAtAPath) {
    fill();
    EXPECT_EQ(shown(L"top.table"), kTable);
    EXPECT_THAT(shown(L"top.table.inner.deep"), ElementsAre(L"deep"));
    EXPECT_TRUE(found);
    EXPECT_THAT(shown(L"top.node"), ElementsAre(L"{node", L"own", L"."));
    for (const wchar_t* path :
         {L"nothing", L"top.nothing", L"top.table.nothing", L"top.first.more.still", L".", L"top."}) {
        EXPECT_THAT(shown(path), IsEmpty()) << path;
        EXPECT_FALSE(found) << path;
    }
}

TEST_P(Visitor, FollowsAPathAsPropertyDoesAlsoBeyondAPrimitive) {
    fill();
    ASSERT_TRUE(property(L"table.value.whatever"));
    EXPECT_THAT(shown(L"top.table.value.whatever"), ElementsAre(L"value"));
}

TEST_P(Visitor, IsShownWhatAContainerHolds) {
    fill();
    Noting noting;
    EXPECT_TRUE(IVisitor::visit(top().get(), L"table", noting));
    EXPECT_EQ(noting.events, kTable);
    noting.events.clear();
    EXPECT_TRUE(IVisitor::visit(find(L"top.node").get(), L"", noting));
    EXPECT_THAT(noting.events, ElementsAre(L"own"));
    EXPECT_FALSE(IVisitor::visit(top().get(), L"nothing", noting));
    EXPECT_FALSE(IVisitor::visit(static_cast<IContainer*>(nullptr), L"", noting));
}

TEST_P(Visitor, SeesThroughAContainerWhatTheStoreHoldsNow) {
    const auto before = top();
    top()->create(L"new", metadata::kInt32);
    EXPECT_FALSE(before->property(L"new"));
    Noting noting;
    EXPECT_TRUE(IVisitor::visit(before.get(), L"new", noting));
    EXPECT_THAT(noting.events, ElementsAre(L"new"));
}

TEST_P(Visitor, IsShownNothingOfAnEmptyStore) {
    EXPECT_THAT(shown(L""), IsEmpty());
    EXPECT_FALSE(found);
    EXPECT_THAT(shown(L"top"), IsEmpty());
    EXPECT_FALSE(found);
    EXPECT_EQ(store()->extent(), 0u) << "which is not set up by a look";
}

TEST_P(Visitor, DoesNotGoWhereItDoesNotEnter) {
    fill();
    Noting noting;
    noting.closed = L"[table";
    IVisitor::visit(store(), L"top", noting);
    EXPECT_THAT(noting.events,
                ElementsAre(L"{top", L"first", L"[table", L"{node", L"own", L".", L"{link", L".", L"last", L"."));
    noting.events.clear();
    noting.closed = L"{top";
    EXPECT_TRUE(IVisitor::visit(store(), L"top", noting));
    EXPECT_THAT(noting.events, ElementsAre(L"{top"));
}

TEST_P(Visitor, ThatTakesNothingInEntersEverything) {
    fill();
    IVisitor visitor;
    EXPECT_TRUE(IVisitor::visit(store(), L"", visitor));
}

// --- What an item is

TEST_P(Visitor, IsShownOfAPrimitiveWhatItSaysWhenItIsOpen) {
    const auto table = top()->create(L"t", kNoSchema);
    const std::wstring characters = L"\0a text\0and more\0";
    std::vector<char> bytes(3 * 4 * 8 * 16);
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i);
    for (unsigned int kind = metadata::kBinary; kind <= metadata::kStruct; ++kind) {
        const auto made =
            table->create(std::to_wstring(kind).c_str(), static_cast<metadata::tValue>(kind), units::kNewton);
        ASSERT_TRUE(made->set(bytes.data(), 0, 3 + kind)) << kind;
        made->container()->on(0x81);
    }
    asPrimitive(table->lookup(L"24")).schema(L"A.Type");
    asPrimitive(table->lookup(L"3")).valuelocale(L"de-de");
    asPrimitive(table->lookup(L"12")).uri(L"http://elsewhere");
    table->create(L"none", metadata::kDouble, units::kMeter);

    class Comparing : public IVisitor {
    public:
        explicit Comparing(ITable& open) : opened(open) {}
        void primitive(const tPrimitive& item) override {
            ++count;
            const auto property = opened.lookup(told(item.name).c_str());
            IPrimitive& open = asPrimitive(property);
            EXPECT_EQ(item.name, lumivard::platform::test_support::text(property->tag()));
            EXPECT_EQ(item.valuetype, open.valuetype());
            EXPECT_EQ(item.units, open.units());
            EXPECT_EQ(item.flags, property->flags());
            EXPECT_EQ(item.stride, open.stride());
            EXPECT_EQ(item.dimension, open.dimension());
            EXPECT_EQ(item.schema, lumivard::platform::test_support::text(open.schema()));
            EXPECT_EQ(item.valuelocale, lumivard::platform::test_support::text(open.valuelocale()));
            EXPECT_EQ(item.uri, lumivard::platform::test_support::text(open.uri()));
            for (const unsigned int start : {0u, 1u, item.dimension}) {
                for (const unsigned int number : {0u, 1u, item.dimension, item.dimension - start, 0xFFFFFFFFu}) {
                    std::vector<char> expected(1000, '#');
                    std::vector<char> got(1000, '#');
                    EXPECT_EQ(item.get(got.data(), start, number), open.get(expected.data(), start, number)) << start;
                    EXPECT_EQ(got, expected);
                }
            }
        }
        ITable& opened;
        int count = 0;
    };
    Comparing comparing(*table);
    EXPECT_TRUE(IVisitor::visit(store(), L"top.t", comparing));
    EXPECT_EQ(comparing.count, 25);
}

TEST_P(Visitor, IsShownWhatSetsAre) {
    const auto group = top()->create(IContainer::kGroup, L"group", kNoSchema);
    const auto link = top()->create(IContainer::kLink, L"link", kNoSchema);
    ILink::to(link.get())->target(L"top.group");
    top()->create(L"table", kNoSchema);
    asTable(property(L"table")).container()->on(0x40);

    class Sets : public IVisitor {
    public:
        bool table(const tTable& item) override {
            said.push_back(told(item.name) + L" " + std::to_wstring(item.flags) + L" " + told(item.base));
            return true;
        }
        bool container(const tContainer& item) override {
            said.push_back(told(item.name) + L" " + std::to_wstring(item.type) + L" " + told(item.target) +
                           told(item.base));
            return true;
        }
        tNames said;
    };
    Sets sets;
    IVisitor::visit(store(), L"", sets);
    EXPECT_THAT(sets.said, ElementsAre(L"top 1 ", L"group 1 ", L"link 2 top.group", L"table 64 "));
}

TEST_P(Visitor, IsShownLongNamesAndValues) {
    const std::wstring name(3000, L'n');
    const std::vector<double> numbers(100000, 1.5);
    top()->create(name.c_str(), metadata::kDouble)->set(numbers.data(), 0, 100000);
    class Long : public IVisitor {
    public:
        void primitive(const tPrimitive& item) override {
            name = item.name;
            values.resize(item.dimension);
            EXPECT_TRUE(item.get(values.data(), 0, item.dimension));
        }
        std::wstring name;
        std::vector<double> values;
    };
    Long visitor;
    EXPECT_TRUE(IVisitor::visit(store(), L"", visitor));
    EXPECT_EQ(visitor.name, name);
    EXPECT_EQ(visitor.values, numbers);
}

// --- Nothing is open, and anything may be changed

TEST_P(Visitor, HoldsNothingOpenAndWritesNothing) {
    fill();
    std::vector<std::string> before;
    for (unsigned int offset : stored::children(store(), offsetOfTop()))
        before.push_back(stored::bytes(store(), offset));
    Noting noting;
    noting.act = [&](const std::wstring&) {
        std::vector<std::string> now;
        for (unsigned int offset : stored::children(store(), offsetOfTop()))
            now.push_back(stored::bytes(store(), offset));
        EXPECT_EQ(now, before);
    };
    EXPECT_TRUE(IVisitor::visit(store(), L"", noting));
}

TEST_P(Visitor, MayDestroyWhatItIsShownAndWhatComesNext) {
    fill();
    Noting noting;
    noting.act = [&](const std::wstring& name) {
        if (name == L"first") {
            EXPECT_TRUE(top()->destroy(L"first"));
            EXPECT_TRUE(top()->destroy(L"table"));
        }
        if (name == L"{node") {
            EXPECT_TRUE(top()->destroy(L"node"));
        }
    };
    EXPECT_TRUE(IVisitor::visit(store(), L"top", noting));
    EXPECT_THAT(noting.events, ElementsAre(L"{top", L"first", L"{node", L".", L"{link", L".", L"last", L"."));
}

TEST_P(Visitor, IsShownWhatItAddsOnlyWhereItHasNotYetEntered) {
    fill();
    Noting noting;
    noting.act = [&](const std::wstring& name) {
        if (name != L"first") return;
        top()->create(L"late", metadata::kInt32);
        find(L"top.node")->create(L"second", metadata::kInt32);
    };
    EXPECT_TRUE(IVisitor::visit(store(), L"top.node", noting));
    EXPECT_THAT(noting.events, ElementsAre(L"{node", L"own", L"."));
    noting.events.clear();
    EXPECT_TRUE(IVisitor::visit(store(), L"top", noting));
    EXPECT_THAT(noting.events, testing::Contains(L"second"));
    EXPECT_THAT(noting.events, testing::Not(testing::Contains(L"late")));
}

TEST_P(Visitor, IsShownTheFirstChildThatItAddsToASetBeforeItEnters) {
    for (const bool empty : {true, false}) {
        const std::wstring name = empty ? L"empty" : L"full";
        top()->create(IContainer::kGroup, name.c_str(), kNoSchema);
        if (!empty) find((L"top." + name).c_str())->create(L"old", metadata::kInt32);
        Noting noting;
        noting.act = [&](const std::wstring& event) {
            if (event == L"{" + name) find((L"top." + name).c_str())->create(L"new", metadata::kInt32);
        };
        EXPECT_TRUE(IVisitor::visit(store(), L"top." + name, noting));
        EXPECT_THAT(noting.events, testing::Contains(L"new")) << empty;
    }
}

/// Opens, flushes, changes and destroys the item that it is shown.
class Restless : public IVisitor {
public:
    explicit Restless(IContainer& top) : _top(top) {}

    void primitive(const tPrimitive& item) override {
        for (int round = 0; round < 2; ++round) {
            EXPECT_TRUE(_top.property(L"n"));
            if (round == 1) item.store->flush();
            EXPECT_TRUE(item.get(got, 0, 3));
            EXPECT_THAT(got, ElementsAre(1, 2, 3));
        }
        EXPECT_TRUE(asPrimitive(_top.property(L"n")).reset(1));
        EXPECT_FALSE(item.get(got, 0, 3)) << "there is one by now";
        EXPECT_TRUE(item.get(got, 0, 1));
        EXPECT_TRUE(_top.destroy(L"n"));
        EXPECT_FALSE(item.get(got, 0, 1));
    }

    int got[3] = {};

private:
    IContainer& _top;
};

TEST_P(Visitor, GetsValuesWhateverItHasOpenedOrFlushedOrChangedMeanwhile) {
    const int numbers[] = {1, 2, 3};
    top()->create(L"n", metadata::kInt32)->set(numbers, 0, 3);
    const auto open = top();
    Restless visitor(*open);
    EXPECT_TRUE(IVisitor::visit(store(), L"top.n", visitor));
    EXPECT_EQ(visitor.got[0], 0) << "as it was reset to";
}

TEST_P(Visitor, FindsNothingUnderAPathWithAZeroInASetOfAnySize) {
    using namespace std::literals;
    const auto group = top();
    for (int i = 0; i < 100; ++i) {
        group->create(std::to_wstring(i).c_str(), metadata::kInt32);
        EXPECT_THAT(shown(L"top.0\0"sv), IsEmpty());
        EXPECT_FALSE(found);
    }
    EXPECT_THAT(shown(L"\0"sv), IsEmpty());
    EXPECT_THAT(shown(L"top.0"sv), ElementsAre(L"0"));
}

TEST_P(Visitor, IsShownNothingOfAContainerThatIsGone) {
    fill();
    const auto node = find(L"top.node");
    store()->erase(stored::children(store(), offsetOfTop()).at(2));
    Noting noting;
    EXPECT_FALSE(IVisitor::visit(node.get(), L"", noting));
    EXPECT_THAT(noting.events, IsEmpty());
}

TEST_P(Visitor, MayVisitAgain) {
    fill();
    Noting noting;
    noting.act = [&](const std::wstring& name) {
        if (name == L"first") {
            EXPECT_EQ(shown(L"top.table"), kTable);
        }
    };
    EXPECT_TRUE(IVisitor::visit(store(), L"top", noting));
    EXPECT_EQ(noting.events.size(), 15u);
}

TEST_P(Visitor, LetsItsExceptionsPassAndGivesTheGuardBack) {
    fill();
    Noting noting;
    noting.act = [](const std::wstring& name) {
        if (name == L"deep") throw std::range_error("enough");
    };
    EXPECT_THROW(IVisitor::visit(store(), L"", noting), std::range_error);
    EXPECT_THAT(noting.events, ElementsAre(L"{top", L"first", L"[table", L"value", L"[inner", L"deep"));
    std::thread([&] { EXPECT_EQ(shown(L"top.table"), kTable); }).join();
}

// --- Damaged stores

TEST_P(Visitor, IsShownASetOnceHoweverOftenItIsListed) {
    fill();
    const unsigned int node = stored::children(store(), offsetOfTop()).at(2);
    const tNames all = shown(L"");
    for (int i = 0; i < 3; ++i) stored::enlist(store(), offsetOfTop(), node);
    stored::enlist(store(), node, node);
    stored::enlist(store(), node, offsetOfTop());
    stored::enlist(store(), node, 0);
    EXPECT_EQ(shown(L""), all);
    EXPECT_THAT(shown(L"top.node"), ElementsAre(L"{node", L"own", L"."));
}

TEST_P(Visitor, EndsWhereSetsStandInACircle) {
    const auto a = top()->create(IContainer::kGroup, L"a", kNoSchema);
    a->create(IContainer::kGroup, L"b", kNoSchema);
    const unsigned int outer = stored::children(store(), offsetOfTop()).at(0);
    const unsigned int inner = stored::children(store(), outer).at(0);
    stored::enlist(store(), inner, outer);
    stored::putWord(store(), outer, stored::kParent, inner);
    EXPECT_THAT(shown(L"top.a"), ElementsAre(L"{a", L"{b", L".", L"."));
    EXPECT_THAT(shown(L"top"), ElementsAre(L"{top", L"."));
    Noting noting;
    EXPECT_TRUE(IVisitor::visit(a.get(), L"", noting));
    EXPECT_THAT(noting.events, ElementsAre(L"{b", L"."));
}

TEST_P(Visitor, PassesOverWhatIsNoItem) {
    fill();
    const tNames all = shown(L"");
    for (const unsigned int nothing : {0x7FFFFFF0u, stored::BADOFF}) stored::enlist(store(), offsetOfTop(), nothing);
    for (const std::string bytes : {"", "\1", "\2", "\4", "\3", "\5", "M"}) {
        const std::string record = bytes + std::string(bytes == "M" ? 100 : 20, '\0');
        stored::enlist(store(), offsetOfTop(),
                       store()->create(record.data(), static_cast<unsigned int>(record.size())));
    }
    EXPECT_EQ(shown(L""), all);
}

TEST_P(Visitor, IsShownTheEmptySetWhoseListIsAnotherRecord) {
    fill();
    const unsigned int first = stored::children(store(), offsetOfTop()).at(0);
    stored::putWord(store(), offsetOfTop(), stored::kChildren, first);
    EXPECT_THAT(shown(L""), ElementsAre(L"{top", L"."));
}

TEST_P(Visitor, GoesAsDeepAsTheTree) {
    auto deepest = top();
    for (int depth = 0; depth < 3000; ++depth) deepest = deepest->create(IContainer::kGroup, L"d", kNoSchema);
    EXPECT_EQ(shown(L"").size(), 2 * 3001u);
}

// --- Any tree is shown as its objects say that it is.

void walk(IContainer& container, tNames& events);

void walk(IProperty& property, tNames& events) {
    ITable* const table = ITable::to(&property);
    events.push_back((table ? L"[" : L"") + text(property.tag()));
    if (!table) return;
    for (unsigned int i = 0; i < table->items(); ++i) walk(*table->at(i), events);
    events.push_back(L".");
}

void walk(IContainer& container, tNames& events) {
    events.push_back(L"{" + text(container.tag()));
    const auto properties = container.properties();
    do {
        if (const auto property = properties->current()) walk(*property, events);
    } while (properties->next());
    const auto containers = container.containers();
    do {
        if (const auto child = containers->current()) walk(*child, events);
    } while (containers->next());
    events.push_back(L".");
}

TEST_P(Visitor, IsShownARandomTreeAsItsObjectsTellIt) {
    std::mt19937 random(11);
    std::vector<SharedPtr<IContainer>> groups{top()};
    std::vector<SharedPtr<ITable>> tables;
    const auto any = [&](const auto& list) { return list[random() % list.size()]; };
    for (int i = 0; i < 300; ++i) {
        const std::wstring name = L"n" + std::to_wstring(i);
        switch (random() % 5) {
            case 0:
                groups.push_back(any(groups)->create(IContainer::kGroup, name.c_str(), kNoSchema));
                break;
            case 1:
                tables.push_back(any(groups)->create(name.c_str(), kNoSchema));
                break;
            case 2:
                if (!tables.empty()) tables.push_back(any(tables)->create(name.c_str(), kNoSchema));
                break;
            case 3:
                if (!tables.empty()) any(tables)->create(name.c_str(), metadata::kInt32, units::kNoUnit);
                break;
            default:
                any(groups)->create(name.c_str(), metadata::kInt32);
        }
    }
    tNames expected;
    walk(*top(), expected);
    tNames seen = shown(L"top");
    std::sort(expected.begin(), expected.end());  // containers and properties stand mixed
    std::sort(seen.begin(), seen.end());
    EXPECT_EQ(seen, expected);
}

}  // namespace
