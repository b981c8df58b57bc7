#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::store_contract::LoggingStore;

/// The localized texts of a container.
class ContainerLocales : public ClientTest {
protected:
    /// The locales of a container in their order.
    static tNames locales(IContainer& container) {
        tNames all;
        for (unsigned int index = 0; index < container.locales(); ++index) all.push_back(text(container.locale(index)));
        return all;
    }

    /// Gives "top" texts in three locales, and lets them reach the store.
    void describeTop() {
        const auto container = top();
        container->describe(L"en", L"one");
        container->describe(L"de", L"two");
        container->describe(L"fr", L"three");
    }
};
LVP_ON_EACH_STORE(ContainerLocales);

TEST_P(ContainerLocales, AreNoneOnANewContainer) {
    const auto container = top();
    EXPECT_EQ(0u, container->locales());
    EXPECT_EQ(nullptr, container->locale(0).value());
    EXPECT_EQ(nullptr, container->locale(0xFFFFFFFFu).value());
    EXPECT_EQ(nullptr, container->localize(L"en").value());
}

TEST_P(ContainerLocales, ShowTheFirstTextsOnlyWhenTheContainerIsOpenedAnew) {
    auto container = top();
    container->describe(L"en", L"text");
    EXPECT_EQ(0u, container->locales());
    EXPECT_EQ(nullptr, container->localize(L"en").value());
    EXPECT_EQ(nullptr, container->locale(0).value());
    EXPECT_EQ(0u, top()->locales());
    container.reset();
    EXPECT_EQ(1u, top()->locales());
    EXPECT_EQ(L"text", text(top()->localize(L"en")));
    EXPECT_EQ(L"en", text(top()->locale(0)));
}

TEST_P(ContainerLocales, StandInTheOrderOfTheirFirstDescription) {
    describeTop();
    EXPECT_EQ((tNames{L"en", L"de", L"fr"}), locales(*top()));
    top()->describe(L"en", L"changed");
    EXPECT_EQ((tNames{L"en", L"de", L"fr"}), locales(*top()));
}

TEST_P(ContainerLocales, ShowFurtherTextsAtOnce) {
    describeTop();
    const auto container = top();
    container->describe(L"it", L"four");
    EXPECT_EQ(4u, container->locales());
    EXPECT_EQ(L"four", text(container->localize(L"it")));
    EXPECT_EQ(L"it", text(container->locale(3)));
}

TEST_P(ContainerLocales, KeepOneEntryForTwoTexts) {
    {
        const auto container = top();
        container->describe(L"en", L"first");
        container->describe(L"en", L"second");
    }
    EXPECT_EQ(1u, top()->locales());
    EXPECT_EQ(L"second", text(top()->localize(L"en")));
}

TEST_P(ContainerLocales, AreNotSeenByAnotherObjectBeforeThisOneGoes) {
    describeTop();
    auto writing = top();
    writing->describe(L"en", L"changed");
    EXPECT_EQ(L"one", text(top()->localize(L"en")));
    writing.reset();
    EXPECT_EQ(L"changed", text(top()->localize(L"en")));
}

TEST_P(ContainerLocales, HaveNoTextForAnUnknownOne) {
    describeTop();
    EXPECT_EQ(nullptr, top()->localize(L"it").value());
    EXPECT_EQ(nullptr, top()->localize(L"EN").value());
    EXPECT_EQ(nullptr, top()->locale(3).value());
}

TEST_P(ContainerLocales, LoseATextThatIsRemoved) {
    describeTop();
    top()->describe(L"de", kNoName);
    EXPECT_EQ((tNames{L"en", L"fr"}), locales(*top()));
    EXPECT_EQ(nullptr, top()->localize(L"de").value());
    EXPECT_EQ(L"three", text(top()->localize(L"fr")));
}

TEST_P(ContainerLocales, AreFoundOneTooHighAfterARemovalUntilOpenedAnew) {
    describeTop();
    const auto container = top();
    container->describe(L"en", kNoName);
    EXPECT_EQ(2u, container->locales());
    EXPECT_EQ(L"de", text(container->locale(0)));
    EXPECT_EQ(L"three", text(container->localize(L"de")));
    EXPECT_EQ(nullptr, container->localize(L"fr").value());
}

TEST_P(ContainerLocales, KeepTheOnlyTextThatIsRemoved) {
    top()->describe(L"en", L"text");
    top()->describe(L"en", kNoName);
    EXPECT_EQ(1u, top()->locales());
    EXPECT_EQ(L"text", text(top()->localize(L"en")));
}

TEST_P(ContainerLocales, AreWrittenOnceWhenTheObjectGoes) {
    LoggingStore logged(*store());
    auto container = IContainerFrontEnd::toplevel(&logged, L"top");
    logged.clearLog();
    container->describe(L"en", L"one");
    container->describe(L"de", L"two");
    EXPECT_THAT(logged.updates(true), testing::IsEmpty());
    EXPECT_EQ(0u, logged.count(LoggingStore::tCall::kCreate));
    container.reset();
    EXPECT_EQ(1u, logged.count(LoggingStore::tCall::kCreate));
    EXPECT_THAT(logged.updates(true), testing::Not(testing::IsEmpty()));
}

TEST_P(ContainerLocales, WriteNothingWhereNothingWasDescribed) {
    describeTop();
    LoggingStore logged(*store());
    {
        const auto container = IContainerFrontEnd::find(&logged, L"top");
        container->locales();
        container->locale(0);
        container->localize(L"en");
    }
    EXPECT_THAT(logged.updates(true), testing::IsEmpty());
}

TEST_P(ContainerLocales, GoWithTheContainer) {
    top()->create(IContainer::kGroup, L"child", kNoSchema)->describe(L"en", L"text");
    const unsigned int child = stored::children(store(), stored::children(store(), 0).at(0)).at(0);
    const unsigned int texts = stored::word(store(), child, stored::kLocale);
    ASSERT_NE(0u, store()->size(texts));
    top()->destroy(L"child");
    EXPECT_EQ(0u, store()->size(texts));
}

TEST_P(ContainerLocales, MayBeAnyText) {
    // Two of these spell what the maps reserve for themselves.
    const tNames odd{L"$$$$$_____empty_key", L"$$$$$_____deleted_key", L" ", L"a;b.c"};
    {
        const auto container = top();
        for (const auto& locale : odd) container->describe(locale.c_str(), (L"text of " + locale).c_str());
    }
    EXPECT_EQ(odd, locales(*top()));
    for (const auto& locale : odd) EXPECT_EQ(L"text of " + locale, text(top()->localize(locale.c_str())));
}

}  // namespace
