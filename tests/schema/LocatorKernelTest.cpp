// How a locator takes lists apart and tells stores from each other.
#include <cstdint>
#include <cstring>

#include "schema/SchemaLocatorImpl.h"
#include "tests/schema/SchemaFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using data::Schema::SchemaLocatorImpl;
using testing::ElementsAre;

using tKernel = SchemaLocatorImpl::_tVoidKernel;

/// What stands at the address of an object.
struct tHead {
    std::uint32_t first;
    std::uint32_t second;
    std::uint32_t behind;
};

/// The hash of two words, formed in 64 bits throughout and cut to 32 where the words are mixed.
std::uint64_t hashOf(std::uint32_t first, std::uint32_t second) {
    const std::uint64_t m = 0x5bd1e995;
    const std::uint64_t low = 0xFFFFFFFF;
    std::uint64_t h = 8;
    for (const std::uint64_t word : {first, second}) {
        std::uint64_t k = (word * m) & low;
        k = k ^ (k >> 24);
        k = (k * m) & low;
        h = (h * m) ^ k;
    }
    h = h ^ (h >> 13);
    h = h * m;
    return h ^ (h >> 15);
}

tNames pieces(const wchar_t* text) {
    tNames out;
    SchemaLocatorImpl::tokenize(text, out);
    return out;
}

TEST(StoreKernel, HashesTheEightBytesAtTheAddress) {
    const struct {
        tHead head;
        std::uint64_t hash;
    } kKnown[] = {
        {{0, 0, 0}, 0xbb85abe4974248ec},
        {{1, 0, 0}, 0xc84b7b6b1418a923},
        {{0, 1, 0}, 0xed0ee3202a85aa1c},
        {{0x01234567, 0x89abcdef, 0}, 0x10bb67c9e171fc45},
        {{0xffffffff, 0xffffffff, 0}, 0x310a94b69acbc3d0},
    };
    for (const auto& [head, hash] : kKnown) {
        EXPECT_EQ(tKernel().hash(&head), hash);
        EXPECT_EQ(hashOf(head.first, head.second), hash);
    }
}

TEST(StoreKernel, HashesAStoreByTheHeadOfItsObject) {
    const OddStore store;
    tHead head{};
    std::memcpy(&head, static_cast<const void*>(&store), sizeof(head.first) + sizeof(head.second));
    EXPECT_EQ(tKernel().hash(&store), hashOf(head.first, head.second));
}

TEST(StoreKernel, GivesAllStoresOfOneClassOneHashAndTellsThemApart) {
    const OddStore one;
    const OddStore another;
    EXPECT_EQ(tKernel().hash(&one), tKernel().hash(&another));
    EXPECT_TRUE(tKernel().equal(&one, &one));
    EXPECT_FALSE(tKernel().equal(&one, &another));
}

TEST(StoreKernel, LooksAtNothingBehindTheEightBytes) {
    const tHead one{1, 2, 3};
    const tHead another{1, 2, 4};
    EXPECT_EQ(tKernel().hash(&one), tKernel().hash(&another));
    EXPECT_FALSE(tKernel().equal(&one, &another)) << "equal is what has one address";
}

TEST(Tokenize, CutsAtEverySeparatorAndKeepsEmptyPieces) {
    EXPECT_THAT(pieces(L"a;b;c"), ElementsAre(L"a", L"b", L"c"));
    EXPECT_THAT(pieces(L"a"), ElementsAre(L"a"));
    EXPECT_THAT(pieces(L""), ElementsAre(L""));
    EXPECT_THAT(pieces(L"a;"), ElementsAre(L"a", L""));
    EXPECT_THAT(pieces(L";a"), ElementsAre(L"", L"a"));
    EXPECT_THAT(pieces(L"a;;b"), ElementsAre(L"a", L"", L"b"));
    EXPECT_THAT(pieces(L";;"), ElementsAre(L"", L"", L""));
}

TEST(Tokenize, TrimsNothingAndCutsNowhereElse) {
    EXPECT_THAT(pieces(L" a ; b.c,d:e"), ElementsAre(L" a ", L" b.c,d:e"));
}

TEST(Tokenize, AddsToWhatIsThere) {
    tNames out{L"x"};
    SchemaLocatorImpl::tokenize(L"a;b", out);
    EXPECT_THAT(out, ElementsAre(L"x", L"a", L"b"));
}

}  // namespace
