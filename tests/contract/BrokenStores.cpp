// The examination over a store that is broken in one way, whose name is the program's argument: it has to fail. With
// "sound" nothing is broken, and all of it has to pass. With "sentences" and the names of those that have been seen to
// fail it tells which ones are missing.
#include <algorithm>
#include <cstdint>
#include <iostream>
#include <map>
#include <memory>
#include <mutex>
#include <set>
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

std::string all(ForgetfulStore& store, unsigned int offset) {
    std::string bytes(store.size(offset), '\0');
    store.read(offset, bytes.data(), 0xFFFFFFFF);
    return bytes;
}

unsigned int length(const std::string& bytes) {
    return static_cast<unsigned int>(bytes.size());
}

// The beginning of the machine word that an address lies in.
template <class Byte>
Byte* aligned(Byte* address) {
    return reinterpret_cast<Byte*>(reinterpret_cast<std::uintptr_t>(address) & ~std::uintptr_t{7});
}

// Reads what a record points to, 6 bytes.
void readPointer(ForgetfulStore& store, unsigned int offset, void* buffer, unsigned int) {
    const char* data = nullptr;
    store.read(offset, &data, sizeof data);
    std::copy_n(data, 6, static_cast<char*>(buffer));
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

const std::map<std::string, tMakeBreakage> kBreakages = {
    {"sound", [] { return Breakage{}; }},
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
             .read = readPointer};
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
    {"append_of_nothing_adds_a_byte",
     [] {
         return Breakage{.append = [](auto& store, unsigned int offset, const void* data, unsigned int size) {
             size == 0 ? store.append(offset, "", 1) : store.append(offset, data, size);
         }};
     }},
    {"append_keeps_the_pointer",
     [] {
         return Breakage{.append = [](auto& store, unsigned int offset, const void* data,
                                      unsigned int) { store.append(offset, &data, sizeof data); },
                         .size = [](auto&, unsigned int) { return 3U; },
                         .read =
                             [](auto& store, unsigned int offset, void* buffer, unsigned int) {
                                 const std::string bytes = all(store, offset);
                                 const char* data = nullptr;
                                 bytes.copy(reinterpret_cast<char*>(&data), sizeof data, 1);
                                 *std::copy_n(data, 2, std::copy_n(bytes.data(), 1, static_cast<char*>(buffer))) = '\0';
                             }};
     }},
    {"update_keeps_the_pointer",
     [] {
         return Breakage{.update = [](auto& store, unsigned int offset, const void* data, unsigned int,
                                      bool changed) { store.update(offset, &data, sizeof data, changed); },
                         .size = [](auto&, unsigned int) { return 6U; },
                         .read = readPointer};
     }},
    {"create_reuses_the_first_record",
     [] {
         return Breakage{.create = [](auto& store, const void* data, unsigned int size) {
             if (store.extent() > 2000) store.update(0, data, size, true);
             return store.create(data, size);
         }};
     }},
    {"create_counts_living_records",
     [] {
         return Breakage{.create = [](auto& store, const void* data, unsigned int size) {
             if (store.extent() == 0 || store.size(0) != 0) return store.create(data, size);
             const auto last = static_cast<unsigned int>(store.extent()) - 1;
             store.update(last, data, size, true);
             return last;
         }};
     }},
    {"create_aligns_the_address",
     [] {
         return Breakage{.create = [](auto& store, const void* data, unsigned int size) {
             return store.create(aligned(data), size);
         }};
     }},
    {"create_takes_texts_of_no_size",
     [] {
         return Breakage{.create = [](auto& store, const void* data, unsigned int size) {
             return store.create(data, size == 0 && data ? 4 : size);
         }};
     }},
    {"erase_takes_the_next_one_along",
     [] {
         return Breakage{.erase = [](auto& store, unsigned int offset) {
             store.erase(offset);
             if (store.size(offset + 1) != 0) store.erase(offset + 1);
         }};
     }},
    {"erase_of_no_record_is_passed_over",
     [] {
         return Breakage{.erase = [](auto& store, unsigned int offset) {
             if (store.size(offset) != 0) store.erase(offset);
         }};
     }},
    {"append_to_no_record_is_passed_over",
     [] {
         return Breakage{.append = [](auto& store, unsigned int offset, const void* data, unsigned int size) {
             if (store.size(offset) != 0) store.append(offset, data, size);
         }};
     }},
    {"extent_counts_flushed_records",
     [] { return Breakage{.extent = [](auto& store) { return store.flushes() == 0 ? 0 : store.extent(); }}; }},
    {"extent_counts_the_version", [] { return Breakage{.extent = [](auto& store) { return store.extent() + 1; }}; }},
    {"flush_forgets_the_version",
     [] { return Breakage{.flush = [](auto& store) { store.flush(), store.version(0); }}; }},
    {"read_takes_the_record_away",
     [] {
         return Breakage{.read = [](auto& store, unsigned int offset, void* buffer, unsigned int size) {
             store.read(offset, buffer, size);
             if (store.size(offset) != 0) store.update(offset, nullptr, 0, true);
         }};
     }},
    {"read_aligns_the_address",
     [] {
         return Breakage{.read = [](auto& store, unsigned int offset, void* buffer, unsigned int size) {
             store.read(offset, aligned(buffer), size);
         }};
     }},
    {"read_wants_a_buffer",
     [] {
         return Breakage{.read = [](auto& store, unsigned int offset, void* buffer, unsigned int size) {
             if (!buffer) throw std::invalid_argument("no buffer");
             store.read(offset, buffer, size);
         }};
     }},
    {"read_of_an_unknown_offset_throws",
     [] {
         return Breakage{.read = [](auto& store, unsigned int offset, void* buffer, unsigned int size) {
             if (offset != IDataStore::BADOFF && offset >= store.extent()) throw std::out_of_range("no record");
             store.read(offset, buffer, size);
         }};
     }},
    {"update_spills_into_the_next_one",
     [] {
         return Breakage{
             .update = [](auto& store, unsigned int offset, const void* data, unsigned int size, bool changed) {
                 store.update(offset, data, size, changed);
                 if (size > 4096 && store.size(offset + 1) != 0) store.update(offset + 1, data, 4, changed);
             }};
     }},
    {"update_counts_versions",
     [] {
         return Breakage{
             .update = [](auto& store, unsigned int offset, const void* data, unsigned int size, bool changed) {
                 store.update(offset, data, size, changed);
                 store.version(store.version() + 1);
             }};
     }},
    {"version_never_falls",
     [] {
         return Breakage{
             .setVersion = [](auto& store, unsigned int number) { store.version(std::max(number, store.version())); }};
     }},
    {"version_begins_with_one",
     [] { return Breakage{.version = [](const auto& store) { return std::max(1U, store.version()); }}; }},
    {"guard_lasts_for_one_operation",
     [] {
         return Breakage{.lock = [](auto&) { return new NoGuard; },
                         .update =
                             [](auto& store, unsigned int offset, const void* data, unsigned int size, bool changed) {
                                 const std::unique_ptr<IDataStore::ILock> guard(store.lock());
                                 store.update(offset, data, size, changed);
                             },
                         .read =
                             [](auto& store, unsigned int offset, void* buffer, unsigned int size) {
                                 {
                                     const std::unique_ptr<IDataStore::ILock> guard(store.lock());
                                     store.read(offset, buffer, size);
                                 }
                                 std::this_thread::yield();  // to whoever wants to come in between
                             }};
     }},
};

