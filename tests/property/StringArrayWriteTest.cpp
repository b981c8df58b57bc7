#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/container/CopyFixture.h"
#include "tests/container/SchemaClientFixture.h"
#include "tests/property/StringArrayHelpers.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::store_contract::LoggingStore;

/// A list of texts as the value of a primitive.
class StringArrayWrite : public SchemaClientTest {
protected:
    /// The string primitive "strings", opened anew at each call.
    SharedPtr<IProperty> opened() {
        const auto owner = top();
        if (!owner->has(L"strings")) owner->create(L"strings", metadata::kString);
        return owner->property(L"strings");
    }

    /// The characters that it holds, zeros included.
    std::wstring stored() {
        const auto characters = values<wchar_t>(asPrimitive(opened()));
        return {characters.begin(), characters.end()};
    }

    static bool isText(metadata::tValue kind) {
        return kind == metadata::kUUID || kind == metadata::kString || kind == metadata::kTime ||
               kind == metadata::kURI || kind == metadata::kVersion;
    }
};
LVP_ON_EACH_STORE(StringArrayWrite);

TEST_P(StringArrayWrite, PutsAZeroBehindEachText) {
    EXPECT_TRUE(listOf({L"ab", L"c"})->write(&asPrimitive(opened())));
    EXPECT_EQ(std::wstring(L"ab\0c\0", 5), stored());
    EXPECT_EQ(5u, asPrimitive(opened()).dimension());
    EXPECT_EQ(20u, asPrimitive(opened()).bytes());
}

TEST_P(StringArrayWrite, OfOneEmptyTextIsOneZero) {
    EXPECT_TRUE(listOf({L""})->write(&asPrimitive(opened())));
    EXPECT_EQ(std::wstring(1, L'\0'), stored());
}

TEST_P(StringArrayWrite, OfEmptyTextsIsAZeroForEach) {
    EXPECT_TRUE(listOf({L"", L"a", L""})->write(&asPrimitive(opened())));
    EXPECT_EQ(std::wstring(L"\0a\0\0", 4), stored());
}

TEST_P(StringArrayWrite, IsReadAgainAsTheSameList) {
    const tNames list{L"first", L"", L"äß€\U0001F600", L"; and ."};
    EXPECT_TRUE(listOf(list)->write(&asPrimitive(opened())));
    EXPECT_EQ(list, texts(*unpacked(values<wchar_t>(asPrimitive(opened())))));
}

TEST_P(StringArrayWrite, GoesIntoTextsOnly) {
    for (int number = 0; number <= 26; ++number) {
        SCOPED_TRACE(number);
        const auto kind = static_cast<metadata::tValue>(number);
        const auto name = L"kind" + std::to_wstring(number);
        const auto primitive = top()->create(name.c_str(), kind);
        primitive->reset(3);
        const auto before = contents(store());
        EXPECT_EQ(isText(kind), listOf({L"abc"})->write(primitive.get()));
        EXPECT_EQ(isText(kind), before != contents(store()));
        EXPECT_EQ(isText(kind), listOf({})->write(primitive.get()));
        EXPECT_EQ(isText(kind), before != contents(store()));
    }
}

TEST_P(StringArrayWrite, OfAnEmptyListEmptiesThePrimitive) {
    listOf({L"ab", L"c"})->write(&asPrimitive(opened()));
    EXPECT_TRUE(listOf({})->write(&asPrimitive(opened())));
    EXPECT_EQ(0u, asPrimitive(opened()).dimension());
    EXPECT_TRUE(listOf({})->write(&asPrimitive(opened())));
    EXPECT_EQ(0u, asPrimitive(opened()).dimension());
}

TEST_P(StringArrayWrite, OverALongerValueKeepsItsTail) {
    listOf({L"aaaa", L"bbbb", L"cccc"})->write(&asPrimitive(opened()));
    EXPECT_TRUE(listOf({L"x"})->write(&asPrimitive(opened())));
    EXPECT_EQ(std::wstring(L"x\0aa\0bbbb\0cccc\0", 15), stored());
    EXPECT_EQ((tNames{L"x", L"aa", L"bbbb", L"cccc"}), texts(*unpacked(values<wchar_t>(asPrimitive(opened())))));
}

TEST_P(StringArrayWrite, OverAShorterValueReplacesIt) {
    listOf({L"a"})->write(&asPrimitive(opened()));
    EXPECT_TRUE(listOf({L"bb", L"cc"})->write(&asPrimitive(opened())));
    EXPECT_EQ(std::wstring(L"bb\0cc\0", 6), stored());
}

TEST_P(StringArrayWrite, AfterAResetReplacesALongerValue) {
    listOf({L"aaaa", L"bbbb"})->write(&asPrimitive(opened()));
    const auto primitive = opened();
    asPrimitive(primitive).reset(0);
    EXPECT_TRUE(listOf({L"x"})->write(&asPrimitive(primitive)));
    EXPECT_EQ(std::wstring(L"x\0", 2), stored());
}

TEST_P(StringArrayWrite, IsTrueAlsoWhereThePrimitiveTakesNothing) {
    const auto primitive = opened();
    asPrimitive(primitive).uri(L"file:strings");
    const auto before = contents(store());
    EXPECT_TRUE(listOf({L"x"})->write(&asPrimitive(primitive)));
    EXPECT_TRUE(listOf({})->write(&asPrimitive(primitive)));
    EXPECT_EQ(before, contents(store()));
}

TEST_P(StringArrayWrite, IntoNothingIsRefused) {
    EXPECT_FALSE(listOf({L"x"})->write(nullptr));
    EXPECT_FALSE(listOf({})->write(nullptr));
}

TEST_P(StringArrayWrite, LeavesTheListAsItIs) {
    const auto list = listOf({L"a", L"b"});
    list->write(&asPrimitive(opened()));
    list->add(L"c");
    EXPECT_EQ((tNames{L"a", L"b", L"c"}), texts(*list));
    EXPECT_EQ(std::wstring(L"a\0b\0", 4), stored()) << "what is added afterwards is not in the store";
}

TEST_P(StringArrayWrite, ShowsAHiddenPrimitiveUnlessTheListIsEmpty) {
    top()->create(IContainer::kGroup, L"made", schema(L"kits.part"));
    EXPECT_TRUE(listOf({})->write(&asPrimitive(property(L"made.name"))));
    EXPECT_EQ(kHiddenItem, property(L"made.name")->flags());
    EXPECT_TRUE(listOf({L""})->write(&asPrimitive(property(L"made.name"))));
    EXPECT_EQ(kShownItem, property(L"made.name")->flags());
}

TEST_P(StringArrayWrite, TakesTheGuardOfThePrimitivesStore) {
    opened();
    LoggingStore logged(*store());
    const auto primitive = IContainerFrontEnd::find(&logged, L"top")->property(L"strings");
    EXPECT_TRUE(listOf({L"a", L"b"})->write(&asPrimitive(primitive)));
    EXPECT_TRUE(listOf({})->write(&asPrimitive(primitive)));
    EXPECT_EQ(0u, logged.unguarded());
    EXPECT_EQ(0, logged.guards());
}

}  // namespace
