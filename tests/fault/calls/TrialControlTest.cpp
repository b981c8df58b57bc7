#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <stdexcept>

#include "lumivard/platform/store_contract/ForwardingStore.h"
#include "tests/fault/calls/CallFault.h"
#include "tests/fault/calls/GuardAttempt.h"
#include "tests/fault/calls/Trial.h"
#include "tests/support/Offsets.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;
using namespace lumivard::platform::test_support::fault;
using lumivard::platform::store_contract::FailingStore;
using lumivard::platform::store_contract::ForwardingStore;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

/// Operations that break one promise each: a trial notices all of them, on each kind of stores.
class TrialControl : public testing::TestWithParam<tKind> {
protected:
    TrialControl() { current = &ground; }

    std::vector<std::string> findings(const tOperation& operation) const {
        CallFault fault(FailingStore::kAllCalls, FailingStore::tTimes::kOnce, FailingStore::tAccess::kHidden);
        return findings(operation, fault);
    }

    std::vector<std::string> findings(const tOperation& operation, Fault& fault) const {
        const Expected expected(operation, ground);
        return Trial(operation, ground, expected, kMain, fault).run(1);
    }

    const Ground ground{GetParam()};

    /// The ground of the test that runs, for operations, which have nothing of their own.
    static inline const Ground* current = nullptr;
};

std::wstring reset(World& w) {
    return said(asPrimitive(w.number).reset(5));
}

/// Resets a value, and does something besides where that fails.
template <class Harm>
std::wstring resetOr(World& w, Harm harm) {
    try {
        return reset(w);
    } catch (...) {
        harm();
        throw;
    }
}

constexpr const wchar_t* kNumber = L"main:top.group.number";
using lumivard::platform::test_support::kRoot;

TEST_P(TrialControl, ASoundOperationPasses) {
    EXPECT_THAT(findings({"", "Sound", kNumber, &reset}), IsEmpty());
}

TEST_P(TrialControl, NoticesAFailureThatIsHidden) {
    const auto hiding = [](World& w) {
        try {
            return reset(w);
        } catch (...) {
            return said(false);
        }
    };
    EXPECT_THAT(findings({"", "Hiding", kNumber, hiding}), Contains(HasSubstr("hides the failure")));
}

TEST_P(TrialControl, NoticesAnotherException) {
    const auto translating = [](World& w) {
        return resetOr(w, [] { throw std::runtime_error("something went wrong"); });
    };
    EXPECT_THAT(findings({"", "Translating", kNumber, translating}), Contains(HasSubstr("throws something else")));
}

TEST_P(TrialControl, NoticesAnExceptionOfItsOwn) {
    const auto throwing = [](World&) -> std::wstring { throw std::runtime_error("by itself"); };
    EXPECT_THAT(findings({"", "Throwing", kNumber, throwing}), Contains(HasSubstr("fails by itself")));
}

TEST_P(TrialControl, NoticesADestructorThatThrows) {
    EXPECT_THAT(findings({"", "Loud", kNumber, &reset, nullptr, nullptr, tOperation::kSilent}),
                Contains(HasSubstr("throws: the store was told to fail")));
}

TEST_P(TrialControl, NoticesWhatIsLost) {
    const auto losing = [](World& w) {
        return resetOr(w, [&] { IContainerFrontEnd::find(w.main(), L"last")->create(L"new", metadata::kInt32); });
    };
    EXPECT_THAT(findings({"", "Losing", kNumber, losing}), Contains(HasSubstr("loses what it does not touch")));
}

TEST_P(TrialControl, NoticesAnObjectThatIsNotAsItWas) {
    const auto disturbing = [](World& w) { return resetOr(w, [&] { w.containers->next(); }); };
    EXPECT_THAT(findings({"", "Disturbing", kNumber, disturbing}), Contains(HasSubstr("leaves objects that say")));
}

TEST_P(TrialControl, NoticesASecondTryThatIsRefused) {
    static bool failed;
    const auto sulking = [](World& w) {
        if (failed) return said(false);
        return resetOr(w, [] { failed = true; });
    };
    const auto calm = [](World&) { failed = false; };
    EXPECT_THAT(findings({"", "Sulking", kNumber, sulking, calm}), Contains(HasSubstr("ends otherwise")));
}

TEST_P(TrialControl, NoticesASecondTryThatFails) {
    static bool failed;
    const auto sulking = [](World& w) {
        if (failed) throw std::runtime_error("not again");
        return resetOr(w, [] { failed = true; });
    };
    const auto calm = [](World&) { failed = false; };
    EXPECT_THAT(findings({"", "Sulking", kNumber, sulking, calm}), Contains(HasSubstr("fails at the second try")));
}

TEST_P(TrialControl, NoticesACountThatIsLeft) {
    const auto counting = [](World& w) {
        return resetOr(w, [&] { stored::putWord(w.main(), kRoot, stored::kRefs, 1); });
    };
    EXPECT_THAT(findings({"", "Counting", kNumber, counting}), Contains(HasSubstr("counted as open 1 times")));
}

