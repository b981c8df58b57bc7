#include <cstddef>
#include <map>
#include <mutex>
#include <new>

#include <sys/mman.h>
#include <unistd.h>

#include "lumivard/platform/core/memory/PooledHeap.h"
#include "tests/fuzz/AllocationMeter.h"

// The heap of records, of which each block ends right before memory that nobody may touch: who reads or writes behind a
// record ends the process, in any build. It stands before the library's own, since it is the program's.
namespace lumivard::platform::core::memory {

namespace {

constexpr std::size_t kMost = std::size_t{64} << 20;  // bytes in one block: more runs out of memory

/// The blocks that were given back, by the number of their pages; each holds the address of the next.
struct tBlocks {
    std::mutex mutex;
    std::map<std::size_t, char*> free;
};

tBlocks& blocks() {
    static auto* const all = new tBlocks;  // never destroyed: records may live in static objects
    return *all;
}

std::size_t page() {
    static const auto size = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    return size;
}

std::size_t pagesOf(std::size_t size) {
    return size == 0 ? 1 : (size + page() - 1) / page();
}

char* newPages(std::size_t count) {
    void* const made =
        ::mmap(nullptr, (count + 1) * page(), PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    auto* const begin = static_cast<char*>(made);
    // The system has a limit to the number of such pages. That is no lack of memory, of which the process may live on.
    const bool guarded = made != MAP_FAILED && ::mprotect(begin + count * page(), page(), PROT_NONE) == 0;
    if (!guarded) ::_exit(fuzz::AllocationMeter::kOver);
    return begin;
}

}  // namespace

void* PooledHeap::malloc(unsigned long size) {
    if (size > kMost) throw std::bad_alloc();
    const std::size_t pages = pagesOf(size);
    const std::lock_guard held(blocks().mutex);
    char*& first = blocks().free[pages];
    char* const begin = first ? first : newPages(pages);
    first = first ? *reinterpret_cast<char**>(begin) : nullptr;
    return begin + pages * page() - size;
}

void PooledHeap::free(void* block, unsigned long size) {
    if (!block) return;
    const std::size_t pages = pagesOf(size);
    char* const begin = static_cast<char*>(block) + size - pages * page();
    const std::lock_guard held(blocks().mutex);
    *reinterpret_cast<char**>(begin) = blocks().free[pages];
    blocks().free[pages] = begin;
}

}  // namespace lumivard::platform::core::memory
