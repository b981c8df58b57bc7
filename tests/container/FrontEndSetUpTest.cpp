#include "tests/support/ClientFixture.h"
#include "tests/support/Offsets.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;

class FrontEndSetUp : public ClientTest {};
LVP_ON_EACH_STORE(FrontEndSetUp);

using lumivard::platform::test_support::kRoot;

TEST(FrontEnd, IsOfVersionOneWithoutAStore) {
    EXPECT_EQ(1, IContainerFrontEnd::version());
}

TEST_P(FrontEndSetUp, LaysDownTheRootAtOffsetZero) {
    top();
    // kind, parent, refs, locale, flags; children follow, and then the name: its length, two bytes of nothing, itself.
    const std::string root = stored::bytes(store(), kRoot);
    ASSERT_EQ(44u, root.size());
    EXPECT_EQ(std::string("\x00\xff\xff\xff\xff\x00\x00\x00\x00\xff\xff\xff\xff\x00", 14), root.substr(0, 14));
    EXPECT_EQ(std::string("\x14\x00\x00\x00\x00\x00", 6), root.substr(18, 6));
    EXPECT_EQ(0, std::memcmp(root.data() + 24, L"root", 20));
}

TEST_P(FrontEndSetUp, GivesTheStoreVersionOne) {
    EXPECT_EQ(0u, store()->version());
    top();
    EXPECT_EQ(1u, store()->version());
}

TEST_P(FrontEndSetUp, LeavesNoCountOnTheRoot) {
    const auto held = top();
    EXPECT_EQ(0u, stored::refs(store(), kRoot));
}

TEST_P(FrontEndSetUp, IsNotDoneASecondTime) {
    top();
    const std::string root = stored::bytes(store(), kRoot);
    const auto extent = store()->extent();
    store()->version(7);
    top();
    EXPECT_EQ(root, stored::bytes(store(), kRoot));
    EXPECT_EQ(extent, store()->extent());
    EXPECT_EQ(7u, store()->version());
}

TEST_P(FrontEndSetUp, IsNotDoneByFind) {
    EXPECT_FALSE(find(L"top"));
    EXPECT_EQ(0u, store()->extent());
    EXPECT_EQ(0u, store()->version());
}

}  // namespace
