#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "tests/fault/calls/Demo.h"
#include "tests/fault/calls/EachRequest.h"
#include "tests/support/Campaign.h"
#include "tests/support/Failures.h"
#include "tests/support/Sanitized.h"
#include "tests/support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;
using namespace lumivard::platform::test_support;
using namespace lumivard::platform::test_support::fault;
using testing::Contains;
using testing::HasSubstr;

/// A client's whole work with the library of materials, where memory runs out somewhere in it.
class DemoAllocations : public testing::TestWithParam<bool> {
protected:
    using tDemo = std::unique_ptr<Demo>;

    bool once() const { return GetParam(); }

    tDemo demo() const { return std::make_unique<Demo>(_schemas, _materials); }

    /// The distance of two requests of which `count` are tried in all.
    long long stride(const fs::path& path, long long count) const {
        const auto whole = demo();
        allocations::failAfter(1LL << 60, false);
        whole->run(path);
        const long long all = allocations::requests();
        allocations::goOn();
        return std::max<long long>(1, all / count);
    }

    /// That of some 60, or what the environment says.
    long long usualStride(const fs::path& path) const {
        const auto usual = static_cast<std::uint64_t>(stride(path, kSanitized ? 12 : 60));
        return static_cast<long long>(effort("LVP_DEMO_ALLOCATIONS_STRIDE", usual));
    }

    /// For tests of the tests a few requests do.
    static constexpr long long kFew = 12;

    template <class Act>
    void leaveASoundStore(long long distance, Act act) const {
        const auto judge = [&](const tDemo& demo, const std::exception_ptr& thrown) {
            EXPECT_EQ(demo->damage(), "");
            const std::string document = demo->document();
            if (!thrown) expectWhole(document);
        };
        atEachRequest(
            once(), distance, [&] { return demo(); }, act, judge);
    }

    template <class Act>
    void leaveTheLastFlush(long long distance, Act act) const {
        const auto fresh = [&] {
            for (const char* name : {"model", "model-lock"}) fs::remove(folder / name);
            return demo();
        };
        atEachRequest(once(), distance, fresh, act, [&](const tDemo& demo, const std::exception_ptr& thrown) {
            const std::string document = demo->document();
            if (!thrown) expectWhole(document);
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

    static void run(const tDemo& demo) { demo->run(""); }

    const FastFolder folder;
    const fs::path file = folder / "model";

private:
    /// All was done, since nothing was thrown; but a localized name is written when its object goes, which has nobody
    /// to tell.
    void expectWhole(const std::string& document) const {
        std::string nameless = _whole;
        const std::string name = "<name locale=\"de-de\">Stahl</name>";
        nameless.erase(nameless.find(name), name.size());
        EXPECT_TRUE(document == _whole || document == nameless) << "as nothing was thrown";
    }

    /// Makes, by the way, what the library and its checker make once in a process.
    std::string wholeDocument() const {
        const tDemo whole = demo();
        whole->run("");
        EXPECT_EQ(whole->damage(), "");
        return whole->document();
    }

    const std::string _schemas = bytesOf(LVP_SOURCE_DIR "/examples/data/schemas.xml");
    const std::string _materials = bytesOf(LVP_SOURCE_DIR "/examples/data/materials.xml");
    const std::string _whole = wholeDocument();
};

TEST_P(DemoAllocations, ThatFailLeaveAStoreThatCanBeRead) {
    leaveASoundStore(usualStride(""), run);
}

TEST_P(DemoAllocations, ThatFailLeaveAFileThatHoldsWhatWasThereOrTheLastFlush) {
    leaveTheLastFlush(usualStride(file), [&](const tDemo& demo) { demo->run(file); });
}

// --- Each of these judgements can fail.

TEST_P(DemoAllocations, ThatLeakOrAreHiddenOrDamageTheStoreAreSeen) {
    const long long distance = stride("", kFew);
    Leaks leaks;
    EXPECT_THAT(failuresOf([&] { leaveASoundStore(distance, leaks.in(run)); }),
                Contains(HasSubstr("allocations::blocks()")));
    EXPECT_THAT(failuresOf([&] { leaveASoundStore(distance, hiding(run)); }),
                Contains(HasSubstr("as nothing was thrown")));
    const auto tearing = harming(run, [](const tDemo& demo) { demo->enlistNothing(); });
    EXPECT_THAT(failuresOf([&] { leaveASoundStore(distance, tearing); }), Contains(HasSubstr("reference.entry")));
}

TEST_P(DemoAllocations, ThatPutAnotherFileInThePlaceOfTheLastFlushAreSeen) {
    const auto replacing = [this](const tDemo&) {
        lumivard::platform::stores::file(folder / "empty", lumivard::platform::stores::tMode::kWrite);
        fs::rename(folder / "empty", file);
    };
    const long long distance = stride(file, kFew);
    const auto act = harming([this](const tDemo& demo) { demo->run(file); }, replacing);
    // The few requests may all come before the first flush.
    std::vector<std::string> seen;
    for (int rounds = 0; rounds < 50 && seen.empty(); ++rounds) {
        seen = failuresOf([&] { leaveTheLastFlush(distance, act); });
    }
    EXPECT_THAT(seen, Contains(HasSubstr("Demo::documentIn(file)")));
}

INSTANTIATE_TEST_SUITE_P(That, DemoAllocations, testing::Bool(),
                         [](const auto& which) { return which.param ? "FailOnce" : "FailForEver"; });

}  // namespace