TEST_P(TrialControl, NoticesACountBelowNone) {
    const auto counting = [](World& w) {
        return resetOr(w, [&] { stored::putWord(w.main(), kRoot, stored::kRefs, 0xFFFFFFFF); });
    };
    EXPECT_THAT(findings({"", "Counting", kNumber, counting}), Contains(HasSubstr("below 0")));
}

TEST_P(TrialControl, NoticesAGapInAList) {
    const auto tearing = [](World& w) {
        return resetOr(w, [&] {
            // The table is the first of its kind among the children of its container.
            for (const unsigned int offset : current->offsets(*w.main())) {
                if (stored::byte(w.main(), offset, 0) != 2) continue;
                const unsigned int list = stored::word(w.main(), offset, stored::kChildren);
                if (stored::children(w.main(), offset).size() < 4) continue;
                stored::putWord(w.main(), list, 4, stored::BADOFF - 1);
            }
        });
    };
    EXPECT_THAT(findings({"", "Tearing", kNumber, tearing}), Contains(HasSubstr("gap")));
}

/// What no walk and no open object shows, but the checker.
TEST_P(TrialControl, NoticesDamage) {
    const auto misleading = [](World& w) {
        return resetOr(w, [&] {
            const unsigned int behind = stored::children(w.main(), kRoot).back();
            stored::putWord(w.main(), stored::children(w.main(), behind).front(), stored::kParent, kRoot);
        });
    };
    EXPECT_THAT(findings({"", "Misleading", kNumber, misleading}),
                Contains(HasSubstr("the checker finds damage: graph.parent-differs")));
}

TEST_P(TrialControl, NoticesWhatARepairDoesNotTakeAway) {
    const auto littering = [](World& w) { return resetOr(w, [&] { w.main()->append(kRoot, "more", 4); }); };
    EXPECT_THAT(findings({"", "Littering", kNumber, littering}),
                Contains(HasSubstr("a repair leaves something: record.rest")));
}

TEST_P(TrialControl, PassesOverWhatARepairTakesAway) {
    const auto leaving = [](World& w) { return resetOr(w, [&] { stored::makeList(w.main()); }); };
    EXPECT_THAT(findings({"", "Leaving", kNumber, leaving}), IsEmpty());
}

/// Does not let the operation that fails give back the first guard that it takes, before that was seen.
class LeakingFault final : public Fault {
public:
    IDataStore& over(IDataStore& store) override {
        _leaking = std::make_unique<Leaking>(_fault.over(store));
        return *_leaking;
    }
    void arm(long long passing) override {
        _fault.arm(passing);
        _leaking->armed = true;
    }
    long long disarm() override {
        _leaking->armed = false;
        const long long failed = _fault.disarm();
        if (failed == 0) _leaking->kept.reset();
        return failed;
    }
    bool once() const override { return _fault.once(); }
    bool isOurs(const std::exception_ptr& thrown) const override { return _fault.isOurs(thrown); }
    bool isTold(const std::wstring& text) const override { return _fault.isTold(text); }
    int guards() const override {
        const int held = _fault.guards();
        _leaking->kept.reset();
        return held;
    }

private:
    struct Leaking final : ForwardingStore {
        using ForwardingStore::ForwardingStore;
        ILock* lock() override {
            std::unique_ptr<ILock> taken(ForwardingStore::lock());
            if (!armed || kept) return taken.release();
            kept = std::move(taken);
            return nullptr;
        }
        std::unique_ptr<ILock> kept;
        bool armed = false;
    };

    CallFault _fault{FailingStore::kAllCalls, FailingStore::tTimes::kOnce, FailingStore::tAccess::kHidden};
    std::unique_ptr<Leaking> _leaking;
};

TEST_P(TrialControl, NoticesAGuardThatIsHeld) {
    LeakingFault fault;
    EXPECT_THAT(findings({"", "Sound", kNumber, &reset}, fault), Contains(HasSubstr("a guard is held")));
}

TEST_P(TrialControl, NoticesAFileThatIsNotWhatItsStoreIs) {
    if (GetParam() != tKind::kFile) GTEST_SKIP() << "only files are opened anew";
    // Another file takes the name of the open one, which is written all the same.
    const auto replacing = [](World& w) {
        return resetOr(w, [] {
            const auto copy = current->file(kMain).string() + "-copy";
            std::filesystem::copy_file(current->file(kMain), copy);
            std::filesystem::rename(copy, current->file(kMain));
        });
    };
    EXPECT_THAT(findings({"", "Replacing", kNumber, replacing}), Contains(HasSubstr("is not in the file")));
}

TEST(GuardAttempt, DoesNotSucceedWhereTheGuardIsHeld) {
    const auto store = lumivard::platform::stores::memory();
    std::unique_ptr<IDataStore::ILock> guard(store->lock());
    GuardAttempt attempt(*store);
    EXPECT_FALSE(attempt.succeeds(std::chrono::milliseconds(20)));
    guard.reset();
    EXPECT_TRUE(attempt.succeeds(std::chrono::seconds(20)));
}

INSTANTIATE_TEST_SUITE_P(On, TrialControl, testing::Values(tKind::kMemory, tKind::kFile, tKind::kOdd),
                         [](const auto& kind) { return std::string(nameOf(kind.param)); });

}  // namespace
