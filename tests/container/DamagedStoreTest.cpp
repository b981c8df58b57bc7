#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;

/// What clients meet in stores whose records were damaged or put there by others. It need not make sense; it has to
/// end.
class DamagedStore : public ClientTest {
protected:
    unsigned int offsetOfTop() { return stored::children(store(), 0).at(0); }
};
LVP_ON_EACH_STORE(DamagedStore);

TEST_P(DamagedStore, MayListAContainerBelowItself) {
    top()->create(IContainer::kGroup, L"inner", kNoSchema);
    const unsigned int inner = stored::children(store(), offsetOfTop()).at(0);
    stored::enlist(store(), inner, offsetOfTop());
    EXPECT_EQ(L"top.inner", text(find(L"top.inner.top.inner")->path()));
    EXPECT_FALSE(find(L"top.inner.top.inner.nothing"));
    // Whoever asks stands over a record below the one that is to go.
    EXPECT_FALSE(top()->destroy(L"inner"));
}

TEST_P(DamagedStore, MayHaveAParentThatIsTheContainerItself) {
    top()->create(IContainer::kGroup, L"inner", kNoSchema);
    const unsigned int inner = stored::children(store(), offsetOfTop()).at(0);
    stored::putWord(store(), inner, stored::kParent, inner);
    const auto lost = find(L"top.inner");
    EXPECT_EQ(L"inner", text(lost->tag()));
    EXPECT_FALSE(text(lost->path()).empty());
    EXPECT_EQ(L"inner", text(lost->parent()->tag()));
}

TEST_P(DamagedStore, MayHaveAParentThatIsNotThere) {
    top()->create(IContainer::kGroup, L"inner", kNoSchema);
    const unsigned int inner = stored::children(store(), offsetOfTop()).at(0);
    stored::putWord(store(), inner, stored::kParent, 0x7FFFFFF0u);
    const auto lost = find(L"top.inner");
    EXPECT_FALSE(lost->parent());
    EXPECT_EQ(L"inner", text(lost->path()));
    EXPECT_FALSE(lost->rename(L"outer"));
}

TEST_P(DamagedStore, MayListWhatIsNotThere) {
    top()->create(IContainer::kGroup, L"inner", kNoSchema);
    stored::enlist(store(), offsetOfTop(), 0x7FFFFFF0u);
    stored::enlist(store(), offsetOfTop(), stored::BADOFF);
    EXPECT_EQ(tNames{L"inner"}, names(*top()->containers()));
    EXPECT_EQ(tNames{}, names(*top()->properties()));
    EXPECT_TRUE(top()->destroy(L"inner"));
}

TEST_P(DamagedStore, MayNameARecordOfAnotherKindForItsChildren) {
    top()->create(L"number", metadata::kInt32);
    const unsigned int number = stored::children(store(), offsetOfTop()).at(0);
    stored::putWord(store(), offsetOfTop(), stored::kChildren, number);
    const auto damaged = top();
    EXPECT_TRUE(damaged->empty());
    EXPECT_FALSE(damaged->containers()->current());
    EXPECT_FALSE(damaged->properties()->current());
    EXPECT_FALSE(damaged->has(L"number"));
}

TEST_P(DamagedStore, MayListTwoChildrenOfOneName) {
    top()->create(L"one", metadata::kInt32);
    top()->create(L"two", metadata::kInt64);
    const unsigned int two = stored::children(store(), offsetOfTop()).at(1);
    const std::string bytes = stored::bytes(store(), stored::children(store(), offsetOfTop()).at(0));
    store()->update(two, bytes.data(), static_cast<unsigned int>(bytes.size()), true);
    EXPECT_EQ((tNames{L"one", L"one"}), names(*top()->properties()));
    EXPECT_EQ(metadata::kInt32, asPrimitive(property(L"one")).valuetype());
}

TEST_P(DamagedStore, MayHaveAPrimitiveInAContainersPlaceAsAnEnd) {
    const auto group = top()->create(IContainer::kGroup, L"group", kNoSchema);
    group->create(L"number", metadata::kInt32);
    const unsigned int inner = stored::children(store(), offsetOfTop()).at(0);
    // The parent of what is in the group becomes the primitive beside it, which is no container.
    group->create(IContainer::kNode, L"node", kNoSchema);
    const auto children = stored::children(store(), inner);
    stored::putWord(store(), children.at(1), stored::kParent, children.at(0));
    const auto lost = find(L"top.group.node");
    EXPECT_FALSE(lost->rename(L"edge"));
    EXPECT_EQ(L"top.group.number.node", text(lost->path()));
}

TEST_P(DamagedStore, MayCutOffAChildAnywhere) {
    const auto group = top()->create(IContainer::kGroup, L"group", kNoSchema);
    group->create(IContainer::kLink, L"link", kNoSchema);
    const unsigned int link = stored::children(store(), stored::children(store(), offsetOfTop()).at(0)).at(0);
    const std::string whole = stored::bytes(store(), link);
    for (unsigned int size = 0; size <= whole.size(); ++size) {
        store()->update(link, whole.data(), size, true);
        const auto damaged = find(L"top.group");
        const auto child = damaged->containers()->current();
        if (ILink* role = ILink::to(child.get())) {
            EXPECT_FALSE(role->follow(nullptr)) << size;
        }
        if (size < stored::kChildren) {
            EXPECT_FALSE(damaged->has(L"link")) << size;
        }
    }
    EXPECT_TRUE(find(L"top.group")->has(L"link"));
}

}  // namespace
