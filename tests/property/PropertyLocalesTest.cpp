#include "tests/support/ClientFixture.h"
#include "tests/support/StoredRecords.h"

namespace {

using namespace lumivard::platform::test_support;

/// The localized texts of properties. The rules are those of containers; here each holds for primitives and tables.
class PropertyLocales : public ClientTest {
protected:
    void SetUp() override {
        top()->create(L"number", metadata::kInt32);
        top()->create(L"table", kNoSchema);
    }

    static constexpr const wchar_t* kPaths[] = {L"number", L"table"};

    void describe(const wchar_t* path) {
        const auto described = property(path);
        described->describe(L"en", L"one");
        described->describe(L"de", L"two");
        described->describe(L"fr", L"three");
    }
};
LVP_ON_EACH_STORE(PropertyLocales);

TEST_P(PropertyLocales, AreNoneOnANewProperty) {
    for (const wchar_t* path : kPaths) {
        EXPECT_EQ(0u, property(path)->locales());
        EXPECT_EQ(nullptr, property(path)->locale(0).value());
        EXPECT_EQ(nullptr, property(path)->localize(L"en").value());
    }
}

TEST_P(PropertyLocales, ShowTheFirstTextsOnlyWhenThePropertyIsOpenedAnew) {
    for (const wchar_t* path : kPaths) {
        auto described = property(path);
        described->describe(L"en", L"text");
        EXPECT_EQ(0u, described->locales());
        EXPECT_EQ(nullptr, described->localize(L"en").value());
        EXPECT_EQ(nullptr, described->locale(0).value());
        described.reset();
        EXPECT_EQ(1u, property(path)->locales());
        EXPECT_EQ(L"en", text(property(path)->locale(0)));
        EXPECT_EQ(L"text", text(property(path)->localize(L"en")));
    }
}

TEST_P(PropertyLocales, KeepTheirOrder) {
    for (const wchar_t* path : kPaths) {
        describe(path);
        property(path)->describe(L"en", L"changed");
        const auto found = property(path);
        ASSERT_EQ(3u, found->locales());
        EXPECT_EQ(L"en", text(found->locale(0)));
        EXPECT_EQ(L"de", text(found->locale(1)));
        EXPECT_EQ(L"fr", text(found->locale(2)));
        EXPECT_EQ(L"changed", text(found->localize(L"en")));
        EXPECT_EQ(nullptr, found->locale(3).value());
    }
}

TEST_P(PropertyLocales, TakeTheLocaleFirstAndTheTextSecond) {
    property(L"number")->describe(L"en", L"text");
    EXPECT_EQ(L"text", text(property(L"number")->localize(L"en")));
    EXPECT_EQ(nullptr, property(L"number")->localize(L"text").value());
}

TEST_P(PropertyLocales, AreFoundOneTooHighAfterARemovalUntilOpenedAnew) {
    for (const wchar_t* path : kPaths) {
        describe(path);
        {
            const auto changed = property(path);
            changed->describe(L"en", kNoName);
            EXPECT_EQ(2u, changed->locales());
            EXPECT_EQ(L"three", text(changed->localize(L"de")));
            EXPECT_EQ(nullptr, changed->localize(L"fr").value());
        }
        EXPECT_EQ(L"two", text(property(path)->localize(L"de")));
        EXPECT_EQ(L"three", text(property(path)->localize(L"fr")));
        EXPECT_EQ(nullptr, property(path)->localize(L"en").value());
    }
}

TEST_P(PropertyLocales, KeepTheOnlyTextThatIsRemoved) {
    for (const wchar_t* path : kPaths) {
        property(path)->describe(L"en", L"text");
        property(path)->describe(L"en", kNoName);
        EXPECT_EQ(L"text", text(property(path)->localize(L"en")));
    }
}

TEST_P(PropertyLocales, AreApartFromTheLocaleOfTheValue) {
    {
        const auto number = property(L"number");
        asPrimitive(number).valuelocale(L"fr");
        number->describe(L"en", L"text");
    }
    EXPECT_EQ(1u, property(L"number")->locales());
    EXPECT_EQ(L"fr", text(asPrimitive(property(L"number")).valuelocale()));
}

TEST_P(PropertyLocales, GoWithTheProperty) {
    for (const wchar_t* path : kPaths) {
        property(path)->describe(L"en", L"text");
        const unsigned int owner = stored::children(store(), 0).at(0);
        const unsigned int texts = stored::word(store(), stored::children(store(), owner).at(0), stored::kLocale);
        ASSERT_NE(0u, store()->size(texts));
        EXPECT_TRUE(top()->destroy(path));
        EXPECT_EQ(0u, store()->size(texts));
    }
}

}  // namespace
