#include "tools/diff/Glob.h"

#include <gtest/gtest.h>

namespace {

using lvp::tool::Glob;

bool matches(const wchar_t* pattern, const wchar_t* path) {
    return Glob(pattern).matches(path);
}

TEST(Glob, MatchesWholePaths) {
    EXPECT_TRUE(matches(L"a.b", L"a.b"));
    EXPECT_FALSE(matches(L"a.b", L"a.bc"));
    EXPECT_FALSE(matches(L"a.b", L"xa.b"));
    EXPECT_FALSE(matches(L"a", L"a.b"));
    EXPECT_TRUE(matches(L"", L""));
    EXPECT_FALSE(matches(L"", L"a"));
}

TEST(Glob, TakesAStarForAPartOfAName) {
    EXPECT_TRUE(matches(L"*", L"abc"));
    EXPECT_TRUE(matches(L"a*", L"a"));
    EXPECT_TRUE(matches(L"a*c*e", L"abcde"));
    EXPECT_FALSE(matches(L"*", L"a.b"));
    EXPECT_FALSE(matches(L"a*", L"a.b"));
    EXPECT_TRUE(matches(L"a.*.c", L"a.b.c"));
    EXPECT_FALSE(matches(L"a.*.c", L"a.b.b.c"));
}

TEST(Glob, TakesAQuestionMarkForOneCharacter) {
    EXPECT_TRUE(matches(L"a?c", L"abc"));
    EXPECT_FALSE(matches(L"a?c", L"ac"));
    EXPECT_FALSE(matches(L"a?c", L"a.c"));
}

TEST(Glob, TakesTwoStarsForAnything) {
    EXPECT_TRUE(matches(L"**", L"a.b.c"));
    EXPECT_TRUE(matches(L"a.**", L"a.b.c"));
    EXPECT_FALSE(matches(L"a.**", L"a"));
    EXPECT_TRUE(matches(L"a**c", L"a.b.c"));
    EXPECT_TRUE(matches(L"**c", L"a.bc"));
}

TEST(Glob, TakesTwoStarsForAnyNumberOfLevels) {
    EXPECT_TRUE(matches(L"**.c", L"c"));
    EXPECT_TRUE(matches(L"**.c", L"a.b.c"));
    EXPECT_FALSE(matches(L"**.c", L"a.bc"));
    EXPECT_TRUE(matches(L"a.**.c", L"a.c"));
    EXPECT_TRUE(matches(L"a.**.c", L"a.b.b.c"));
    EXPECT_FALSE(matches(L"a.**.c", L"a.bc"));
    EXPECT_FALSE(matches(L"a.**.c", L"ac"));
    EXPECT_TRUE(matches(L"**.*", L"a"));
}

TEST(Glob, TakesACharacterBehindABackslashAsItIs) {
    EXPECT_TRUE(matches(L"a\\*", L"a*"));
    EXPECT_FALSE(matches(L"a\\*", L"ab"));
    EXPECT_TRUE(matches(L"\\\\", L"\\"));
    EXPECT_TRUE(matches(L"\\", L"\\"));
    EXPECT_TRUE(matches(L"\\**", L"*b"));
}

TEST(Glob, GoesOnFromWhereItWas) {
    const Glob glob(L"a.**.c*");
    const auto state = glob.after(glob.begin(), L"a.b.");
    EXPECT_FALSE(glob.matches(state));
    EXPECT_TRUE(glob.matches(glob.after(state, L"cd")));
    EXPECT_FALSE(glob.matches(glob.after(state, L"d")));
}

TEST(Glob, IsNotDrivenToManyTriesByManyStars) {
    const std::wstring path(3000, L'a');
    std::wstring pattern;
    for (int i = 0; i < 50; ++i) pattern += L"*a**a";
    EXPECT_FALSE(Glob(pattern + L"b").matches(path));
    EXPECT_TRUE(Glob(pattern).matches(path));
}

}  // namespace
