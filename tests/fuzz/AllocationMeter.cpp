#include "tests/fuzz/AllocationMeter.h"

#include <atomic>
#include <cerrno>
#include <new>

#include <malloc.h>
#include <unistd.h>

#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define LVP_SANITIZED
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define LVP_SANITIZED
#endif

namespace lumivard::platform::fuzz {

namespace {

std::atomic<bool> counting = false;
std::atomic<std::ptrdiff_t> live = 0;
std::atomic<std::ptrdiff_t> highest = 0;
std::atomic<std::ptrdiff_t> limit = 0;

void took(std::size_t size) noexcept {
    if (!counting) return;
    const std::ptrdiff_t now = live += static_cast<std::ptrdiff_t>(size);
    if (now > limit) ::_exit(AllocationMeter::kOver);
    for (std::ptrdiff_t most = highest; now > most && !highest.compare_exchange_weak(most, now);) {
    }
}

void gave(std::size_t size) noexcept {
    if (counting) live -= static_cast<std::ptrdiff_t>(size);
}

}  // namespace

void AllocationMeter::start(std::size_t most) {
    limit = static_cast<std::ptrdiff_t>(most);
    live = 0;
    highest = 0;
    counting = true;
}

std::size_t AllocationMeter::peak() {
    return static_cast<std::size_t>(highest.load());
}

}  // namespace lumivard::platform::fuzz

#ifdef LVP_SANITIZED

// A sanitizer has an allocator of its own, which tells of each block.

// As <sanitizer/allocator_interface.h> says, which not every compiler brings.
extern "C" {
int __sanitizer_install_malloc_and_free_hooks(void (*onTaken)(const volatile void*, std::size_t),
                                              void (*onGiven)(const volatile void*));
std::size_t __sanitizer_get_allocated_size(const volatile void* block);
}

namespace {

using namespace lumivard::platform::fuzz;

void onTaken(const volatile void*, std::size_t size) {
    took(size);
}

void onGiven(const volatile void* block) {
    gave(__sanitizer_get_allocated_size(block));
}

[[maybe_unused]] const int listening = __sanitizer_install_malloc_and_free_hooks(onTaken, onGiven);

}  // namespace

#else

// The program's own definitions stand before those of the C library, for all libraries of the process.

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* block);

#define LVP_SHOWN __attribute__((visibility("default")))

LVP_SHOWN void* malloc(std::size_t size) noexcept {
    void* block = __libc_malloc(size);
    if (block) lumivard::platform::fuzz::took(malloc_usable_size(block));
    return block;
}

LVP_SHOWN void* calloc(std::size_t count, std::size_t size) noexcept {
    void* block = __libc_calloc(count, size);
    if (block) lumivard::platform::fuzz::took(malloc_usable_size(block));
    return block;
}

LVP_SHOWN void* realloc(void* block, std::size_t size) noexcept {
    const std::size_t before = malloc_usable_size(block);
    void* moved = __libc_realloc(block, size);
    if (moved || size == 0) lumivard::platform::fuzz::gave(before);
    if (moved) lumivard::platform::fuzz::took(malloc_usable_size(moved));
    return moved;
}

LVP_SHOWN void* memalign(std::size_t alignment, std::size_t size) noexcept {
    void* block = __libc_memalign(alignment, size);
    if (block) lumivard::platform::fuzz::took(malloc_usable_size(block));
    return block;
}

LVP_SHOWN void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
    return memalign(alignment, size);
}

LVP_SHOWN int posix_memalign(void** block, std::size_t alignment, std::size_t size) noexcept {
    *block = memalign(alignment, size);
    return *block ? 0 : ENOMEM;
}

LVP_SHOWN void free(void* block) noexcept {
    if (block) lumivard::platform::fuzz::gave(malloc_usable_size(block));
    __libc_free(block);
}

}  // extern "C"

#endif
