#include "lumivard/platform/core/memory/PooledHeap.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <set>

#include <gtest/gtest.h>

#include "tests/support/Sanitized.h"

namespace {

using lumivard::platform::core::memory::PooledHeap;
using lumivard::platform::core::memory::PooledObject;

TEST(PooledHeap, GivesWritableMemoryOfEachSize) {
    for (unsigned long size : {1ul, 7ul, 8ul, 64ul, 4096ul, 1ul << 20}) {
        void* block = PooledHeap::malloc(size);
        ASSERT_NE(block, nullptr);
        std::memset(block, 0xA5, size);
        EXPECT_EQ(static_cast<unsigned char*>(block)[size - 1], 0xA5);
        PooledHeap::free(block, size);
    }
}

TEST(PooledHeap, GivesMemoryThatIsAlignedForAnyType) {
    for (unsigned long size = 1; size < 100; ++size) {
        void* block = PooledHeap::malloc(size);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % alignof(std::max_align_t), 0u);
        PooledHeap::free(block, size);
    }
}

TEST(PooledHeap, GivesABlockOfItsOwnForASizeOfZero) {
    void* one = PooledHeap::malloc(0);
    void* other = PooledHeap::malloc(0);
    EXPECT_NE(one, nullptr);
    EXPECT_NE(one, other);
    PooledHeap::free(one, 0);
    PooledHeap::free(other, 0);
}

TEST(PooledHeap, TakesANullBlockBack) {
    EXPECT_NO_THROW(PooledHeap::free(nullptr, 0));
}

TEST(PooledHeap, ThrowsWhenThereIsNotEnough) {
    if (lumivard::platform::test_support::kSanitized) GTEST_SKIP() << "the sanitizers end the process instead";
    const volatile unsigned long tooMuch = ~0ul / 4;  // volatile, or the compiler would warn of the size
    EXPECT_THROW(PooledHeap::malloc(tooMuch), std::bad_alloc);
}

struct Base : PooledObject {
    virtual ~Base() = default;
    int number = 1;
};

struct Derived final : Base {
    char text[100] = "";
};

TEST(PooledObject, ReturnsAsTheClassThatWasMade) {
    // A wrong size is what an address sanitizer reports here.
    std::unique_ptr<Base> object = std::make_unique<Derived>();
    EXPECT_EQ(object->number, 1);
}

}  // namespace
