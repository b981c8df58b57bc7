#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;

/// What the front end finds or makes at the top of a store.
class Toplevel : public ClientTest {
protected:
    static constexpr unsigned int kRoot = 0;

    SharedPtr<IContainer> toplevel(const WideString& name) { return IContainerFrontEnd::toplevel(store(), name); }

    /// Puts a primitive at the top of the store, where no operation of a container would make one.
    void putPrimitiveOnTop(const wchar_t* name) {
        const unsigned int owner = stored::children(store(), kRoot).at(0);
        top()->create(name, metadata::kInt32);
        stored::move(store(), stored::children(store(), owner).back(), owner, kRoot);
    }

    /// Takes the first thing at the top out of the root's list.
    void unlistFirst() {
        const unsigned int list = stored::word(store(), kRoot, stored::kChildren);
        const std::string entries = stored::bytes(store(), list);
        const std::string rest = entries.substr(0, 4) + entries.substr(8);
        store()->update(list, rest.data(), static_cast<unsigned int>(rest.size()), true);
    }
};
LVP_ON_EACH_STORE(Toplevel);

TEST_P(Toplevel, MakesAGroupOfTheNameInAnEmptyStore) {
    const auto made = toplevel(L"model");
    ASSERT_TRUE(made);
    EXPECT_EQ(L"model", text(made->tag()));
    EXPECT_EQ(L"model", text(made->path()));
    EXPECT_EQ(IContainer::kGroup, made->type());
    EXPECT_TRUE(made->empty());
    EXPECT_EQ(1u, stored::children(store(), kRoot).size());
}

TEST_P(Toplevel, MakesDefaultWithoutAName) {
    EXPECT_EQ(L"default", text(toplevel(kNoName)->tag()));
    EXPECT_TRUE(find(L"default"));
}

TEST_P(Toplevel, TakesAnEmptyTextForNoName) {
    EXPECT_EQ(L"default", text(toplevel(L"")->tag()));
}

TEST_P(Toplevel, MakesTheRootTheParentOfWhatItMakes) {
    toplevel(L"model");
    EXPECT_EQ(kRoot, stored::word(store(), stored::children(store(), kRoot).at(0), stored::kParent));
}

TEST_P(Toplevel, FindsWhatItMade) {
    toplevel(L"model")->create(IContainer::kNode, L"child", kNoSchema);
    const auto again = toplevel(L"model");
    EXPECT_TRUE(again->has(L"child"));
    EXPECT_EQ(1u, stored::children(store(), kRoot).size());
}

TEST_P(Toplevel, GivesWithoutANameTheFirstContainerWhateverItsName) {
    toplevel(L"first");
    toplevel(L"default");
    EXPECT_EQ(L"first", text(toplevel(kNoName)->tag()));
}

TEST_P(Toplevel, PassesOverPropertiesToTheFirstContainer) {
    toplevel(L"top");
    putPrimitiveOnTop(L"property");
    toplevel(L"second");
    unlistFirst();
    EXPECT_EQ(L"second", text(toplevel(kNoName)->tag()));
}

TEST_P(Toplevel, MakesDefaultBesideProperties) {
    toplevel(L"top");
    putPrimitiveOnTop(L"property");
    unlistFirst();
    EXPECT_EQ(L"default", text(toplevel(kNoName)->tag()));
    EXPECT_EQ(2u, stored::children(store(), kRoot).size());
}

TEST_P(Toplevel, IsNullWhereAPropertyBearsTheName) {
    toplevel(L"top");
    putPrimitiveOnTop(L"property");
    const auto extent = store()->extent();
    const auto none = toplevel(L"property");
    EXPECT_FALSE(none);
    EXPECT_EQ(nullptr, none.counter());
    EXPECT_EQ(extent, store()->extent());
}

TEST_P(Toplevel, IsNullWhereAPropertyBearsTheNameDefaultAndThereIsNoContainer) {
    toplevel(L"top");
    putPrimitiveOnTop(L"default");
    unlistFirst();
    const auto extent = store()->extent();
    EXPECT_FALSE(toplevel(kNoName));
    EXPECT_EQ(extent, store()->extent());
}

TEST_P(Toplevel, TakesADottedNameAsItIs) {
    toplevel(L"a")->create(IContainer::kGroup, L"b", kNoSchema);
    const auto dotted = toplevel(L"a.b");
    EXPECT_EQ(L"a.b", text(dotted->tag()));
    EXPECT_FALSE(dotted->parent());
    EXPECT_EQ(2u, stored::children(store(), kRoot).size());
    EXPECT_EQ(L"b", text(find(L"a.b")->tag()));
}

TEST_P(Toplevel, MakesADottedNameThatFindDoesNotReach) {
    toplevel(L"a.b");
    EXPECT_FALSE(find(L"a.b"));
    EXPECT_EQ(L"a.b", text(toplevel(L"a.b")->tag()));
    EXPECT_EQ(1u, stored::children(store(), kRoot).size());
}

TEST_P(Toplevel, GivesAnObjectWithoutARole) {
    const auto made = toplevel(L"model");
    EXPECT_EQ(nullptr, IGroup::to(made.get()));
    const auto found = toplevel(L"model");
    EXPECT_EQ(IContainer::kGroup, found->type());
    EXPECT_EQ(nullptr, IGroup::to(found.get()));
}

TEST_P(Toplevel, GivesANewObjectAtEachCall) {
    const auto one = toplevel(L"model");
    const auto two = toplevel(L"model");
    EXPECT_NE(one.get(), two.get());
    EXPECT_EQ(2u, stored::refs(store(), stored::children(store(), kRoot).at(0)));
}

TEST_P(Toplevel, OpensAContainerOfAnyType) {
    toplevel(L"top")->create(IContainer::kLink, L"link", kNoSchema);
    const unsigned int owner = stored::children(store(), kRoot).at(0);
    stored::move(store(), stored::children(store(), owner).at(0), owner, kRoot);
    EXPECT_EQ(IContainer::kLink, toplevel(L"link")->type());
}

}  // namespace
