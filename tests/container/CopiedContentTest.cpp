#include <functional>

#include "tests/container/CopyFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::data::metadata::ISchemaLocator;

/// What is in a copy, whichever operation made it. The source is the container "from.source".
class CopiedContent : public CopyingTest {
protected:
    /// One way of copying, into the container "to" of a store, and the place of the copy.
    struct tWay {
        const char* name;
        IDataStore* target;
        std::function<bool()> run;
        const wchar_t* copy;
    };

    std::vector<tWay> ways() {
        std::vector<tWay> ways;
        for (IDataStore* target : {store(), other()}) {
            const auto to = [target] { return IContainerFrontEnd::find(target, L"to"); };
            ways.push_back({"copy", target, [=, this] { return to()->copy(from()); }, L"source"});
            ways.push_back({"clone", target, [=, this] { return to()->clone(source()); }, L"source"});
            ways.push_back(
                {"clone to a store", target, [=, this] { return source()->clone(target, L"to.copied"); }, L"copied"});
        }
        const auto clone = [this] { return to()->clone(L"from.source", L"copied", true); };
        ways.push_back({"clone to a path", store(), clone, L"copied"});
        return ways;
    }

    /// Copies the source in each way, one after the other, and has each copy checked.
    void eachCopy(const std::function<void(IDataStore* target, const SharedPtr<IContainer>& copy)>& check) {
        for (const tWay& way : ways()) {
            SCOPED_TRACE(std::string(way.name) + (way.target == store() ? "" : ", to another store"));
            ASSERT_TRUE(way.run());
            {
                const auto copy = IContainerFrontEnd::find(way.target, L"to")->container(way.copy);
                ASSERT_TRUE(copy);
                check(way.target, copy);
            }
            ASSERT_TRUE(IContainerFrontEnd::find(way.target, L"to")->destroy(way.copy));
        }
    }

    /// The source, made when it is not there.
    SharedPtr<IContainer> source() {
        const auto owner = from();
        if (!owner->has(L"source")) addGroup(*owner, L"source");
        return owner->container(L"source");
    }

    static unsigned int offset(const SharedPtr<IContainer>& container) {
        return offsetOf(container->store(), text(container->path()));
    }

    /// Fills the source with one of everything.
    void fillSource() {
        const auto kits = IContainerFrontEnd::toplevel(_schemas.get(), L"kits")->create(L"kit", kNoSchema);
        kits->create(L"hidden", metadata::kInt32, units::kMeter);
        kits->create(L"rest", kNoSchema)->create(L"item", metadata::kString, units::kNoUnit);
        const auto locator = ISchemaLocator::make(_schemas.get());
        const auto schema = locator->resolve(L"kits.kit");
        const auto made = from()->create(IContainer::kLink, L"source", schema.get());
        ILink::to(made.get())->target(L"from.source.group");
        const double sizes[] = {1.5, 2.5};
        made->create(L"sizes", metadata::kDouble)->set(sizes, 0, 2);
        made->create(L"elsewhere", metadata::kInt32)->uri(L"file:values");
        const auto table = made->create(L"table", schema.get());
        table->defaults(units::kMeter, metadata::kDouble);
        table->create(L"length", units::group(units::kMeter))->container()->on(0x01);
        table->create(L"inner", kNoSchema)->defaults(units::kMeter, metadata::kInt16);
        const auto node = addGroup(*made, L"group")->create(IContainer::kNode, L"node", schema.get());
        node->create(L"pose", metadata::kStruct)->schema(L"poses");
        for (const wchar_t* path : {L"group", L"group.node"}) made->container(path)->describe(L"de", L"Knoten");
        for (const wchar_t* path : {L"sizes", L"table", L"table.length"}) made->property(path)->describe(L"en", path);
        made->describe(L"de", L"Quelle");
        made->describe(L"en", L"source");
    }

private:
    std::unique_ptr<IDataStore> _schemas = lumivard::platform::stores::memory();
};
LVP_ON_EACH_STORE(CopiedContent);

TEST_P(CopiedContent, IsThatOfTheSourceByteByByte) {
    fillSource();
    const std::string original = picture(store(), offsetOf(store(), L"from.source"));
    eachCopy([&](IDataStore* target, const SharedPtr<IContainer>& copy) {
        std::string expected = original;
        const std::string name = hexText(L"source");
        expected.replace(expected.find(name), name.size(), hexText(text(copy->tag()).c_str()));
        EXPECT_EQ(expected, picture(target, offset(copy)));
        EXPECT_EQ(original, picture(store(), offsetOf(store(), L"from.source")));
    });
}

