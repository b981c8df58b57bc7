// The map from texts to values.
#include "metadata/TextMap.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace {

using lumivard::platform::data::Metadata::TextMap;

int valueOf(const TextMap<int>& map, const wchar_t* key) {
    const int* value = map.find(key);
    return value ? *value : -1;
}

TEST(TextMap, IsEmptyWhenNew) {
    const TextMap<int> map;
    EXPECT_TRUE(map.empty());
    EXPECT_EQ(map.size(), 0u);
    EXPECT_EQ(map.find(L"a"), nullptr);
    map.each([](const wchar_t*, int) { ADD_FAILURE(); });
}

TEST(TextMap, FindsByTheTextAndNotByItsPlace) {
    TextMap<int> map;
    const std::wstring key = L"name";
    const std::wstring same = L"name";
    EXPECT_TRUE(map.insert(key.c_str(), 7));
    EXPECT_EQ(valueOf(map, same.c_str()), 7);
    EXPECT_EQ(valueOf(map, L"Name"), -1);
    EXPECT_EQ(valueOf(map, L"nam"), -1);
}

TEST(TextMap, KeepsTheFirstValueOfAText) {
    TextMap<int> map;
    const std::wstring again = L"a";
    EXPECT_TRUE(map.insert(L"a", 1));
    EXPECT_FALSE(map.insert(again.c_str(), 2));
    EXPECT_EQ(valueOf(map, L"a"), 1);
    EXPECT_EQ(map.size(), 1u);
}

TEST(TextMap, TakesAnyTextThatSpellsLikeAReservedKey) {
    TextMap<int> map;
    for (const wchar_t* key : {L"", L"$$$$$_____empty_key", L"$$$$$_____deleted_key"}) {
        EXPECT_EQ(map.find(key), nullptr);
        EXPECT_TRUE(map.insert(key, 3));
        EXPECT_EQ(valueOf(map, std::wstring(key).c_str()), 3);
        map.erase(std::wstring(key).c_str());
        EXPECT_EQ(map.find(key), nullptr);
        EXPECT_TRUE(map.insert(key, 4));
        EXPECT_EQ(valueOf(map, key), 4);
    }
    EXPECT_EQ(map.size(), 3u);
}

TEST(TextMap, ForgetsWhatIsErasedAndNothingElse) {
    TextMap<int> map;
    map.insert(L"a", 1);
    map.insert(L"b", 2);
    map.erase(L"a");
    map.erase(L"unknown");
    EXPECT_EQ(valueOf(map, L"a"), -1);
    EXPECT_EQ(valueOf(map, L"b"), 2);
    EXPECT_EQ(map.size(), 1u);
    TextMap<int>().erase(L"a");
}

TEST(TextMap, IsAsNewWhenCleared) {
    TextMap<int> map;
    map.insert(L"a", 1);
    map.clear();
    EXPECT_TRUE(map.empty());
    EXPECT_EQ(map.find(L"a"), nullptr);
    EXPECT_TRUE(map.insert(L"a", 2));
    EXPECT_EQ(valueOf(map, L"a"), 2);
}

TEST(TextMap, VisitsEachEntryOnce) {
    TextMap<int> map;
    std::vector<std::wstring> keys;
    for (int i = 0; i < 100; ++i) keys.push_back(L"item_" + std::to_wstring(i));
    for (int i = 0; i < 100; ++i) map.insert(keys[static_cast<std::size_t>(i)].c_str(), i);
    std::map<std::wstring, int> seen;
    map.each([&](const wchar_t* key, int value) { EXPECT_TRUE(seen.emplace(key, value).second); });
    EXPECT_EQ(seen.size(), 100u);
    EXPECT_EQ(seen[L"item_42"], 42);
}

}  // namespace
