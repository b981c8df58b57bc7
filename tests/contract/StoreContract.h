#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::store_contract {

/// One store under examination, with whatever it needs to live (a folder, a server) and to be taken down at the end.
class ISubject {
public:
    virtual ~ISubject() = default;

    /// The open store, always the same object until `reopen`.
    virtual core::storage::datastore::IDataStore& store() = 0;

    /// Closes the store in an orderly way and opens it again, as another process would. False from a store that has no
    /// life beyond its closing: it is left open, and the sentences about durability are skipped for it.
    virtual bool reopen() { return false; }
};

/// A kind of store, as a row of the examination.
struct Row {
    std::string name;                                 ///< letters and digits
    std::function<std::unique_ptr<ISubject>()> make;  ///< a new, empty store each time
};

/// For the names of tests.
std::ostream& operator<<(std::ostream& out, const Row& row);
std::string nameOf(const testing::TestParamInfo<Row>& row);

/// What everything above relies upon in an `IDataStore`, sentence by sentence. To examine a store, compile
/// StoreContract.cpp and StoreContract+State.cpp into a GoogleTest program and add a row:
///
///     INSTANTIATE_TEST_SUITE_P(Mine, StoreContract, testing::Values(Row{"MyStore", makeSubject}), nameOf);
class StoreContract : public testing::TestWithParam<Row> {
protected:
    StoreContract() : _subject(GetParam().make()) {}

    core::storage::datastore::IDataStore& store() { return _subject->store(); }
    ISubject& subject() { return *_subject; }

    /// Another, independent store of the same kind.
    static std::unique_ptr<ISubject> another() { return GetParam().make(); }

    unsigned int create(const std::string& bytes);
    void update(unsigned int offset, const std::string& bytes, bool changed = true);
    void append(unsigned int offset, const std::string& bytes);

    /// A record's whole contents, by `size` and `read`.
    std::string contents(unsigned int offset);

    /// Bytes that differ from place to place and from seed to seed, zeros among them.
    static std::string pattern(std::size_t size, unsigned int seed = 1);

    /// An offset that was handed out and names no record any more.
    static unsigned int erasedOffset(core::storage::datastore::IDataStore& store);

    static constexpr unsigned int kBadOffset = core::storage::datastore::IDataStore::BADOFF;
    static constexpr unsigned int kWhole = 0xFFFFFFFF;

    /// Makes what was written durable, closes the store and opens it again; false where it has no such thing.
    bool flushAndReopen();

private:
    std::unique_ptr<ISubject> _subject;
};

/// Goes on with the store opened again, or skips the test.
#define SKIP_UNLESS_REOPENED() \
    if (!flushAndReopen()) GTEST_SKIP() << "this store does not outlive its closing"

}  // namespace lumivard::platform::store_contract