TEST_P(CopiedContent, HasValuesUnitsAndFlags) {
    fillSource();
    eachCopy([&](IDataStore*, const SharedPtr<IContainer>& copy) {
        EXPECT_EQ((std::vector<double>{1.5, 2.5}), values<double>(asPrimitive(copy->property(L"sizes"))));
        EXPECT_EQ(L"file:values", text(asPrimitive(copy->property(L"elsewhere")).uri()));
        EXPECT_EQ(units::kMeter, asPrimitive(copy->property(L"table.length")).units());
        EXPECT_EQ(L"poses", text(asPrimitive(copy->property(L"group.node.pose")).schema()));
        EXPECT_EQ(0x01, copy->property(L"table.length")->flags());
        EXPECT_EQ(0x08, copy->property(L"elsewhere")->flags());
        for (const wchar_t* path : {L"hidden", L"rest", L"rest.item", L"table.hidden", L"group.node.rest.item"}) {
            EXPECT_EQ(0x06, copy->property(path)->flags());
        }
    });
}

TEST_P(CopiedContent, StillCannotLoseWhatCameFromASchema) {
    fillSource();
    eachCopy([&](IDataStore*, const SharedPtr<IContainer>& copy) {
        EXPECT_FALSE(copy->destroy(L"hidden"));
        EXPECT_FALSE(copy->property(L"table.hidden")->rename(L"shown"));
    });
}

TEST_P(CopiedContent, HasTheTypesOfContainers) {
    fillSource();
    eachCopy([&](IDataStore*, const SharedPtr<IContainer>& copy) {
        EXPECT_EQ(IContainer::kLink, copy->type());
        EXPECT_EQ(IContainer::kGroup, copy->container(L"group")->type());
        EXPECT_EQ(IContainer::kNode, copy->container(L"group.node")->type());
    });
}

TEST_P(CopiedContent, HasTheTextsOfAllLocales) {
    fillSource();
    eachCopy([&](IDataStore*, const SharedPtr<IContainer>& copy) {
        EXPECT_EQ(2u, copy->locales());
        EXPECT_EQ(L"Quelle", text(copy->localize(L"de")));
        EXPECT_EQ(L"source", text(copy->localize(L"en")));
        EXPECT_EQ(L"Knoten", text(copy->container(L"group.node")->localize(L"de")));
        EXPECT_EQ(L"table.length", text(copy->property(L"table.length")->localize(L"en")));
        EXPECT_EQ(0u, copy->property(L"elsewhere")->locales());
    });
}

TEST_P(CopiedContent, NamesTheSameSchemas) {
    fillSource();
    eachCopy([&](IDataStore* target, const SharedPtr<IContainer>& copy) {
        EXPECT_EQ(L"kits.kit", text(copy->base()));
        EXPECT_EQ(L"kits.kit", text(copy->container(L"group.node")->base()));
        EXPECT_EQ(L"kits.kit", text(asTable(copy->property(L"table")).base()));
        EXPECT_EQ(L"", text(copy->container(L"group")->base()));
        EXPECT_FALSE(IContainerFrontEnd::find(target, L"kits"));
    });
}

TEST_P(CopiedContent, NamesTheSameTargetOfALink) {
    fillSource();
    ILink::to(source()->create(IContainer::kLink, L"inner", kNoSchema).get())->target(L"from.source.group");
    eachCopy([&](IDataStore* target, const SharedPtr<IContainer>& copy) {
        EXPECT_EQ(L"from.source.group", text(ILink::to(copy.get())->target()));
        const auto inner = copy->container(L"inner");
        EXPECT_EQ(L"from.source.group", text(ILink::to(inner.get())->target()));
        const auto found = ILink::to(inner.get())->follow(nullptr);
        // The target is looked for from the root of the store that the copy is in.
        EXPECT_EQ(target == store(), static_cast<bool>(found));
        if (found) {
            EXPECT_EQ(L"from.source.group", text(found->path()));
        }
    });
}

TEST_P(CopiedContent, HasTheDefaultsOfTablesAsItsOwn) {
    fillSource();
    const auto meters = units::group(units::kMeter);
    eachCopy([&](IDataStore*, const SharedPtr<IContainer>& copy) {
        const auto table = copy->property(L"table");
        EXPECT_EQ(metadata::kDouble, asTable(table).valuetype(meters));
        EXPECT_EQ(metadata::kInt16, asTable(copy->property(L"table.inner")).valuetype(meters));
        EXPECT_TRUE(asTable(table).defaults(units::kMeter, metadata::kBool));
        EXPECT_EQ(metadata::kDouble, asTable(from()->property(L"source.table")).valuetype(meters));
    });
}

