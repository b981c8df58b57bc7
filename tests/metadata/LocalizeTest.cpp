// The localized names of an item.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "lumivard/platform/store_contract/LoggingStore.h"
#include "record/Locale.h"
#include "tests/support/Offsets.h"
#include "tests/support/RecordHelpers.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TreeHelpers.h"

namespace {

namespace data = lumivard::platform::data;
namespace stored = lumivard::platform::test_support::stored;
namespace tree = lumivard::platform::test_support::tree;
using data::Structural::Container;
using lumivard::platform::store_contract::LoggingStore;
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::StoreTest;
using lumivard::platform::test_support::wide;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

using lumivard::platform::test_support::BADOFF;
constexpr unsigned int kNoLocale = data::Metadata::Item::kNoLocale;

/// A locale and its text.
using tTexts = std::vector<std::pair<std::wstring, std::wstring>>;

class Localize : public StoreTest {
protected:
    static tTexts texts(Container& item) {
        tTexts texts;
        for (unsigned int i = 0; i < item.locales(); ++i) {
            auto& [locale, name] = texts.emplace_back();
            item.locale(i, name, locale);
        }
        return texts;
    }

    /// What an object that is opened now tells.
    tTexts reopened() {
        Container item(store(), _offset, false);
        return texts(item);
    }

    /// Gives the item texts and closes it.
    void give(const tTexts& texts) {
        Container item(store(), _offset, false);
        for (const auto& [locale, name] : texts) item.localize(name.c_str(), locale.c_str());
    }

    unsigned int locale() { return stored::word(store(), _offset, 9); }

