#include <functional>
#include <stdexcept>
#include <string>

#include "lumivard/platform/store_contract/FailingStore.h"
#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/support/ClientFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::store_contract::FailingStore;
using lumivard::platform::store_contract::LoggingStore;

/// Exceptions of the store pass through the public operations.
class Failure : public ClientTest {
protected:
    using tOperation = std::function<void(IDataStore* store)>;

    /// Runs an operation on new stores that fail at its first change of content, its second, and so on until it gets
    /// through. Each time no guard may be left, and when the store goes on, the operation must do its work.
    void failAtEachChange(const char* what, const tOperation& prepare, const tOperation& operation,
                          const tOperation& check) {
        for (int changes = 0;; ++changes) {
            ASSERT_LT(changes, 100) << what;
            SCOPED_TRACE(std::string(what) + ", failing after " + std::to_string(changes));
            const auto real = GetParam().make();
            LoggingStore logged(*real);
            FailingStore failing(logged);
            prepare(&failing);
            failing.failAfter(changes);
            const bool failed = fails([&] { operation(&failing); });
            failing.goOn();
            EXPECT_EQ(0, logged.guards());
            EXPECT_EQ(0u, logged.unguarded());
            if (!failed) {
                EXPECT_GT(changes, 0) << "nothing was changed";
                return check(&failing);
            }
            operation(&failing);
            check(&failing);
            EXPECT_EQ(0, logged.guards());
        }
    }

    /// Whether a call ends in the exception of a failing store.
    template <class Call>
    static bool fails(Call call) {
        try {
            call();
            return false;
        } catch (const std::runtime_error&) {
            return true;
        }
    }

    static SharedPtr<IContainer> topOf(IDataStore* store) { return IContainerFrontEnd::toplevel(store, L"top"); }
};
LVP_ON_EACH_STORE(Failure);

TEST_P(Failure, OfToplevelReleasesMutexAndGuard) {
    failAtEachChange(
        "toplevel", [](IDataStore* store) { IContainerFrontEnd::toplevel(store, L"other"); },
        [](IDataStore* store) { topOf(store); },
        [](IDataStore* store) { EXPECT_TRUE(IContainerFrontEnd::find(store, L"top")); });
}

TEST_P(Failure, OfTheSettingUpReleasesMutexAndGuard) {
    const auto real = GetParam().make();
    LoggingStore logged(*real);
    FailingStore failing(logged);
    failing.failAfter(0);
    EXPECT_THROW(topOf(&failing), std::runtime_error);
    EXPECT_EQ(0, logged.guards());
    failing.goOn();
    EXPECT_TRUE(topOf(&failing));
}

TEST_P(Failure, OfCreateLeavesTheNameFree) {
    failAtEachChange(
        "create a container", [](IDataStore* store) { topOf(store); },
        [](IDataStore* store) { EXPECT_TRUE(topOf(store)->create(IContainer::kGroup, L"child", kNoSchema)); },
        [](IDataStore* store) { EXPECT_EQ(tNames{L"child"}, names(*topOf(store)->containers())); });
    failAtEachChange(
        "create a primitive", [](IDataStore* store) { topOf(store); },
        [](IDataStore* store) { EXPECT_TRUE(topOf(store)->create(L"child", metadata::kInt32)); },
        [](IDataStore* store) { EXPECT_EQ(tNames{L"child"}, names(*topOf(store)->properties())); });
    failAtEachChange(
        "create a table", [](IDataStore* store) { topOf(store)->create(L"first", metadata::kInt32); },
        [](IDataStore* store) { EXPECT_TRUE(topOf(store)->create(L"child", kNoSchema)); },
        [](IDataStore* store) {
            EXPECT_EQ((tNames{L"first", L"child"}), names(*topOf(store)->properties()));
        });
}

TEST_P(Failure, OfRenameLeavesTheOldNameOrTheNew) {
    failAtEachChange(
        "rename", [](IDataStore* store) { topOf(store)->create(IContainer::kGroup, L"old", kNoSchema); },
        [](IDataStore* store) { EXPECT_TRUE(topOf(store)->container(L"old")->rename(L"new")); },
        [](IDataStore* store) { EXPECT_EQ(tNames{L"new"}, names(*topOf(store)->containers())); });
}

TEST_P(Failure, OfSetLeavesTheOldValue) {
    failAtEachChange(
        "set", [](IDataStore* store) { topOf(store)->create(L"number", metadata::kInt32); },
        [](IDataStore* store) {
            const int numbers[] = {1, 2, 3};
            EXPECT_TRUE(asPrimitive(topOf(store)->property(L"number")).set(numbers, 0, 3));
        },
        [](IDataStore* store) {
            EXPECT_EQ((std::vector<int>{1, 2, 3}), values<int>(asPrimitive(topOf(store)->property(L"number"))));
        });
}

/// The same object is used on after a failure.
TEST_P(Failure, OfCreateCanBeFollowedByAnotherTryThroughTheSameObject) {
    for (int changes = 0; changes < 8; ++changes) {
        SCOPED_TRACE("failing after " + std::to_string(changes));
        const auto real = GetParam().make();
        FailingStore failing(*real);
        const auto owner = topOf(&failing);
        failing.failAfter(changes);
        const bool failed = fails([&] { owner->create(L"number", metadata::kInt32); });
        failing.goOn();
        if (failed) {
            EXPECT_TRUE(owner->create(L"number", metadata::kInt32));
        }
        EXPECT_TRUE(owner->has(L"number"));
        EXPECT_EQ(tNames{L"number"}, names(*topOf(&failing)->properties()));
    }
}

TEST_P(Failure, OfDefaultsCanBeFollowedByAnotherTryThroughTheSameObject) {
    for (int changes = 0; changes < 5; ++changes) {
        SCOPED_TRACE("failing after " + std::to_string(changes));
        const auto real = GetParam().make();
        FailingStore failing(*real);
        const auto table = topOf(&failing)->create(L"table", kNoSchema);
        failing.failAfter(changes);
        const bool failed = fails([&] { table->defaults(units::kMeter, metadata::kDouble); });
        failing.goOn();
        if (failed) {
            EXPECT_TRUE(table->defaults(units::kMeter, metadata::kDouble));
        }
        const auto again = topOf(&failing)->property(L"table");
        EXPECT_EQ(1u, asTable(again).groups());
        EXPECT_EQ(units::kMeter, asTable(again).units(units::group(units::kMeter)));
        EXPECT_EQ(metadata::kDouble, asTable(again).valuetype(units::group(units::kMeter)));
    }
}

TEST_P(Failure, OfTheSavingOfTextsIsSwallowed) {
    const auto real = GetParam().make();
    LoggingStore logged(*real);
    FailingStore failing(logged);
    auto owner = topOf(&failing);
    owner->describe(L"en", L"text");
    failing.failAfter(0);
    EXPECT_NO_THROW(owner.reset());
    EXPECT_EQ(0, logged.guards());
    failing.goOn();
    EXPECT_EQ(0u, topOf(&failing)->locales());
}

}  // namespace
