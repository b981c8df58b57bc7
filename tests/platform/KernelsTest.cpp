#include "lumivard/platform/core/hash/Kernels.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using lumivard::platform::core::tMurmur2Kernel;
using lumivard::platform::core::tSFHKernel;

// The expected numbers of both functors come from a model that was written apart from them, from their description.

unsigned long murmur(const wchar_t* key) {
    return tMurmur2Kernel().hash(key);
}

TEST(Murmur2Kernel, OfAnEmptyKeyIsZero) {
    EXPECT_EQ(murmur(L""), 0u);
}

TEST(Murmur2Kernel, TakesATailOfOneByte) {
    EXPECT_EQ(murmur(L"a"), 0x59EC9E63D56E67BEu);
    EXPECT_EQ(murmur(L"abcde"), 0xA092FE76F83A348Du);
}

TEST(Murmur2Kernel, TakesATailOfTwoBytes) {
    EXPECT_EQ(murmur(L"ab"), 0xBCC07FA964086424u);
    EXPECT_EQ(murmur(L"\x4E16\x754C"), 0x96CF1A6122B35F4Eu);
}

TEST(Murmur2Kernel, TakesATailOfThreeBytes) {
    EXPECT_EQ(murmur(L"abc"), 0x9BC681C6B76DC859u);
    EXPECT_EQ(murmur(L"\x4E16"
                     L"bc"),
              0x89D270A14C13E2B0u);
    EXPECT_EQ(murmur(L"\x1F600"
                     L"ab"),
              0x911702A28A7ABC8Eu);
    EXPECT_EQ(murmur(L"\x4E16\x1F600"
                     L"aaaaa"),
              0x43B3E3FAB6D27B5Du);
}

TEST(Murmur2Kernel, TakesWholeBlocks) {
    EXPECT_EQ(murmur(L"abcd"), 0x9C7B3F43E3F1CFCCu);
    EXPECT_EQ(murmur(L"mass density"), 0xA04B3430FF087E80u);
}

TEST(Murmur2Kernel, KeepsAStateOf64Bits) {
    EXPECT_EQ(murmur(L"item_000042"), 0x3531AFD28E38F300u);
    EXPECT_EQ(murmur(L"\x1F600x\x00E9y\x4E16"), 0x10ABCC08309453AFu);
}

TEST(Murmur2Kernel, SeesOnlyAsManyBytesAsTheKeyHasCharacters) {
    EXPECT_EQ(murmur(L"axyz"), murmur(L"abcd"));
    EXPECT_EQ(murmur(L"ab......"), murmur(L"abcdefgh"));
    EXPECT_NE(murmur(L"ab......"), murmur(L"axcdefgh"));
}

TEST(Murmur2Kernel, TellsKeysOfDifferentLengthsApart) {
    EXPECT_NE(murmur(L"aaaa"), murmur(L"aaaaa"));
}

TEST(Murmur2Kernel, DoesNotFoldCase) {
    EXPECT_NE(murmur(L"ABCD"), murmur(L"abcd"));
}

TEST(Murmur2Kernel, IsAFunctorOfItsHash) {
    EXPECT_EQ(tMurmur2Kernel()(L"mass density"), murmur(L"mass density"));
}

TEST(Murmur2Kernel, EqualLooksAtAllCharacters) {
    const std::wstring other = L"abcd";
    EXPECT_TRUE(tMurmur2Kernel().equal(L"abcd", other.c_str()));
    EXPECT_FALSE(tMurmur2Kernel().equal(L"abcd", L"axyz"));
    EXPECT_FALSE(tMurmur2Kernel().equal(L"abcd", L"abc"));
}

/// The hash of the bytes, in a block that ends with them, so that a memory checker sees what is read beyond.
unsigned long sfh(const std::string& text) {
    const std::vector<char> bytes(text.begin(), text.end());
    return tSFHKernel::hash(bytes.data(), bytes.size());
}

TEST(SFHKernel, OfNothingIsZero) {
    EXPECT_EQ(tSFHKernel::hash(nullptr, 0), 0u);
    EXPECT_EQ(tSFHKernel()(""), 0u);
}

TEST(SFHKernel, TakesATailOfOneByte) {
    EXPECT_EQ(sfh("a"), 0x23D4F055EA782u);
    EXPECT_EQ(sfh("abcde"), 0x3D7B9306790A0C56u);
    EXPECT_EQ(sfh(std::string(1, '\0')), 0x6B2B553595Au);
}

TEST(SFHKernel, TakesATailOfTwoBytes) {
    EXPECT_EQ(sfh("ab"), 0x3C32819496C0D44u);
    EXPECT_EQ(sfh("abcdef"), 0x686754A87961CD15u);
}

TEST(SFHKernel, TakesATailOfThreeBytes) {
    EXPECT_EQ(sfh("abc"), 0x760816D818FB58BAu);
    EXPECT_EQ(sfh("abcdefg"), 0x9F2D0A2BD1F2B094u);
}

TEST(SFHKernel, TakesWholeBlocks) {
    EXPECT_EQ(sfh("abcd"), 0x79CADD8BE296DB8Bu);
    EXPECT_EQ(sfh("abcdefgh"), 0x36EE5D74CC29DAB4u);
}

TEST(SFHKernel, TakesBytesAsUnsigned) {
    EXPECT_EQ(sfh("\xFF"), 0x6B32CCDE99665u);
    EXPECT_EQ(sfh("\xFF\xFE"), 0x750FAC771ED62F0u);
    EXPECT_EQ(sfh("\xFF\xFE\xFD"), 0xEAF33B83ED658AEAu);
    EXPECT_EQ(sfh(std::string(9, '\xFF')), 0xACCBD95443249DC8u);
}

TEST(SFHKernel, OfATextLeavesItsTerminatorOut) {
    EXPECT_EQ(tSFHKernel()("scalar"), 0xBD45E7547EFBF31Cu);
    EXPECT_EQ(tSFHKernel()("scalar"), sfh("scalar"));
}

}  // namespace