    const unsigned int _root = tree::root(store());
    const unsigned int _offset = tree::container(store(), L"c");
};
LVP_ON_EACH_STORE(Localize);

TEST_P(Localize, NumbersTheLocalesInTheOrderOfAdding) {
    Container item(store(), _offset, false);
    EXPECT_EQ(item.localize(L"x", L"en"), 0u);
    EXPECT_EQ(item.localize(L"y", L"de"), 1u);
    EXPECT_EQ(item.localize(L"z", L"en"), 0u) << "a new text of a known locale";
}

TEST_P(Localize, TellsOfNothingBeforeTheItemWasSavedWithIt) {
    Container item(store(), _offset, false);
    item.localize(L"x", L"en");
    EXPECT_EQ(item.locales(), 0u);
    EXPECT_EQ(item.localize(L"en"), kNoLocale);
    std::wstring name = L"before";
    std::wstring locale = L"before";
    item.locale(0, name, locale);
    EXPECT_EQ(name, L"");
    EXPECT_EQ(locale, L"");
}

TEST_P(Localize, SavesWhenTheObjectGoesAndKeepsTheOrder) {
    give({{L"en", L"x"}, {L"de", L"y"}});
    Container item(store(), _offset, false);
    EXPECT_EQ(item.locales(), 2u);
    EXPECT_EQ(item.localize(L"en"), 0u);
    EXPECT_EQ(item.localize(L"de"), 1u);
    EXPECT_EQ(item.localize(L"fr"), kNoLocale);
    EXPECT_THAT(texts(item), ElementsAre(Pair(L"en", L"x"), Pair(L"de", L"y")));
}

TEST_P(Localize, IsNotSeenByAnotherObjectBeforeThisOneIsGone) {
    give({{L"en", L"x"}});
    {
        Container item(store(), _offset, false);
        item.localize(L"y", L"en");
        EXPECT_THAT(reopened(), ElementsAre(Pair(L"en", L"x")));
    }
    EXPECT_THAT(reopened(), ElementsAre(Pair(L"en", L"y")));
}

TEST_P(Localize, TellsOfItsOwnChangesOnceTheItemWasSaved) {
    give({{L"en", L"x"}});
    Container item(store(), _offset, false);
    EXPECT_EQ(item.localize(L"y", L"de"), 1u);
    EXPECT_EQ(item.localize(L"z", L"en"), 0u);
    EXPECT_THAT(texts(item), ElementsAre(Pair(L"en", L"z"), Pair(L"de", L"y")));
}

TEST_P(Localize, MakesOneRecordAndKeepsIt) {
    EXPECT_EQ(locale(), BADOFF);
    give({{L"en", L"x"}});
    const unsigned int record = locale();
    ASSERT_NE(record, BADOFF);
    give({{L"de", L"y"}});
    EXPECT_EQ(locale(), record);
    const std::string bytes = hex(store(), record);
    const std::string payload = wide(L"en") + wide(L"x") + wide(L"de") + wide(L"y");
    EXPECT_EQ(bytes.substr(0, 2 * 5),
              "05"
              "28000000");
    EXPECT_EQ(stored::bytes(store(), record).substr(8), payload);
}

TEST_P(Localize, NamesItsRecordInTheItemsAsAChange) {
    LoggingStore log(*store());
    {
        Container item(&log, _offset, false);
        item.localize(L"x", L"en");
        log.clearLog();
    }
    // The payload, and the item that names it.
    EXPECT_EQ(log.updates(true).size(), 2u);
    EXPECT_EQ(log.updates(true).back().offset, _offset);
    EXPECT_EQ(stored::refs(store(), _offset), 0u);
}

TEST_P(Localize, WritesNothingWithoutAChange) {
    give({{L"en", L"x"}});
    LoggingStore log(*store());
    {
        Container item(&log, _offset, false);
        texts(item);
        item.localize(L"en");
        item.localize(nullptr, L"unknown");
        item.localize(L"text", nullptr);
    }
    EXPECT_TRUE(log.updates(true).empty());
    EXPECT_EQ(log.count(LoggingStore::tCall::kCreate), 0u);
}

TEST_P(Localize, ReadsNoLocalesBeforeTheyAreAskedFor) {
    give({{L"en", L"x"}});
    LoggingStore log(*store());
    Container item(&log, _offset, false);
    for (const auto& entry : log.log()) EXPECT_NE(entry.offset, locale());
}

TEST_P(Localize, TakesEmptyTextsAndEmptyLocales) {
    give({{L"en", L""}, {L"", L"x"}, {L"de", L""}});
    EXPECT_THAT(reopened(), ElementsAre(Pair(L"en", L""), Pair(L"", L"x"), Pair(L"de", L"")));
    Container item(store(), _offset, false);
    EXPECT_EQ(item.localize(L""), 1u);
}

TEST_P(Localize, TakesLocalesThatSpellLikeAReservedKey) {
    give({{L"$$$$$_____empty_key", L"x"}, {L"$$$$$_____deleted_key", L"y"}});
    EXPECT_EQ(reopened().size(), 2u);
}

TEST_P(Localize, DoesNothingWithoutALocale) {
    give({{L"en", L"x"}});
    Container item(store(), _offset, false);
    EXPECT_EQ(item.localize(nullptr), kNoLocale);
    EXPECT_EQ(item.localize(L"text", nullptr), kNoLocale);
    EXPECT_EQ(item.locales(), 1u);
}

TEST_P(Localize, GivesNothingPastTheEnd) {
    give({{L"en", L"x"}});
    Container item(store(), _offset, false);
    std::wstring name = L"before";
    std::wstring locale = L"before";
    for (const unsigned int index : {1u, 2u, kNoLocale}) {
        item.locale(index, name, locale);
        EXPECT_EQ(name, L"");
        EXPECT_EQ(locale, L"");
    }
}

class RemovingALocale : public Localize {};
LVP_ON_EACH_STORE(RemovingALocale);

TEST_P(RemovingALocale, GivesTheIndexThatItHadAndClosesTheGap) {
    give({{L"en", L"x"}, {L"de", L"y"}});
    {
        Container item(store(), _offset, false);
        EXPECT_EQ(item.localize(nullptr, L"en"), 0u);
        EXPECT_EQ(item.localize(L"en"), kNoLocale);
        EXPECT_EQ(item.locales(), 1u);
    }
    EXPECT_THAT(reopened(), ElementsAre(Pair(L"de", L"y")));
}

TEST_P(RemovingALocale, ForgetsALongOneTooAndAnyNumberOfThem) {
    Container item(store(), _offset, false);
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 40; ++i) item.localize(L"text", (L"a-long-locale-" + std::to_wstring(i)).c_str());
        for (int i = 39; i >= 0; --i) {
            const std::wstring locale = L"a-long-locale-" + std::to_wstring(i);
            EXPECT_EQ(item.localize(nullptr, locale.c_str()), static_cast<unsigned int>(i));
            EXPECT_EQ(item.localize(nullptr, locale.c_str()), kNoLocale) << "it is gone";
        }
    }
}

TEST_P(RemovingALocale, LeavesTheLaterIndicesOneTooHigh) {
    give({{L"en", L"x"}, {L"de", L"y"}, {L"fr", L"z"}});
    Container item(store(), _offset, false);
    item.localize(nullptr, L"en");
    EXPECT_EQ(item.localize(L"de"), 1u);
    EXPECT_EQ(item.localize(L"fr"), 2u);
    std::wstring name;
    std::wstring locale;
    item.locale(1, name, locale);
    EXPECT_EQ(locale, L"fr") << "what stands behind the index of de";
    item.locale(2, name, locale);
    EXPECT_EQ(locale, L"") << "what stands behind the index of fr";
}