tMakeBreakage chosen = nullptr;

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

/// How many sentences of the examination are not among `seen`; they are printed.
int missing(const std::set<std::string>& seen) {
    int count = 0;
    const testing::UnitTest& all = *testing::UnitTest::GetInstance();
    for (int suite = 0; suite < all.total_test_suite_count(); ++suite) {
        const testing::TestSuite& sentences = *all.GetTestSuite(suite);
        for (int i = 0; i < sentences.total_test_count(); ++i) {
            const std::string name = sentences.GetTestInfo(i)->name();
            const std::string sentence = name.substr(0, name.find('/'));
            if (seen.contains(sentence)) continue;
            std::cerr << "no broken store for " << sentence << '\n';
            ++count;
        }
    }
    return count;
}

}  // namespace
}  // namespace lumivard::platform::store_contract

int main(int argc, char** argv) {
    using namespace lumivard::platform::store_contract;
    testing::InitGoogleTest(&argc, argv);
    if (argc > 1 && std::string(argv[1]) == "sentences") return missing({argv + 2, argv + argc}) == 0 ? 0 : 1;
    auto all = kBreakages;
    all.insert(brokenAccesses().begin(), brokenAccesses().end());
    const auto breakage = argc == 2 ? all.find(argv[1]) : all.end();
    if (breakage == all.end()) {
        std::cerr << "usage: lvp_broken_stores <breakage>, which is one of";
        for (const auto& [name, make] : all) std::cerr << ' ' << name;
        std::cerr << '\n';
        return 2;
    }
    chosen = breakage->second;
    return RUN_ALL_TESTS();
}
