// The record of an item's localized names: copying it, erasing it, and reading what may stand there.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

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
using data::Design::Primitive;
using lumivard::platform::store_contract::LoggingStore;
using lumivard::platform::test_support::hex;
using lumivard::platform::test_support::StoreTest;
using lumivard::platform::test_support::wide;

using lumivard::platform::test_support::BADOFF;

class LocaleRecord : public StoreTest {
protected:
    void localize(const wchar_t* name, const wchar_t* locale) { Primitive(store(), _offset).localize(name, locale); }

    unsigned int record() { return stored::word(store(), _offset, 9); }

    /// Makes the item name a record of localized names with that payload, as it is.
    void payload(const std::string& bytes) {
        data::Record::Locale record(store());
        record.payload(bytes.size(), bytes.data());
        stored::putWord(store(), _offset, 9, record.offset());
    }

    /// All texts that the item tells of, as "locale=text;".
    std::wstring texts() {
        Primitive item(store(), _offset);
        std::wstring all;
        std::wstring name;
        std::wstring locale;
        for (unsigned int i = 0; i < item.locales(); ++i) {
            item.locale(i, name, locale);
            all += locale + L"=" + name + L";";
        }
        return all;
    }

    const unsigned int _root = tree::root(store());
    const unsigned int _offset = tree::primitive(store(), L"p");
};
LVP_ON_EACH_STORE(LocaleRecord);

TEST_P(LocaleRecord, IsCopiedIntoAnotherStoreByteForByte) {
    localize(L"x", L"en");
    tree::root(other());
    Primitive item(store(), _offset);
    const unsigned int copy = item.duplicate(other());
    EXPECT_NE(copy, BADOFF);
    EXPECT_EQ(hex(other(), copy), hex(store(), record()));
}

TEST_P(LocaleRecord, IsCopiedWithoutWhatWasNotSaved) {
    localize(L"x", L"en");
    Primitive item(store(), _offset);
    item.localize(L"y", L"de");
    const unsigned int copy = item.duplicate(other());
    EXPECT_EQ(data::Record::Locale(other(), copy).payload(), std::wstring(L"en\0x\0", 5));
}

TEST_P(LocaleRecord, IsNotCopiedWhenThereIsNone) {
    Primitive item(store(), _offset);
    item.localize(L"x", L"en");
    EXPECT_EQ(item.duplicate(other()), BADOFF);
    EXPECT_EQ(other()->extent(), 0u);
}

TEST_P(LocaleRecord, IsErasedByCleanup) {
    localize(L"x", L"en");
    const unsigned int erased = record();
    Primitive item(store(), _offset);
    item.locales();
    item.cleanup();
    EXPECT_EQ(store()->size(erased), 0u);
    EXPECT_EQ(item.locales(), 0u);
    EXPECT_EQ(item.localize(L"en"), data::Metadata::Item::kNoLocale);
    EXPECT_EQ(record(), erased) << "the item's own field is not cleanup's";
}

TEST_P(LocaleRecord, IsNotErasedByCleanupWhenThereIsNone) {
    LoggingStore log(*store());
    {
        Primitive item(&log, _offset);
        item.localize(L"x", L"en");
        item.cleanup();
        EXPECT_EQ(log.count(LoggingStore::tCall::kErase), 0u);
    }
    EXPECT_EQ(texts(), L"en=x;") << "what was not saved stays to be saved";
}

TEST_P(LocaleRecord, IsMadeAnewByATextAfterCleanup) {
    localize(L"x", L"en");
    const unsigned int erased = record();
    {
        Primitive item(store(), _offset);
        item.cleanup();
        EXPECT_EQ(item.localize(L"y", L"de"), 0u);
    }
    EXPECT_NE(record(), erased);
    EXPECT_EQ(texts(), L"de=y;");
}

TEST_P(LocaleRecord, IsNotMadeByAnObjectWhoseTextsWereCleanedUp) {
    localize(L"x", L"en");
    {
        Primitive item(store(), _offset);
        item.localize(L"y", L"de");
        item.clear();
    }
    EXPECT_EQ(record(), BADOFF);
    EXPECT_EQ(texts(), L"");
}

TEST_P(LocaleRecord, LosesATextWithoutAPartner) {
    payload(wide(L"en") + wide(L"x") + wide(L"de"));
    EXPECT_EQ(texts(), L"en=x;");
    payload(wide(L"en"));
    EXPECT_EQ(texts(), L"");
}

TEST_P(LocaleRecord, LosesATextWithoutATerminator) {
    payload(wide(L"en") + wide(L"x").substr(0, 4));
    EXPECT_EQ(texts(), L"");
    payload(wide(L"en") + wide(L"x") + "odd");
    EXPECT_EQ(texts(), L"en=x;");
}

TEST_P(LocaleRecord, CountsALocaleThatIsThereTwiceOnce) {
    payload(wide(L"en") + wide(L"x") + wide(L"en") + wide(L"y"));
    Primitive item(store(), _offset);
    EXPECT_EQ(item.locales(), 1u);
    EXPECT_EQ(item.localize(L"en"), 0u);
    EXPECT_EQ(item.localize(nullptr, L"en"), 0u);
}

TEST_P(LocaleRecord, ThatIsNoneGivesNoTexts) {
    for (const unsigned int offset : {_root, _offset, 777u}) {
        stored::putWord(store(), _offset, 9, offset);
        EXPECT_EQ(texts(), L"");
    }
}

TEST_P(LocaleRecord, ThatIsNoneIsLeftAloneAndReplaced) {
    for (const unsigned int foreign : {tree::container(store(), L"foreign"), 777u}) {
        stored::putWord(store(), _offset, 9, foreign);
        const std::string before = hex(store(), foreign);
        {
            Primitive item(store(), _offset);
            EXPECT_EQ(item.duplicate(store()), BADOFF);
        }
        localize(L"x", L"en");
        EXPECT_EQ(hex(store(), foreign), before);
        EXPECT_NE(record(), foreign);
        EXPECT_EQ(texts(), L"en=x;");

        stored::putWord(store(), _offset, 9, foreign);
        Primitive(store(), _offset).clear();
        EXPECT_EQ(hex(store(), foreign), before);
        EXPECT_EQ(record(), BADOFF);
    }
}

}  // namespace