TEST_P(RemovingALocale, LeavesTheEarlierIndicesRight) {
    give({{L"en", L"x"}, {L"de", L"y"}});
    Container item(store(), _offset, false);
    EXPECT_EQ(item.localize(nullptr, L"de"), 1u);
    EXPECT_EQ(item.localize(L"en"), 0u);
    EXPECT_THAT(texts(item), ElementsAre(Pair(L"en", L"x")));
}

TEST_P(RemovingALocale, MakesALaterTextGoToTheNextLocale) {
    give({{L"en", L"x"}, {L"de", L"y"}, {L"fr", L"z"}});
    {
        Container item(store(), _offset, false);
        item.localize(nullptr, L"en");
        EXPECT_EQ(item.localize(L"new", L"de"), 1u);
    }
    EXPECT_THAT(reopened(), ElementsAre(Pair(L"de", L"y"), Pair(L"fr", L"new")));
}

TEST_P(RemovingALocale, MakesTheLaterTextOfTheLastLocaleGoNowhere) {
    give({{L"en", L"x"}, {L"de", L"y"}});
    {
        Container item(store(), _offset, false);
        item.localize(nullptr, L"en");
        EXPECT_EQ(item.localize(L"new", L"de"), 1u);
    }
    EXPECT_THAT(reopened(), ElementsAre(Pair(L"de", L"y")));
}

TEST_P(RemovingALocale, MakesALaterRemovalTakeTheNextLocale) {
    give({{L"first-locale", L"x"}, {L"second-locale", L"y"}, {L"third-locale", L"z"}});
    {
        Container item(store(), _offset, false);
        item.localize(nullptr, L"first-locale");
        EXPECT_EQ(item.localize(nullptr, L"second-locale"), 1u);
        EXPECT_EQ(item.localize(L"third-locale"), 2u) << "its entry is gone, its index is not";
    }
    EXPECT_THAT(reopened(), ElementsAre(Pair(L"second-locale", L"y")));
}

TEST_P(RemovingALocale, IsForgottenByTheNextObject) {
    give({{L"en", L"x"}, {L"de", L"y"}, {L"fr", L"z"}});
    {
        Container item(store(), _offset, false);
        item.localize(nullptr, L"en");
    }
    Container item(store(), _offset, false);
    EXPECT_EQ(item.localize(L"de"), 0u);
    EXPECT_EQ(item.localize(L"fr"), 1u);
}

TEST_P(RemovingALocale, AddsTheNextOneAtTheEndOfTheList) {
    give({{L"en", L"x"}, {L"de", L"y"}});
    {
        Container item(store(), _offset, false);
        item.localize(nullptr, L"en");
        EXPECT_EQ(item.localize(L"z", L"fr"), 1u) << "the index that de goes on having";
    }
    EXPECT_THAT(reopened(), ElementsAre(Pair(L"de", L"y"), Pair(L"fr", L"z")));
}

TEST_P(RemovingALocale, LeavesThePayloadWhenItWasTheOnlyOne) {
    give({{L"en", L"x"}});
    const std::string before = stored::bytes(store(), locale()).substr(8);
    {
        Container item(store(), _offset, false);
        EXPECT_EQ(item.localize(nullptr, L"en"), 0u);
    }
    EXPECT_EQ(stored::bytes(store(), locale()).substr(8), before);
    EXPECT_THAT(reopened(), ElementsAre(Pair(L"en", L"x")));
}

TEST_P(RemovingALocale, LoadsTheOnlyOneAnew) {
    give({{L"en", L"x"}});
    Container item(store(), _offset, false);
    item.localize(nullptr, L"en");
    EXPECT_THAT(texts(item), ElementsAre(Pair(L"en", L"x")));
}

TEST_P(RemovingALocale, TakesBackOneThatWasNeverSaved) {
    {
        Container item(store(), _offset, false);
        item.localize(L"x", L"en");
        EXPECT_EQ(item.localize(nullptr, L"en"), 0u);
    }
    EXPECT_EQ(locale(), BADOFF);
    EXPECT_THAT(reopened(), IsEmpty());
}

TEST_P(RemovingALocale, DoesNothingForAnUnknownOne) {
    give({{L"en", L"x"}});
    Container item(store(), _offset, false);
    EXPECT_EQ(item.localize(nullptr, L"de"), kNoLocale);
    EXPECT_THAT(texts(item), ElementsAre(Pair(L"en", L"x")));
}

}  // namespace
