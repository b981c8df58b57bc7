#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;

/// Stores in which something other than a root stands at offset 0.
class OddTop : public ClientTest {
protected:
    static constexpr unsigned int kTop = 0;

    /// Makes the first record of the store a copy of one without children that was made in the other store; it has no
    /// owner, as when a document without a root is read.
    void copyToTop(unsigned int offset) {
        stored::putWord(other(), offset, stored::kParent, stored::BADOFF);
        const std::string bytes = stored::bytes(other(), offset);
        ASSERT_EQ(kTop, store()->create(bytes.data(), static_cast<unsigned int>(bytes.size())));
    }

    /// The offset of a new thing in the other store.
    unsigned int made(void (*make)(IContainer& owner)) {
        make(*IContainerFrontEnd::toplevel(other(), L"other"));
        return stored::children(other(), stored::children(other(), 0).at(0)).back();
    }

    void expectNullAndNothingWritten() {
        const std::string before = stored::bytes(store(), kTop);
        const auto extent = store()->extent();
        EXPECT_FALSE(IContainerFrontEnd::toplevel(store(), L"model"));
        EXPECT_FALSE(IContainerFrontEnd::toplevel(store(), kNoName));
        EXPECT_FALSE(find(L"model"));
        EXPECT_EQ(before, stored::bytes(store(), kTop));
        EXPECT_EQ(extent, store()->extent());
        EXPECT_EQ(0u, store()->version());
    }

    /// What can be made and found below a top that can hold children.
    void expectAnEntry() {
        const auto made = IContainerFrontEnd::toplevel(store(), L"model");
        ASSERT_TRUE(made);
        EXPECT_EQ(IContainer::kGroup, made->type());
        made->create(IContainer::kNode, L"child", kNoSchema);
        EXPECT_TRUE(IContainerFrontEnd::toplevel(store(), L"model")->has(L"child"));
        EXPECT_EQ(L"model", text(IContainerFrontEnd::toplevel(store(), kNoName)->tag()));
        EXPECT_EQ(L"child", text(find(L"model.child")->tag()));
        EXPECT_EQ(1u, stored::children(store(), kTop).size());
        EXPECT_EQ(0u, store()->version());
    }
};
LVP_ON_EACH_STORE(OddTop);

TEST_P(OddTop, IsEnteredWhenItIsAContainer) {
    copyToTop(made([](IContainer& owner) { owner.create(IContainer::kGroup, L"part", kNoSchema); }));
    expectAnEntry();
}

TEST_P(OddTop, IsEnteredWhenItIsATable) {
    copyToTop(made([](IContainer& owner) { owner.create(L"part", kNoSchema); }));
    expectAnEntry();
}

TEST_P(OddTop, NamesItselfInPathsWhenItIsAContainer) {
    copyToTop(made([](IContainer& owner) { owner.create(IContainer::kGroup, L"part", kNoSchema); }));
    IContainerFrontEnd::toplevel(store(), L"model");
    EXPECT_EQ(L"part.model", text(find(L"model")->path()));
    EXPECT_EQ(L"part", text(find(L"model")->parent()->tag()));
    EXPECT_FALSE(find(L"model")->parent()->parent());
}

TEST_P(OddTop, IsNotEnteredWhenItIsAPrimitive) {
    copyToTop(made([](IContainer& owner) { owner.create(L"part", metadata::kInt32); }));
    expectNullAndNothingWritten();
}

TEST_P(OddTop, IsNotEnteredWhenItIsAList) {
    ASSERT_EQ(kTop, stored::makeList(store()));
    expectNullAndNothingWritten();
}

TEST_P(OddTop, IsNotEnteredWhenItHoldsLocalizedNames) {
    ASSERT_EQ(kTop, store()->create("\x05\0\0\0\0\0\0\0", 8));
    expectNullAndNothingWritten();
}

TEST_P(OddTop, IsNotEnteredWhenItIsOfAnUnknownKind) {
    const std::string strange(64, '\x09');
    ASSERT_EQ(kTop, store()->create(strange.data(), 64));
    expectNullAndNothingWritten();
}

TEST_P(OddTop, IsNotEnteredWhenItIsErased) {
    ASSERT_EQ(kTop, stored::makeList(store()));
    store()->erase(kTop);
    expectNullAndNothingWritten();
}

TEST_P(OddTop, IsNotEnteredWhenItEndsBeforeItsListOfChildren) {
    top();
    const std::string root = stored::bytes(store(), kTop);
    for (const char kind : {'\0', '\2', '\4'}) {
        for (unsigned int size = 0; size < stored::kChildren + 4; ++size) {
            const auto damaged = GetParam().make();
            std::string bytes = root.substr(0, size);
            if (size != 0) bytes[0] = kind;
            damaged->create(bytes.data(), size);
            EXPECT_FALSE(IContainerFrontEnd::toplevel(damaged.get(), L"model")) << size;
            EXPECT_FALSE(IContainerFrontEnd::find(damaged.get(), L"model")) << size;
            EXPECT_EQ(bytes, stored::bytes(damaged.get(), kTop));
        }
    }
}

}  // namespace
