#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;

class Destroy : public ClientTest {
protected:
    unsigned int offsetOfTop() { return stored::children(store(), 0).at(0); }

    /// Makes a group "group" with a group "inner", which holds a table "table" with a primitive "number".
    void makeTree() {
        const auto inner =
            top()->create(IContainer::kGroup, L"group", kNoSchema)->create(IContainer::kGroup, L"inner", kNoSchema);
        inner->create(L"table", kNoSchema)->create(L"number", metadata::kInt32, units::kNoUnit);
    }

    /// The offsets of a record and of all records below it, their lists included.
    std::vector<unsigned int> subtree(unsigned int offset) {
        std::vector<unsigned int> all{offset};
        const unsigned char kind = stored::byte(store(), offset, 0);
        if (kind != 2 && kind != 4) return all;
        const unsigned int list = stored::word(store(), offset, stored::kChildren);
        if (list != stored::BADOFF) all.push_back(list);
        for (const unsigned int child : stored::children(store(), offset)) {
            const auto below = subtree(child);
            all.insert(all.end(), below.begin(), below.end());
        }
        return all;
    }
};
LVP_ON_EACH_STORE(Destroy);

TEST_P(Destroy, RemovesAChildOfEachKind) {
    const auto owner = top();
    owner->create(L"number", metadata::kInt32);
    owner->create(L"table", kNoSchema);
    owner->create(IContainer::kNode, L"node", kNoSchema);
    for (const wchar_t* name : {L"number", L"table", L"node"}) {
        EXPECT_TRUE(owner->destroy(name));
        EXPECT_FALSE(owner->has(name));
        EXPECT_FALSE(owner->destroy(name));
    }
    EXPECT_TRUE(owner->empty());
    EXPECT_TRUE(top()->empty());
}

TEST_P(Destroy, FreesTheName) {
    const auto owner = top();
    owner->create(L"number", metadata::kInt32);
    owner->destroy(L"number");
    EXPECT_TRUE(owner->create(IContainer::kGroup, L"number", kNoSchema));
}

TEST_P(Destroy, KeepsTheOrderOfTheOthers) {
    const auto owner = top();
    for (const wchar_t* name : {L"a", L"b", L"c", L"d"}) owner->create(name, metadata::kInt32);
    owner->destroy(L"b");
    EXPECT_EQ((tNames{L"a", L"c", L"d"}), names(*owner->properties()));
    EXPECT_EQ((tNames{L"a", L"c", L"d"}), names(*top()->properties()));
}

TEST_P(Destroy, ErasesEveryRecordBelowTheChild) {
    makeTree();
    asTable(property(L"group.inner.table")).defaults(units::kMeter, metadata::kDouble);
    property(L"group.inner.table")->describe(L"en", L"a table");
    const auto offsets = subtree(stored::children(store(), offsetOfTop()).at(0));
    ASSERT_EQ(7u, offsets.size());
    EXPECT_TRUE(top()->destroy(L"group"));
    for (const unsigned int offset : offsets) EXPECT_EQ(0u, store()->size(offset)) << offset;
    EXPECT_TRUE(stored::children(store(), offsetOfTop()).empty());
}

TEST_P(Destroy, IsRefusedWhileAnObjectStandsOverTheChild) {
    makeTree();
    const auto owner = top();
    auto held = owner->container(L"group");
    EXPECT_FALSE(owner->destroy(L"group"));
    EXPECT_TRUE(owner->has(L"group.inner.table.number"));
    held.reset();
    EXPECT_TRUE(owner->destroy(L"group"));
}

TEST_P(Destroy, IsRefusedWhileAnObjectStandsOverAnythingBelow) {
    makeTree();
    const auto owner = top();
    for (const wchar_t* path : {L"group.inner.table.number", L"group.inner.table"}) {
        auto held = owner->property(path);
        ASSERT_TRUE(held);
        EXPECT_FALSE(owner->destroy(L"group"));
        EXPECT_FALSE(owner->container(L"group")->destroy(L"inner"));
        held.reset();
    }
    auto held = owner->container(L"group.inner");
    EXPECT_FALSE(owner->destroy(L"group"));
    held.reset();
    EXPECT_TRUE(owner->destroy(L"group"));
}

TEST_P(Destroy, IsRefusedWhileTheNewChildIsHeld) {
    const auto owner = top();
    auto container = owner->create(IContainer::kNode, L"node", kNoSchema);
    auto primitive = owner->create(L"number", metadata::kInt32);
    auto table = owner->create(L"table", kNoSchema);
    for (const wchar_t* name : {L"node", L"number", L"table"}) EXPECT_FALSE(owner->destroy(name));
    container.reset();
    primitive.reset();
    table.reset();
    for (const wchar_t* name : {L"node", L"number", L"table"}) EXPECT_TRUE(owner->destroy(name));
}

TEST_P(Destroy, IsRefusedWhileOneOfTwoObjectsIsLeft) {
    makeTree();
    const auto owner = top();
    auto one = owner->container(L"group");
    auto two = owner->container(L"group");
    one.reset();
    EXPECT_FALSE(owner->destroy(L"group"));
    two.reset();
    EXPECT_TRUE(owner->destroy(L"group"));
}

TEST_P(Destroy, IsRefusedWhileATablesCursorLives) {
    const auto owner = top();
    owner->create(L"table", kNoSchema);
    auto filter = asTable(owner->property(L"table")).properties();
    EXPECT_FALSE(owner->destroy(L"table"));
    filter.reset();
    EXPECT_TRUE(owner->destroy(L"table"));
}

TEST_P(Destroy, IsNotHeldBackByAContainersCursors) {
    makeTree();
    const auto containers = top()->container(L"group")->containers();
    const auto properties = top()->container(L"group")->properties();
    EXPECT_TRUE(top()->destroy(L"group"));
    EXPECT_FALSE(containers->current());
    EXPECT_FALSE(properties->current());
}

TEST_P(Destroy, IsHeldBackByWhatACursorGave) {
    makeTree();
    const auto filter = top()->containers();
    auto held = filter->current();
    EXPECT_FALSE(top()->destroy(L"group"));
    held.reset();
    EXPECT_TRUE(top()->destroy(L"group"));
}

TEST_P(Destroy, IsNotHeldBackByAnObjectOverTheOwner) {
    makeTree();
    const auto one = top();
    const auto two = top();
    EXPECT_TRUE(one->destroy(L"group"));
}

TEST_P(Destroy, IsRefusedForWhatCameFromASchema) {
    const auto owner = top();
    owner->create(L"number", metadata::kInt32)->container()->on(0x02);
    EXPECT_FALSE(owner->destroy(L"number"));
    property(L"number")->off(0x02);
    EXPECT_TRUE(owner->destroy(L"number"));
}

TEST_P(Destroy, TakesWhatCameFromASchemaBelowTheChild) {
    makeTree();
    property(L"group.inner.table")->on(0x02);
    EXPECT_TRUE(top()->destroy(L"group"));
}

TEST_P(Destroy, TakesANameAndNoPath) {
    makeTree();
    const auto owner = top();
    EXPECT_FALSE(owner->destroy(L"group.inner"));
    EXPECT_FALSE(owner->destroy(L"nothing"));
    EXPECT_TRUE(owner->has(L"group.inner"));
}

}  // namespace
