// The examination over a store that is broken in one way, whose name is the program's argument: it has to fail. With
// "sound" nothing is broken, and all of it has to pass.
#include <algorithm>
#include <iostream>
#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include "lumivard/platform/store_contract/StoreContract.h"
#include "tests/contract/BrokenStore.h"

namespace lumivard::platform::store_contract {
namespace {

using core::storage::datastore::IDataStore;
using tMake = Breakage (*)();

std::string all(ForgetfulStore& store, unsigned int offset) {
    std::string bytes(store.size(offset), '\0');
    store.read(offset, bytes.data(), 0xFFFFFFFF);
    return bytes;
}

unsigned int length(const std::string& bytes) {
    return static_cast<unsigned int>(bytes.size());
}

// A sound way of giving parts.
unsigned int part(ForgetfulStore& store, unsigned int offset, unsigned int position, void* buffer, unsigned int size) {
    const std::string bytes = all(store, offset);
    if (position >= bytes.size()) return 0;
    return static_cast<unsigned int>(bytes.copy(static_cast<char*>(buffer), size, position));
}

class NoGuard final : public IDataStore::ILock {};

// A guard that a thread can have once.
class OneGuard final : public IDataStore::ILock {
public:
    OneGuard() {
        if (_owner == std::this_thread::get_id()) {
            throw std::system_error(std::make_error_code(std::errc::resource_deadlock_would_occur));
        }
        _mutex.lock();
        _owner = std::this_thread::get_id();
    }
    ~OneGuard() override {
        _owner = {};
        _mutex.unlock();
    }

private:
    static inline std::mutex _mutex;
    static inline std::thread::id _owner;
};

// A guard that is given back with the first of its objects.
class HastyGuard final : public IDataStore::ILock {
public:
    explicit HastyGuard(ForgetfulStore& store) {
        if (_depth++ == 0) _held.reset(store.lock());
    }
    ~HastyGuard() override {
        --_depth;
        _held.reset();
    }

private:
    static inline thread_local int _depth = 0;
    static inline thread_local std::unique_ptr<IDataStore::ILock> _held;
};

// A guard that is given back with the object that was made first.
class OuterGuard final : public IDataStore::ILock {
public:
    explicit OuterGuard(ForgetfulStore& store) {
        if (_depth++ == 0) _held.reset(store.lock());
    }
    ~OuterGuard() override { --_depth; }

private:
    static inline thread_local int _depth = 0;
    std::unique_ptr<IDataStore::ILock> _held;
};

const std::map<std::string, tMake> kBreakages = {
    {"sound", [] { return Breakage{.part = part}; }},
    {"offsets_from_one",
     [] {
         return Breakage{.create = [](auto& store, const void* data, unsigned int size) {
             if (store.extent() == 0) store.create(nullptr, 0);
             return store.create(data, size);
         }};
     }},
    {"offsets_handed_out_twice",
     [] {
         return Breakage{.create = [](auto& store, const void* data, unsigned int size) {
             if (store.extent() < 1000) return store.create(data, size);
             store.update(999, data, size, true);
             return 999U;
         }};
     }},
    {"create_keeps_16_bits_of_the_size",
     [] {
         return Breakage{.create = [](auto& store, const void* data, unsigned int size) {
             return store.create(data, size & 0xFFFF);
         }};
     }},
    {"create_keeps_the_pointer",
     [] {
         return Breakage{
             .create = [](auto& store, const void* data, unsigned int) { return store.create(&data, sizeof data); },
             .size = [](auto&, unsigned int) { return 6U; },
             .read =
                 [](auto& store, unsigned int offset, void* buffer, unsigned int) {
                     const char* data = nullptr;
                     store.read(offset, &data, sizeof data);
                     std::copy_n(data, 6, static_cast<char*>(buffer));
                 }};
     }},
    {"texts_only",
     [] {
         return Breakage{.create = [](auto& store, const void* data, unsigned int size) {
             const auto* const begin = static_cast<const char*>(data);
             return store.create(data, static_cast<unsigned int>(std::find(begin, begin + size, '\0') - begin));
         }};
     }},
    {"append_off_by_one",
     [] {
         return Breakage{.append = [](auto& store, unsigned int offset, const void* data, unsigned int size) {
             store.append(offset, data, size == 0 ? 0 : size - 1);
         }};
     }},
    {"append_loses_a_byte_of_long_records",
     [] {
         return Breakage{.append = [](auto& store, unsigned int offset, const void* data, unsigned int size) {
             const bool lost = store.size(offset) > 300 && size > 4;
             store.append(offset, data, lost ? size - 1 : size);
         }};
     }},
    {"update_keeps_the_tail",
     [] {
         return Breakage{
             .update = [](auto& store, unsigned int offset, const void* data, unsigned int size, bool changed) {
                 std::string bytes = all(store, offset);
                 if (size < bytes.size()) {
                     bytes.replace(0, size, size == 0 ? "" : static_cast<const char*>(data), size);
                     store.update(offset, bytes.data(), length(bytes), changed);
                 } else {
                     store.update(offset, data, size, changed);
                 }
             }};
     }},
    {"update_moves_the_record",
     [] {
         return Breakage{
             .update = [](auto& store, unsigned int offset, const void* data, unsigned int size, bool changed) {
                 if (size <= store.size(offset)) return store.update(offset, data, size, changed);
                 store.create(data, size);
                 store.update(offset, nullptr, 0, changed);
             }};
     }},
    {"update_ignores_bookkeeping",
     [] {
         return Breakage{
             .update = [](auto& store, unsigned int offset, const void* data, unsigned int size, bool changed) {
                 if (changed) store.update(offset, data, size, changed);
             }};
     }},
    {"update_of_no_record_is_passed_over",
     [] {
         return Breakage{
             .update = [](auto& store, unsigned int offset, const void* data, unsigned int size, bool changed) {
                 try {
                     store.update(offset, data, size, changed);
                 } catch (const std::out_of_range&) {
                 }
             }};
     }},
    {"update_that_throws_leaves_a_trace",
     [] {
         return Breakage{
             .update = [](auto& store, unsigned int offset, const void* data, unsigned int size, bool changed) {
                 const unsigned int version = store.version();
                 store.version(version + 1);
                 store.update(offset, data, size, changed);
                 store.version(version);
             }};
     }},
    {"read_past_the_end",
     [] {
         return Breakage{.read = [](auto& store, unsigned int offset, void* buffer, unsigned int size) {
             const unsigned int count = store.size(offset);
             store.read(offset, buffer, size);
             if (count != 0 && size > count && size != 0xFFFFFFFF) static_cast<char*>(buffer)[count] = '\0';
         }};
     }},
    {"read_ignores_its_size",
     [] {
         return Breakage{.read = [](auto& store, unsigned int offset, void* buffer, unsigned int) {
             store.read(offset, buffer, 0xFFFFFFFF);
         }};
     }},
    {"read_of_no_record_throws",
     [] {
         return Breakage{.read = [](auto& store, unsigned int offset, void* buffer, unsigned int size) {
             if (offset == IDataStore::BADOFF) throw std::out_of_range("no record");
             store.read(offset, buffer, size);
         }};
     }},
    {"size_of_no_record_is_not_zero",
     [] {
         return Breakage{.size = [](auto& store, unsigned int offset) {
             return offset == IDataStore::BADOFF ? 0xFFFFFFFFU : store.size(offset);
         }};
     }},
    {"erase_does_nothing", [] { return Breakage{.erase = [](auto&, unsigned int) {}}; }},
    {"erase_is_forgotten_at_reopen",
     [] {
         return Breakage{.erase = [](auto& store, unsigned int offset) { store.update(offset, nullptr, 0, false); }};
     }},
    {"extent_counts_living_records",
     [] {
         return Breakage{.extent = [](auto& store) {
             unsigned long long count = 0;
             for (unsigned int offset = 0; offset < store.extent(); ++offset) count += store.size(offset) != 0;
             return count;
         }};
     }},
    {"version_is_not_durable",
     [] {
         return Breakage{.reopen = [](auto& store) {
             store.crash();
             store.version(0);
         }};
     }},
    {"version_lies_in_the_first_record",
     [] {
         return Breakage{.setVersion = [](auto& store, unsigned int number) {
             if (store.extent() == 0) store.create(&number, sizeof number);
             store.version(number);
         }};
     }},
    {"flush_does_nothing", [] { return Breakage{.flush = [](auto&) {}}; }},
    {"flush_works_once",
     [] {
         return Breakage{.flush = [](auto& store) {
             if (store.flushes() == 0 || store.extent() == 0) store.flush();
         }};
     }},
    {"flush_writes_a_new_record",
     [] { return Breakage{.flush = [](auto& store) { store.flush(), store.create(nullptr, 0); }}; }},
    {"guard_excludes_nobody", [] { return Breakage{.lock = [](auto&) { return new NoGuard; }}; }},
    {"guard_is_not_reentrant", [] { return Breakage{.lock = [](auto&) { return new OneGuard; }}; }},
    {"guard_ends_with_the_inner_one",
     [] { return Breakage{.lock = [](auto& store) { return new HastyGuard(store); }}; }},
    {"guard_ends_with_the_outer_one",
     [] { return Breakage{.lock = [](auto& store) { return new OuterGuard(store); }}; }},
    {"part_ignores_its_position",
     [] {
         return Breakage{.part = [](auto& store, unsigned int offset, unsigned int, void* buffer, unsigned int size) {
             return part(store, offset, 0, buffer, size);
         }};
     }},
    {"part_beyond_the_end_wraps_around",
     [] {
         return Breakage{
             .part = [](auto& store, unsigned int offset, unsigned int position, void* buffer, unsigned int size) {
                 const unsigned int count = store.size(offset);
                 return part(store, offset, count == 0 ? 0 : position % count, buffer, size);
             }};
     }},
    {"parts_are_stale",
     [] {
         return Breakage{
             .part = [known = std::make_shared<std::map<unsigned int, std::string>>()](
                         auto& store, unsigned int offset, unsigned int position, void* buffer, unsigned int size) {
                 const std::string& bytes = known->try_emplace(offset, all(store, offset)).first->second;
                 if (position >= bytes.size()) return 0U;
                 return static_cast<unsigned int>(bytes.copy(static_cast<char*>(buffer), size, position));
             }};
     }},
};

tMake chosen = nullptr;

class BrokenSubject final : public ISubject {
public:
    IDataStore& store() override { return _store; }
    bool reopen() override {
        _store.reopen();
        return true;
    }

private:
    BrokenStore _store{chosen()};
};

INSTANTIATE_TEST_SUITE_P(Broken, StoreContract,
                         testing::Values(Row{"Store", [] { return std::make_unique<BrokenSubject>(); }}), nameOf);

}  // namespace
}  // namespace lumivard::platform::store_contract

int main(int argc, char** argv) {
    using namespace lumivard::platform::store_contract;
    testing::InitGoogleTest(&argc, argv);
    const auto breakage = argc == 2 ? kBreakages.find(argv[1]) : kBreakages.end();
    if (breakage == kBreakages.end()) {
        std::cerr << "usage: lvp_broken_stores <breakage>, which is one of";
        for (const auto& [name, make] : kBreakages) std::cerr << ' ' << name;
        std::cerr << '\n';
        return 2;
    }
    chosen = breakage->second;
    return RUN_ALL_TESTS();
}
