#include <gmock/gmock.h>

#include <functional>
#include <stdexcept>
#include <string>

#include "lumivard/platform/data/check/Check.h"
#include "lumivard/platform/store_contract/FailingStore.h"
#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/check/Describe.h"
#include "tests/container/CopyFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::store_contract::FailingStore;
using lumivard::platform::store_contract::LoggingStore;
namespace check = lumivard::platform::data::check;
using testing::HasSubstr;
using testing::Not;

/// Exceptions of the store that a copy is made in pass through, whenever they come.
class CopyFailure : public ClientTest {
protected:
    /// A new store that can be told to fail.
    struct tStore {
        explicit tStore(const StoreKind& kind) : real(kind.make()), logged(*real), failing(logged) {}

        std::unique_ptr<IDataStore> real;
        LoggingStore logged;
        FailingStore failing;
    };

    /// The top-level containers "from" and "to", opened before the failure and used on after it.
    struct tPlaces {
        SharedPtr<IContainer> from;
        SharedPtr<IContainer> to;
    };
    using tOperation = std::function<bool(const tPlaces& places)>;

    /// Runs an operation on new stores of which the target fails at its first change of content, its second, and so on
    /// until the operation gets through. Each time no guard and no count may be left, and when the store goes on the
    /// same objects must do their work, which makes `copy` from `source`.
    void failAtEachChange(bool oneStore, const wchar_t* source, const wchar_t* copy, const tOperation& operation) {
        for (int changes = 0;; ++changes) {
            ASSERT_LT(changes, 200);
            SCOPED_TRACE((oneStore ? "in one store" : "between stores") +
                         (", failing after " + std::to_string(changes)));
            tStore first(GetParam());
            tStore second(GetParam());
            tStore& target = oneStore ? first : second;
            fill(&first.failing);
            tPlaces places{IContainerFrontEnd::toplevel(&first.failing, L"from"),
                           IContainerFrontEnd::toplevel(&target.failing, L"to")};
            target.failing.failAfter(changes);
            const bool failed = fails([&] { EXPECT_TRUE(operation(places)); });
            target.failing.goOn();
            for (const tStore* store : {&first, &second}) {
                EXPECT_EQ(0, store->logged.guards());
            }
            EXPECT_EQ(0u, target.logged.unguarded());
            if (failed) {
                // Not even what nothing reaches names anything of what it was to be a copy of.
                EXPECT_THAT(codes(check::examine(*target.real)), Not(HasSubstr("reference.")));
                EXPECT_TRUE(operation(places));
            }
            places = {};
            expectNothingOpen(first.real.get());
            expectNothingOpen(target.real.get());
            EXPECT_EQ(picture(first.real.get(), offsetOf(first.real.get(), source)),
                      picture(target.real.get(), offsetOf(target.real.get(), copy)));
            if (!failed) {
                EXPECT_GT(changes, 0) << "nothing was changed";
                return;
            }
        }
    }

    void failAtEachChange(const wchar_t* source, const wchar_t* copy, const tOperation& operation) {
        failAtEachChange(true, source, copy, operation);
        failAtEachChange(false, source, copy, operation);
    }

private:
    static void fill(IDataStore* store) {
        const auto source = IContainerFrontEnd::toplevel(store, L"from")->create(IContainer::kGroup, L"a", kNoSchema);
        source->describe(L"en", L"text");
        const auto table = source->create(L"table", kNoSchema);
        table->defaults(units::kMeter, metadata::kDouble);
        table->create(L"item", units::group(units::kMeter))->container()->describe(L"en", L"text");
        source->create(IContainer::kNode, L"node", kNoSchema);
    }

    static void expectNothingOpen(IDataStore* store) {
        for (const unsigned int each : subtree(store, 0)) EXPECT_EQ(0u, stored::refs(store, each)) << each;
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
};
LVP_ON_EACH_STORE(CopyFailure);

TEST_P(CopyFailure, OfCopyCanBeFollowedByAnotherTry) {
    failAtEachChange(L"from.a", L"to.a", [](const tPlaces& places) { return places.to->copy(places.from); });
}

TEST_P(CopyFailure, OfTheCloningOfAContainerCanBeFollowedByAnotherTry) {
    failAtEachChange(L"from.a", L"to.a",
                     [](const tPlaces& places) { return places.to->clone(places.from->container(L"a")); });
}

TEST_P(CopyFailure, OfTheCloningOfAPropertyCanBeFollowedByAnotherTry) {
    failAtEachChange(L"from.a.table", L"to.table",
                     [](const tPlaces& places) { return places.to->clone(places.from->property(L"a.table")); });
    failAtEachChange(L"from.a.table.item", L"to.item",
                     [](const tPlaces& places) { return places.to->clone(places.from->property(L"a.table.item")); });
}

TEST_P(CopyFailure, OfACloneToAPathCanBeFollowedByAnotherTry) {
    failAtEachChange(true, L"from.a", L"to.a",
                     [](const tPlaces& places) { return places.to->clone(L"from.a", L"a", true); });
    failAtEachChange(true, L"from.a.table", L"from.a.node.table",
                     [](const tPlaces& places) { return places.from->clone(L"a.table", L"a.node.table", false); });
}

TEST_P(CopyFailure, OfACloneToAStoreCanBeFollowedByAnotherTry) {
    failAtEachChange(L"from.a", L"to.a", [](const tPlaces& places) {
        return places.from->container(L"a")->clone(places.to->store(), L"to.a");
    });
}

}  // namespace
