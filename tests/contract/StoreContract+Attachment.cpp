#include <memory>

#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"
#include "lumivard/platform/store_contract/StoreContract.h"

// What the examination asks of the one object that goes with a store.

namespace lumivard::platform::store_contract {
namespace {

using core::storage::datastore::IRecordAccess;

/// Counts how many of its kind were let go.
class Attached final : public IRecordAccess::IAttachment {
public:
    explicit Attached(int& ended) : _ended(ended) {}
    ~Attached() override { ++_ended; }

private:
    int& _ended;
};

}  // namespace

TEST_P(StoreContract, TheAttachmentOfANewStoreIsEmpty) {
    LVP_SKIP_WITHOUT_ACCESS();
    EXPECT_EQ(store().access()->attachment(), nullptr);
}

TEST_P(StoreContract, TheAttachmentStaysAsLongAsTheStoreIsOpen) {
    int ended = 0;
    const auto subject = another();
    IRecordAccess* const access = subject->store().access();
    if (!access) GTEST_SKIP() << "this store knows whole records only";
    access->attachment() = std::make_unique<Attached>(ended);
    const IRecordAccess::IAttachment* const attached = access->attachment().get();
    for (unsigned int i = 0; i < 100; ++i) subject->store().create("abcd", 4);
    subject->store().erase(7);
    subject->store().flush();
    delete subject->store().lock();
    EXPECT_EQ(access->attachment().get(), attached);
    EXPECT_EQ(ended, 0);
}

TEST_P(StoreContract, TheAttachmentIsLetGoOnceWhenTheStoreCloses) {
    int ended = 0;
    auto subject = another();
    if (!subject->store().access()) GTEST_SKIP() << "this store knows whole records only";
    subject->store().access()->attachment() = std::make_unique<Attached>(ended);
    subject.reset();
    EXPECT_EQ(ended, 1);
}

TEST_P(StoreContract, TheAttachmentIsEmptyWhenReopened) {
    int ended = 0;
    const auto subject = another();
    if (!subject->store().access()) GTEST_SKIP() << "this store knows whole records only";
    subject->store().access()->attachment() = std::make_unique<Attached>(ended);
    subject->store().flush();
    if (!subject->reopen()) GTEST_SKIP() << "this store does not outlive its closing";
    EXPECT_EQ(ended, 1);
    EXPECT_EQ(subject->store().access()->attachment(), nullptr);
}

}  // namespace lumivard::platform::store_contract
