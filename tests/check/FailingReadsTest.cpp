// A store whose records can be read at first and not any more later.
#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

#include "lumivard/platform/data.h"
#include "lumivard/platform/data/check/Check.h"
#include "lumivard/platform/store_contract/ForwardingStore.h"
#include "lumivard/platform/stores.h"

namespace {

using namespace lumivard::platform;
using namespace lumivard::platform::data;

/// Shows whole records only, and fails from its so-many-th read on.
class FailingReads final : public store_contract::ForwardingStore {
public:
    FailingReads(IDataStore& under, unsigned int reads) : ForwardingStore(under), _left(reads) {}

    void read(unsigned int offset, void* buffer, unsigned int size) override {
        if (_left == 0) throw std::runtime_error("the disk is gone");
        --_left;
        ForwardingStore::read(offset, buffer, size);
    }
    core::storage::datastore::IRecordAccess* access() override { return nullptr; }
    bool failed() const { return _left == 0; }

private:
    unsigned int _left;
};

/// A store with more faults than are kept, in items on several levels, whose paths are told.
std::unique_ptr<IDataStore> faultyStore() {
    auto store = stores::memory();
    const auto top = structure::IContainerFrontEnd::toplevel(store.get(), L"top");
    for (const wchar_t* name : {L"a", L"b", L"c", L"d", L"e"}) {
        const auto group = top->create(structure::IContainer::kGroup, name, nullptr);
        group->create(L"value", metadata::kInt32)->container()->on(0x40);
        group->create(L"other", metadata::kDouble)->container()->on(0x80);
    }
    for (unsigned int offset = 3; offset < store->extent(); ++offset) store->append(offset, "rest", 4);
    return store;
}

TEST(FailingReads, AreToldAtWhateverMomentTheyBegin) {
    const auto store = faultyStore();
    for (const std::size_t keep : {std::size_t{1}, std::size_t{3}, std::size_t{1000}}) {
        bool failed = true;
        for (unsigned int reads = 0; failed; ++reads) {
            FailingReads failing(*store, reads);
            const check::Report report = check::examine(failing, {.keep = keep});
            failed = failing.failed();
            SCOPED_TRACE(reads);
            EXPECT_LE(report.findings.size(), keep);
            EXPECT_GE(report.total(), report.findings.size());
            std::uint64_t counted = 0;
            for (const auto& [code, count] : report.byCode) counted += count;
            EXPECT_EQ(counted, report.total()) << "what came last is counted too";
            for (std::size_t i = 1; i < report.findings.size(); ++i) {
                EXPECT_LE(report.findings[i - 1].offset, report.findings[i].offset);
            }
            if (failed && reads > 0) {
                EXPECT_FALSE(report.clean());
            }
        }
    }
}

}  // namespace
