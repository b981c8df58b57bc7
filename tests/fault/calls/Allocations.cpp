#include "tests/fault/calls/Allocations.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <new>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define LVP_OWN_MALLOC 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define LVP_OWN_MALLOC 0
#endif
#endif
#ifndef LVP_OWN_MALLOC
#define LVP_OWN_MALLOC 1
#endif

namespace lumivard::platform::test_support::fault::allocations {

namespace {

std::atomic<long long> kBlocks{0};

thread_local bool kArmed = false;
thread_local bool kForEver = false;
thread_local long long kLeft = 0;
thread_local long long kRequests = 0;
thread_local std::size_t kLargest = 0;
thread_local long long kFailed = 0;

/// Whether the request that comes now fails.
bool fails(std::size_t size) {
    ++kRequests;
    kLargest = std::max(kLargest, size);
    if (!kArmed) return false;
    if (kLeft > 0) {
        --kLeft;
        return false;
    }
    ++kFailed;
    kArmed = kForEver;
    return true;
}

void* counted(void* block) {
    if (block) ++kBlocks;
    return block;
}

}  // namespace

void failAfter(long long passing, bool forEver) {
    kLeft = passing;
    kForEver = forEver;
    kRequests = 0;
    kLargest = 0;
    kFailed = 0;
    kArmed = true;
}

long long goOn() {
    kArmed = false;
    return kFailed;
}

long long requests() {
    return kRequests;
}

std::size_t largest() {
    return kLargest;
}

long long blocks() {
    return kBlocks;
}

}  // namespace lumivard::platform::test_support::fault::allocations

namespace {

using namespace lumivard::platform::test_support::fault::allocations;

/// Gives what `allocate` gives, or nothing where the request fails.
template <class Allocate>
void* request(std::size_t size, Allocate allocate) {
    if (!fails(size)) return counted(allocate());
    errno = ENOMEM;
    return nullptr;
}

}  // namespace

#if LVP_OWN_MALLOC

// The functions of the C library under the names that it keeps for replacements like these. Its `operator new` asks the
// `malloc` below, so that each request counts once.
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);

void* malloc(std::size_t size) noexcept {
    return request(size, [&] { return __libc_malloc(size); });
}

void* calloc(std::size_t count, std::size_t size) noexcept {
    return request(count * size, [&] { return __libc_calloc(count, size); });
}

void* realloc(void* block, std::size_t size) noexcept {
    if (!block) return malloc(size);
    if (fails(size)) {
        errno = ENOMEM;
        return nullptr;
    }
    void* const moved = __libc_realloc(block, size);
    if (!moved && size == 0) --kBlocks;
    return moved;
}

void* memalign(std::size_t alignment, std::size_t size) noexcept {
    return request(size, [&] { return __libc_memalign(alignment, size); });
}

void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    return memalign(alignment, size);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept {
    void* const made = memalign(alignment, size);
    if (!made) return ENOMEM;
    *block = made;
    return 0;
}

void free(void* block) noexcept {
    if (block) --kBlocks;
    __libc_free(block);
}

}  // extern "C"

#else

namespace {

void* demanded(void* block) {
    if (!block) throw std::bad_alloc();
    return block;
}

void* make(std::size_t size) {
    return request(size, [&] { return std::malloc(size); });
}

void* make(std::size_t size, std::align_val_t alignment) {
    const auto unit = static_cast<std::size_t>(alignment);
    return request(size, [&] { return std::aligned_alloc(unit, (size + unit - 1) / unit * unit); });
}

void drop(void* block) {
    if (block) --kBlocks;
    std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
    return demanded(make(size));
}
void* operator new[](std::size_t size) {
    return demanded(make(size));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return make(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    return make(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return demanded(make(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return demanded(make(size, alignment));
}
void operator delete(void* block) noexcept {
    drop(block);
}
void operator delete[](void* block) noexcept {
    drop(block);
}
void operator delete(void* block, std::size_t) noexcept {
    drop(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    drop(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    drop(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    drop(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
    drop(block);
}
void operator delete[](void* block, std::align_val_t) noexcept {
    drop(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
    drop(block);
}
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept {
    drop(block);
}

#endif