TEST_P(CopiedContent, KeepsTheStoredOrder) {
    for (const wchar_t* name : {L"z", L"b", L"y", L"a"}) addNumber(*source(), name);
    for (const wchar_t* name : {L"n", L"c", L"m"}) addGroup(*source(), name);
    eachCopy([&](IDataStore*, const SharedPtr<IContainer>& copy) {
        EXPECT_EQ((tNames{L"n", L"c", L"m", L"z", L"b", L"y", L"a"}), children(*copy));
    });
}

TEST_P(CopiedContent, HasItsOwnParents) {
    fillSource();
    eachCopy([&](IDataStore* target, const SharedPtr<IContainer>& copy) {
        EXPECT_EQ(offsetOf(target, L"to"), stored::word(target, offset(copy), stored::kParent));
        for (const unsigned int owner : subtree(target, offset(copy))) {
            for (const unsigned int child : childrenOf(target, owner)) {
                EXPECT_EQ(owner, stored::word(target, child, stored::kParent));
            }
        }
        EXPECT_EQ(text(copy->path()) + L".group.node", text(copy->container(L"group.node")->path()));
    });
}

TEST_P(CopiedContent, IsOpenNowhereHoweverOftenItsSourceIs) {
    fillSource();
    const auto held = source();
    const auto heldBelow = held->container(L"group.node");
    const auto heldProperty = held->property(L"table.length");
    for (const tWay& way : ways()) {
        SCOPED_TRACE(way.name);
        ASSERT_TRUE(way.run());
        const unsigned int copy = offsetOf(way.target, std::wstring(L"to.") + way.copy);
        for (const unsigned int each : subtree(way.target, copy)) EXPECT_EQ(0u, stored::refs(way.target, each));
        EXPECT_EQ(1u, stored::refs(store(), offsetOf(store(), L"from.source.group.node")));
        // So it can be destroyed at once, and the source cannot.
        EXPECT_TRUE(IContainerFrontEnd::find(way.target, L"to")->destroy(way.copy));
    }
    EXPECT_FALSE(from()->destroy(L"source"));
}

TEST_P(CopiedContent, OutlivesItsSource) {
    fillSource();
    const std::string original = picture(store(), offsetOf(store(), L"from.source"));
    EXPECT_TRUE(to()->clone(source()));
    EXPECT_TRUE(otherTo()->copy(from()));
    EXPECT_TRUE(from()->destroy(L"source"));
    EXPECT_EQ(original, picture(store(), offsetOf(store(), L"to.source")));
    EXPECT_EQ(original, picture(other(), offsetOf(other(), L"to.source")));
}

TEST_P(CopiedContent, IsChangedWithoutItsSource) {
    fillSource();
    const std::string original = picture(store(), offsetOf(store(), L"from.source"));
    eachCopy([&](IDataStore*, const SharedPtr<IContainer>& copy) {
        const double size = 9;
        asPrimitive(copy->property(L"sizes")).set(&size, 0, 1);
        copy->container(L"group")->describe(L"de", L"anders");
        copy->create(L"new", metadata::kInt32);
        EXPECT_TRUE(copy->destroy(L"elsewhere"));
        asTable(copy->property(L"table")).create(L"new", metadata::kInt32, units::kNoUnit);
        EXPECT_EQ(original, picture(store(), offsetOf(store(), L"from.source")));
    });
}

TEST_P(CopiedContent, OfAnEmptyContainerHasNeitherListNorTexts) {
    source();
    eachCopy([&](IDataStore* target, const SharedPtr<IContainer>& copy) {
        EXPECT_TRUE(copy->empty());
        EXPECT_EQ(stored::BADOFF, stored::word(target, offset(copy), stored::kChildren));
        EXPECT_EQ(stored::BADOFF, stored::word(target, offset(copy), stored::kLocale));
    });
}

TEST_P(CopiedContent, KeepsTheNumberOfWhatIsListedAndIsNoItem) {
    addNumber(*source(), L"a");
    constexpr unsigned int kNowhere = 0x7FFFFFF0u;
    stored::enlist(store(), offsetOf(store(), L"from.source"), kNowhere);
    addNumber(*source(), L"b");
    eachCopy([&](IDataStore* target, const SharedPtr<IContainer>& copy) {
        const auto list = stored::children(target, offset(copy));
        ASSERT_EQ(3u, list.size());
        EXPECT_EQ(kNowhere, list[1]);
        EXPECT_EQ((tNames{L"a", L"b"}), children(*copy));
    });
}

}  // namespace
