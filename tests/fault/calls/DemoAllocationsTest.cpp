#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/fault/calls/Demo.h"
#include "tests/fault/calls/EachRequest.h"
#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"
#include "tests/support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;
using namespace lumivard::platform::test_support;
using namespace lumivard::platform::test_support::fault;

/// A client's whole work with the library of materials, where memory runs out somewhere in it.
class DemoAllocations : public testing::TestWithParam<bool> {
protected:
    bool once() const { return GetParam(); }

    std::unique_ptr<Demo> demo() const { return std::make_unique<Demo>(_schemas, _materials); }

    /// The distance of two requests that are tried: some 60 in all, or what the environment says.
    long long stride(const fs::path& file) const {
        const auto whole = demo();
        allocations::failAfter(1LL << 60, false);
        whole->run(file);
        const long long all = allocations::requests();
        allocations::goOn();
        const auto usual = static_cast<std::uint64_t>(std::max<long long>(1, all / (kSanitized ? 12 : 60)));
        return static_cast<long long>(effort("LVP_DEMO_ALLOCATIONS_STRIDE", usual));
    }

    const FastFolder folder;

private:
    const std::string _schemas = bytesOf(LVP_SOURCE_DIR "/examples/data/schemas.xml");
    const std::string _materials = bytesOf(LVP_SOURCE_DIR "/examples/data/materials.xml");
};

TEST_P(DemoAllocations, ThatFailLeaveAStoreThatCanBeRead) {
    atEachRequest(
        once(), stride(""), [&] { return demo(); }, [](const auto& demo) { demo->run(""); },
        [](const auto& demo, const std::exception_ptr&) { EXPECT_NO_THROW(demo->document()); });
}

TEST_P(DemoAllocations, ThatFailLeaveAFileThatHoldsWhatWasThereOrTheLastFlush) {
    const fs::path file = folder / "model";
    const auto fresh = [&] {
        for (const char* name : {"model", "model-lock"}) fs::remove(folder / name);
        return demo();
    };
    fresh();
    const long long distance = stride(file);
    atEachRequest(
        once(), distance, fresh, [&](const auto& demo) { demo->run(file); },
        [&](const auto& demo, const std::exception_ptr&) {
            const std::string document = demo->document();
            demo->close();
            if (!fs::exists(file)) {
                EXPECT_EQ(document, "");
            } else if (demo->failedToFlush()) {
                EXPECT_NO_THROW(Demo::documentIn(file));
            } else {
                EXPECT_EQ(Demo::documentIn(file), document);
            }
        });
}

INSTANTIATE_TEST_SUITE_P(That, DemoAllocations, testing::Bool(),
                         [](const auto& which) { return which.param ? "FailOnce" : "FailForEver"; });

}  // namespace
